// SPDX-License-Identifier: MIT
// The instructions that vector kernels are written with: one class for each register width, with the
// same operations, so that a kernel is a template over the class. For kernel files compiled with a
// tier's flags: Sse needs SSE4.1, Avx2 exists where AVX2 does. Everything is in an anonymous
// namespace, so that no file takes a function that was compiled with another's flags.
//
// A name says the deed, then the bits of an element; `U` stands for unsigned, `Sat` for saturating.
// Packing is named after what comes in, `U` or `S` after the range that the result is limited to.
// Nothing crosses a lane of 128 bits but what says so: unpacking undoes the packing of two registers
// whatever their width, and InOrder brings what was packed from memory order back into it.
#pragma once

#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#include "core/wrapping.h"

namespace ovra {
namespace {

// Two or four doubles, with the operators in the order in which they are written: nothing fuses.
struct SseDoubles {
  __m128d value;
};

struct Sse {
  using Reg = __m128i;
  static constexpr int kLanes = 1;
  static constexpr std::ptrdiff_t kBytes = 16;

  // Memory, at any address but where a name says aligned. With one lane a second address is not used.
  static Reg Load(const void* p) { return _mm_loadu_si128(static_cast<const Reg*>(p)); }
  static Reg LoadAligned(const void* p) { return _mm_load_si128(static_cast<const Reg*>(p)); }
  static Reg LoadLanes(const void* first, const void* /*second*/) { return Load(first); }
  static Reg LoadToAllLanes(const void* p) { return Load(p); }
  static Reg LoadHalf(const void* p) { return _mm_loadl_epi64(static_cast<const Reg*>(p)); }
  static void Store(void* p, Reg a) { _mm_storeu_si128(static_cast<Reg*>(p), a); }
  // The first kBytes bytes: those of whole pixels that do not fill a register.
  template <int kBytes>
  static void StoreFirst(void* p, Reg a) {
    static_assert(kBytes == 4 || kBytes == 8 || kBytes == 10 || kBytes == 12);
    if constexpr (kBytes == 4) {
      _mm_storeu_si32(p, a);
    } else {
      _mm_storel_epi64(static_cast<Reg*>(p), a);
    }
    if constexpr (kBytes == 10) _mm_storeu_si16(static_cast<char*>(p) + 8, _mm_srli_si128(a, 8));
    if constexpr (kBytes == 12) _mm_storeu_si32(static_cast<char*>(p) + 8, _mm_srli_si128(a, 8));
  }
  template <int kBytes>
  static Reg LoadFirst(const void* p) {
    static_assert(kBytes == 12);
    const Reg low = _mm_loadl_epi64(static_cast<const Reg*>(p));
    return _mm_unpacklo_epi64(low, _mm_loadu_si32(static_cast<const char*>(p) + 8));
  }
  static void StoreAligned(void* p, Reg a) { _mm_store_si128(static_cast<Reg*>(p), a); }
  static void StoreStreaming(void* p, Reg a) { _mm_stream_si128(static_cast<Reg*>(p), a); }
  static void StoreLanes(void* first, void* /*second*/, Reg a) { Store(first, a); }
  static void StoreLanesStreaming(void* first, void* /*second*/, Reg a) {
    StoreStreaming(first, a);
  }
  // 48 bytes for each lane, those of the second behind those of the first; whole registers at once.
  static void LoadTriple(const void* p, Reg (&a)[3]) {
    for (int i = 0; i < 3; ++i) a[i] = Load(static_cast<const char*>(p) + kBytes * i);
  }
  // Undoes it, but for the storing.
  static void InMemoryOrder(const Reg (&a)[3], Reg (&out)[3]) {
    for (int i = 0; i < 3; ++i) out[i] = a[i];
  }
  static void StoreLane(void* p, Reg a, int /*lane*/) { Store(p, a); }
  // Half a register's bytes from memory as whole 16-bit elements, or limited to bytes and back.
  static Reg LoadU8As16(const void* p) { return _mm_cvtepu8_epi16(LoadHalf(p)); }
  // Eight bytes for each lane, or four from each of two places a lane, as whole 16-bit elements.
  static Reg LoadLanesU8As16(const void* first, const void* /*second*/) {
    return LoadU8As16(first);
  }
  static Reg LoadQuartersU8As16(const void* first_a, const void* first_b, const void* /*second_a*/,
                                const void* /*second_b*/) {
    return _mm_cvtepu8_epi16(_mm_unpacklo_epi32(_mm_loadu_si32(first_a), _mm_loadu_si32(first_b)));
  }
  // Eight bytes from each of two places a lane, as they are.
  static Reg LoadHalves(const void* first_a, const void* first_b, const void* /*second_a*/,
                        const void* /*second_b*/) {
    return _mm_unpacklo_epi64(LoadHalf(first_a), LoadHalf(first_b));
  }
  static void Store16AsU8(void* p, Reg a) {
    _mm_storel_epi64(static_cast<Reg*>(p), _mm_packus_epi16(a, a));
  }
  // 16 bytes as whole 16-bit elements, in 2 / kLanes registers.
  static void WidenU8To16(Sse::Reg bytes, Reg (&out)[2]) {
    out[0] = _mm_cvtepu8_epi16(bytes);
    out[1] = _mm_unpackhi_epi8(bytes, Zero());
  }
  // Half a register's bytes from memory as whole 32-bit elements, or limited to 16 bits and back.
  static Reg LoadS16As32(const void* p) { return _mm_cvtepi16_epi32(LoadHalf(p)); }
  static void Store32AsS16(void* p, Reg a) {
    _mm_storel_epi64(static_cast<Reg*>(p), _mm_packs_epi32(a, a));
  }
  // table[index] for every 32-bit index.
  static Reg Gather32(const int32_t* table, Reg index) {
    return _mm_setr_epi32(table[_mm_cvtsi128_si32(index)], table[_mm_extract_epi32(index, 1)],
                          table[_mm_extract_epi32(index, 2)], table[_mm_extract_epi32(index, 3)]);
  }

