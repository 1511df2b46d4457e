// SPDX-License-Identifier: MIT
// The instances of a cube kernel. Included by each kernel file, which is compiled with flags of its
// own: hence the anonymous namespace.
#pragma once

#include "color/cube_kernels.h"

namespace ovra {
namespace {

// `Kernel` has a static member Convert of type ConvertCubeRow.
template <template <class Input, class Output, class Coefficient, int kChannels> class Kernel,
          class Input, class Coefficient>
ConvertCubeRow* InstanceForOutput(const CubeKernelShape& shape) {
  if (shape.four_channels) {
    return shape.deep_output ? Kernel<Input, uint16_t, Coefficient, 4>::Convert
                             : Kernel<Input, uint8_t, Coefficient, 4>::Convert;
  }
  return shape.deep_output ? Kernel<Input, uint16_t, Coefficient, 3>::Convert
                           : Kernel<Input, uint8_t, Coefficient, 3>::Convert;
}

template <template <class Input, class Output, class Coefficient, int kChannels> class Kernel>
ConvertCubeRow* CubeKernelInstance(const CubeKernelShape& shape) {
  if (!shape.deep_input) return InstanceForOutput<Kernel, uint8_t, int16_t>(shape);
  if (shape.wide_coefficients) return InstanceForOutput<Kernel, uint16_t, int32_t>(shape);
  return InstanceForOutput<Kernel, uint16_t, int16_t>(shape);
}

}  // namespace
}  // namespace ovra
