// SPDX-License-Identifier: MIT
// The lut3d filter of libavfilter, on frames that share the picture's memory.
#include <unistd.h>

#include <cstdio>
#include <cstring>

extern "C" {
#include <libavfilter/avfilter.h>
#include <libavfilter/buffersink.h>
#include <libavfilter/buffersrc.h>
#include <libavutil/frame.h>
#include <libavutil/pixfmt.h>
}

#include "work.h"

namespace compare {
namespace {

// As the filter reads it: the first axis fastest.
std::string WriteCube(const Cube& cube, int max_output) {
  char path[] = "/tmp/compare-XXXXXX.cube";
  const int descriptor = mkstemps(path, 5);
  std::FILE* const file = fdopen(descriptor, "w");
  std::fprintf(file, "LUT_3D_SIZE %u\n", cube.points);
  const size_t n = cube.points;
  for (size_t b = 0; b < n; ++b) {
    for (size_t g = 0; g < n; ++g) {
      for (size_t r = 0; r < n; ++r) {
        const uint16_t* const node = &cube.lattice[3 * ((r * n + g) * n + b)];
        for (int k = 0; k < 3; ++k) std::fprintf(file, "%.6f ", double{1} * node[k] / max_output);
        std::fputs("\n", file);
      }
    }
  }
  std::fclose(file);
  return path;
}

struct FreeGraph {
  void operator()(AVFilterGraph* graph) const { avfilter_graph_free(&graph); }
};
struct FreeFrame {
  void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};

class Lut3d {
 public:
  Lut3d(const Work& work, int max_output) : graph_(avfilter_graph_alloc()) {
    graph_->nb_threads = 1;
    const Picture& source = *work.source;
    const AVPixelFormat format = source.sample_bytes() == 1 ? AV_PIX_FMT_RGB24 : AV_PIX_FMT_RGB48;
    const std::string size = std::to_string(source.width()) + "x" + std::to_string(source.height());
    const std::string path = WriteCube(*work.color->cube, max_output);
    const std::string input = "video_size=" + size + ":pix_fmt=" + std::to_string(format) +
                              ":time_base=1/25:pixel_aspect=1/1";
    Add("buffer", input, &first_);
    AVFilterContext* filter = nullptr;
    Add("lut3d", "file=" + path + ":interp=trilinear", &filter);
    Add("buffersink", "", &last_);
    unlink(path.c_str());
    ready_ = filter != nullptr && avfilter_link(first_, 0, filter, 0) >= 0 &&
             avfilter_link(filter, 0, last_, 0) >= 0 &&
             avfilter_graph_config(graph_.get(), nullptr) >= 0;
    Wrap(work.source.get(), format);
  }

  bool ready() const { return ready_; }
  const AVFrame& result() const { return *result_; }

  void Apply() {
    av_frame_unref(result_.get());
    ready_ = av_buffersrc_add_frame_flags(first_, frame_.get(), AV_BUFFERSRC_FLAG_KEEP_REF) >= 0 &&
             av_buffersink_get_frame(last_, result_.get()) >= 0;
  }

 private:
  void Add(const char* name, const std::string& arguments, AVFilterContext** context) {
    avfilter_graph_create_filter(context, avfilter_get_by_name(name), name, arguments.c_str(),
                                 nullptr, graph_.get());
  }

  void Wrap(Picture* picture, AVPixelFormat format) {
    frame_.reset(av_frame_alloc());
    result_.reset(av_frame_alloc());
    frame_->width = picture->width();
    frame_->height = picture->height();
    frame_->format = format;
    // Read only, so that the filter writes to a frame of its own.
    frame_->buf[0] = av_buffer_create(
        picture->data(), picture->bytes(), [](void*, uint8_t*) {}, nullptr,
        AV_BUFFER_FLAG_READONLY);
    frame_->data[0] = picture->data();
    frame_->linesize[0] = static_cast<int>(picture->stride());
  }

  std::unique_ptr<AVFilterGraph, FreeGraph> graph_;
  std::unique_ptr<AVFrame, FreeFrame> frame_;
  std::unique_ptr<AVFrame, FreeFrame> result_;
  AVFilterContext* first_ = nullptr;
  AVFilterContext* last_ = nullptr;
  bool ready_ = false;
};

Participant ThroughCube(const Work& work) {
  if (work.target_channels != 3) return {};
  Participant participant = NewParticipant(work, "libavfilter lut3d");
  Picture* const target = participant.result.get();
  const auto filter = std::make_shared<Lut3d>(work, target->max());
  if (!filter->ready()) return {};
  participant.run = [=] { filter->Apply(); };
  participant.finish = [=] {
    if (!filter->ready()) return;
    const AVFrame& made = filter->result();
    const int drop = target->sample_bytes() == 2 ? 16 - target->depth_bits() : 0;
    for (int y = 0; y < target->height(); ++y) {
      const uint8_t* const row = made.data[0] + static_cast<ptrdiff_t>(y) * made.linesize[0];
      uint8_t* const out = target->data() + static_cast<size_t>(y) * target->stride();
      memcpy(out, row, target->row_bytes());
    }
    if (drop == 0) return;
    for (size_t i = 0; i < target->samples(); ++i) target->words()[i] >>= drop;
  };
  return participant;
}

}  // namespace

void AddAvfilter(std::vector<Maker>* makers) {
  makers->push_back({"cube", ThroughCube});
}

}  // namespace compare
