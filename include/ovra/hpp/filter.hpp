// SPDX-License-Identifier: MIT
// Sharpening and filtering in C++. What each operation does and answers stands in ovra/filter.h.
#ifndef OVRA_HPP_FILTER_HPP
#define OVRA_HPP_FILTER_HPP

#include <vector>

#include "ovra/filter.h"
#include "ovra/hpp/image.hpp"

namespace ovra {

inline Result<std::vector<int32_t>> GaussianWeights(double radius,
                                                    int32_t max_taps = OVRA_YUSM_MAX_TAPS) {
  std::vector<int32_t> weights(OVRA_YUSM_MAX_TAPS);
  int32_t count = 0;
  const Status status = OvraGaussianWeights(radius, max_taps, &count, weights.data());
  if (!status) return status;
  weights.resize(static_cast<size_t>(count));
  return weights;
}

struct ResponseCurves {
  std::vector<OvraResponsePoint> levels;
  std::vector<OvraResponsePoint> differences;
};

inline ResponseCurves DefaultCurves() {
  ResponseCurves curves = {std::vector<OvraResponsePoint>(OVRA_DEFAULT_LEVEL_POINTS),
                           std::vector<OvraResponsePoint>(OVRA_DEFAULT_DIFFERENCE_POINTS)};
  static_cast<void>(OvraDefaultCurves(curves.levels.data(), curves.differences.data()));
  return curves;
}

// The tables of a mask.
class ResponseTables {
 public:
  static Result<ResponseTables> Make(const ResponseCurves& curves) {
    ResponseTables tables;
    const Status status = OvraYUsmMakeTable(
        Format::Grey().code(), static_cast<int32_t>(curves.levels.size()), curves.levels.data(),
        static_cast<int32_t>(curves.differences.size()), curves.differences.data(),
        tables.level_.data(), tables.difference_.data());
    if (!status) return status;
    return tables;
  }

  const int16_t* level() const { return level_.data(); }
  const int16_t* difference() const { return difference_.data(); }

 private:
  std::vector<int16_t> level_ = std::vector<int16_t>(OVRA_LEVEL_TABLE_SIZE);
  std::vector<int16_t> difference_ = std::vector<int16_t>(OVRA_DIFFERENCE_TABLE_SIZE);
};

// The luminance unsharp mask for images of one format.
class YUsm {
 public:
  static Result<YUsm> Make(Format format, Elements<int32_t> weights, float amount,
                           const ResponseTables& tables) {
    YUsm mask(format);
    const Status status =
        OvraYUsm_Init(format.code(), static_cast<int32_t>(weights.size()), weights.data(), amount,
                      tables.level(), tables.difference(), mask.context_.address());
    if (!status) return status;
    return mask;
  }

  // source and destination may be the same pixels.
  Status operator()(View source, MutableView destination) const {
    if (!detail::Alike(source, destination) || source.format() != format_) return Status::kMismatch;
    return OvraYUsm(source.data(), destination.data(), detail::Unsigned(source.width()),
                    detail::Unsigned(source.height()), format_.code(), context_.get());
  }

 private:
  struct Traits {
    using Handle = OvraYUsmContext*;
    static void Free(Handle* context) { OvraYUsm_Free(context); }
  };

  explicit YUsm(Format format) : format_(format) {}

  Format format_;
  detail::Owner<Traits> context_;
};

// One band of the double mask: the blur that bounds it, and its strength.
struct UsmBand {
  Elements<int32_t> weights;
  float amount;
  const ResponseTables& tables;
};

// The double unsharp mask.
class YUsmDouble {
 public:
  static Result<YUsmDouble> Make(Format format, const UsmBand& coarse, const UsmBand& fine) {
    YUsmDouble mask(format);
    const Status status = OvraYUsmDouble_Init(
        format.code(), static_cast<uint32_t>(coarse.weights.size()), coarse.weights.data(),
        static_cast<uint32_t>(fine.weights.size()), fine.weights.data(), coarse.amount,
        coarse.tables.level(), coarse.tables.difference(), fine.amount, fine.tables.level(),
        fine.tables.difference(), mask.context_.address());
    if (!status) return status;
    return mask;
  }

  // source and destination may be the same pixels.
  Status operator()(View source, MutableView destination) const {
    if (!detail::Alike(source, destination) || source.format() != format_) return Status::kMismatch;
    return OvraYUsmDouble(source.data(), destination.data(), detail::Unsigned(source.width()),
                          detail::Unsigned(source.height()), format_.code(), context_.get());
  }

 private:
  struct Traits {
    using Handle = OvraYUsmDoubleContext*;
    static void Free(Handle* context) { OvraYUsmDouble_Free(context); }
  };

  explicit YUsmDouble(Format format) : format_(format) {}

  Format format_;
  detail::Owner<Traits> context_;
};

// Packed rows only, as they have without a row alignment.
inline Status EFilterImage(View source, MutableView destination) {
  const size_t packed = size_t{3} * detail::Unsigned(source.width());
  if (!detail::Alike(source, destination) || source.stride() != packed) return Status::kMismatch;
  return OvraEFilterImage(source.data(), destination.data(), detail::Unsigned(source.width()),
                          detail::Unsigned(source.height()), source.format().code());
}

// Three channels of 8 bits in packed rows; source and destination may be the same pixels.
inline Status SoftFocus(View source, MutableView destination, const OvraSoftFocusParams& params) {
  const size_t packed = size_t{3} * detail::Unsigned(source.width());
  if (!detail::Alike(source, destination) || source.stride() != packed) return Status::kMismatch;
  return OvraSoftFocus(source.data(), destination.data(), detail::Unsigned(source.width()),
                       detail::Unsigned(source.height()), &params);
}

// source and destination may be the same pixels.
inline Status MultiFrequency(View source, MutableView destination,
                             const OvraMultiFrequencyParams& params) {
  if (!detail::Alike(source, destination)) return Status::kMismatch;
  return OvraMultiFrequency(source.data(), destination.data(), detail::Unsigned(source.width()),
                            detail::Unsigned(source.height()), source.format().code(), &params);
}

}  // namespace ovra

#endif  // OVRA_HPP_FILTER_HPP
