// SPDX-License-Identifier: MIT
#include "ovra/version.h"

OVRA_API uint32_t OVRA_CALL OvraGetVersion(void) {
  return OVRA_VERSION_MAJOR << 16 | OVRA_VERSION_MINOR << 8 | OVRA_VERSION_PATCH;
}
