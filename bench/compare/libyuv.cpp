// SPDX-License-Identifier: MIT
// libyuv knows planes of bytes and four-byte pixels.
#include <libyuv.h>

#include "ovra/geometry.h"
#include "work.h"

namespace compare {
namespace {

int Stride(const Picture& picture) {
  return static_cast<int>(picture.stride());
}

uint8_t* Place(const Work& work, Picture* target) {
  return target->data() + static_cast<size_t>(work.y) * target->stride() +
         static_cast<size_t>(work.x) * static_cast<size_t>(target->pixel_bytes());
}

bool TakesTurn(const Work& work) {
  const bool four = work.source->channels() == 4;
  return work.source->sample_bytes() == 1 && work.source->channels() != 3 &&
         !(four && work.mode == OVRA_ROTATE_TRANSPOSE);
}

void Turn(const Work& work, Picture* target) {
  const uint8_t* const in = work.source->data();
  uint8_t* const out = target->data();
  const int in_stride = Stride(*work.source);
  const int out_stride = Stride(*target);
  const int width = work.source->width();
  const int height = work.source->height();
  const bool four = work.source->channels() == 4;
  const auto angle = work.mode == OVRA_ROTATE_QUARTER_LEFT    ? libyuv::kRotate270
                     : work.mode == OVRA_ROTATE_QUARTER_RIGHT ? libyuv::kRotate90
                                                              : libyuv::kRotate180;
  switch (work.mode) {
    case OVRA_ROTATE_MIRROR:
      if (four) {
        libyuv::ARGBMirror(in, in_stride, out, out_stride, width, height);
      } else {
        libyuv::MirrorPlane(in, in_stride, out, out_stride, width, height);
      }
      return;
    case OVRA_ROTATE_FLIP:
      return libyuv::CopyPlane(in, in_stride, out, out_stride, in_stride, -height);
    case OVRA_ROTATE_TRANSPOSE:
      return libyuv::TransposePlane(in, in_stride, out, out_stride, width, height);
    default:
      if (four) {
        libyuv::ARGBRotate(in, in_stride, out, out_stride, width, height, angle);
      } else {
        libyuv::RotatePlane(in, in_stride, out, out_stride, width, height, angle);
      }
  }
}

void Copy(const Work& work, Picture* target) {
  libyuv::CopyPlane(work.source->data(), Stride(*work.source), Place(work, target), Stride(*target),
                    Stride(*work.source), work.source->height());
}

void Mask(const Work& work, Picture* target) {
  const int stride = Stride(*work.source);
  uint8_t* const place = Place(work, target);
  libyuv::BlendPlane(work.source->data(), stride, place, Stride(*target), work.mask->data(), stride,
                     place, Stride(*target), stride, work.source->height());
}

// Over a picture of four-byte pixels, with colours that are multiplied by their alpha beforehand.
Participant Alpha(const Work& work) {
  Participant participant = NewParticipant(work, "libyuv ARGBBlend");
  const auto source = std::make_shared<Picture>(work.source->size(), 4, 8);
  libyuv::ARGBAttenuate(work.source->data(), Stride(*work.source), source->data(), Stride(*source),
                        source->width(), source->height());
  const auto canvas = std::make_shared<Picture>(work.target_size, 4, 8);
  participant.prepare = [=, background = work.background] {
    libyuv::RGB24ToARGB(background->data(), Stride(*background), canvas->data(), Stride(*canvas),
                        canvas->width(), canvas->height());
  };
  participant.run = [=] {
    uint8_t* const place = Place(work, canvas.get());
    libyuv::ARGBBlend(source->data(), Stride(*source), place, Stride(*canvas), place,
                      Stride(*canvas), source->width(), source->height());
  };
  participant.finish = [=, target = participant.result.get()] {
    libyuv::ARGBToRGB24(canvas->data(), Stride(*canvas), target->data(), Stride(*target),
                        canvas->width(), canvas->height());
  };
  return participant;
}

void SwapAndFlip(const Work& work, Picture* target) {
  libyuv::RAWToRGB24(work.source->data(), Stride(*work.source), target->data(), Stride(*target),
                     target->width(), -target->height());
}

}  // namespace

void AddLibyuv(std::vector<Maker>* makers) {
  makers->insert(makers->end(), {Direct("turn", "libyuv", Turn, TakesTurn),
                                 Direct("copy", "libyuv CopyPlane", Copy),
                                 {"alpha", Alpha},
                                 Direct("mask", "libyuv BlendPlane", Mask),
                                 Direct("DIB to raw", "libyuv RAWToRGB24", SwapAndFlip),
                                 Direct("raw to DIB", "libyuv RAWToRGB24", SwapAndFlip)});
}

}  // namespace compare
