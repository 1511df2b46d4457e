// SPDX-License-Identifier: MIT
#include "tone/pyramid/expand.h"
#include "tone/pyramid/kernels.h"
#include "tone/pyramid/soft_limit.h"

namespace ovra {
namespace {

int16_t Reduced(int32_t p0, int32_t p1, int32_t p2, int32_t p3, int32_t p4) {
  return static_cast<int16_t>((p0 + 4 * p1 + 6 * p2 + 4 * p3 + p4 + 8) >> 4);
}

void ReduceAlong(const int16_t* row, int16_t* output, std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    const int16_t* const p = row + 2 * i;
    output[i] = Reduced(p[-2], p[-1], p[0], p[1], p[2]);
  }
}

void ReduceAcross(const int16_t* const* rows, int16_t* output, std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    output[i] = Reduced(rows[0][i], rows[1][i], rows[2][i], rows[3][i], rows[4][i]);
  }
}

template <class Word>
void ExpandAcross(const int16_t* const* rows, bool is_odd, int16_t* output, std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    const auto sample = [&](int row) { return static_cast<Word>(rows[row][i]); };
    output[i] = static_cast<int16_t>(is_odd ? ExpandedOdd(sample(1), sample(2))
                                            : ExpandedEven(sample(0), sample(1), sample(2)));
  }
}

void ExpandAlong(const int16_t* row, int16_t* output, std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    output[2 * i] = static_cast<int16_t>(ExpandedEven(row[i - 1], row[i], row[i + 1]));
    output[2 * i + 1] = static_cast<int16_t>(ExpandedOdd(row[i], row[i + 1]));
  }
}

void EnlargeAcross(const int16_t* from, const int16_t* to, int32_t eighths, int16_t* output,
                   std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    output[i] = static_cast<int16_t>(Between(from[i], to[i], eighths));
  }
}

void LimitDetail(const int16_t* value, const int16_t* base, const SoftLimit& limit, int16_t* detail,
                 int16_t* rest, std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    const int32_t limited = Limited(value[i] - base[i], limit);
    rest[i] = static_cast<int16_t>(value[i] - limited);
    detail[i] = static_cast<int16_t>(limited);
  }
}

}  // namespace

const PyramidKernels kPyramidPlain = {
    ReduceAlong,   ReduceAcross, ExpandAcross<int16_t>, ExpandAcross<uint16_t>, ExpandAlong,
    EnlargeAcross, LimitDetail};

}  // namespace ovra