  // table[index] for every unsigned 16-bit index: faster than a gather of 32-bit entries.
  static Reg Gather16(const int16_t* table, Reg index) {
    constexpr uint32_t kLow = 0xFFFF;
    const auto pair0 = static_cast<uint32_t>(_mm_cvtsi128_si32(index));
    const auto pair1 = static_cast<uint32_t>(_mm_extract_epi32(index, 1));
    const auto pair2 = static_cast<uint32_t>(_mm_extract_epi32(index, 2));
    const auto pair3 = static_cast<uint32_t>(_mm_extract_epi32(index, 3));
    Reg entries = _mm_loadu_si16(table + (pair0 & kLow));
    entries = _mm_insert_epi16(entries, table[pair0 >> 16], 1);
    entries = _mm_insert_epi16(entries, table[pair1 & kLow], 2);
    entries = _mm_insert_epi16(entries, table[pair1 >> 16], 3);
    entries = _mm_insert_epi16(entries, table[pair2 & kLow], 4);
    entries = _mm_insert_epi16(entries, table[pair2 >> 16], 5);
    entries = _mm_insert_epi16(entries, table[pair3 & kLow], 6);
    return _mm_insert_epi16(entries, table[pair3 >> 16], 7);
  }
  // The 32-bit entries of every unsigned 16-bit index: of the even ones, and of the odd ones. Single
  // loads, which are faster than gathers.
  static void LookUp32(const int32_t* table, Reg index, Reg* evens, Reg* odds) {
    constexpr uint32_t kLow = 0xFFFF;
    const auto pair0 = static_cast<uint32_t>(_mm_cvtsi128_si32(index));
    const auto pair1 = static_cast<uint32_t>(_mm_extract_epi32(index, 1));
    const auto pair2 = static_cast<uint32_t>(_mm_extract_epi32(index, 2));
    const auto pair3 = static_cast<uint32_t>(_mm_extract_epi32(index, 3));
    *evens = _mm_setr_epi32(table[pair0 & kLow], table[pair1 & kLow], table[pair2 & kLow],
                            table[pair3 & kLow]);
    *odds = _mm_setr_epi32(table[pair0 >> 16], table[pair1 >> 16], table[pair2 >> 16],
                           table[pair3 >> 16]);
  }

  // For sums of a loop that fills the registers: without it GCC 12 moves each sum to a second one, and
  // some to memory.
  static void KeepInPlace(Reg& a) { __asm__("" : "+x"(a)); }
  // Element kElement from memory, the others as they are.
  template <int kElement>
  static Reg Insert(Reg a, const uint16_t* p) {
    return _mm_insert_epi16(a, static_cast<int16_t>(*p), kElement);
  }
  template <int kElement>
  static Reg Insert(Reg a, const uint8_t* p) {
    return _mm_insert_epi8(a, static_cast<int8_t>(*p), kElement);
  }

  static Reg Zero() { return _mm_setzero_si128(); }
  static Reg Set8(int32_t v) { return _mm_set1_epi8(static_cast<char>(v)); }
  static Reg Set16(int32_t v) { return _mm_set1_epi16(static_cast<int16_t>(v)); }
  static Reg Set32(int32_t v) { return _mm_set1_epi32(v); }
  static Reg SetLanes(Sse::Reg first, Sse::Reg /*second*/) { return first; }
  static Sse::Reg Lane(Reg a, int /*lane*/) { return a; }
  // The sum of the lanes of a, then that of the lanes of b.
  static Reg AddLanes32(Reg a, Reg /*b*/) { return a; }
  static Reg SwapLanes(Reg a) { return a; }
  // The lanes of a with these numbers.
  template <int kFirst, int kSecond>
  static Reg PickLanes(Reg a) {
    return a;
  }
  // Two registers whose first lanes stand before the second ones, as four lanes in order.
  static Reg FirstLanes(Reg a, Reg /*b*/) { return a; }
  static Reg SecondLanes(Reg /*a*/, Reg b) { return b; }

