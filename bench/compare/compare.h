// SPDX-License-Identifier: MIT
// The library beside what people use for the same work: pictures, participants, and their timing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "ovra/pixel_format.h"

namespace compare {

struct Size {
  int width;
  int height;

  double Pixels() const { return double{1} * width * height; }
  std::string Name() const;  // in megapixels if it is of 3 x 2 proportions
};

// About so many megapixels, of 3 x 2 proportions.
Size SizeOf(double megapixels);

// A picture of the program's own: interleaved samples, starting at a cache line, rows as far apart as
// the alignment asks. Memory is touched once when it is made.
class Picture {
 public:
  Picture(Size size, int channels, int depth_bits, size_t row_alignment = 1);
  Picture(Picture&&) = default;  // a copy's samples would be those of the original

  int width() const { return size_.width; }
  int height() const { return size_.height; }
  Size size() const { return size_; }
  int channels() const { return channels_; }
  int depth_bits() const { return depth_bits_; }
  int sample_bytes() const { return depth_bits_ > 8 ? 2 : 1; }
  int pixel_bytes() const { return channels_ * sample_bytes(); }
  size_t row_bytes() const { return static_cast<size_t>(width()) * pixel_bytes(); }
  size_t stride() const { return stride_; }
  size_t bytes() const { return stride() * height(); }
  size_t samples() const { return static_cast<size_t>(width()) * height() * channels_; }
  int max() const { return (1 << depth_bits_) - 1; }
  uint8_t* data() { return data_; }
  const uint8_t* data() const { return data_; }
  uint16_t* words() { return reinterpret_cast<uint16_t*>(data_); }
  const uint16_t* words() const { return reinterpret_cast<const uint16_t*>(data_); }
  OvraPixelFormatCode format() const;

 private:
  Size size_;
  int channels_, depth_bits_;
  size_t stride_;
  std::vector<uint8_t> block_;
  uint8_t* data_;
};

using PicturePtr = std::shared_ptr<Picture>;

// Soft shapes, edges, texture and some noise: what a photograph is made of, the same every time.
// The last ones are kept; nobody changes them.
PicturePtr Scene(Size size, int channels, int depth_bits);

enum class Kind { kOurs, kPlainLoop, kLibrary };

// A call of the library answered with a status.
struct Refused : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct Participant {
  std::string name;
  PicturePtr result;  // what it writes
  std::function<void()> run;
  std::function<void()> prepare = {};  // before the run whose picture is compared
  std::function<void()> finish = {};   // brings what was made into `result`, outside the time
  Kind kind = Kind::kLibrary;
};

// What is asked of the speed: a share of the copy limit, or a ratio; 0 where nothing is.
struct Floor {
  double ratio = 0;           // over the fastest library that does like work
  double ratio_of_plain = 0;  // over the plain loop
  double share_of_copy = 0;
};

struct Case {
  double pixels;                          // that the rate counts
  size_t bytes_moved;                     // read and written, which the copy limit is measured with
  std::vector<Participant> participants;  // ours first
  // A peer whose picture is farther from ours does other work: it is timed, and marked.
  double least_psnr;
  Floor floor;
};

struct NamedCase {
  std::string name;  // operation/variant/format/size
  std::function<Case()> make;
};

// All cases for pictures of that size, with peers or without.
std::vector<NamedCase> Cases(Size size, bool ours_alone);

struct Timing {
  std::string name;
  Kind kind;
  double milliseconds = 0;  // median of the turns, processor time
  double psnr = 0;          // of its picture against ours; of ours: 0
  bool alike = true;
};

struct CaseResult {
  std::string name;
  double pixels;
  Floor floor;
  std::vector<Timing> timings;  // ours first
  double copy_milliseconds;     // the best of memcpy, plain and streaming stores

  // Our speed over the best peer of that kind that does like work; 0 without one.
  double Ratio(Kind kind) const;
  double ShareOfCopy() const { return copy_milliseconds / timings[0].milliseconds; }
  // Whether one of the floors is reached, or there is none.
  bool MeetsFloor() const;
};

CaseResult Measure(const std::string& name, const Case& comparison, int turns);

// Ours alone.
CaseResult MeasureOurs(const std::string& name, const Case& comparison, int turns);

std::string TextReport(const std::vector<CaseResult>& results);
std::string JsonReport(const std::vector<CaseResult>& results);
std::string SvgReport(const std::vector<CaseResult>& results);

// Time a pixel by the size of the picture: a line for each operation, level where time grows with
// the pixels.
std::string GrowthSvg(const std::vector<CaseResult>& results);

}  // namespace compare
