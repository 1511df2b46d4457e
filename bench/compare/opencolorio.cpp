// SPDX-License-Identifier: MIT
#include <OpenColorIO/OpenColorIO.h>

#include "work.h"

namespace compare {
namespace {

namespace ocio = OCIO_NAMESPACE;

ocio::BitDepth DepthOf(int depth_bits) {
  return depth_bits == 8    ? ocio::BIT_DEPTH_UINT8
         : depth_bits == 12 ? ocio::BIT_DEPTH_UINT12
                            : ocio::BIT_DEPTH_UINT16;
}

ocio::ConstCPUProcessorRcPtr ProcessorOf(const Work& work, int max_output) {
  const Cube& cube = *work.color->cube;
  const auto transform = ocio::Lut3DTransform::Create(cube.points);
  transform->setInterpolation(ocio::INTERP_LINEAR);
  const auto share = [=](uint16_t node) { return static_cast<float>(node) / max_output; };
  const uint16_t* node = cube.lattice.data();
  for (unsigned long r = 0; r < cube.points; ++r) {
    for (unsigned long g = 0; g < cube.points; ++g) {
      for (unsigned long b = 0; b < cube.points; ++b, node += 3) {
        transform->setValue(r, g, b, share(node[0]), share(node[1]), share(node[2]));
      }
    }
  }
  return ocio::Config::CreateRaw()->getProcessor(transform)->getOptimizedCPUProcessor(
      DepthOf(work.source->depth_bits()), DepthOf(work.target_depth_bits),
      ocio::OPTIMIZATION_DEFAULT);
}

Participant ThroughCube(const Work& work) {
  if (work.target_channels != 3) return {};
  Participant participant = NewParticipant(work, "OpenColorIO");
  Picture* const target = participant.result.get();
  const auto processor = ProcessorOf(work, target->max());
  const auto describe = [](Picture* picture) {
    return std::make_shared<ocio::PackedImageDesc>(
        picture->data(), picture->width(), picture->height(), ocio::CHANNEL_ORDERING_RGB,
        DepthOf(picture->depth_bits()), picture->sample_bytes(), picture->pixel_bytes(),
        static_cast<ptrdiff_t>(picture->stride()));
  };
  participant.run = [=, in = describe(work.source.get()), out = describe(target)] {
    processor->apply(*in, *out);
  };
  return participant;
}

}  // namespace

void AddOpenColorIo(std::vector<Maker>* makers) {
  makers->push_back({"cube", ThroughCube});
}

}  // namespace compare
