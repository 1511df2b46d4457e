// SPDX-License-Identifier: MIT
// The soft limit in registers. For kernel files.
#pragma once

#include "core/vector_ops.h"
#include "tone/pyramid/kernels.h"

namespace ovra {
namespace {

template <class V>
class VectorLimit {
 public:
  explicit VectorLimit(const SoftLimit& limit)
      : reach_(V::Set16(limit.reach)),
        factor_(V::Set16(limit.factor)),
        up_(V::Set16(1 << limit.shift)) {}

  typename V::Reg operator()(typename V::Reg difference) const {
    const auto a = V::Min16(V::Abs16(difference), reach_);
    const auto share = V::MulRound15(V::MulLow16(a, up_), factor_);
    return V::NegateBySign16(V::Sub16(a, V::MulRound15(a, share)), difference);
  }

 private:
  typename V::Reg reach_;
  typename V::Reg factor_;
  typename V::Reg up_;
};

}  // namespace
}  // namespace ovra
