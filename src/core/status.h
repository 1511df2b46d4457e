// SPDX-License-Identifier: MIT
// The result type under the name that inner code uses.
#pragma once

#include "ovra/status.h"

namespace ovra {

using Status = OvraStatus;

}  // namespace ovra