  static Reg And(Reg a, Reg b) { return _mm_and_si128(a, b); }
  static Reg AndNot(Reg a, Reg b) { return _mm_andnot_si128(a, b); }  // b without a
  static Reg Or(Reg a, Reg b) { return _mm_or_si128(a, b); }
  static Reg Xor(Reg a, Reg b) { return _mm_xor_si128(a, b); }
  // b where the top bit of a byte of `choice` is set, else a.
  static Reg Choose8(Reg a, Reg b, Reg choice) { return _mm_blendv_epi8(a, b, choice); }
  // 16-bit element i of a lane from b where bit i of the mask is set, else from a.
  template <int kMask>
  static Reg Blend16(Reg a, Reg b) {
    return _mm_blend_epi16(a, b, kMask);
  }
  static bool IsZero(Reg a) { return _mm_testz_si128(a, a) != 0; }
  // Word i of each lane from b where bit i of the choice is set, else from a.
  template <int kChoice>
  static Reg Choose16(Reg a, Reg b) {
    return _mm_blend_epi16(a, b, kChoice);
  }

  // Element moves.
  static Reg Shuffle8(Reg bytes, Reg order) { return _mm_shuffle_epi8(bytes, order); }
  template <int kElement>
  static Reg Spread32(Reg a) {  // element kElement of a lane into all of them
    return _mm_shuffle_epi32(a, kElement * 0x55);
  }
  template <int kBytes>
  static Reg ShiftBytesUp(Reg a) {
    return _mm_slli_si128(a, kBytes);
  }
  template <int kBytes>
  static Reg ShiftBytesDown(Reg a) {
    return _mm_srli_si128(a, kBytes);
  }
  template <int kBytes>
  static Reg ShiftBytesDown(Reg high, Reg low) {  // of both as one long number, the low half
    return _mm_alignr_epi8(high, low, kBytes);
  }
  template <int kBits>
  static Reg UnpackLow(Reg a, Reg b) {
    if constexpr (kBits == 8) return _mm_unpacklo_epi8(a, b);
    if constexpr (kBits == 16) return _mm_unpacklo_epi16(a, b);
    if constexpr (kBits == 32) return _mm_unpacklo_epi32(a, b);
    if constexpr (kBits == 64) return _mm_unpacklo_epi64(a, b);
  }
  template <int kBits>
  static Reg UnpackHigh(Reg a, Reg b) {
    if constexpr (kBits == 8) return _mm_unpackhi_epi8(a, b);
    if constexpr (kBits == 16) return _mm_unpackhi_epi16(a, b);
    if constexpr (kBits == 32) return _mm_unpackhi_epi32(a, b);
    if constexpr (kBits == 64) return _mm_unpackhi_epi64(a, b);
  }
  static Reg Odds32(Reg a, Reg b) {
    return _mm_castps_si128(_mm_shuffle_ps(_mm_castsi128_ps(a), _mm_castsi128_ps(b), 0xDD));
  }
  static Reg PackU16(Reg a, Reg b) { return _mm_packus_epi16(a, b); }
  static Reg PackS32(Reg a, Reg b) { return _mm_packs_epi32(a, b); }
  static Reg PackU32(Reg a, Reg b) { return _mm_packus_epi32(a, b); }
  static Reg InOrder(Reg packed) { return packed; }

  // The same, which the compiler takes for unknown: it loads it once, and adds in the written order.
  static Reg Pinned(Reg a) {
    asm("" : "+x"(a));
    return a;
  }

  static Reg Sub8(Reg a, Reg b) { return _mm_sub_epi8(a, b); }
  static Reg AddSatU8(Reg a, Reg b) { return _mm_adds_epu8(a, b); }
  static Reg SubSatU8(Reg a, Reg b) { return _mm_subs_epu8(a, b); }
  static Reg MinU8(Reg a, Reg b) { return _mm_min_epu8(a, b); }
  static Reg MaxU8(Reg a, Reg b) { return _mm_max_epu8(a, b); }
  static Reg Equal8(Reg a, Reg b) { return _mm_cmpeq_epi8(a, b); }
  static Reg AverageU8(Reg a, Reg b) { return _mm_avg_epu8(a, b); }  // rounded up
  // Unsigned bytes of a times signed bytes of b, neighbours added with saturation to 16 bits.
  static Reg MulAddU8S8(Reg a, Reg b) { return _mm_maddubs_epi16(a, b); }

