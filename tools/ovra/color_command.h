// SPDX-License-Identifier: MIT
// What the commands that change colors share.
#pragma once

#include <string>

#include "color_tables.h"
#include "command.h"

namespace ovra_host {

// The picture with a table applied to each channel.
Image ApplyTables(const Image& source, const ChannelTables& tables, OvraPixelFormatCode format,
                  const CommonOptions& common);

}  // namespace ovra_host
