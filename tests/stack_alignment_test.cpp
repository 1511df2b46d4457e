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
      : "=a"(result), "+c"(count)
      : "a"(function), [arguments] "S"(arguments), [offset] "d"(offset)
      : "edi", "memory", "cc");
  return result;
}

template <class T>
uint32_t Word(T* pointer) {
  return static_cast<uint32_t>(reinterpret_cast<uintptr_t>(pointer));
}

TEST(StackAlignment, ExportsRealignTheStack) {
  constexpr uint32_t kWidth = 64;
  constexpr uint32_t kHeight = 16;
  std::vector<uint8_t> raw(3 * kWidth * kHeight, 1);
  std::vector<uint8_t> dib(raw.size());
  const uint32_t arguments[] = {Word(raw.data()), Word(dib.data()), kWidth, kHeight};
  for (const int offset : {0, 4, 8, 12}) {
    dib.assign(dib.size(), 0);
    CallWithStackOffset(Word(OvraRaw2Dib), arguments, 4, offset);
    EXPECT_EQ(dib, raw);
  }
}

}  // namespace

#endif  // __i386__