  static Reg Add16(Reg a, Reg b) { return _mm_add_epi16(a, b); }
  static Reg Sub16(Reg a, Reg b) { return _mm_sub_epi16(a, b); }
  static Reg AddSat16(Reg a, Reg b) { return _mm_adds_epi16(a, b); }
  static Reg SubSat16(Reg a, Reg b) { return _mm_subs_epi16(a, b); }
  static Reg AddSatU16(Reg a, Reg b) { return _mm_adds_epu16(a, b); }
  static Reg SubSatU16(Reg a, Reg b) { return _mm_subs_epu16(a, b); }
  static Reg Min16(Reg a, Reg b) { return _mm_min_epi16(a, b); }
  static Reg Max16(Reg a, Reg b) { return _mm_max_epi16(a, b); }
  static Reg MinU16(Reg a, Reg b) { return _mm_min_epu16(a, b); }
  static Reg MaxU16(Reg a, Reg b) { return _mm_max_epu16(a, b); }
  static Reg Equal16(Reg a, Reg b) { return _mm_cmpeq_epi16(a, b); }
  static Reg Greater16(Reg a, Reg b) { return _mm_cmpgt_epi16(a, b); }
  static Reg Abs16(Reg a) { return _mm_abs_epi16(a); }
  static Reg NegateBySign16(Reg a, Reg sign) { return _mm_sign_epi16(a, sign); }  // 0 where it is 0
  static Reg AverageU16(Reg a, Reg b) { return _mm_avg_epu16(a, b); }             // rounded up
  static Reg MulLow16(Reg a, Reg b) { return _mm_mullo_epi16(a, b); }
  static Reg MulHigh16(Reg a, Reg b) { return _mm_mulhi_epi16(a, b); }
  static Reg MulHighU16(Reg a, Reg b) { return _mm_mulhi_epu16(a, b); }
  static Reg MulRound15(Reg a, Reg b) { return _mm_mulhrs_epi16(a, b); }  // (a * b + 2^14) >> 15
  // Products of signed 16-bit elements, neighbours added to 32 bits.
  static Reg MulAdd16(Reg a, Reg b) { return _mm_madd_epi16(a, b); }
  static Reg AddAcross16(Reg a, Reg b) { return _mm_hadd_epi16(a, b); }
  static Reg ShiftLeft16(Reg a, int n) { return _mm_slli_epi16(a, n); }
  static Reg ShiftRight16(Reg a, int n) { return _mm_srai_epi16(a, n); }
  static Reg ShiftRightU16(Reg a, int n) { return _mm_srli_epi16(a, n); }
  // Between unsigned samples and signed ones, 2^15 lower.
  static Reg FlipSign16(Reg a) { return Xor(a, Set16(INT16_MIN)); }

  static Reg Add32(Reg a, Reg b) { return _mm_add_epi32(a, b); }
  static Reg Sub32(Reg a, Reg b) { return _mm_sub_epi32(a, b); }
  static Reg Min32(Reg a, Reg b) { return _mm_min_epi32(a, b); }
  static Reg Max32(Reg a, Reg b) { return _mm_max_epi32(a, b); }
  static Reg Greater32(Reg a, Reg b) { return _mm_cmpgt_epi32(a, b); }
  static Reg MulLow32(Reg a, Reg b) { return _mm_mullo_epi32(a, b); }
  static Reg AddAcross32(Reg a, Reg b) { return _mm_hadd_epi32(a, b); }
  // Whole quotients of positive numbers that single precision holds exactly: its quotient may be
  // rounded up to the next whole number, but never down from one. Division by 0 gives any number.
  static Reg Divide32(Reg a, Reg b) {
    const __m128 quotient = _mm_div_ps(_mm_cvtepi32_ps(a), _mm_cvtepi32_ps(b));
    const Reg whole = _mm_cvttps_epi32(quotient);
    return Add32(whole, Greater32(MulLow32(whole, b), a));
  }
  static Reg ShiftLeft32(Reg a, int n) { return _mm_slli_epi32(a, n); }
  static Reg ShiftRight32(Reg a, int n) { return _mm_srai_epi32(a, n); }
  static Reg ShiftRightU32(Reg a, int n) { return _mm_srli_epi32(a, n); }

  static Reg Sub64(Reg a, Reg b) { return _mm_sub_epi64(a, b); }
  static Reg MulEvensU32(Reg a, Reg b) { return _mm_mul_epu32(a, b); }
  static Reg ShiftLeft64(Reg a, int n) { return _mm_slli_epi64(a, n); }
  static Reg ShiftRightU64(Reg a, int n) { return _mm_srli_epi64(a, n); }

