// SPDX-License-Identifier: MIT
#include <cstdio>

#include "batch.h"
#include "commands.h"
#include "exif.h"
#include "ovra/version.h"
#include "turning.h"

namespace ovra_host {
namespace {

const char* ChannelNames(uint32_t channels) {
  return channels == 1 ? "grey" : channels == 3 ? "RGB" : "RGBA";
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
  const std::unique_ptr<RowReader> reader = OpenPicture(path, common.read.open);
  const PictureHeader& picture = reader->header();
  const uint16_t orientation =
      common.read.auto_orient ? ExifOrientation(picture.metadata.exif) : kUpright;
  const Size size = TurnedSize({picture.width, picture.height}, ModeForOrientation(orientation));
  const size_t stride =
      picture.row_bytes() / static_cast<size_t>(picture.width) * static_cast<size_t>(size.width);
  const uint32_t version = OvraGetVersion();
  std::printf("%s\n", path.c_str());
  std::printf("  size         %d x %d pixels\n", size.width, size.height);
  std::printf("  channels     %u (%s)\n", picture.channels(), ChannelNames(picture.channels()));
  std::printf("  depth        %u bits a sample\n", picture.depth_bits());
  std::printf("  format word  0x%08X\n", picture.format);
  std::printf("  row stride   %zu bytes\n", stride);
  PrintMetadata(picture.metadata);
  for (const std::string& note : reader->notes()) std::printf("  note         %s\n", note.c_str());
  std::printf("  library      OvraBase %u.%u.%u\n", version >> 16, version >> 8 & 255,
              version & 255);
}

}  // namespace

void AddInfoCommand(CLI::App& app, const CommonOptions& common) {
  CLI::App* const command =
      app.add_subcommand("info", "Print what a picture is and how the library will see it");
  const auto paths = std::make_shared<std::vector<std::string>>();
  command->add_option("pictures", *paths, "pictures to read")->required()->type_name("FILE");
  command->footer(
      "What stands before the pixels is read, and nothing behind them.\n\n"
      "Example:\n  ovra info photo.png\n  ovra info *.jpg");
  command->callback([paths, &common] {
    if (paths->size() == 1) return Info(paths->front(), common);
    RunBatch(*paths, 1, [&](size_t i) { Info((*paths)[i], common); });
  });
}

}  // namespace ovra_host
