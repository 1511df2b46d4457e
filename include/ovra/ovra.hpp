// SPDX-License-Identifier: MIT
// OvraBase for C++17 and later: thin inline code over the C interface, nothing to link but the library.
//
//   ovra::Image small({150, 100}, ovra::Format::Rgb());
//   ovra::ResizeImage(photo, small).OrThrow();                        // an exception, or
//   if (ovra::Status s = ovra::ResizeImage(photo, small); !s) ...     // a status
//
// Operations bear the names of the C functions without "Ovra" and take views (ovra::View to read,
// ovra::MutableView to write), which know size, format and stride; ovra::Image owns pixels and turns
// into either. What must be prepared is a move-only object whose Make answers a Result: a value, or the
// status of its absence. Views of one call that do not belong together are refused before anything is
// called, with Status::kMismatch. Everything else stands at the C functions.
#ifndef OVRA_OVRA_HPP
#define OVRA_OVRA_HPP

#include "ovra/hpp/basic.hpp"
#include "ovra/hpp/color.hpp"
#include "ovra/hpp/filter.hpp"
#include "ovra/hpp/image.hpp"
#include "ovra/hpp/resample.hpp"
#include "ovra/hpp/status.hpp"
#include "ovra/hpp/tone.hpp"
#include "ovra/ovra.h"

#endif  // OVRA_OVRA_HPP
