// SPDX-License-Identifier: MIT
// pixman works on four-byte pixels whose colours are multiplied by their alpha beforehand: pictures are
// brought there and back outside the time.
#include <pixman.h>

#include "work.h"

namespace compare {
namespace {

using Image = std::shared_ptr<pixman_image_t>;

Image NewImage(Size size) {
  return {pixman_image_create_bits(PIXMAN_a8r8g8b8, size.width, size.height, nullptr, 0),
          pixman_image_unref};
}

// Calls visit(pixel of the picture, word of the image) for all pixels.
template <class Visit>
void ForPixels(const Picture& picture, const Image& image, const Visit& visit) {
  uint32_t* const words = pixman_image_get_data(image.get());
  const auto channels = static_cast<size_t>(picture.channels());
  for (size_t i = 0; i < picture.samples() / channels; ++i) visit(channels * i, &words[i]);
}

uint32_t Word(uint32_t a, uint32_t r, uint32_t g, uint32_t b) {
  return a << 24 | r << 16 | g << 8 | b;
}

uint32_t Product(uint32_t a, uint32_t b) {
  return (a * b + 127) / 255;
}

Image Multiplied(const Picture& source) {
  Image image = NewImage(source.size());
  const uint8_t* const in = source.data();
  const bool four = source.channels() == 4;
  ForPixels(source, image, [=](size_t at, uint32_t* word) {
    const uint32_t a = four ? in[at + 3] : 255;
    *word = Word(a, Product(a, in[at]), Product(a, in[at + 1]), Product(a, in[at + 2]));
  });
  return image;
}

Participant Over(const Work& work, const char* name, const Image& mask) {
  Participant participant = NewParticipant(work, name);
  const Image source = Multiplied(*work.source);
  const Image canvas = NewImage(work.target_size);
  participant.prepare = [=] {
    const uint8_t* const in = work.background->data();
    ForPixels(*work.background, canvas, [=](size_t at, uint32_t* word) {
      *word = Word(255, in[at], in[at + 1], in[at + 2]);
    });
  };
  participant.run = [=] {
    pixman_image_composite32(PIXMAN_OP_OVER, source.get(), mask.get(), canvas.get(), 0, 0, 0, 0,
                             work.x, work.y, work.source->width(), work.source->height());
  };
  participant.finish = [=, target = participant.result.get()] {
    uint8_t* const out = target->data();
    ForPixels(*target, canvas, [=](size_t at, const uint32_t* word) {
      for (size_t c = 0; c < 3; ++c) out[at + c] = static_cast<uint8_t>(*word >> (16 - 8 * c));
    });
  };
  return participant;
}

}  // namespace

void AddPixman(std::vector<Maker>* makers) {
  makers->push_back({"alpha", [](const Work& work) { return Over(work, "pixman OVER", nullptr); }});
  makers->push_back({"mask", [](const Work& work) {
                       const Image mask = Multiplied(*work.mask);
                       pixman_image_set_component_alpha(mask.get(), 1);
                       return Over(work, "pixman OVER, a weight a channel", mask);
                     }});
}

}  // namespace compare