  // Doubles. Minimum and maximum answer their second operand when either is no number.
  using Doubles = SseDoubles;
  static constexpr int kDoubles = 2;
  static Doubles SetDoubles(double v) { return {_mm_set1_pd(v)}; }
  static Doubles LoadDoubles(const double* p) { return {_mm_loadu_pd(p)}; }
  static Doubles LoadDoublesAligned(const double* p) { return {_mm_load_pd(p)}; }
  static void StoreDoublesAligned(double* p, Doubles a) { _mm_store_pd(p, a.value); }
  static Doubles OfBits(Reg bits) { return {_mm_castsi128_pd(bits)}; }
  static Reg BitsOf(Doubles a) { return _mm_castpd_si128(a.value); }
  static Doubles MinDoubles(Doubles a, Doubles b) { return {_mm_min_pd(a.value, b.value)}; }
  static Doubles MaxDoubles(Doubles a, Doubles b) { return {_mm_max_pd(a.value, b.value)}; }
  static Doubles CopySign(Doubles magnitude, Doubles sign) {
    const __m128d sign_bit = _mm_set1_pd(-0.0);
    return {_mm_or_pd(magnitude.value, _mm_and_pd(sign.value, sign_bit))};
  }
  // Four 32-bit integers as 4 / kDoubles registers of doubles, and back toward zero.
  static void ToDoubles(Sse::Reg a, Doubles (&out)[2]) {
    out[0].value = _mm_cvtepi32_pd(a);
    out[1].value = _mm_cvtepi32_pd(_mm_unpackhi_epi64(a, a));
  }
  static Sse::Reg Truncate(const Doubles (&a)[2]) {
    return _mm_unpacklo_epi64(_mm_cvttpd_epi32(a[0].value), _mm_cvttpd_epi32(a[1].value));
  }
};

inline SseDoubles operator+(SseDoubles a, SseDoubles b) {
  return {_mm_add_pd(a.value, b.value)};
}
inline SseDoubles operator*(SseDoubles a, SseDoubles b) {
  return {_mm_mul_pd(a.value, b.value)};
}

// What a kernel of register class V leaves its last, incomplete step to: the kernels of the next
// narrower tier.
template <class V, class Kernels>
const Kernels& NarrowerThan(const Kernels& plain, const Kernels& sse) {
  return V::kLanes == 1 ? plain : sse;
}

// Calls block(x) for blocks of `step` elements that cover a row of `count`. The last one overlaps the
// one before it, so the kernel must not read what it writes. False when the row is shorter than a
// block: that is for the narrower kernel.
template <class Block>
bool CoverRow(std::ptrdiff_t count, std::ptrdiff_t step, const Block& block) {
  if (count < step) return false;
  for (std::ptrdiff_t x = 0; x + step < count; x += step) block(x);
  block(count - step);
  return true;
}

// Asks for the cache line at an address that will be read soon. Cannot fault, wherever it points.
inline void PrefetchLine(uintptr_t address) {
  _mm_prefetch(reinterpret_cast<const char*>(address), _MM_HINT_T0);
}

constexpr uintptr_t kCacheLine = 64;

// The same for the lines of `bytes` bytes that stand `distance` from these.
inline void PrefetchAt(const void* here, std::ptrdiff_t distance, std::ptrdiff_t bytes) {
  const uintptr_t there = AddressAt(reinterpret_cast<uintptr_t>(here), distance);
  const auto end = static_cast<uintptr_t>(bytes);
  for (uintptr_t i = 0; i < end; i += kCacheLine) PrefetchLine(there + i);
}

// From `place` to where a line begins.
inline std::ptrdiff_t BytesToLine(const void* place) {
  const uintptr_t past = reinterpret_cast<uintptr_t>(place) % kCacheLine;
  return static_cast<std::ptrdiff_t>((kCacheLine - past) % kCacheLine);
}

// Streaming stores go round the cache, in no order: this ends them.
inline void FinishStreaming() {
  _mm_sfence();
}

#ifdef __AVX2__
struct Avx2Doubles {
  __m256d value;
};

struct Avx2 {
  using Reg = __m256i;
  static constexpr int kLanes = 2;
  static constexpr std::ptrdiff_t kBytes = 32;

