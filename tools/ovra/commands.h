// SPDX-License-Identifier: MIT
// The subcommands, in the order in which --help lists them.
#pragma once

#include "command.h"

namespace ovra_host {

void AddInfoCommand(CLI::App& app, const CommonOptions& common);
void AddRotateCommand(CLI::App& app, const CommonOptions& common);
void AddStraightenCommand(CLI::App& app, const CommonOptions& common);
void AddResizeCommand(CLI::App& app, const CommonOptions& common);
void AddCanvasCommand(CLI::App& app, const CommonOptions& common);
void AddComposeCommand(CLI::App& app, const CommonOptions& common);
void AddLutCommand(CLI::App& app, const CommonOptions& common);
void AddCascadeCommand(CLI::App& app, const CommonOptions& common);
void AddCurveCommand(CLI::App& app, const CommonOptions& common);
void AddMatrixCommand(CLI::App& app, const CommonOptions& common);
void AddSmoothCommand(CLI::App& app, const CommonOptions& common);
void AddSoftFocusCommand(CLI::App& app, const CommonOptions& common);
void AddDifferenceCommand(CLI::App& app, const CommonOptions& common);
void AddSharpenCommand(CLI::App& app, const CommonOptions& common);
void AddClarityCommand(CLI::App& app, const CommonOptions& common);
void AddToneCommand(CLI::App& app, const CommonOptions& common);

}  // namespace ovra_host
