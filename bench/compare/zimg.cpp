// SPDX-License-Identifier: MIT
#include <libyuv.h>
#include <zimg.h>

#include <cstring>

#include "work.h"

namespace compare {
namespace {

// zimg works on planes whose rows are aligned: interleaved pictures are taken apart and put together
// in the time, those of one channel are given as it wants them.
class ZimgResize {
 public:
  ZimgResize(PicturePtr source, PicturePtr target) : source_(source), target_(target) {
    for (int c = 0; c < source->channels(); ++c) {
      source_planes_.emplace_back(source->size(), 1, source->depth_bits(), kRowAlignment);
      target_planes_.emplace_back(target->size(), 1, target->depth_bits(), kRowAlignment);
    }
    if (source->channels() == 1) CopyRows(*source, &source_planes_[0]);
    zimg_image_format in = FormatOf(*source);
    zimg_image_format out = FormatOf(*target);
    zimg_graph_builder_params params;
    zimg_graph_builder_params_default(&params, ZIMG_API_VERSION);
    params.resample_filter = ZIMG_RESIZE_BICUBIC;
    params.filter_param_a = 0;
    params.filter_param_b = 0.75;  // of our cubic kernel
    graph_.reset(zimg_filter_graph_build(&in, &out, &params), zimg_filter_graph_free);
    size_t bytes = 0;
    zimg_filter_graph_get_tmp_size(graph_.get(), &bytes);
    scratch_ = std::make_shared<Picture>(Size{static_cast<int>(bytes), 1}, 1, 8);
  }

  void Finish() {
    if (source_->channels() == 1) CopyRows(target_planes_[0], target_.get());
  }

  void Run() {
    if (source_->channels() > 1) TakeApart();
    for (size_t c = 0; c < source_planes_.size(); ++c) {
      const Picture& in = source_planes_[c];
      Picture& out = target_planes_[c];
      zimg_image_buffer_const from = {ZIMG_API_VERSION, {}};
      zimg_image_buffer to = {ZIMG_API_VERSION, {}};
      from.plane[0] = {in.data(), static_cast<ptrdiff_t>(in.stride()), ZIMG_BUFFER_MAX};
      to.plane[0] = {out.data(), static_cast<ptrdiff_t>(out.stride()), ZIMG_BUFFER_MAX};
      zimg_filter_graph_process(graph_.get(), &from, &to, scratch_->data(), nullptr, nullptr,
                                nullptr, nullptr);
    }
    if (source_->channels() > 1) PutTogether();
  }

 private:
  static constexpr size_t kRowAlignment = 64;

  static void CopyRows(const Picture& from, Picture* to) {
    for (int y = 0; y < from.height(); ++y) {
      memcpy(to->data() + y * to->stride(), from.data() + y * from.stride(), from.row_bytes());
    }
  }

  static zimg_image_format FormatOf(const Picture& picture) {
    zimg_image_format format;
    zimg_image_format_default(&format, ZIMG_API_VERSION);
    format.width = static_cast<unsigned>(picture.width());
    format.height = static_cast<unsigned>(picture.height());
    format.pixel_type = picture.sample_bytes() == 1 ? ZIMG_PIXEL_BYTE : ZIMG_PIXEL_WORD;
    format.depth = static_cast<unsigned>(picture.depth_bits());
    format.color_family = ZIMG_COLOR_GREY;
    format.pixel_range = ZIMG_RANGE_FULL;
    return format;
  }

  static int Stride(const Picture& picture) { return static_cast<int>(picture.stride()); }

  void TakeApart() {
    auto& p = source_planes_;
    const int width = source_->width();
    const int height = source_->height();
    if (source_->sample_bytes() == 1 && p.size() == 3) {
      libyuv::SplitRGBPlane(source_->data(), Stride(*source_), p[0].data(), Stride(p[0]),
                            p[1].data(), Stride(p[1]), p[2].data(), Stride(p[2]), width, height);
    } else if (source_->sample_bytes() == 1) {
      libyuv::SplitARGBPlane(source_->data(), Stride(*source_), p[0].data(), Stride(p[0]),
                             p[1].data(), Stride(p[1]), p[2].data(), Stride(p[2]), p[3].data(),
                             Stride(p[3]), width, height);
    } else {
      for (int y = 0; y < height; ++y) {
        const uint16_t* const in = source_->words() + y * source_->stride() / 2;
        for (size_t c = 0; c < p.size(); ++c) {
          uint16_t* const out = p[c].words() + y * p[c].stride() / 2;
          for (int x = 0; x < width; ++x) out[x] = in[p.size() * x + c];
        }
      }
    }
  }

  void PutTogether() {
    auto& p = target_planes_;
    const int width = target_->width();
    const int height = target_->height();
    if (target_->sample_bytes() == 1 && p.size() == 3) {
      libyuv::MergeRGBPlane(p[0].data(), Stride(p[0]), p[1].data(), Stride(p[1]), p[2].data(),
                            Stride(p[2]), target_->data(), Stride(*target_), width, height);
    } else if (target_->sample_bytes() == 1) {
      libyuv::MergeARGBPlane(p[0].data(), Stride(p[0]), p[1].data(), Stride(p[1]), p[2].data(),
                             Stride(p[2]), p[3].data(), Stride(p[3]), target_->data(),
                             Stride(*target_), width, height);
    } else {
      for (int y = 0; y < height; ++y) {
        uint16_t* const out = target_->words() + y * target_->stride() / 2;
        for (size_t c = 0; c < p.size(); ++c) {
          const uint16_t* const in = p[c].words() + y * p[c].stride() / 2;
          for (int x = 0; x < width; ++x) out[p.size() * x + c] = in[x];
        }
      }
    }
  }

  PicturePtr source_;
  PicturePtr target_;
  std::vector<Picture> source_planes_;
  std::vector<Picture> target_planes_;
  std::shared_ptr<zimg_filter_graph> graph_;
  PicturePtr scratch_;
};

Participant Resize(const Work& work) {
  Participant participant = NewParticipant(work, "zimg bicubic");
  const auto resize = std::make_shared<ZimgResize>(work.source, participant.result);
  participant.run = [=] { resize->Run(); };
  participant.finish = [=] { resize->Finish(); };
  return participant;
}

}  // namespace

void AddZimg(std::vector<Maker>* makers) {
  makers->push_back({"resize", Resize});
}

}  // namespace compare
