// SPDX-License-Identifier: MIT
#include "commands.h"

namespace ovra_host {

void AddPictureCommands(CLI::App& app, const CommonOptions& common) {
  AddRotateCommand(app, common);
  AddStraightenCommand(app, common);
  AddResizeCommand(app, common);
  AddCanvasCommand(app, common);
  AddComposeCommand(app, common);
  AddSharpenCommand(app, common);
  AddSmoothCommand(app, common);
  AddSoftFocusCommand(app, common);
  AddClarityCommand(app, common);
  AddToneCommand(app, common);
  AddLutCommand(app, common);
  AddCurveCommand(app, common);
  AddMatrixCommand(app, common);
}

void AddOtherCommands(CLI::App& app, const CommonOptions& common) {
  AddRunCommand(app, common);
  AddCascadeCommand(app, common);
  AddCompareCommand(app, common);
  AddInfoCommand(app, common);
  AddBenchCommand(app, common);
}

}  // namespace ovra_host
