// SPDX-License-Identifier: MIT
#include "conformance/call.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>

#include "conformance/operations.h"

namespace ovra_test {
namespace {

// How much a long run did is told at its end.
struct CallCount {
  ~CallCount() {
    if (std::getenv("OVRA_ROUND") != nullptr) std::printf("calls: %u\n", count.load());
  }
  std::atomic<unsigned> count = 0;
} call_count;

size_t AlignmentBytes(OvraPixelFormatCode format) {
  return size_t{1} << (format >> 20 & 15);
}

uint32_t ChannelsOf(OvraColorModel model) {
  return model == OVRA_MODEL_GREY ? 1 : model < OVRA_MODEL_RGBA ? 3 : 4;
}

// What pictures look like, in samples of up to `max`.
class Contents {
 public:
  Contents(Draw& draw, uint32_t max)
      : kind_(draw.Of({kSlopes, kSlopes, kBlocks, kExtremes, kAnything, kFlat})),
        max_(max),
        across_(draw.Int(0, 64)),
        down_(draw.Int(0, 64)),
        noise_(draw.Of({0, 1, 7, 15, 31, 63, 127})),
        flat_(static_cast<uint32_t>(draw.Int(0, static_cast<int32_t>(max)))),
        random_(draw.Bits()) {}

  uint32_t Sample(int32_t x, int32_t y, int32_t channel) {
    const auto bits = static_cast<uint32_t>(random_());
    switch (kind_) {
      case kSlopes:
        return Slope(x * across_ + y * down_ + channel * 40 +
                     static_cast<int32_t>(bits) % (noise_ + 1));
      case kBlocks:
        return Slope((x / 9 * across_ + y / 5 * down_) * 16 +
                     (static_cast<int32_t>(bits) & noise_ & 7));
      case kExtremes:
        return (bits & 3) == 0 ? 0 : (bits & 3) == 1 ? max_ : (bits >> 2) % (max_ + 1);
      case kFlat:
        return flat_;
      default:
        return bits >> 8;  // also what is above the declared depth
    }
  }

 private:
  enum Kind { kSlopes, kBlocks, kExtremes, kFlat, kAnything };

  // `height` of 256, folded back at the ends of the range.
  uint32_t Slope(int32_t height) const {
    const auto folded = static_cast<uint32_t>(height) & 511;
    return static_cast<uint32_t>(uint64_t{folded < 256 ? folded : 511 - folded} * max_ / 255);
  }

