// SPDX-License-Identifier: MIT
// The conformance test runs random calls of every operation.
//
// An operation is a function that draws one valid call (formats, sizes, parameters), asks the Call
// for its buffers, and makes the call of the public interface. Everything follows from the drawn
// numbers, so the same call can be made again: by every tier of kernels, with an allocation that
// fails, in the program that is linked to the shared library, and by the fuzzer. What must hold for
// every call is checked here and in the tests; the operation says nothing about results. They are
// pinned by digests.txt, a 64-bit hash of the statuses and destinations of each operation and
// block of seeds.
//
// To add an operation:
//   1. Write `void Flip(Call& call)` into the file of its family, or a new one beside it:
//
//        void Flip(Call& call) {
//          const Shape shape = {call.draw.Size(1, 300), call.draw.Size(1, 40),
//                               call.Format({OVRA_MODEL_GREY, OVRA_MODEL_RGB}, 16)};
//          const uint8_t* const source = call.Source(shape);
//          uint8_t* const destination = call.Destination(shape, Padding::kKept);
//          call.Run([&] { return OvraFlip(source, destination, ...); });
//        }
//
//      Contexts are made, used and released within one Run. No floating-point arithmetic, and no two
//      draws in the arguments of one function call.
//   2. Name it in operations.h. A new file is found by its name: tone_calls.cpp.
//   3. Pin it, when its results are known to be right (by worked examples and properties, in a test
//      of their own): OVRA_PIN_DIGESTS=1 build/release/bin/ovra_api_tests
//      --gtest_filter='*Digests*' adds the digests that are missing. Digests that are there never
//      change; after a change of the arithmetic itself, delete the operation's lines first.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "conformance/draw.h"
#include "ovra/ovra.h"
#include "support/guarded_buffer.h"

namespace ovra_test {

// An image's sizes in pixels and its format.
struct Shape {
  int32_t width;
  int32_t height;
  OvraPixelFormatCode format;

  uint32_t Channels() const { return (format >> 4 & 15) + 1; }
  uint32_t DepthBits() const { return (format & 15) + 8; }
  uint32_t MaxSample() const { return (1U << (DepthBits() <= 16 ? DepthBits() : 16)) - 1; }
  size_t SampleBytes() const { return DepthBits() == 8 ? 1 : DepthBits() <= 16 ? 2 : 4; }
  // A size that is 0 or negative has no samples.
  size_t RowSamples() const { return Count(width) * Channels(); }
  size_t RowBytes() const { return RowSamples() * SampleBytes(); }
  size_t Stride() const;
  // All rows with their padding, and up to the last sample.
  size_t PaddedBytes() const { return Stride() * Count(height); }
  size_t Bytes() const { return height < 1 ? 0 : PaddedBytes() - Stride() + RowBytes(); }

  // The same with another field of the format word.
  Shape WithAlignmentOf(OvraPixelFormatCode other) const;

 private:
  static size_t Count(int32_t size) { return size < 0 ? 0 : static_cast<size_t>(size); }
};

// What an operation does with the bytes between the rows of its destination.
enum class Padding {
  kKept,     // nothing; the destination ends at its last sample
  kWritten,  // it belongs to the result
};

// What stands where a context will be put. A failed _Init nulls it; the release would crash on it.
template <class Context>
Context* NotYet() {
  return reinterpret_cast<Context*>(uintptr_t{64});
}

// What calling an operation came to.
struct Outcome {
  std::vector<uint8_t> output;  // the statuses, then all destinations
  OvraStatus status = OVRA_OK;  // the first that is not OVRA_OK
  OvraStatus no_memory_status = OVRA_ERROR_NO_MEMORY;
  bool may_do_without_memory = false;
  bool turns_agree = true;
  std::string complaint;  // what it did that no call may do; empty when well
};

class Call {
 public:
  using Invocation = std::function<OvraStatus()>;
  using Invoker = std::function<OvraStatus(const Invocation&)>;
  using Crowd = std::function<void(const std::function<std::vector<uint8_t>()>&)>;

  Call(Draw drawn, Invoker invoker, Crowd crowd, size_t turns)
      : draw(drawn), invoker_(std::move(invoker)), crowd_(std::move(crowd)), turns_(turns) {}

  Draw draw;

  // A format word of one of the models, with the channels that the model has and 8 to
  // `max_depth` bits, of any row alignment and row order.
  OvraPixelFormatCode Format(std::initializer_list<OvraColorModel> models, uint32_t max_depth);

