// SPDX-License-Identifier: MIT
#include "opencv.h"

namespace compare {
namespace {

// OpenCV looks up bytes only.
Participant Tables(const Work& work) {
  if (work.source->sample_bytes() != 1) return {};
  Participant participant = NewParticipant(work, "OpenCV LUT");
  const auto table =
      std::make_shared<cv::Mat>(1, 256, work.target_depth_bits == 8 ? CV_8UC3 : CV_16UC3);
  for (int i = 0; i < 256; ++i) {
    for (int c = 0; c < 3; ++c) {
      const uint16_t value = work.color->tables[c][static_cast<size_t>(i)];
      if (work.target_depth_bits == 8) {
        table->at<cv::Vec3b>(i)[c] = static_cast<uint8_t>(value);
      } else {
        table->at<cv::Vec3w>(i)[c] = value;
      }
    }
  }
  participant.run = [=, target = participant.result.get()] {
    cv::Mat out = MatOf(*target);
    cv::LUT(MatOf(*work.source), *table, out);
  };
  return participant;
}

void Matrix(const Work& work, Picture* target) {
  cv::Mat weights(3, 4, CV_32F);
  for (int k = 0; k < 3; ++k) {
    for (int j = 0; j < 4; ++j) {
      weights.at<float>(k, j) = static_cast<float>(work.color->matrix.rows[k][j]);
    }
  }
  cv::Mat out = MatOf(*target);
  cv::transform(MatOf(*work.source), out, weights);
}

}  // namespace

void AddOpenCvColor(std::vector<Maker>* makers) {
  makers->push_back({"tables", Tables});
  makers->push_back(Direct("matrix", "OpenCV transform", Matrix));
}

}  // namespace compare
