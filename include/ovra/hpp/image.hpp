// SPDX-License-Identifier: MIT
// Images of the C++ interface: formats, views that know stride and format, and owned pixels.
#ifndef OVRA_HPP_IMAGE_HPP
#define OVRA_HPP_IMAGE_HPP

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>
#include <vector>

#include "ovra/hpp/status.hpp"
#include "ovra/pixel_format.h"

namespace ovra {

// The description of pixels. One that cannot be expressed is refused by every operation.
class Format {
 public:
  constexpr Format(uint32_t depth_bits, uint32_t channels, OvraColorModel model,
                   uint32_t row_alignment = 1, OvraRowOrder row_order = OVRA_ROWS_TOP_DOWN)
      : code_(OvraMakePixelFormat(depth_bits, channels, model, row_alignment, row_order)) {}
  explicit constexpr Format(OvraPixelFormatCode code) : code_(code) {}

  static constexpr Format Grey(uint32_t depth_bits = 8) {
    return Format(depth_bits, 1, OVRA_MODEL_GREY);
  }
  static constexpr Format Rgb(uint32_t depth_bits = 8) {
    return Format(depth_bits, 3, OVRA_MODEL_RGB);
  }
  static constexpr Format Bgr(uint32_t depth_bits = 8) {
    return Format(depth_bits, 3, OVRA_MODEL_BGR);
  }
  static constexpr Format Rgba(uint32_t depth_bits = 8) {
    return Format(depth_bits, 4, OVRA_MODEL_RGBA);
  }

  constexpr OvraPixelFormatCode code() const { return code_; }
  constexpr bool bottom_up() const { return (code_ & OVRA_ROWS_BOTTOM_UP) != 0; }
  // The row alignment as it stands in the word.
  constexpr OvraPixelFormatCode row_alignment_field() const {
    constexpr OvraPixelFormatCode kField = 0xF00000;
    return code_ & kField;
  }
  // The bytes between two rows; 0 for a malformed format and for rows that cannot be addressed.
  size_t Stride(int32_t width) const {
    size_t stride = 0;
    if (width > 0) static_cast<void>(OvraRowStride(static_cast<uint32_t>(width), code_, &stride));
    return stride;
  }

  friend constexpr bool operator==(Format a, Format b) { return a.code_ == b.code_; }
  friend constexpr bool operator!=(Format a, Format b) { return a.code_ != b.code_; }

 private:
  OvraPixelFormatCode code_;
};

struct Size {
  int32_t width;
  int32_t height;

  friend constexpr bool operator==(Size a, Size b) {
    return a.width == b.width && a.height == b.height;
  }
  friend constexpr bool operator!=(Size a, Size b) { return !(a == b); }
};

// In pixels of the source, y from the picture's top.
struct Region {
  int32_t x;
  int32_t y;
  int32_t width;
  int32_t height;
};

// Somebody else's pixels. Views are copied freely and own nothing. Byte is uint8_t or const uint8_t.
template <class Byte>
class BasicView {
 public:
  // data is the first row in memory; a row is Format::Stride bytes from the next.
  BasicView(Byte* data, Size size, Format format)
      : data_(data), size_(size), format_(format), stride_(format.Stride(size.width)) {}
  // A view that may write is one that may read.
  template <class Other, class = std::enable_if_t<std::is_same_v<const Other, Byte>>>
  BasicView(const BasicView<Other>& other)
      : BasicView(other.data(), other.size(), other.format()) {}

  Byte* data() const { return data_; }
  Size size() const { return size_; }
  int32_t width() const { return size_.width; }
  int32_t height() const { return size_.height; }
  Format format() const { return format_; }
  size_t stride() const { return stride_; }

  // Row y of the picture, counted from its top, as samples of this type: uint8_t for 8 bits,
  // uint16_t for 9 to 16.
  template <class Sample = uint8_t>
  auto Row(int32_t y) const {
    using Pointee = std::conditional_t<std::is_const_v<Byte>, const Sample, Sample>;
    const int32_t row = format_.bottom_up() ? size_.height - 1 - y : y;
    return reinterpret_cast<Pointee*>(data_ + static_cast<size_t>(row) * stride_);
  }

  // A band of rows, counted in memory order, as an image of its own.
  BasicView Rows(int32_t first, int32_t count) const {
    return BasicView(data_ + static_cast<size_t>(first) * stride_, {size_.width, count}, format_);
  }

 private:
  Byte* data_;
  Size size_;
  Format format_;
  size_t stride_;
};

using View = BasicView<const uint8_t>;
using MutableView = BasicView<uint8_t>;

// Pixels with an owner, black at first.
class Image {
 public:
  Image(Size size, Format format) : size_(size), format_(format), bytes_(Bytes()) {}

  Size size() const { return size_; }
  int32_t width() const { return size_.width; }
  int32_t height() const { return size_.height; }
  Format format() const { return format_; }

  View view() const { return View(bytes_.data(), size_, format_); }
  MutableView view() { return MutableView(bytes_.data(), size_, format_); }
  operator View() const { return view(); }
  operator MutableView() { return view(); }

  template <class Sample = uint8_t>
  Sample* Row(int32_t y) {
    return view().template Row<Sample>(y);
  }
  template <class Sample = uint8_t>
  const Sample* Row(int32_t y) const {
    return view().template Row<Sample>(y);
  }

 private:
  // OvraExtrapolateImage may clear two bytes behind the last row's padding.
  size_t Bytes() const {
    constexpr size_t kSlack = 2;
    return size_.height > 0
               ? format_.Stride(size_.width) * static_cast<size_t>(size_.height) + kSlack
               : kSlack;
  }

  Size size_;
  Format format_;
  std::vector<uint8_t> bytes_;
};

// Read-only elements in a row: a vector, an array.
template <class T>
class Elements {
 public:
  Elements(const T* data, size_t size) : data_(data), size_(size) {}
  template <class Container, class = decltype(std::declval<const Container&>().data())>
  Elements(const Container& container) : data_(container.data()), size_(container.size()) {}

  const T* data() const { return data_; }
  size_t size() const { return size_; }

 private:
  const T* data_;
  size_t size_;
};

namespace detail {

inline bool Alike(const View& a, const View& b) {
  return a.size() == b.size() && a.format() == b.format();
}

inline uint32_t Unsigned(int32_t extent) {
  return extent > 0 ? static_cast<uint32_t>(extent) : 0;
}

// The move-only owner of a handle word or a context pointer. Traits: the type Handle, and Free.
template <class Traits>
class Owner {
 public:
  using Handle = typename Traits::Handle;

  Owner() = default;
  Owner(Owner&& other) noexcept : handle_(std::exchange(other.handle_, Handle{})) {}
  Owner& operator=(Owner&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~Owner() {
    if (handle_ != Handle{}) Traits::Free(&handle_);
  }

  Handle get() const { return handle_; }
  // Where an Init function puts what it makes. Only of an empty owner.
  Handle* address() { return &handle_; }

 private:
  Handle handle_{};
};

}  // namespace detail
}  // namespace ovra

#endif  // OVRA_HPP_IMAGE_HPP
