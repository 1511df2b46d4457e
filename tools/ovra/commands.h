// SPDX-License-Identifier: MIT
// The subcommands, in the order in which --help lists them.
#pragma once

#include "command.h"

namespace ovra_host {

// Those that make one picture of one, and can be stages of a chain.
void AddPictureCommands(CLI::App& app, const CommonOptions& common);
void AddRotateCommand(CLI::App& app, const CommonOptions& common);
void AddStraightenCommand(CLI::App& app, const CommonOptions& common);
void AddResizeCommand(CLI::App& app, const CommonOptions& common);
void AddCanvasCommand(CLI::App& app, const CommonOptions& common);
void AddComposeCommand(CLI::App& app, const CommonOptions& common);
void AddSharpenCommand(CLI::App& app, const CommonOptions& common);
void AddSmoothCommand(CLI::App& app, const CommonOptions& common);
void AddSoftFocusCommand(CLI::App& app, const CommonOptions& common);
void AddClarityCommand(CLI::App& app, const CommonOptions& common);
void AddToneCommand(CLI::App& app, const CommonOptions& common);
void AddLutCommand(CLI::App& app, const CommonOptions& common);
void AddCurveCommand(CLI::App& app, const CommonOptions& common);
void AddMatrixCommand(CLI::App& app, const CommonOptions& common);

void AddOtherCommands(CLI::App& app, const CommonOptions& common);
void AddRunCommand(CLI::App& app, const CommonOptions& common);
void AddCascadeCommand(CLI::App& app, const CommonOptions& common);
void AddCompareCommand(CLI::App& app, const CommonOptions& common);
void AddBenchCommand(CLI::App& app, const CommonOptions& common);
void AddInfoCommand(CLI::App& app, const CommonOptions& common);

}  // namespace ovra_host
