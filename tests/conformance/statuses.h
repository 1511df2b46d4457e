// SPDX-License-Identifier: MIT
// Statuses as tables: a call that succeeds, and the faults that its arguments can have, in the order
// of the checks. Each fault is tried alone, and together with all later ones.
#pragma once

#include <gtest/gtest.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <span>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "ovra/ovra.h"

namespace ovra_test {

using Bytes = std::vector<uint8_t>;

constexpr int32_t kMax = 0x7FFFFFFF;
constexpr int32_t kMin = -kMax - 1;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr OvraPixelFormatCode kRgb = 0x120;

// What an argument is changed to.
class Value {
 public:
  Value(std::nullptr_t) {}
  Value(const void* pointer) : pointer_(pointer) {}
  Value(int32_t number) : integer_(number), number_(number) {}
  Value(uint32_t number) : integer_(number), number_(number) {}
  Value(double number) : number_(number) {}

  template <class T>
  T As() const {
    if constexpr (std::is_pointer_v<T>) {
      return static_cast<T>(const_cast<void*>(pointer_));
    } else if constexpr (std::is_floating_point_v<T>) {
      return static_cast<T>(number_);
    } else {
      return static_cast<T>(integer_);
    }
  }

 private:
  const void* pointer_ = nullptr;
  int64_t integer_ = 0;
  double number_ = 0;
};

// Fields of a format word.
inline constexpr uint32_t kDepthField = 0x0000000F;
inline constexpr uint32_t kChannelsField = 0x000000F0;
inline constexpr uint32_t kModelField = 0x0000FF00;
inline constexpr uint32_t kArrangementField = 0x000F0000;
inline constexpr uint32_t kAlignmentField = 0x00F00000;
inline constexpr uint32_t kOrderField = 0x0F000000;

struct Change {
  size_t argument;  // counted from 0
  Value value;
  uint32_t field = 0xFFFFFFFF;  // the bits of a number that change

  template <class T>
  void Apply(T& old) const {
    if constexpr (std::is_integral_v<T> && sizeof(T) == sizeof field) {
      const auto bits = static_cast<uint32_t>(value.As<T>());
      old = static_cast<T>((static_cast<uint32_t>(old) & ~field) | (bits & field));
    } else {
      old = value.As<T>();
    }
  }
};

// Success, of a call that writes nothing.
inline constexpr OvraStatus kWritesNothing = -1;

struct Fault {
  OvraStatus status;  // OVRA_OK and kWritesNothing: no fault, tried alone only
  std::vector<Change> changes;
};
using Faults = std::vector<Fault>;

inline Faults operator+(Faults a, const Faults& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

// What the decoding of a format word refuses, in order.
inline Faults MalformedFormat(size_t argument) {
  return {{OVRA_ERROR_FORMAT_CHANNELS, {{argument, 0xF0, kChannelsField}}},
          {OVRA_ERROR_FORMAT_CHANNELS, {{argument, 0x40, kChannelsField}}},
          {OVRA_ERROR_FORMAT_DEPTH, {{argument, 0x0F, kDepthField}}},
          {OVRA_ERROR_FORMAT_DEPTH, {{argument, 0x0A, kDepthField}}},
          {OVRA_ERROR_FORMAT_COLOR_MODEL, {{argument, 0x0800, kModelField}}},
          {OVRA_ERROR_FORMAT_COLOR_MODEL, {{argument, 0x1300, kModelField}}},
          {OVRA_ERROR_FORMAT_ARRANGEMENT, {{argument, 0x30000, kArrangementField}}},
          {OVRA_ERROR_FORMAT_ROW_ALIGNMENT, {{argument, 0x300000, kAlignmentField}}},
          {OVRA_ERROR_FORMAT_ROW_ORDER, {{argument, 0x2000000, kOrderField}}}};
}

// Changes that are faults one by one, of the same status.
inline Faults Each(OvraStatus status, std::initializer_list<Change> changes) {
  Faults faults;
  for (const Change& change : changes) faults.push_back({status, {change}});
  return faults;
}

inline Faults Nulls(OvraStatus status, std::initializer_list<size_t> arguments) {
  Faults faults;
  for (const size_t argument : arguments) faults.push_back({status, {{argument, nullptr}}});
  return faults;
}

// The statuses of a family's formats.
struct FormatStatuses {
  OvraStatus channels;
  OvraStatus depth;
  OvraStatus model;
  OvraStatus arrangement;
};

// What every family of whole-byte RGB images refuses. A family without a status for the channels
// judges them with the model, after the depth, and
// takes every model of three channels.
inline Faults RefusedFormats(size_t format, const FormatStatuses& statuses) {
  const bool any_triple = statuses.channels == statuses.model;
  const Faults channels = Each(statuses.channels, {{format, 0x10, kChannelsField}});
  const Faults depth = Each(statuses.depth, {{format, 9, kDepthField}});
  return (any_triple ? depth + channels : channels + depth) +
         Each(statuses.model,
              {{format, any_triple ? OVRA_MODEL_GREY : OVRA_MODEL_TRIPLE_4, kModelField}}) +
         Faults{{statuses.arrangement, {{format, 0x10120, kArrangementField | 0xFFF0}}}};
}

// `call` with each fault. No refused call may change `destination`.
template <class Call, class... Arguments>
void ExpectStatuses(Call call, const std::tuple<Arguments...>& good, std::span<uint8_t> destination,
                    const Faults& faults) {
  using Tuple = std::tuple<Arguments...>;
  const auto apply = [](const Fault& fault, Tuple* arguments) {
    for (const Change& change : fault.changes) {
      [&]<size_t... I>(std::index_sequence<I...>) {
        ((I == change.argument ? change.Apply(std::get<I>(*arguments)) : void()), ...);
      }
      (std::index_sequence_for<Arguments...>());
    }
  };
  const std::vector<uint8_t> before(destination.begin(), destination.end());
  const auto expect = [&](const Tuple& arguments, OvraStatus status) {
    EXPECT_EQ(std::apply(call, arguments), status == kWritesNothing ? OVRA_OK : status);
    if (status != OVRA_OK) {
      EXPECT_TRUE(std::equal(before.begin(), before.end(), destination.begin())) << "written";
    }
    std::copy(before.begin(), before.end(), destination.begin());
  };
  Tuple all_later = good;
  for (size_t i = faults.size(); i-- > 0;) {
    SCOPED_TRACE(testing::Message() << "line " << i);
    Tuple alone = good;
    apply(faults[i], &alone);
    expect(alone, faults[i].status);
    if (faults[i].status == OVRA_OK || faults[i].status == kWritesNothing) continue;
    apply(faults[i], &all_later);
    expect(all_later, faults[i].status);
  }
  expect(good, OVRA_OK);
}

// Makes what the last argument points to, a context or a handle, and releases it. A refusal leaves
// none; that with the status `untouched` leaves what there was.
template <class Made>
auto InitAndFree(auto* init, OvraStatus(OVRA_CALL* free)(Made*), OvraStatus untouched = -1) {
  return [=](auto... arguments) {
    const auto before = std::bit_cast<Made>(uintptr_t{16});
    Made* const made = std::get<sizeof...(arguments) - 1>(std::tuple(arguments...));
    if (made != nullptr) *made = before;
    const OvraStatus status = init(arguments...);
    if (status == OVRA_OK) return free(made);
    if (made != nullptr) {
      EXPECT_EQ(*made, status == untouched ? before : Made());
    }
    return status;
  };
}

}  // namespace ovra_test
