// SPDX-License-Identifier: MIT
// ovra_scene: draws the project's own test pictures.
#include <CLI/CLI.hpp>
#include <cstdio>

#include "back_light.h"
#include "figures.h"
#include "image_io.h"
#include "scene.h"

namespace {

using Drawer = ovra_host::Image (*)(int32_t width, int32_t height);

int Run(int argc, char** argv) {
  CLI::App app("Draws a test scene, or one of the single pictures, with 8 bits a sample.",
               "ovra_scene");
  std::string output;
  int32_t width = 1200;
  int32_t height = 900;
  Drawer draw = ovra_scene::Scene;
  app.add_option("output", output, "picture to write")->required();
  app.add_option("--width", width, "width in pixels")->capture_default_str();
  app.add_option("--height", height, "height in pixels")->capture_default_str();
  const auto choose = [&draw](Drawer drawer) { return [&draw, drawer] { draw = drawer; }; };
  app.add_flag_callback("--zone-plate", choose(ovra_scene::ZonePlate), "rings, ever finer");
  app.add_flag_callback("--grey-ramp", choose(ovra_scene::GreyRamp), "black to white");
  app.add_flag_callback("--hue-circle", choose(ovra_scene::HueCircle), "all hues");
  app.add_flag_callback("--hue-spot", choose(ovra_scene::HueSpot), "all hues, fading out by alpha");
  app.add_flag_callback("--step-edge", choose(ovra_scene::StepEdge), "dark grey beside light grey");
  app.add_flag_callback("--back-light", choose(ovra_scene::BackLight), "a scene of wide range");
  app.footer("Example:\n  ovra_scene --width 6000 --height 4000 scene.png");
  CLI11_PARSE(app, argc, argv);
  ovra_host::WriteImage(draw(width, height), output);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "ovra_scene: %s\n", error.what());
    return 1;
  }
}
