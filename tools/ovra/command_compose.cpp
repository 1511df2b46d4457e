// SPDX-License-Identifier: MIT
#include <algorithm>

#include "commands.h"
#include "ovra/basic.h"
#include "picture_files.h"
#include "picture_forms.h"

namespace ovra_host {
namespace {

struct ComposeOptions {
  std::string overlay;
  std::string mask;
  Position position;
  int32_t weight_of = OVRA_BLEND_WEIGHT_OF_SOURCE;
};

// The mask has one weight for every sample of the overlay; a grey one serves all its channels.
Image MaskFor(const Image& overlay, const std::string& path, const ReadOptions& read) {
  Image mask = WithDepth(ReadImage(path, read), overlay.depth_bits());
  if (mask.width() != overlay.width() || mask.height() != overlay.height()) {
    throw Error(path + ": a mask is as large as the overlay, " + std::to_string(overlay.width()) +
                " x " + std::to_string(overlay.height()) + " pixels");
  }
  if (mask.format() == overlay.format()) return mask;
  if (mask.channels() != 1) {
    throw Error(path + ": a mask is grey, or has the channels of the overlay");
  }
  Image expanded(overlay.width(), overlay.height(), overlay.format());
  for (uint32_t c = 0; c < expanded.channels(); ++c) CopyChannel(mask, 0, &expanded, c);
  return expanded;
}

// The library's blend, of 16 bits: ((w + 1) p + (65536 - w) q) / 65536, rounded down. Weights are those
// of the mask, or the overlay's alpha; without either the overlay is copied.
void BlendDeep(Image& background, const Image& overlay, const Image* mask,
               const ComposeOptions& options) {
  const auto& [left, top] = options.position;
  const uint32_t channels = background.channels();
  const bool has_weights = mask != nullptr || overlay.channels() > channels;
  const bool of_overlay = options.weight_of == OVRA_BLEND_WEIGHT_OF_SOURCE;
  for (int32_t y = std::max(0, -top);
       y < std::min<int64_t>(overlay.height(), int64_t{background.height()} - top); ++y) {
    for (int32_t x = std::max(0, -left);
         x < std::min<int64_t>(overlay.width(), int64_t{background.width()} - left); ++x) {
      const size_t from = static_cast<size_t>(x) * overlay.channels();
      const uint16_t* const over = overlay.Row16(y) + from;
      const uint16_t* const weights = mask != nullptr ? mask->Row16(y) + from : over;
      uint16_t* const under = background.Row16(top + y) + static_cast<size_t>(left + x) * channels;
      for (size_t c = 0; c < channels; ++c) {
        const uint64_t w = has_weights ? weights[mask != nullptr ? c : channels] : UINT16_MAX;
        const bool first = of_overlay || !has_weights;
        const uint64_t weighted = first ? over[c] : under[c];
        const uint64_t other = first ? under[c] : over[c];
        under[c] = static_cast<uint16_t>(((w + 1) * weighted + (65536 - w) * other) >> 16);
      }
    }
  }
}

void Blend(Image& background, const Image& overlay, const ComposeOptions& options,
           const CommonOptions& common) {
  if (background.depth_bits() > 8) return BlendDeep(background, overlay, nullptr, options);
  CallLibrary(common, "OvraCompositeImage", [&] {
    return OvraCompositeImage(background.data(), background.width(), background.height(),
                              background.format(), overlay.data(), overlay.width(),
                              overlay.height(), overlay.format(), options.position.x,
                              options.position.y, static_cast<uint8_t>(options.weight_of));
  });
}

void BlendByMask(Image& background, const Image& overlay, const ComposeOptions& options,
                 const CommonOptions& common) {
  if (background.format() != overlay.format()) {
    throw Error("with a mask, background and overlay have the same channels and depth");
  }
  const Image mask = MaskFor(overlay, options.mask, common.read);
  if (background.depth_bits() > 8) return BlendDeep(background, overlay, &mask, options);
  CallLibrary(common, "OvraCompositeImageWithMaskBlending", [&] {
    return OvraCompositeImageWithMaskBlending(
        background.data(), background.width(), background.height(), overlay.data(), mask.data(),
        overlay.width(), overlay.height(), background.format(), options.position.x,
        options.position.y, static_cast<uint8_t>(options.weight_of));
  });
}

// Both get the depth of the background and as many colours: grey stands in three beside color. An
// overlay may lose bits that the background has no place for.
void MakeAlike(Image* background, Image* overlay, const ComposeOptions& options) {
  const auto as_it_is = [](const Image& image) { return image; };
  *overlay = WithDepth(*overlay, background->depth_bits());
  for (Image* image : {background, overlay}) {
    const Image& other = image == background ? *overlay : *background;
    if (image->channels() == 1 && other.channels() > 1) {
      *image = OnThreeChannels(*image, GreyBecomes::kColor, as_it_is);
    }
  }
  if (background->channels() > overlay->channels()) {
    throw Error("has alpha, and " + options.overlay +
                " has none; both need it, or the overlay alone");
  }
}

// An overlay that changes nothing is a slip of the hand more often than not.
void NoteWhenOutside(const Image& background, const Image& overlay, const ComposeOptions& options) {
  const auto& [x, y] = options.position;
  if (x < background.width() && y < background.height() && int64_t{x} + overlay.width() > 0 &&
      int64_t{y} + overlay.height() > 0) {
    return;
  }
  PrintNote(options.overlay + ": lies wholly beside the picture at --at " + std::to_string(x) +
            "," + std::to_string(y) + "; nothing is changed");
}

Image Compose(Image background, const ComposeOptions& options, const CommonOptions& common) {
  Image overlay = ReadPicture(options.overlay, common.read).image;
  MakeAlike(&background, &overlay, options);
  NoteWhenOutside(background, overlay, options);
  if (options.mask.empty()) {
    Blend(background, overlay, options, common);
  } else {
    BlendByMask(background, overlay, options, common);
  }
  return background;
}

}  // namespace

void AddComposeCommand(CLI::App& app, const CommonOptions& common) {
  CLI::App* const command =
      app.add_subcommand("compose", "Place another picture in it: copied, by alpha or by a mask");
  const auto options = std::make_shared<ComposeOptions>();
  AddInput(
      *command, "--overlay", options->overlay,
      "picture placed in the others: blended by its alpha when it has that and they have none");
  AddPosition(*command, "--at", options->position, "where the overlay's top left corner lies");
  command->add_option("--mask", options->mask, "weights, a picture as large as the overlay")
      ->type_name("FILE");
  AddChoice(
      *command, "--weight-of", options->weight_of,
      {{"background", OVRA_BLEND_WEIGHT_OF_DESTINATION}, {"overlay", OVRA_BLEND_WEIGHT_OF_SOURCE}},
      "whose weight alpha and mask are; without it, the overlay's");
  command->footer(
      "Example:\n  ovra compose --overlay logo.png --at 40,20 photo.jpg signed.jpg\n"
      "  ovra compose --overlay logo.png *.jpg -o signed");
  AddPictureFiles(*command, common, OnPixels([options, &common](const Image& image) {
    return Compose(image, *options, common);
  }));
}

}  // namespace ovra_host
