// SPDX-License-Identifier: MIT
// Colour conversion in C++. What each operation does and answers stands in ovra/color.h.
#ifndef OVRA_HPP_COLOR_HPP
#define OVRA_HPP_COLOR_HPP

#include "ovra/color.h"
#include "ovra/hpp/image.hpp"

namespace ovra {
namespace detail {

struct CubeFunctions {
  using Handle = uintptr_t;
  using Data = OvraColorCube;
  static Status Init(Format in, Format out, const Data& data, Handle* handle) {
    return OvraConvColorCube_Init(in.code(), out.code(), &data, handle);
  }
  static Status Convert(View source, MutableView destination, Handle handle) {
    return OvraConvColorCube(source.data(), destination.data(), source.width(), source.height(),
                             source.format().code(), destination.format().code(), handle);
  }
  static void Free(Handle* handle) { OvraConvColorCube_Free(handle); }
};

struct TableFunctions {
  using Handle = uintptr_t;
  using Data = OvraChannelTableSet;
  static Status Init(Format in, Format out, const Data& data, Handle* handle) {
    return OvraConvColor1DTbl_Init(in.code(), out.code(), &data, handle);
  }
  static Status Convert(View source, MutableView destination, Handle handle) {
    return OvraConvColor1DTbl(source.data(), destination.data(), source.width(), source.height(),
                              source.format().code(), destination.format().code(), handle);
  }
  static void Free(Handle* handle) { OvraConvColor1DTbl_Free(handle); }
};

// One polynomial for each of three channels.
struct ChannelPolynomials {
  OvraChannelPolynomial channel[3];
};

struct PolynomialFunctions {
  using Handle = uintptr_t;
  using Data = ChannelPolynomials;
  static Status Init(Format in, Format out, const Data& data, Handle* handle) {
    return OvraConvColorCoef_Init(in.code(), out.code(), data.channel, handle);
  }
  static Status Convert(View source, MutableView destination, Handle handle) {
    return OvraConvColorCoef(source.data(), destination.data(), source.width(), source.height(),
                             source.format().code(), destination.format().code(), handle);
  }
  static void Free(Handle* handle) { OvraConvColorCoef_Free(handle); }
};

struct MatrixFunctions {
  using Handle = uintptr_t;
  using Data = OvraColorMatrix;
  static Status Init(Format in, Format out, const Data& data, Handle* handle) {
    return OvraConvColorMtx_Init(in.code(), out.code(), &data, handle);
  }
  static Status Convert(View source, MutableView destination, Handle handle) {
    return OvraConvColorMtx(source.data(), destination.data(), source.width(), source.height(),
                            source.format().code(), destination.format().code(), handle);
  }
  static void Free(Handle* handle) { OvraConvColorMtx_Free(handle); }
};

}  // namespace detail

// A prepared conversion from one format to another. Any number of threads may use it at once, also
// for bands of one image (View::Rows).
template <class Functions>
class Conversion {
 public:
  static Result<Conversion> Make(Format in, Format out, const typename Functions::Data& data) {
    Conversion conversion;
    const Status status = Functions::Init(in, out, data, conversion.handle_.address());
    if (!status) return status;
    return conversion;
  }

  // The library aligns the rows of both images as the source's format says, so that the
  // destination's has to agree.
  Status operator()(View source, MutableView destination) const {
    if (source.size() != destination.size() ||
        source.format().row_alignment_field() != destination.format().row_alignment_field()) {
      return Status::kMismatch;
    }
    return Functions::Convert(source, destination, handle_.get());
  }

 private:
  detail::Owner<Functions> handle_;
};

using ChannelPolynomials = detail::ChannelPolynomials;

using ColorCubeConversion = Conversion<detail::CubeFunctions>;
using ChannelTableConversion = Conversion<detail::TableFunctions>;
using ChannelPolynomialConversion = Conversion<detail::PolynomialFunctions>;
using ColorMatrixConversion = Conversion<detail::MatrixFunctions>;

inline Status Cascade3D(const OvraColorCube& first, const OvraColorCube& second) {
  return OvraCascade3D(&first, &second);
}

}  // namespace ovra

#endif  // OVRA_HPP_COLOR_HPP
