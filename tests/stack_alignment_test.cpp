// SPDX-License-Identifier: MIT
// 32-bit Windows hosts may call with a stack that is aligned to 4 bytes only.
#include <gtest/gtest.h>

#ifdef __i386__

#include <cstdint>
#include <vector>

#include "ovra/ovra.h"

namespace {

// Pushes `count` arguments and calls `function` with the stack pointer lowered by `offset` bytes
// against a multiple of 16. Serves callees that remove their arguments and callees that do not.
uint32_t CallWithStackOffset(uintptr_t function, const uint32_t* arguments, int count, int offset) {
  uint32_t result = 0;
  __asm__ volatile(
      "movl %%esp, %%edi\n\t"
      "andl $-16, %%esp\n\t"
      "subl %[offset], %%esp\n"
      "1:\n\t"
      "pushl -4(%[arguments], %%ecx, 4)\n\t"
      "decl %%ecx\n\t"
      "jnz 1b\n\t"
      "call *%%eax\n\t"
      "movl %%edi, %%esp\n\t"
      : "=a"(result), "+c"(count), [offset] "+d"(offset)
      : "a"(function), [arguments] "S"(arguments)
      : "edi", "memory", "cc", "xmm0", "xmm1", "xmm2", "xmm3", "xmm4", "xmm5", "xmm6", "xmm7");
  return result;
}

template <class T>
uint32_t Word(T* pointer) {
  return static_cast<uint32_t>(reinterpret_cast<uintptr_t>(pointer));
}

// The resize engine is the deepest call: double arithmetic, work memory, wide kernels.
TEST(StackAlignment, ExportsRealignTheStack) {
  constexpr uint32_t kWidth = 64;
  constexpr uint32_t kHeight = 48;
  constexpr uint32_t kRgb = 0x120;
  std::vector<uint8_t> source(3 * kWidth * kHeight);
  for (size_t i = 0; i < source.size(); ++i) source[i] = static_cast<uint8_t>(i * 7);
  std::vector<uint8_t> expected(source.size() / 4);
  std::vector<uint8_t> result(expected.size());
  ASSERT_EQ(OvraResizeImage(source.data(), kWidth, kHeight, expected.data(), kWidth / 2,
                            kHeight / 2, kRgb),
            OVRA_OK);
  const uint32_t arguments[] = {Word(source.data()), kWidth,      kHeight, Word(result.data()),
                                kWidth / 2,          kHeight / 2, kRgb};
  for (const int offset : {0, 4, 8, 12}) {
    result.assign(result.size(), 0);
    EXPECT_EQ(CallWithStackOffset(Word(OvraResizeImage), arguments, 7, offset), uint32_t{OVRA_OK});
    EXPECT_EQ(result, expected) << offset;
  }
}

}  // namespace

#endif  // __i386__
