// SPDX-License-Identifier: MIT
// PNG by libpng. Its errors are long jumps: what is jumped over holds nothing that needs a
// destructor, and everything that does lives outside the guarded steps.
#include <png.h>

#include <bit>
#include <csetjmp>
#include <vector>

#include "codecs.h"
#include "error.h"

namespace ovra_host {
namespace {

void OnError(png_structp png, png_const_charp message) {
  static_cast<ErrorText*>(png_get_error_ptr(png))->Set(message);
  png_longjmp(png, 1);
}

void OnWarning(png_structp, png_const_charp) {}

// Runs a step; false when libpng jumped out of it.
template <class Step>
bool RunGuarded(png_structp png, const Step& step) {
  if (setjmp(png_jmpbuf(png)) != 0) return false;
  step();
  return true;
}

template <class File>
class PngSession {
 public:
  explicit PngSession(const File& file) : file_(file) {}

  template <class Step>
  void Run(const Step& step) {
    if (png_ == nullptr || info_ == nullptr) file_.Refuse("libpng cannot be started");
    if (!RunGuarded(png_, step)) file_.Refuse(std::string("PNG: ") + error_.text);
  }

 protected:
  const File& file_;
  ErrorText error_;
  png_structp png_ = nullptr;
  png_infop info_ = nullptr;
};

class PngReader : public PngSession<InputFile> {
 public:
  explicit PngReader(const InputFile& file) : PngSession(file) {
    png_ = png_create_read_struct(PNG_LIBPNG_VER_STRING, &error_, OnError, OnWarning);
    if (png_ != nullptr) info_ = png_create_info_struct(png_);
  }
  ~PngReader() { png_destroy_read_struct(&png_, &info_, nullptr); }
  PngReader(const PngReader&) = delete;
  PngReader& operator=(const PngReader&) = delete;

  Image Read() {
    Run([this] { ReadHeader(); });
    const uint32_t depth_bits = png_get_bit_depth(png_, info_);
    const uint32_t channels = png_get_channels(png_, info_);
    const uint32_t width = png_get_image_width(png_, info_);
    const uint32_t height = png_get_image_height(png_, info_);
    file_.CheckClaim(width, height, depth_bits / 8 * channels);
    Image image(width, height, FileFormat(depth_bits, channels));
    std::vector<png_bytep> rows;
    for (int32_t y = 0; y < image.height(); ++y) rows.push_back(image.Row(y));
    Run([this, &rows] {
      png_read_image(png_, rows.data());
      png_read_end(png_, nullptr);
    });
    return image;
  }

 private:
  // Reads up to the pixels and asks for grey, RGB or RGBA of 8 or 16 bits in native byte order.
  void ReadHeader() {
    png_init_io(png_, file_.stream());
    png_set_user_limits(png_, kMaxSide, kMaxSide);
    png_read_info(png_, info_);
    png_set_expand(png_);  // palettes to RGB, fewer than 8 bits to 8, transparent colours to alpha
    const bool has_alpha = (png_get_color_type(png_, info_) & PNG_COLOR_MASK_ALPHA) != 0 ||
                           png_get_valid(png_, info_, PNG_INFO_tRNS) != 0;
    if (has_alpha) png_set_gray_to_rgb(png_);
    if constexpr (std::endian::native == std::endian::little) png_set_swap(png_);
    png_set_interlace_handling(png_);
    png_read_update_info(png_, info_);
  }
};

class PngWriter : public PngSession<OutputFile> {
 public:
  explicit PngWriter(const OutputFile& file) : PngSession(file) {
    png_ = png_create_write_struct(PNG_LIBPNG_VER_STRING, &error_, OnError, OnWarning);
    if (png_ != nullptr) info_ = png_create_info_struct(png_);
  }
  ~PngWriter() { png_destroy_write_struct(&png_, &info_); }
  PngWriter(const PngWriter&) = delete;
  PngWriter& operator=(const PngWriter&) = delete;

  void Write(const Image& image) {
    Run([this, &image] { WriteAll(image); });
  }

 private:
  void WriteAll(const Image& image) {
    const int color_type = image.channels() == 1   ? PNG_COLOR_TYPE_GRAY
                           : image.channels() == 3 ? PNG_COLOR_TYPE_RGB
                                                   : PNG_COLOR_TYPE_RGB_ALPHA;
    png_init_io(png_, file_.stream());
    png_set_user_limits(png_, kMaxSide, kMaxSide);
    png_set_IHDR(png_, info_, static_cast<png_uint_32>(image.width()),
                 static_cast<png_uint_32>(image.height()), static_cast<int>(image.depth_bits()),
                 color_type, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png_, info_);
    if constexpr (std::endian::native == std::endian::little) png_set_swap(png_);
    for (int32_t y = 0; y < image.height(); ++y) png_write_row(png_, image.Row(y));
    png_write_end(png_, info_);
  }
};

}  // namespace

Image ReadPng(const InputFile& file) {
  return PngReader(file).Read();
}

void WritePng(const Image& image, const OutputFile& file, const WriteOptions&) {
  PngWriter(file).Write(image);
}

}  // namespace ovra_host
