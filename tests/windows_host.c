// SPDX-License-Identifier: MIT
// A 32-bit Windows host: loads the DLL a thousand times, and tours its exports in eight threads, with a
// stack aligned to 4 bytes, with other precisions of the x87 and with floating-point exceptions on.
// The bytes are the same everywhere, and the process does not grow.
#include <malloc.h>
#include <stdio.h>
#include <string.h>
#include <windows.h>
// After windows.h.
#include <psapi.h>

#include "ovra/ovra.h"

#define EXPORTS(X)               \
  X(OvraResizeImage)             \
  X(OvraCalcBSpline)             \
  X(OvraSoftFocus)               \
  X(OvraEFilterImage)            \
  X(OvraFreeTrimming)            \
  X(OvraConvColorMtx_Init)       \
  X(OvraConvColorMtx)            \
  X(OvraConvColorMtx_Free)       \
  X(OvraHybridHyperTone_Init_12) \
  X(OvraHybridHyperTone)         \
  X(OvraHybridHyperTone_Free)    \
  X(OvraGaussianWeights)

#define MEMBER(name) __typeof__(name)* name;
static struct { EXPORTS(MEMBER) } library;

enum { kWidth = 61, kHeight = 47, kBytes = 6 * kWidth * kHeight, kExportCount = 12 };
static const OvraPixelFormatCode kRgb = 0x120;
static const OvraPixelFormatCode kRgb12 = 0x124;