  static Reg Load(const void* p) { return _mm256_loadu_si256(static_cast<const Reg*>(p)); }
  static Reg LoadAligned(const void* p) { return _mm256_load_si256(static_cast<const Reg*>(p)); }
  static Reg LoadLanes(const void* first, const void* second) {
    return SetLanes(Sse::Load(first), Sse::Load(second));
  }
  static Reg LoadToAllLanes(const void* p) { return _mm256_broadcastsi128_si256(Sse::Load(p)); }
  static Sse::Reg LoadHalf(const void* p) { return Sse::Load(p); }
  static void Store(void* p, Reg a) { _mm256_storeu_si256(static_cast<Reg*>(p), a); }
  static void StoreAligned(void* p, Reg a) { _mm256_store_si256(static_cast<Reg*>(p), a); }
  static void StoreStreaming(void* p, Reg a) { _mm256_stream_si256(static_cast<Reg*>(p), a); }
  static void StoreLanes(void* first, void* second, Reg a) {
    Sse::Store(first, Lane(a, 0));
    Sse::Store(second, Lane(a, 1));
  }
  static void StoreLanesStreaming(void* first, void* second, Reg a) {
    Sse::StoreStreaming(first, Lane(a, 0));
    Sse::StoreStreaming(second, Lane(a, 1));
  }
  static void LoadTriple(const void* p, Reg (&a)[3]) {
    const auto* const bytes = static_cast<const char*>(p);
    const Reg first = Load(bytes);
    const Reg middle = Load(bytes + kBytes);
    const Reg last = Load(bytes + 2 * kBytes);
    a[0] = SecondLaneFrom(first, middle);
    a[1] = _mm256_permute2x128_si256(first, last, 0x21);
    a[2] = SecondLaneFrom(middle, last);
  }
  static void InMemoryOrder(const Reg (&a)[3], Reg (&out)[3]) {
    out[0] = FirstLanes(a[0], a[1]);
    out[1] = SecondLaneFrom(a[2], a[0]);
    out[2] = SecondLanes(a[1], a[2]);
  }
  static void StoreLane(void* p, Reg a, int lane) { Sse::Store(p, Lane(a, lane)); }
  static Reg LoadU8As16(const void* p) { return _mm256_cvtepu8_epi16(LoadHalf(p)); }
  static Reg LoadLanesU8As16(const void* first, const void* second) {
    return _mm256_cvtepu8_epi16(_mm_unpacklo_epi64(Sse::LoadHalf(first), Sse::LoadHalf(second)));
  }
  static Reg LoadQuartersU8As16(const void* first_a, const void* first_b, const void* second_a,
                                const void* second_b) {
    return _mm256_cvtepu8_epi16(
        _mm_unpacklo_epi64(_mm_unpacklo_epi32(_mm_loadu_si32(first_a), _mm_loadu_si32(first_b)),
                           _mm_unpacklo_epi32(_mm_loadu_si32(second_a), _mm_loadu_si32(second_b))));
  }
  static Reg LoadHalves(const void* first_a, const void* first_b, const void* second_a,
                        const void* second_b) {
    return SetLanes(Sse::LoadHalves(first_a, first_b, nullptr, nullptr),
                    Sse::LoadHalves(second_a, second_b, nullptr, nullptr));
  }
  static void Store16AsU8(void* p, Reg a) {
    Sse::Store(p, _mm_packus_epi16(Lane(a, 0), Lane(a, 1)));
  }
  static void WidenU8To16(Sse::Reg bytes, Reg (&out)[1]) { out[0] = _mm256_cvtepu8_epi16(bytes); }
  static Reg LoadS16As32(const void* p) { return _mm256_cvtepi16_epi32(LoadHalf(p)); }
  static void Store32AsS16(void* p, Reg a) {
    Sse::Store(p, _mm_packs_epi32(Lane(a, 0), Lane(a, 1)));
  }
  static Reg Gather32(const int32_t* table, Reg index) {
    return _mm256_i32gather_epi32(reinterpret_cast<const int*>(table), index, 4);
  }

  static Reg Gather16(const int16_t* table, Reg index) {
    return SetLanes(Sse::Gather16(table, Lane(index, 0)), Sse::Gather16(table, Lane(index, 1)));
  }
  static void LookUp32(const int32_t* table, Reg index, Reg* evens, Reg* odds) {
    Sse::Reg even_lanes[2];
    Sse::Reg odd_lanes[2];
    Sse::LookUp32(table, Lane(index, 0), &even_lanes[0], &odd_lanes[0]);
    Sse::LookUp32(table, Lane(index, 1), &even_lanes[1], &odd_lanes[1]);
    *evens = SetLanes(even_lanes[0], even_lanes[1]);
    *odds = SetLanes(odd_lanes[0], odd_lanes[1]);
  }

  static void KeepInPlace(Reg& a) { __asm__("" : "+x"(a)); }
  static Reg Zero() { return _mm256_setzero_si256(); }
  static Reg Set8(int32_t v) { return _mm256_set1_epi8(static_cast<char>(v)); }
  static Reg Set16(int32_t v) { return _mm256_set1_epi16(static_cast<int16_t>(v)); }
  static Reg Set32(int32_t v) { return _mm256_set1_epi32(v); }
  static Reg SetLanes(Sse::Reg first, Sse::Reg second) {
    return _mm256_inserti128_si256(_mm256_castsi128_si256(first), second, 1);
  }
  static Sse::Reg Lane(Reg a, int lane) {
    return lane == 0 ? _mm256_castsi256_si128(a) : _mm256_extracti128_si256(a, 1);
  }
  static Reg AddLanes32(Reg a, Reg b) {
    return Add32(_mm256_blend_epi32(a, b, 0xF0), _mm256_permute2x128_si256(a, b, 0x21));
  }
  static Reg SwapLanes(Reg a) { return _mm256_permute2x128_si256(a, a, 1); }
  template <int kFirst, int kSecond>
  static Reg PickLanes(Reg a) {
    if constexpr (kFirst == 0 && kSecond == 1) return a;
    return _mm256_permute2x128_si256(a, a, kFirst | kSecond << 4);
  }
  static Reg FirstLanes(Reg a, Reg b) { return _mm256_permute2x128_si256(a, b, 0x20); }
  static Reg SecondLanes(Reg a, Reg b) { return _mm256_permute2x128_si256(a, b, 0x31); }
  static Reg SecondLaneFrom(Reg a, Reg b) { return _mm256_blend_epi32(a, b, 0xF0); }

