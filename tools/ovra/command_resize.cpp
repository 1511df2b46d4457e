// SPDX-License-Identifier: MIT
#include <algorithm>
#include <charconv>
#include <cmath>

#include "commands.h"
#include "exif.h"
#include "memory_share.h"
#include "picture_files.h"
#include "resize_bands.h"
#include "resizing.h"
#include "turning.h"

namespace ovra_host {
namespace {

// From so many pixels on, bands save more memory than they cost in convenience.
constexpr int64_t kBandsFromPixels = 300'000'000;
constexpr int32_t kUsualBandRows = 64;

// What was asked for; 0 where it was not.
struct ResizeOptions {
  int32_t width = 0;
  int32_t height = 0;
  double scale = 0;
  Size fit;
  Rectangle crop;
  int32_t turn = 0;
  int32_t band_rows = 0;
  bool fast = false;
  bool straight = false;
};

int32_t Scaled(int32_t side, double scale) {
  const double scaled = std::max(1.0, std::round(side * scale));
  return static_cast<int32_t>(std::min(scaled, static_cast<double>(kMaxSide) + 1));
}

// The size of the result, for a region of this size. Without any request the
// region keeps its own.
Size SizeFor(const ResizeOptions& options, Size region) {
  const double across = static_cast<double>(options.width) / region.width;
  const double down = static_cast<double>(options.height) / region.height;
  if (options.width != 0 && options.height != 0) return {options.width, options.height};
  if (options.width != 0) return {options.width, Scaled(region.height, across)};
  if (options.height != 0) return {Scaled(region.width, down), options.height};
  double scale = options.scale != 0 ? options.scale : 1.0;
  if (options.fit.width != 0) {
    scale = std::min(static_cast<double>(options.fit.width) / region.width,
                     static_cast<double>(options.fit.height) / region.height);
  }
  return {Scaled(region.width, scale), Scaled(region.height, scale)};
}

// There are no pixels to take from beside a picture.
void CheckCrop(const Rectangle& crop, Size seen) {
  const auto& [position, size] = crop;
  if (position.x >= 0 && position.y >= 0 && size.width <= seen.width - position.x &&
      size.height <= seen.height - position.y) {
    return;
  }
  throw Error("--crop " + std::to_string(position.x) + "," + std::to_string(position.y) + "," +
              std::to_string(size.width) + "," + std::to_string(size.height) +
              " reaches beyond the picture of " + std::to_string(seen.width) + " x " +
              std::to_string(seen.height) + " pixels");
}

// `upright` is the mode that brings the stored picture upright. The part is
// given as it is seen then, sizes as they are after all turns.
ResizePlan PlanFor(const ResizeOptions& options, Size stored, int32_t upright) {
  const Size seen = TurnedSize(stored, upright);
  if (options.crop.size.width != 0) CheckCrop(options.crop, seen);
  const bool whole = options.crop.size.width == 0;
  const Rectangle part = whole ? Rectangle{{0, 0}, seen} : options.crop;
  ResizePlan plan;
  plan.region = TurnedPart(part, seen, InverseMode(upright));
  plan.mode = JoinedModes(upright, options.turn);
  plan.size = SizeFor(options, TurnedSize(part.size, options.turn));
  plan.fast = options.fast;
  plan.straight = options.straight;
  return plan;
}

// The part of a picture that was read at a smaller size.
Rectangle InReduced(const Rectangle& part, Size whole, Size reduced) {
  const auto scaled = [](int32_t at, int32_t from, int32_t to) {
    return static_cast<int32_t>(std::lround(static_cast<double>(at) * to / from));
  };
  const int32_t left = scaled(part.position.x, whole.width, reduced.width);
  const int32_t top = scaled(part.position.y, whole.height, reduced.height);
  const int32_t right = scaled(part.position.x + part.size.width, whole.width, reduced.width);
  const int32_t bottom = scaled(part.position.y + part.size.height, whole.height, reduced.height);
  return {{left, top}, {std::max(right - left, 1), std::max(bottom - top, 1)}};
}

// Turns the picture upright on the way; the tag is reset for it. Options speak of the whole size, the
// plan of the size at which the picture is read.
ResizePlan PlanFor(const ResizeOptions& options, Size whole, Size read, Metadata* metadata,
                   const CommonOptions& common) {
  const uint16_t orientation = common.read.auto_orient ? ExifOrientation(metadata->exif) : kUpright;
  if (orientation != kUpright) SetExifUpright(&metadata->exif);
  ResizePlan plan = PlanFor(options, whole, ModeForOrientation(orientation));
  plan.region = InReduced(plan.region, whole, read);
  return plan;
}

Picture ResizePicture(Picture picture, Size whole, const ResizeOptions& options,
                      const CommonOptions& common) {
  const Size read = {picture.image.width(), picture.image.height()};
  const ResizePlan plan = PlanFor(options, whole, read, &picture.metadata, common);
  picture.image = Resized(picture.image, plan, common);
  return picture;
}

void ResizeWhole(std::unique_ptr<RowReader> reader, Size whole, const std::string& input,
                 const std::string& output, const ResizeOptions& options,
                 const CommonOptions& common) {
  const MemoryShare share(reader->header());
  ReadOptions as_stored = common.read;
  as_stored.auto_orient = false;
  as_stored.strip = false;  // the orientation is needed
  Picture picture = ReadPicture(*reader, input, as_stored);
  reader.reset();
  picture = ResizePicture(std::move(picture), whole, options, common);
  if (common.read.strip) StripMetadata(&picture.metadata);
  WritePicture(picture, output, common.write);
}

// With --fast a JPEG comes out of its decoder at the least size of a half, a quarter or an eighth that
// still is to be made smaller.
std::unique_ptr<RowReader> OpenReduced(const std::string& input, const PictureHeader& header,
                                       const ResizeOptions& options, const CommonOptions& common) {
  Metadata metadata = header.metadata;
  const Size whole = {header.width, header.height};
  const ResizePlan plan = PlanFor(options, whole, whole, &metadata, common);
  OpenOptions reduced = common.read.open;
  while (reduced.eighths > 1 && plan.Ratio() * 16 <= reduced.eighths) reduced.eighths /= 2;
  return OpenPicture(input, reduced);
}

void Resize(const std::string& input, const std::string& output, const ResizeOptions& options,
            const CommonOptions& common) {
  std::unique_ptr<RowReader> reader = OpenPicture(input, common.read.open);
  const Size whole = {reader->header().width, reader->header().height};
  const bool can_open_again = input != kStandardStream;
  if (options.fast && can_open_again)
    reader = OpenReduced(input, reader->header(), options, common);
  const PictureHeader header = reader->header();
  const bool large = int64_t{header.width} * header.height >= kBandsFromPixels;
  if (options.band_rows == 0 && !large) {
    return ResizeWhole(std::move(reader), whole, input, output, options, common);
  }
  Metadata metadata = header.metadata;
  const ResizePlan plan = PlanFor(options, whole, {header.width, header.height}, &metadata, common);
  if (common.read.strip) StripMetadata(&metadata);
  const int32_t rows = options.band_rows != 0 ? options.band_rows : kUsualBandRows;
  ResizeInBands(*reader, plan, rows, metadata, output, common);
  PrintNotes(*reader, input);
}

// "0.5" or "50%".
CLI::Option* AddScale(CLI::App& command, double& scale) {
  constexpr double kLeast = 0.0001;
  constexpr double kMost = 1000;
  const auto read = [&scale](const std::string& text) {
    const bool percent = !text.empty() && text.back() == '%';
    const char* const end = text.data() + text.size() - (percent ? 1 : 0);
    double value = 0;
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (percent) value /= 100;
    if (error != std::errc() || stop != end || !(value >= kLeast && value <= kMost)) {
      throw CLI::ConversionError("--scale: \"" + text + "\" is not a factor as 0.5 or 50%");
    }
    scale = value;
  };
  return command.add_option_function<std::string>("--scale", read, "so many times as large")
      ->type_name("FACTOR|N%");
}

void AddSizeOptions(CLI::App& command, ResizeOptions& options) {
  CLI::Option* const width = command.add_option("--width", options.width, "width of the result")
                                 ->check(CLI::PositiveNumber)
                                 ->type_name("PIXELS");
  CLI::Option* const height =
      command.add_option("--height", options.height, "height of the result")
          ->check(CLI::PositiveNumber)
          ->type_name("PIXELS");
  CLI::Option* const scale = AddScale(command, options.scale);
  AddSize(command, "--fit", options.fit, "as large as fits into this")
      ->excludes(width, height, scale);
  scale->excludes(width, height);
}

void AddWayOptions(CLI::App& command, ResizeOptions& options, const CommonOptions& common) {
  command.add_flag("--fast", options.fast,
                   "Fewer pixels of the source count; a JPEG is reduced while it is read");
  command.add_flag("--straight", options.straight,
                   "Average colors without regard to alpha, as in masks kept "
                   "in the alpha channel");
  if (common.stages != nullptr) return;  // pictures of a chain are in memory
  command
      .add_option("--bands", options.band_rows,
                  "Read so many rows at a time and never hold the whole "
                  "picture; chosen by itself "
                  "for pictures of 300 megapixels and more")
      ->check(CLI::Range(1, 100'000))
      ->type_name("ROWS");
}

}  // namespace

void AddResizeCommand(CLI::App& app, const CommonOptions& common) {
  CLI::App* const command = app.add_subcommand("resize", "Make smaller or larger, whole or a part");
  const auto options = std::make_shared<ResizeOptions>();
  AddSizeOptions(*command, *options);
  AddRectangle(*command, "--crop", options->crop, "the part of the picture to take");
  AddChoice(*command, "--turn", options->turn, TurnChoices(), "turn or mirror the result");
  AddWayOptions(*command, *options, common);
  command->footer(
      "Proportions are kept: with both --width and --height the middle is "
      "taken and what does not\n"
      "fit is cut off at two sides; with one of them the other follows. With "
      "--crop alone the part\n"
      "keeps its size. The part is that of the upright picture, sizes are "
      "those after --turn.\n\n"
      "Example:\n  ovra resize --fit 1600x1200 photo.jpg smaller.jpg\n"
      "  ovra resize --scale 50% *.jpg -o 'small/%s.jpg'");
  AddPictureFiles(
      *command, common,
      [options, &common](Picture picture) {
        const Size whole = {picture.image.width(), picture.image.height()};
        return ResizePicture(std::move(picture), whole, *options, common);
      },
      [options, &common](const std::string& input, const std::string& output) {
        Resize(input, output, *options, common);
      });
}

}  // namespace ovra_host
