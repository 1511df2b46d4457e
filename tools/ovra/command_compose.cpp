// SPDX-License-Identifier: MIT
#include "commands.h"
#include "ovra/basic.h"
#include "picture_forms.h"

namespace ovra_host {
namespace {

struct ComposeOptions {
  std::string background;
  std::string overlay;
  std::string output;
  std::string mask;
  Position position;
  int32_t weight_of = OVRA_BLEND_WEIGHT_OF_SOURCE;
};

// The mask has one weight for every sample of the overlay; a grey one serves all its channels.
Image MaskFor(const Image& overlay, const std::string& path) {
  Image mask = ReadImage(path);
  if (mask.width() != overlay.width() || mask.height() != overlay.height()) {
    throw Error(path + ": a mask is as large as the overlay, " + std::to_string(overlay.width()) +
                " x " + std::to_string(overlay.height()) + " pixels");
  }
  if (mask.format() == overlay.format()) return mask;
  if (mask.format() != FileFormat(8, 1)) {
    throw Error(path + ": a mask is 8-bit grey, or has the channels and depth of the overlay");
  }
  Image expanded(overlay.width(), overlay.height(), FileFormat(8, overlay.channels()));
  for (int32_t y = 0; y < expanded.height(); ++y) {
    for (size_t i = 0; i < expanded.row_bytes(); ++i) {
      expanded.Row(y)[i] = mask.Row(y)[i / expanded.channels()];
    }
  }
  return expanded;
}

void Blend(Image& background, const Image& overlay, const ComposeOptions& options,
           const CommonOptions& common) {
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
  const Image mask = MaskFor(overlay, options.mask);
  CallLibrary(common, "OvraCompositeImageWithMaskBlending", [&] {
    return OvraCompositeImageWithMaskBlending(
        background.data(), background.width(), background.height(), overlay.data(), mask.data(),
        overlay.width(), overlay.height(), background.format(), options.position.x,
        options.position.y, static_cast<uint8_t>(options.weight_of));
  });
}

// The library blends 8-bit pictures of as many channels: grey stands in three beside color, and an
// overlay may lose bits that the background has no place for.
void MakeAlike(Image* background, Image* overlay, const ComposeOptions& options) {
  if (background->depth_bits() != 8) {
    throw Error(options.background + ": compose draws on pictures of 8 bits a sample");
  }
  const auto as_it_is = [](const Image& image) { return image; };
  *overlay = WithDepth(*overlay, 8);
  for (Image* image : {background, overlay}) {
    const Image& other = image == background ? *overlay : *background;
    if (image->channels() == 1 && other.channels() > 1) {
      *image = OnThreeChannels(*image, GreyBecomes::kColor, as_it_is);
    }
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

void Compose(const ComposeOptions& options, const CommonOptions& common) {
  Picture picture = ReadPicture(options.background, common.read);
  Image& background = picture.image;
  Image overlay = ReadPicture(options.overlay, common.read).image;
  MakeAlike(&background, &overlay, options);
  NoteWhenOutside(background, overlay, options);
  if (options.mask.empty()) {
    Blend(background, overlay, options, common);
  } else {
    BlendByMask(background, overlay, options, common);
  }
  WritePicture(picture, options.output, common.write);
}

}  // namespace

void AddComposeCommand(CLI::App& app, const CommonOptions& common) {
  CLI::App* const command =
      app.add_subcommand("compose", "Place a picture in another: copied, by alpha or by a mask");
  const auto options = std::make_shared<ComposeOptions>();
  AddInput(*command, "background", options->background, "picture that is drawn on, 8 bits");
  AddInput(
      *command, "overlay", options->overlay,
      "picture placed in it: blended by its alpha when it has that and the background has none");
  AddOutput(*command, "output", options->output);
  AddPosition(*command, "--at", options->position, "where the overlay's top left corner lies");
  command->add_option("--mask", options->mask, "weights, a picture as large as the overlay")
      ->type_name("FILE");
  AddChoice(
      *command, "--weight-of", options->weight_of,
      {{"background", OVRA_BLEND_WEIGHT_OF_DESTINATION}, {"overlay", OVRA_BLEND_WEIGHT_OF_SOURCE}},
      "whose weight alpha and mask are; without it, the overlay's");
  command->footer("Example:\n  ovra compose photo.jpg logo.png signed.jpg --at 40,20");
  command->callback([options, &common] { Compose(*options, common); });
}

}  // namespace ovra_host
