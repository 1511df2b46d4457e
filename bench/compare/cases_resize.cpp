// SPDX-License-Identifier: MIT
#include <libyuv.h>
#include <zimg.h>

#include <cstring>
#include <opencv2/imgproc.hpp>

#include "compare.h"
#include "ovra/resample.h"

namespace compare {
namespace {

// zimg works on planes whose rows are aligned: interleaved pictures are taken apart and put together
// in the time, those of one channel are given as it wants them.
class ZimgResize {
 public:
  ZimgResize(PicturePtr source, PicturePtr target) : source_(source), target_(target) {
    for (int c = 0; c < source->channels(); ++c) {
      source_planes_.emplace_back(source->width(), source->height(), 1, source->depth_bits(),
                                  kRowAlignment);
      target_planes_.emplace_back(target->width(), target->height(), 1, target->depth_bits(),
                                  kRowAlignment);
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
    scratch_ = std::make_shared<Picture>(static_cast<int>(bytes), 1, 1, 8);
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

Case Resize(double scale, int channels, int depth_bits, double megapixels) {
  const int larger = WidthOf(megapixels);
  const int source_width = scale <= 1 ? larger : static_cast<int>(larger / scale + 0.5);
  const int source_height = source_width * 2 / 3;
  const int width = static_cast<int>(source_width * scale + 0.5);
  const int height = static_cast<int>(source_height * scale + 0.5);
  auto source = std::make_shared<Picture>(Scene(source_width, source_height, channels, depth_bits));
  const auto target = [=] {
    return std::make_shared<Picture>(width, height, channels, depth_bits);
  };
  auto ours = target();
  Case result = {double{1} * larger * larger * 2 / 3,
                 source->bytes() + ours->bytes(),
                 {"OvraResizeImage", ours,
                  [=] {
                    OvraResizeImage(source->data(), source_width, source_height, ours->data(),
                                    width, height, source->format());
                  }},
                 {}};
  auto zimg_target = target();
  auto zimg = std::make_shared<ZimgResize>(source, zimg_target);
  result.peers.push_back(
      {"zimg bicubic", zimg_target, [=] { zimg->Run(); }, [=] { zimg->Finish(); }});
  if (scale < 0.3) {
    auto area = target();
    result.peers.push_back({"OpenCV area", area, [=] {
                              cv::setNumThreads(1);
                              const int type =
                                  CV_MAKETYPE(depth_bits == 8 ? CV_8U : CV_16U, channels);
                              const cv::Mat in(source_height, source_width, type, source->data());
                              cv::Mat out(height, width, type, area->data());
                              cv::resize(in, out, out.size(), 0, 0, cv::INTER_AREA);
                            }});
  }
  return result;
}

}  // namespace

void AddResizeCases(std::vector<NamedCase>* cases, double megapixels) {
  const auto add = [=](double scale, int channels, int depth_bits) {
    char operation[32];
    snprintf(operation, sizeof operation, "resize/%.2f", scale);
    cases->push_back({CaseName(operation, channels, depth_bits, megapixels),
                      [=] { return Resize(scale, channels, depth_bits, megapixels); }});
  };
  for (const double scale : {0.5, 0.75, 2.0, 0.1}) {
    add(scale, 3, 8);
    add(scale, 1, 8);
    add(scale, 4, 8);
    add(scale, 3, 16);
  }
}

}  // namespace compare