  static Reg And(Reg a, Reg b) { return _mm256_and_si256(a, b); }
  static Reg AndNot(Reg a, Reg b) { return _mm256_andnot_si256(a, b); }
  static Reg Or(Reg a, Reg b) { return _mm256_or_si256(a, b); }
  static Reg Xor(Reg a, Reg b) { return _mm256_xor_si256(a, b); }
  static Reg Choose8(Reg a, Reg b, Reg choice) { return _mm256_blendv_epi8(a, b, choice); }
  template <int kMask>
  static Reg Blend16(Reg a, Reg b) {
    return _mm256_blend_epi16(a, b, kMask);
  }
  static bool IsZero(Reg a) { return _mm256_testz_si256(a, a) != 0; }
  template <int kChoice>
  static Reg Choose16(Reg a, Reg b) {
    return _mm256_blend_epi16(a, b, kChoice);
  }

  static Reg Shuffle8(Reg bytes, Reg order) { return _mm256_shuffle_epi8(bytes, order); }
  template <int kElement>
  static Reg Spread32(Reg a) {
    return _mm256_shuffle_epi32(a, kElement * 0x55);
  }
  template <int kBytes>
  static Reg ShiftBytesUp(Reg a) {
    return _mm256_slli_si256(a, kBytes);
  }
  template <int kBytes>
  static Reg ShiftBytesDown(Reg a) {
    return _mm256_srli_si256(a, kBytes);
  }
  template <int kBytes>
  static Reg ShiftBytesDown(Reg high, Reg low) {
    return _mm256_alignr_epi8(high, low, kBytes);
  }
  template <int kBits>
  static Reg UnpackLow(Reg a, Reg b) {
    if constexpr (kBits == 8) return _mm256_unpacklo_epi8(a, b);
    if constexpr (kBits == 16) return _mm256_unpacklo_epi16(a, b);
    if constexpr (kBits == 32) return _mm256_unpacklo_epi32(a, b);
    if constexpr (kBits == 64) return _mm256_unpacklo_epi64(a, b);
  }
  template <int kBits>
  static Reg UnpackHigh(Reg a, Reg b) {
    if constexpr (kBits == 8) return _mm256_unpackhi_epi8(a, b);
    if constexpr (kBits == 16) return _mm256_unpackhi_epi16(a, b);
    if constexpr (kBits == 32) return _mm256_unpackhi_epi32(a, b);
    if constexpr (kBits == 64) return _mm256_unpackhi_epi64(a, b);
  }
  static Reg Odds32(Reg a, Reg b) {
    return _mm256_castps_si256(
        _mm256_shuffle_ps(_mm256_castsi256_ps(a), _mm256_castsi256_ps(b), 0xDD));
  }
  static Reg PackU16(Reg a, Reg b) { return _mm256_packus_epi16(a, b); }
  static Reg PackS32(Reg a, Reg b) { return _mm256_packs_epi32(a, b); }
  static Reg PackU32(Reg a, Reg b) { return _mm256_packus_epi32(a, b); }
  static Reg InOrder(Reg packed) { return _mm256_permute4x64_epi64(packed, 0xD8); }

  static Reg Pinned(Reg a) {
    asm("" : "+x"(a));
    return a;
  }

  static Reg Sub8(Reg a, Reg b) { return _mm256_sub_epi8(a, b); }
  static Reg AddSatU8(Reg a, Reg b) { return _mm256_adds_epu8(a, b); }
  static Reg SubSatU8(Reg a, Reg b) { return _mm256_subs_epu8(a, b); }
  static Reg MinU8(Reg a, Reg b) { return _mm256_min_epu8(a, b); }
  static Reg MaxU8(Reg a, Reg b) { return _mm256_max_epu8(a, b); }
  static Reg Equal8(Reg a, Reg b) { return _mm256_cmpeq_epi8(a, b); }
  static Reg AverageU8(Reg a, Reg b) { return _mm256_avg_epu8(a, b); }
  static Reg MulAddU8S8(Reg a, Reg b) { return _mm256_maddubs_epi16(a, b); }

