// SPDX-License-Identifier: MIT
#include <cstdio>

#include "commands.h"
#include "ovra/version.h"

namespace ovra_host {
namespace {

const char* ChannelNames(const Image& image) {
  return image.channels() == 1 ? "grey" : image.channels() == 3 ? "RGB" : "RGBA";
}

void PrintMetadata(const Metadata& metadata) {
  std::string carried;
  const auto add = [&carried](const char* name, size_t bytes) {
    if (bytes == 0) return;
    carried += (carried.empty() ? "" : ", ") + std::string(name) + " " + std::to_string(bytes);
  };
  add("profile", metadata.profile.size());
  add("EXIF", metadata.exif.size());
  add("XMP", metadata.xmp.size());
  add("IPTC", metadata.iptc.size());
  add("comment", metadata.comment.size());
  if (!carried.empty()) std::printf("  carries      %s bytes\n", carried.c_str());
  if (metadata.resolution.x > 0) {
    std::printf("  resolution   %g x %g pixels an inch\n", metadata.resolution.x,
                metadata.resolution.y);
  }
}

void Info(const std::string& path, const CommonOptions& common) {
  const Picture picture = ReadPicture(path, common.read);
  const Image& image = picture.image;
  const uint32_t version = OvraGetVersion();
  std::printf("%s\n", path.c_str());
  std::printf("  size         %d x %d pixels\n", image.width(), image.height());
  std::printf("  channels     %u (%s)\n", image.channels(), ChannelNames(image));
  std::printf("  depth        %u bits a sample\n", image.depth_bits());
  std::printf("  format word  0x%08X\n", image.format());
  std::printf("  row stride   %zu bytes\n", image.stride());
  PrintMetadata(picture.metadata);
  std::printf("  library      OvraBase %u.%u.%u\n", version >> 16, version >> 8 & 255,
              version & 255);
}

}  // namespace

void AddInfoCommand(CLI::App& app, const CommonOptions& common) {
  CLI::App* const command =
      app.add_subcommand("info", "Print what a picture is and how the library will see it");
  const auto path = std::make_shared<std::string>();
  AddInput(*command, "picture", *path);
  command->footer("Example:\n  ovra info photo.png");
  command->callback([path, &common] { Info(*path, common); });
}

}  // namespace ovra_host
