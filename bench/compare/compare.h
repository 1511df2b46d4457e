// SPDX-License-Identifier: MIT
// The library beside what people use for the same work: cases, their pictures, and their timing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ovra/pixel_format.h"

namespace compare {

// A picture of the program's own: interleaved samples, starting at a cache line, rows as far apart as
// the alignment asks. Memory is touched once when it is made.
class Picture {
 public:
  Picture(int width, int height, int channels, int depth_bits, size_t row_alignment = 1);

  int width() const { return width_; }
  int height() const { return height_; }
  int channels() const { return channels_; }
  int depth_bits() const { return depth_bits_; }
  int sample_bytes() const { return depth_bits_ > 8 ? 2 : 1; }
  size_t row_bytes() const { return static_cast<size_t>(width_) * channels_ * sample_bytes(); }
  size_t stride() const { return stride_; }
  size_t bytes() const { return stride() * height_; }
  uint8_t* data() { return data_; }
  const uint8_t* data() const { return data_; }
  uint16_t* words() { return reinterpret_cast<uint16_t*>(data_); }
  const uint16_t* words() const { return reinterpret_cast<const uint16_t*>(data_); }
  OvraPixelFormatCode format() const;

 private:
  int width_, height_, channels_, depth_bits_;
  size_t stride_;
  std::vector<uint8_t> block_;
  uint8_t* data_;
};

// Soft shapes, edges, texture and some noise: what a photograph is made of, the same every time.
Picture Scene(int width, int height, int channels, int depth_bits);

using PicturePtr = std::shared_ptr<Picture>;

struct Participant {
  std::string name;
  PicturePtr result;  // what it writes
  std::function<void()> run;
  std::function<void()> finish = {};  // brings what was made into `result`, outside the time
};

struct Case {
  double pixels;       // that the rate counts: of the larger picture
  size_t bytes_moved;  // read and written, which the copy limit is measured with
  Participant ours;
  std::vector<Participant> peers;
  // A peer whose picture is farther from ours does other work: it is timed, and marked.
  double least_psnr = 30;
};

struct NamedCase {
  std::string name;  // operation/variant/format/megapixels
  std::function<Case()> make;
};

struct Timing {
  std::string name;
  double milliseconds = 0;  // median of the turns, processor time
  double psnr = 0;          // of its picture against ours; of ours: 0
  bool alike = true;
};

struct CaseResult {
  std::string name;
  double megapixels;
  std::vector<Timing> timings;  // ours first
  double copy_milliseconds;     // the best of memcpy, plain and streaming stores

  // Our speed over the best peer's that does like work; 0 without one.
  double Ratio() const;
};

CaseResult Measure(const std::string& name, const Case& comparison, int turns);

// One function for each file of cases, for pictures of 3 x 2 proportions of that size.
using AddCases = void(std::vector<NamedCase>* cases, double megapixels);
AddCases AddResizeCases;
AddCases AddTurnCases;
AddCases AddTrimmingCases;
AddCases AddToneCases;

// The width of a picture of that size; its height is two thirds of it.
int WidthOf(double megapixels);

std::string CaseName(const std::string& operation, int channels, int depth_bits, double megapixels);

std::string TextReport(const std::vector<CaseResult>& results);
std::string JsonReport(const std::vector<CaseResult>& results);
std::string SvgReport(const std::vector<CaseResult>& results);

}  // namespace compare