  static Reg Add16(Reg a, Reg b) { return _mm256_add_epi16(a, b); }
  static Reg Sub16(Reg a, Reg b) { return _mm256_sub_epi16(a, b); }
  static Reg AddSat16(Reg a, Reg b) { return _mm256_adds_epi16(a, b); }
  static Reg SubSat16(Reg a, Reg b) { return _mm256_subs_epi16(a, b); }
  static Reg AddSatU16(Reg a, Reg b) { return _mm256_adds_epu16(a, b); }
  static Reg SubSatU16(Reg a, Reg b) { return _mm256_subs_epu16(a, b); }
  static Reg Min16(Reg a, Reg b) { return _mm256_min_epi16(a, b); }
  static Reg Max16(Reg a, Reg b) { return _mm256_max_epi16(a, b); }
  static Reg MinU16(Reg a, Reg b) { return _mm256_min_epu16(a, b); }
  static Reg MaxU16(Reg a, Reg b) { return _mm256_max_epu16(a, b); }
  static Reg Equal16(Reg a, Reg b) { return _mm256_cmpeq_epi16(a, b); }
  static Reg Greater16(Reg a, Reg b) { return _mm256_cmpgt_epi16(a, b); }
  static Reg Abs16(Reg a) { return _mm256_abs_epi16(a); }
  static Reg NegateBySign16(Reg a, Reg sign) { return _mm256_sign_epi16(a, sign); }
  static Reg AverageU16(Reg a, Reg b) { return _mm256_avg_epu16(a, b); }
  static Reg MulLow16(Reg a, Reg b) { return _mm256_mullo_epi16(a, b); }
  static Reg MulHigh16(Reg a, Reg b) { return _mm256_mulhi_epi16(a, b); }
  static Reg MulHighU16(Reg a, Reg b) { return _mm256_mulhi_epu16(a, b); }
  static Reg MulRound15(Reg a, Reg b) { return _mm256_mulhrs_epi16(a, b); }
  static Reg MulAdd16(Reg a, Reg b) { return _mm256_madd_epi16(a, b); }
  static Reg AddAcross16(Reg a, Reg b) { return _mm256_hadd_epi16(a, b); }
  static Reg ShiftLeft16(Reg a, int n) { return _mm256_slli_epi16(a, n); }
  static Reg ShiftRight16(Reg a, int n) { return _mm256_srai_epi16(a, n); }
  static Reg ShiftRightU16(Reg a, int n) { return _mm256_srli_epi16(a, n); }
  static Reg FlipSign16(Reg a) { return Xor(a, Set16(INT16_MIN)); }

  static Reg Add32(Reg a, Reg b) { return _mm256_add_epi32(a, b); }
  static Reg Sub32(Reg a, Reg b) { return _mm256_sub_epi32(a, b); }
  static Reg Min32(Reg a, Reg b) { return _mm256_min_epi32(a, b); }
  static Reg Max32(Reg a, Reg b) { return _mm256_max_epi32(a, b); }
  static Reg Greater32(Reg a, Reg b) { return _mm256_cmpgt_epi32(a, b); }
  static Reg MulLow32(Reg a, Reg b) { return _mm256_mullo_epi32(a, b); }
  static Reg AddAcross32(Reg a, Reg b) { return _mm256_hadd_epi32(a, b); }
  static Reg Divide32(Reg a, Reg b) {
    const __m256 quotient = _mm256_div_ps(_mm256_cvtepi32_ps(a), _mm256_cvtepi32_ps(b));
    const Reg whole = _mm256_cvttps_epi32(quotient);
    return Add32(whole, Greater32(MulLow32(whole, b), a));
  }
  static Reg ShiftLeft32(Reg a, int n) { return _mm256_slli_epi32(a, n); }
  static Reg ShiftRight32(Reg a, int n) { return _mm256_srai_epi32(a, n); }
  static Reg ShiftRightU32(Reg a, int n) { return _mm256_srli_epi32(a, n); }

  static Reg Sub64(Reg a, Reg b) { return _mm256_sub_epi64(a, b); }
  static Reg MulEvensU32(Reg a, Reg b) { return _mm256_mul_epu32(a, b); }
  static Reg ShiftLeft64(Reg a, int n) { return _mm256_slli_epi64(a, n); }
  static Reg ShiftRightU64(Reg a, int n) { return _mm256_srli_epi64(a, n); }

  using Doubles = Avx2Doubles;
  static constexpr int kDoubles = 4;
  static Doubles SetDoubles(double v) { return {_mm256_set1_pd(v)}; }
  static Doubles LoadDoubles(const double* p) { return {_mm256_loadu_pd(p)}; }
  static Doubles LoadDoublesAligned(const double* p) { return {_mm256_load_pd(p)}; }
  static void StoreDoublesAligned(double* p, Doubles a) { _mm256_store_pd(p, a.value); }
  static Doubles OfBits(Reg bits) { return {_mm256_castsi256_pd(bits)}; }
  static Reg BitsOf(Doubles a) { return _mm256_castpd_si256(a.value); }
  static Doubles MinDoubles(Doubles a, Doubles b) { return {_mm256_min_pd(a.value, b.value)}; }
  static Doubles MaxDoubles(Doubles a, Doubles b) { return {_mm256_max_pd(a.value, b.value)}; }
  static Doubles CopySign(Doubles magnitude, Doubles sign) {
    const __m256d sign_bit = _mm256_set1_pd(-0.0);
    return {_mm256_or_pd(magnitude.value, _mm256_and_pd(sign.value, sign_bit))};
  }
  static void ToDoubles(Sse::Reg a, Doubles (&out)[1]) { out[0].value = _mm256_cvtepi32_pd(a); }
  static Sse::Reg Truncate(const Doubles (&a)[1]) { return _mm256_cvttpd_epi32(a[0].value); }
};

inline Avx2Doubles operator+(Avx2Doubles a, Avx2Doubles b) {
  return {_mm256_add_pd(a.value, b.value)};
}
inline Avx2Doubles operator*(Avx2Doubles a, Avx2Doubles b) {
  return {_mm256_mul_pd(a.value, b.value)};
}
#endif

}  // namespace
}  // namespace ovra