  // Where the draw errs, with a size that is not one, or (OrWrong) a damaged format. Buffers that
  // are asked for after that fit the mistake.
  Shape OrWrongSize(Shape shape);
  Shape OrWrong(Shape shape);

  // An image to be read, up to its last sample. Its contents are of many kinds.
  const uint8_t* Source(const Shape& shape) { return FillImage(NewSource(shape.Bytes()), shape); }
  // The same with the padding of the last row.
  const uint8_t* PaddedSource(const Shape& shape) {
    return FillImage(NewSource(shape.PaddedBytes()), shape);
  }
  // An image to be written, and `extra` bytes behind it.
  uint8_t* Destination(const Shape& shape, Padding padding, size_t extra = 0);
  // An image that is read and written.
  uint8_t* SourceAndDestination(const Shape& shape);

  // A source and a destination of one shape, or one image that is both.
  struct Images {
    const uint8_t* source;
    uint8_t* destination;
    uint32_t width;
    uint32_t height;
  };
  Images SourceAndDestination(const Shape& shape, bool in_place);

  // `count` elements that an operation reads.
  template <class T>
  T* Input(size_t count) {
    return reinterpret_cast<T*>(NewSource(count * sizeof(T)));
  }
  // `count` elements that an operation writes.
  template <class T>
  T* Output(size_t count) {
    return reinterpret_cast<T*>(NewDestination(count * sizeof(T)));
  }
  // Inputs are also given as they are: samples of up to `max`, of which many are 0 or `max`.
  const uint16_t* Samples(size_t count, uint32_t max);

  // The status of a call that gets no memory, where it is not OVRA_ERROR_NO_MEMORY.
  void SetNoMemoryStatus(OvraStatus status) { outcome_.no_memory_status = status; }
  // The operation can do without some memory, and succeeds then with another result.
  void MayDoWithoutMemory() { outcome_.may_do_without_memory = true; }

  void Run(const Invocation& invocation);

  // What a Run does with its context: `convert` takes the images and their height. Where the draw
  // may err, lower images go before, and, unless it stays small, calls of other operations between;
  // where a Crowd was given, it uses the context at the same time, with the same source and
  // destinations of its own.
  using Conversion = std::function<OvraStatus(const uint8_t*, uint8_t*, int32_t)>;
  // Asks for no memory, of which there may be none.
  template <class Function>
  OvraStatus Convert(const Images& images, const Function& convert) {
    return ConvertAll(images, std::cref(convert));
  }

  // For what else must hold of the result after a Run that succeeded.
  bool HasSucceeded() const { return outcome_.status == OVRA_OK; }
  void Complain(const char* complaint) { outcome_.complaint = complaint; }

  // To be asked once, after the operation.
  Outcome Finish();

 private:
  struct Buffer {
    Buffer(size_t size, Guard guard) : memory(size, guard) {}
    GuardedBuffer memory;
    std::vector<uint8_t> before;
    bool is_destination = false;
    size_t row_bytes = 0;  // of rows whose padding must stay, or 0
    size_t stride = 0;
  };

  OvraStatus ConvertAll(const Images& images, const Conversion& convert);
  Buffer& NewBuffer(size_t size);
  uint8_t* NewSource(size_t size) { return NewBuffer(size).memory.data(); }
  uint8_t* NewDestination(size_t size);
  uint8_t* FillImage(uint8_t* image, const Shape& shape);
  OvraStatus RunOnce(const Invocation& invocation);
  std::vector<uint8_t> Destinations() const;
  void Check(const Buffer& buffer, OvraStatus status);

  Invoker invoker_;
  Crowd crowd_;
  size_t turns_;
  std::vector<std::unique_ptr<Buffer>> buffers_;
  Outcome outcome_;
};

struct Operation {
  const char* name;
  void (*call)(Call& call);
};

// Draws and makes one call. `invoker` calls what it is given, in whatever circumstances; `crowd`
// gets what uses the call's context and answers with the destination, for as many threads as it likes.
// With more `turns` than one the invoker is asked so often, each time about the same contents.
Outcome MakeCall(
    const Operation& operation, const Draw& draw,
    const Call::Invoker& invoker = [](const Call::Invocation& run) { return run(); },
    const Call::Crowd& crowd = nullptr, size_t turns = 1);

}  // namespace ovra_test
