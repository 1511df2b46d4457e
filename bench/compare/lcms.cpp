// SPDX-License-Identifier: MIT
#include <lcms2.h>

#include "work.h"

namespace compare {
namespace {

// A profile that is nothing but the cube.
cmsHPROFILE LinkOf(const Cube& cube, int max_output) {
  const cmsHPROFILE profile = cmsCreateProfilePlaceholder(nullptr);
  cmsSetProfileVersion(profile, 4.3);
  cmsSetDeviceClass(profile, cmsSigLinkClass);
  cmsSetColorSpace(profile, cmsSigRgbData);
  cmsSetPCS(profile, cube.channels == 4 ? cmsSigCmykData : cmsSigRgbData);
  std::vector<uint16_t> nodes;
  for (const uint16_t node : cube.lattice) {
    nodes.push_back(static_cast<uint16_t>(node * 65535.0 / max_output + 0.5));
  }
  cmsPipeline* const pipeline = cmsPipelineAlloc(nullptr, 3, cube.channels);
  cmsPipelineInsertStage(
      pipeline, cmsAT_BEGIN,
      cmsStageAllocCLut16bit(nullptr, cube.points, 3, cube.channels, nodes.data()));
  cmsWriteTag(profile, cmsSigAToB0Tag, pipeline);
  cmsPipelineFree(pipeline);
  return profile;
}

cmsUInt32Number TypeOf(int channels, int sample_bytes) {
  if (channels == 3) return sample_bytes == 1 ? TYPE_RGB_8 : TYPE_RGB_16;
  return sample_bytes == 1 ? TYPE_CMYK_8 : TYPE_CMYK_16;
}

Participant ThroughCube(const Work& work) {
  Participant participant = NewParticipant(work, "lcms2");
  Picture* const target = participant.result.get();
  const cmsHPROFILE link = LinkOf(*work.color->cube, target->max());
  const std::shared_ptr<void> transform(
      cmsCreateTransform(link, TypeOf(3, work.source->sample_bytes()), nullptr,
                         TypeOf(target->channels(), target->sample_bytes()), INTENT_PERCEPTUAL, 0),
      cmsDeleteTransform);
  cmsCloseProfile(link);
  if (transform == nullptr) return {};
  participant.run = [=, source = work.source] {
    cmsDoTransform(transform.get(), source->data(), target->data(),
                   static_cast<cmsUInt32Number>(target->width() * target->height()));
  };
  if (target->sample_bytes() == 2) {
    participant.finish = [=] {  // lcms2 fills 16 bits
      for (size_t i = 0; i < target->samples(); ++i) {
        target->words()[i] =
            static_cast<uint16_t>(target->words()[i] * double{1} * target->max() / 65535 + 0.5);
      }
    };
  }
  return participant;
}

}  // namespace

void AddLcms(std::vector<Maker>* makers) {
  makers->push_back({"cube", ThroughCube});
}

}  // namespace compare