  Kind kind_;
  uint32_t max_;
  int32_t across_;
  int32_t down_;
  int32_t noise_;
  uint32_t flat_;
  Random random_;
};

void StoreSample(uint8_t* place, size_t bytes, uint32_t value) {
  const auto wide = static_cast<uint16_t>(value);
  if (bytes == 1) {
    *place = static_cast<uint8_t>(value);
  } else {
    std::memcpy(place, &wide, sizeof wide);
  }
}

}  // namespace

size_t Shape::Stride() const {
  const size_t alignment = AlignmentBytes(format);
  return (RowBytes() + alignment - 1) / alignment * alignment;
}

Shape Shape::WithAlignmentOf(OvraPixelFormatCode other) const {
  constexpr OvraPixelFormatCode kAlignmentField = 0x00F00000;
  return {width, height, (format & ~kAlignmentField) | (other & kAlignmentField)};
}

OvraPixelFormatCode Call::Format(std::initializer_list<OvraColorModel> models, uint32_t max_depth) {
  const OvraColorModel model = draw.Of(models);
  const auto most = static_cast<int32_t>(max_depth);
  const auto depth = static_cast<uint32_t>(draw.Of({8, 8, most, draw.Int(8, most)}));
  const uint32_t alignment = draw.Of({1U, 2U, 4U});
  const OvraRowOrder order = draw.Of({OVRA_ROWS_TOP_DOWN, OVRA_ROWS_BOTTOM_UP});
  const uint32_t ignored = draw.OneIn(8) ? draw.Bits() & 0xF0000000 : 0;
  return OvraMakePixelFormat(depth, ChannelsOf(model), model, alignment, order) | ignored;
}

Shape Call::OrWrongSize(Shape shape) {
  if (draw.Errs()) {
    int32_t& size = draw.OneIn(2) ? shape.width : shape.height;
    size = draw.Of({0, 1, 3, -1, std::numeric_limits<int32_t>::min()});
  }
  return shape;
}

Shape Call::OrWrong(Shape shape) {
  if (draw.Errs()) {
    const int32_t field = draw.Int(0, 7);
    shape.format ^= static_cast<uint32_t>(draw.Int(1, 15)) << 4 * field;
  }
  return OrWrongSize(shape);
}

uint8_t* Call::Destination(const Shape& shape, Padding padding, size_t extra) {
  const bool keeps_padding = padding == Padding::kKept;
  uint8_t* const data =
      NewDestination((keeps_padding ? shape.Bytes() : shape.PaddedBytes()) + extra);
  if (keeps_padding) {
    buffers_.back()->row_bytes = shape.RowBytes();
    buffers_.back()->stride = shape.Stride();
  }
  return data;
}

uint8_t* Call::SourceAndDestination(const Shape& shape) {
  return FillImage(Destination(shape, Padding::kKept), shape);
}

Call::Images Call::SourceAndDestination(const Shape& shape, bool in_place) {
  uint8_t* const destination =
      in_place ? SourceAndDestination(shape) : Destination(shape, Padding::kKept);
  const uint8_t* const source = in_place ? destination : Source(shape);
  return {source, destination, static_cast<uint32_t>(std::max(shape.width, 0)),
          static_cast<uint32_t>(std::max(shape.height, 0))};
}

const uint16_t* Call::Samples(size_t count, uint32_t max) {
  auto* const samples = Input<uint16_t>(count);
  Random random(draw.Bits());
  FillSamples(random, samples, samples + count, max);
  return samples;
}

void Call::Run(const Invocation& invocation) {
  for (const auto& buffer : buffers_)
    buffer->before.assign(buffer->memory.begin(), buffer->memory.end());
  const Draw drawn = draw;
  const OvraStatus status = RunOnce(invocation);
  const std::vector<uint8_t> expected = turns_ > 1 ? Destinations() : std::vector<uint8_t>();
  for (size_t turn = 1; turn < turns_; ++turn) {
    for (const auto& buffer : buffers_) {
      if (buffer->is_destination) std::ranges::copy(buffer->before, buffer->memory.begin());
    }
    draw = drawn;
    if (RunOnce(invocation) != status || Destinations() != expected) outcome_.turns_agree = false;
  }
}

OvraStatus Call::RunOnce(const Invocation& invocation) {
  const OvraStatus status = invoker_(invocation);
  ++call_count.count;
  if (outcome_.status == OVRA_OK) outcome_.status = status;
  for (int shift = 0; shift < 32; shift += 8) {
    outcome_.output.push_back(static_cast<uint8_t>(static_cast<uint32_t>(status) >> shift));
  }
  for (const auto& buffer : buffers_) Check(*buffer, status);
  return status;
}

OvraStatus Call::ConvertAll(const Images& images, const Conversion& convert) {
  const uint8_t* const source = images.source;
  uint8_t* const destination = images.destination;
  const auto height = static_cast<int32_t>(images.height);
  while (draw.MayErr() && draw.OneIn(2)) {
    const int32_t lower = draw.Int(1, height);
    if (convert(source, destination, lower) != OVRA_OK) break;
    if (draw.StaysSmall()) continue;
    const auto other = static_cast<size_t>(draw.Int(0, std::size(kOperations) - 1));
    outcome_.complaint += MakeCall(kOperations[other], Draw(draw.Bits())).complaint;
  }
  if (crowd_) {
    const auto room = std::find_if(buffers_.begin(), buffers_.end(), [&](const auto& buffer) {
      return buffer->memory.data() == destination;
    });
    crowd_([&] {
      std::vector<uint8_t> own = (*room)->before;
      ++call_count.count;
      convert(source == destination ? own.data() : source, own.data(), height);
      return own;
    });
  }
  return convert(source, destination, height);
}

std::vector<uint8_t> Call::Destinations() const {
  std::vector<uint8_t> bytes;
  for (const auto& buffer : buffers_) {
    const GuardedBuffer& memory = buffer->memory;
    if (buffer->is_destination) bytes.insert(bytes.end(), memory.begin(), memory.end());
  }
  return bytes;
}

Outcome Call::Finish() {
  const std::vector<uint8_t> destinations = Destinations();
  outcome_.output.insert(outcome_.output.end(), destinations.begin(), destinations.end());
  return std::move(outcome_);
}

Call::Buffer& Call::NewBuffer(size_t size) {
  const Guard guard = draw.OneIn(4) ? Guard::kBefore : Guard::kAfter;
  return *buffers_.emplace_back(std::make_unique<Buffer>(size, guard));
}

uint8_t* Call::NewDestination(size_t size) {
  Buffer& buffer = NewBuffer(size);
  buffer.is_destination = true;
  return buffer.memory.data();
}

uint8_t* Call::FillImage(uint8_t* image, const Shape& shape) {
  Contents contents(draw, shape.MaxSample());
  const auto channels = static_cast<int32_t>(shape.Channels());
  const size_t sample_bytes = shape.SampleBytes();
  for (int32_t y = 0; y < shape.height; ++y) {
    uint8_t* place = image + shape.Stride() * static_cast<size_t>(y);
    for (int32_t x = 0; x < shape.width; ++x) {
      for (int32_t c = 0; c < channels; ++c, place += sample_bytes) {
        StoreSample(place, sample_bytes, contents.Sample(x, y, c));
      }
    }
  }
  return image;
}

void Call::Check(const Buffer& buffer, OvraStatus status) {
  const GuardedBuffer& memory = buffer.memory;
  const bool is_same = std::equal(memory.begin(), memory.end(), buffer.before.begin());
  if (!buffer.is_destination && !is_same) outcome_.complaint = "a source was written";
  if (status != OVRA_OK && !is_same) outcome_.complaint = "written although refused";
  for (size_t row = 0; row + buffer.stride <= memory.size() && buffer.stride != 0;
       row += buffer.stride) {
    const uint8_t* const end = memory.begin() + row + buffer.stride;
    if (std::any_of(memory.begin() + row + buffer.row_bytes, end,
                    [](uint8_t byte) { return byte != GuardedBuffer::kFill; })) {
      outcome_.complaint = "padding was written";
    }
  }
}

Outcome MakeCall(const Operation& operation, const Draw& draw, const Call::Invoker& invoker,
                 const Call::Crowd& crowd, size_t turns) {
  Call call(draw, invoker, crowd, turns);
  operation.call(call);
  return call.Finish();
}

}  // namespace ovra_test