static HMODULE Load(void) {
  const HMODULE dll = LoadLibraryA("OvraBase.dll");
#define FIND(name)                                                 \
  {                                                                \
    const FARPROC found = dll ? GetProcAddress(dll, #name) : NULL; \
    if (!found) return NULL;                                       \
    memcpy(&library.name, &found, sizeof found);                   \
  }
  EXPORTS(FIND)
  return dll;
}

static uint32_t Add(uint32_t hash, const void* bytes, size_t size) {
  const uint8_t* const end = (const uint8_t*)bytes + size;
  for (const uint8_t* p = bytes; p != end; ++p) hash = (hash ^ *p) * 16777619U;
  return hash;
}

static volatile LONG tours = 0;

// Calls every export once and answers a digest of what they wrote, or 0 where one refused.
static uint32_t Tour(void) {
  InterlockedIncrement(&tours);
  uint8_t* const source = malloc(kBytes);
  uint8_t* const out = calloc(1, kBytes);
  float* const table = malloc(OVRA_KERNEL_TABLE_ENTRIES * sizeof(float));
  int32_t weights[OVRA_YUSM_MAX_TAPS] = {0};
  int32_t taps = 0;
  const OvraSoftFocusParams soft = {400, 1, 0.1, {0}, 0.7};
  const OvraHyperToneParams tone = {1.0F, 0.6F, 0.4F, 1.2F, 0.12F, 1.0F, 4, 0};
  OvraColorMatrix matrix = {
      {{0.9, 0.1, 0, 3, 0.001}, {0, 1.1, 0, 0}, {0.2, 0, 0.8, 0, 0, 0, 0.002}}, 0};
  uintptr_t handle = 0;
  void* context = NULL;
  OvraStatus status = OVRA_OK;
  uint32_t hash = 2166136261U;
  for (int i = 0; i < kBytes; ++i) source[i] = (uint8_t)((i & 1) != 0 ? i >> 3 & 15 : i * i >> 4);
#define STEP(call, bytes)                        \
  if (status == OVRA_OK) {                       \
    status = library.call;                       \
    hash = Add(hash, out, status ? 0 : (bytes)); \
  }
  STEP(OvraResizeImage(source, kWidth, kHeight, out, kWidth / 2, kHeight / 2, kRgb), kBytes)
  STEP(OvraResizeImage(source, kWidth, kHeight, out, kWidth / 6, kHeight / 6, kRgb), kBytes)
  STEP(OvraCalcBSpline(0.3F, table), 0)
  hash = Add(hash, table, OVRA_KERNEL_TABLE_ENTRIES * sizeof(float));
  STEP(OvraSoftFocus(source, out, kWidth, kHeight, &soft), kBytes)
  STEP(OvraEFilterImage(source, out, kWidth, kHeight, kRgb), kBytes)
  STEP(OvraFreeTrimming(source, kWidth, kHeight, out, 40, 30, kRgb, 5, 6, 77, NULL), kBytes)
  STEP(OvraConvColorMtx_Init(kRgb, kRgb, &matrix, &handle), 0)
  STEP(OvraConvColorMtx(source, out, kWidth, kHeight, kRgb, kRgb, handle), kBytes)
  STEP(OvraConvColorMtx_Free(&handle), 0)
  STEP(OvraHybridHyperTone_Init_12(kRgb12, &tone, NULL, &context), 0)
  STEP(OvraHybridHyperTone(source, out, kWidth, kHeight, kRgb12, context), kBytes)
  STEP(OvraHybridHyperTone_Free(&context), 0)
  STEP(OvraGaussianWeights(1.7, OVRA_YUSM_MAX_TAPS, &taps, weights), 0)
  hash = Add(hash, weights, sizeof weights);
  free(source);
  free(out);
  free(table);
  return status == OVRA_OK ? hash : 0;
}

static const uint32_t kExpected = 0x77BD2A83U;  // as on every platform
enum { kToursAThread = 20 };

// The first of the threads to load the DLL brings it in, while the others ask for it.
static DWORD WINAPI TourOften(LPVOID parameter) {
  (void)parameter;
  const HMODULE dll = Load();
  DWORD wrong = dll == NULL;
  for (int i = 0; i < kToursAThread && wrong == 0; ++i) wrong += Tour() != kExpected;
  FreeLibrary(dll);
  return wrong;
}

// A tour with the stack lowered by so many bytes. This file is built to keep 4 bytes and no more.
static uint32_t TourBelow(size_t bytes) {
  volatile char* const room = alloca(bytes);
  room[0] = 1;
  return Tour();
}

static uint32_t TourWith(uint16_t x87, uint32_t sse) {
  const uint16_t usual_x87 = 0x037F;
  const uint32_t usual_sse = 0x1F80;
  uint32_t hash;
  __asm__ volatile("fldcw %0\n\tldmxcsr %1" : : "m"(x87), "m"(sse));
  hash = Tour();
  __asm__ volatile("fnclex\n\tfldcw %0\n\tldmxcsr %1" : : "m"(usual_x87), "m"(usual_sse));
  return hash;
}

static size_t Bytes(void) {
  PROCESS_MEMORY_COUNTERS counters = {0};
  GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
  return counters.PagefileUsage;
}

static int failures = 0;
static int cases = 0;

static void Expect(int holds, const char* what) {
  ++cases;
  failures += !holds;
  if (!holds) printf("FAILED: %s\n", what);
}

int main(void) {
  enum { kLoads = 1000, kWarm = 100, kThreads = 8, kGrowth = 1 << 20 };
  size_t warm = 0;
  for (int i = 0; i < kLoads; ++i) {
    const HMODULE dll = Load();
    if (!dll || (i % kWarm == 0 && Tour() != kExpected) || !FreeLibrary(dll)) {
      printf("FAILED: load %d\n", i);
      return 1;
    }
    if (i == kWarm) warm = Bytes();
  }
  Expect(Bytes() < warm + kGrowth, "the process grows");
  Expect(GetModuleHandleA("OvraBase.dll") == NULL, "the DLL stays");
  const HMODULE dll = Load();
  for (size_t bytes = 4; bytes <= 16; bytes += 4) {
    Expect(TourBelow(bytes) == kExpected, "a stack aligned to 4 bytes");
  }
  Expect(TourWith(0x007F, 0x1F80) == kExpected, "24 bits of precision");
  Expect(TourWith(0x027F, 0x1F80) == kExpected, "53 bits of precision");
  Expect(TourWith(0x037F, 0x1F80) == kExpected, "64 bits of precision");
  // Invalid operations, divisions by zero and overflows end the process.
  Expect(TourWith(0x0372, 0x1900) == kExpected, "exceptions unmasked");
  Expect(FreeLibrary(dll), "the DLL is released");
  HANDLE threads[kThreads];
  for (int i = 0; i < kThreads; ++i) threads[i] = CreateThread(NULL, 0, TourOften, NULL, 0, NULL);
  for (int i = 0; i < kThreads; ++i) {
    DWORD wrong = 1;
    WaitForSingleObject(threads[i], INFINITE);
    GetExitCodeThread(threads[i], &wrong);
    CloseHandle(threads[i]);
    Expect(wrong == 0, "eight threads");
  }
  Expect(Bytes() < warm + 4 * kGrowth, "the process grows after calls");
  printf("cases: %d\ncalls: %ld\n", cases + kLoads, tours * (kExportCount + 1));
  return failures != 0;
}
