// SPDX-License-Identifier: MIT
#include "color/channel_tables/channel_tables.h"

#include <utility>

#include "color/channel_tables/kernels.h"
#include "color/handle.h"
#include "core/work_memory.h"

namespace ovra {
namespace {

static_assert(sizeof(ChannelPolynomial) == 32);

constexpr int kChannels = 3;

constexpr FormatRules kRules = {
    .channels = NumberSet::Of(kChannels),
    .channels_refused = OVRA_ERROR_TABLE_CHANNELS,
    .depths_bits = NumberSet::Between(8, 16),
    .depth_refused = OVRA_ERROR_TABLE_DEPTH,
    .accepts_model = IsRgbBgrOrYcc,
    .model_refused = OVRA_ERROR_TABLE_COLOR_MODEL,
    .arrangement_refused = OVRA_ERROR_TABLE_ARRANGEMENT,
};

// What a handle stands for.
struct ChannelTables : TaggedContext<0x7AB1E300> {
  FormatPair formats;
  DecodedFormatPair decoded;
  WorkMemory<uint16_t> table[kChannels];  // an entry for every value of the input depth
  WorkMemory<uint8_t> bytes[kChannels];   // the same, for a destination of bytes
  WorkMemory<uint8_t> differences[kChannels];
  WorkMemory<PlacedTables<uint32_t>> placed_bytes;
  WorkMemory<PlacedTables<uint64_t>> placed_words;

  // The place in the order of channels of the sample that stands k-th in a pixel.
  int ChannelOf(int k) const {
    return decoded.input.color_model == OVRA_MODEL_BGR ? kChannels - 1 - k : k;
  }
};

template <class Word>
bool PlaceEntries(const ChannelTables& context, WorkMemory<PlacedTables<Word>>* placed) {
  constexpr int kSampleBits = 8 * sizeof(Word) / 4;
  if (!placed->Allocate(1)) return false;
  for (int i = 0; i < kPlacedSamples; ++i) {
    const uint16_t* const entries = context.table[context.ChannelOf(i % kChannels)].data();
    for (int v = 0; v < 256; ++v) {
      (*placed)[0][i][v] = static_cast<Word>(entries[v]) << kSampleBits * (i % 4);
    }
  }
  return true;
}

bool MakeDifferences(const WorkMemory<uint8_t>& bytes, WorkMemory<uint8_t>* differences) {
  constexpr uint32_t kRow = 16;
  if (!differences->Allocate(256)) return false;
  for (uint32_t v = 0; v < 256; ++v) {
    const bool second = v / kRow % 2 == 1;
    (*differences)[v] = static_cast<uint8_t>(second ? bytes[v] ^ bytes[v - kRow] : bytes[v]);
  }
  return true;
}

// Makes the tables beside `table` that kernels want for these depths.
bool MakeNarrowTables(ChannelTables* context) {
  const auto& [input, output] = context->decoded;
  if (output.depth_bits == 8) {
    const uint32_t entries = input.MaxSample() + 1;
    for (int k = 0; k < kChannels; ++k) {
      if (!context->bytes[k].Allocate(entries)) return false;
      for (uint32_t v = 0; v < entries; ++v) {
        context->bytes[k][v] = static_cast<uint8_t>(context->table[k][v]);
      }
      if (entries == 256 && !MakeDifferences(context->bytes[k], &context->differences[k])) {
        return false;
      }
    }
  }
  if (input.depth_bits > 8) return true;
  return output.depth_bits == 8 ? PlaceEntries(*context, &context->placed_bytes)
                                : PlaceEntries(*context, &context->placed_words);
}

// Makes the tables whose entries are entry(channel, value, greatest entry).
template <class Entry>
Status MakeTables(const FormatPair& formats, const Entry& entry, ContextPtr<ChannelTables>* made) {
  DecodedFormatPair decoded;
  const Status status = DecodeAndCheckFormats(formats, kRules, kRules, &decoded);
  if (status != OVRA_OK) return status;
  ContextPtr<ChannelTables> context = MakeContext<ChannelTables>();
  if (context == nullptr) return OVRA_ERROR_NO_MEMORY;
  context->formats = formats;
  context->decoded = decoded;
  const uint32_t last = decoded.input.MaxSample();
  for (int k = 0; k < kChannels; ++k) {
    WorkMemory<uint16_t>& table = context->table[k];
    if (!table.Allocate(uint64_t{last} + 1)) return OVRA_ERROR_NO_MEMORY;
    for (uint32_t v = 0; v <= last; ++v) table[v] = entry(k, v, decoded.output.MaxSample());
  }
  if (!MakeNarrowTables(context.get())) return OVRA_ERROR_NO_MEMORY;
  *made = std::move(context);
  return OVRA_OK;
}

Status MakeTables(const FormatPair& formats, const ChannelTableSet* tables,
                  ContextPtr<ChannelTables>* made) {
  for (const uint16_t* const table : tables->table) {
    if (table == nullptr) return OVRA_ERROR_TABLE_NULL_TABLE;
  }
  const auto entry = [tables](int channel, uint32_t value, uint32_t max) {
    const uint16_t given = tables->table[channel][value];
    return given < max ? given : static_cast<uint16_t>(max);
  };
  return MakeTables(formats, entry, made);
}

// The value at v, rounded half up and limited to 0..max; 0 when it is not a number. The order of
// the terms decides the last bit.
uint16_t Evaluate(const ChannelPolynomial& polynomial, uint32_t v, uint32_t max) {
  const double sum = v * polynomial.c1 + polynomial.c0 + v * v * polynomial.c2 + 0.5;
  if (!(sum > 0)) return 0;
  return static_cast<uint16_t>(sum < max ? sum : max);
}

Status MakeTables(const FormatPair& formats, const ChannelPolynomial* coefficients,
                  ContextPtr<ChannelTables>* made) {
  const auto entry = [coefficients](int channel, uint32_t value, uint32_t max) {
    return Evaluate(coefficients[channel], value, max);
  };
  return MakeTables(formats, entry, made);
}

SampleTables PrepareTables(const ChannelTables& context) {
  SampleTables tables = {};
  for (int k = 0; k < kChannels; ++k) {
    tables.table[k] = context.table[context.ChannelOf(k)].data();
    tables.bytes[k] = context.bytes[context.ChannelOf(k)].data();
    tables.differences[k] = context.differences[context.ChannelOf(k)].data();
  }
  tables.last = context.decoded.input.MaxSample();
  tables.placed_bytes = context.placed_bytes.data();
  tables.placed_words = context.placed_words.data();
  return tables;
}

void Convert(const ImagePair& images, const ChannelTables& context, KernelTier tier) {
  const ChannelTablesKernels& kernels =
      ForTier(tier, kChannelTablesPlain, kChannelTablesSse, kChannelTablesAvx2);
  const auto& [input, output] = context.decoded;
  MapChannelsRun* const map = kernels.map[input.depth_bits > 8][output.depth_bits > 8];
  const SampleTables tables = PrepareTables(context);
  ForEachRun(images, context.decoded,
             [&](const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels) {
               map(source, destination, pixels, tables);
             });
}

// `Given` is the caller's tables or polynomials.
template <class Given>
Status Init(const FormatPair& formats, const Given* given, uintptr_t* handle_out) {
  if (given == nullptr) return OVRA_ERROR_TABLE_NULL;
  return CreateHandle<ChannelTables>(
      handle_out, OVRA_ERROR_TABLE_NULL,
      [&](ContextPtr<ChannelTables>* made) { return MakeTables(formats, given, made); });
}

template <class Given>
Status ConvertOnce(const ImagePair& images, const FormatPair& formats, const Given* given,
                   const ChannelTableStatuses& statuses, KernelTier tier) {
  if (images.HasNull() || given == nullptr) return statuses.null;
  if (images.HasZeroSide()) return statuses.zero_size;
  ContextPtr<ChannelTables> context;
  const Status status = MakeTables(formats, given, &context);
  if (status == OVRA_OK) Convert(images, *context, tier);
  return status;
}

}  // namespace

Status InitChannelTables(const FormatPair& formats, const ChannelTableSet* tables,
                         uintptr_t* handle_out) {
  return Init(formats, tables, handle_out);
}

Status InitChannelTables(const FormatPair& formats, const ChannelPolynomial* coefficients,
                         uintptr_t* handle_out) {
  return Init(formats, coefficients, handle_out);
}

Status ConvertByChannelTables(const ImagePair& images, const FormatPair& formats, uintptr_t handle,
                              const ChannelTableStatuses& statuses, KernelTier tier) {
  const auto* const context = ContextOf<const ChannelTables>(handle);
  if (images.HasNull() || context == nullptr) return statuses.null;
  if (images.HasZeroSide()) return statuses.zero_size;
  if (formats != context->formats) {  // those have been accepted
    DecodedFormatPair decoded;
    const Status status = DecodeAndCheckFormats(formats, kRules, kRules, &decoded);
    return status == OVRA_OK ? statuses.format_changed : status;
  }
  Convert(images, *context, tier);
  return OVRA_OK;
}

Status ConvertByChannelTablesOnce(const ImagePair& images, const FormatPair& formats,
                                  const ChannelTableSet* tables, KernelTier tier) {
  return ConvertOnce(images, formats, tables, kTableStatuses, tier);
}

Status ConvertByChannelTablesOnce(const ImagePair& images, const FormatPair& formats,
                                  const ChannelPolynomial* coefficients, KernelTier tier) {
  return ConvertOnce(images, formats, coefficients, kCoefficientStatuses, tier);
}

Status FreeChannelTables(uintptr_t* handle) {
  if (handle == nullptr) return OVRA_ERROR_TABLE_NULL;
  return ReleaseHandle<ChannelTables>(handle, OVRA_OK, OVRA_ERROR_TABLE_NULL);
}

}  // namespace ovra

OVRA_API OvraStatus OVRA_CALL OvraConvColor1DTbl_Init(OvraPixelFormatCode in_format,
                                                      OvraPixelFormatCode out_format,
                                                      const OvraChannelTableSet* tables,
                                                      uintptr_t* handle_out) {
  return ovra::InitChannelTables({in_format, out_format}, tables, handle_out);
}

OVRA_API OvraStatus OVRA_CALL OvraConvColorCoef_Init(OvraPixelFormatCode in_format,
                                                     OvraPixelFormatCode out_format,
                                                     const OvraChannelPolynomial* coefficients,
                                                     uintptr_t* handle_out) {
  return ovra::InitChannelTables({in_format, out_format}, coefficients, handle_out);
}

OVRA_API OvraStatus OVRA_CALL OvraConvColor1DTbl(const uint8_t* source, uint8_t* destination,
                                                 int32_t width, int32_t height,
                                                 OvraPixelFormatCode in_format,
                                                 OvraPixelFormatCode out_format, uintptr_t handle) {
  return ovra::ConvertByChannelTables({source, destination, width, height}, {in_format, out_format},
                                      handle, ovra::kTableStatuses, ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraConvColorCoef(const uint8_t* source, uint8_t* destination,
                                                int32_t width, int32_t height,
                                                OvraPixelFormatCode in_format,
                                                OvraPixelFormatCode out_format, uintptr_t handle) {
  return ovra::ConvertByChannelTables({source, destination, width, height}, {in_format, out_format},
                                      handle, ovra::kCoefficientStatuses, ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraConvColor1DTblSingleStep(const uint8_t* source,
                                                           uint8_t* destination, int32_t width,
                                                           int32_t height,
                                                           OvraPixelFormatCode in_format,
                                                           OvraPixelFormatCode out_format,
                                                           const OvraChannelTableSet* tables) {
  return ovra::ConvertByChannelTablesOnce({source, destination, width, height},
                                          {in_format, out_format}, tables, ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraConvColorCoefSingleStep(
    const uint8_t* source, uint8_t* destination, int32_t width, int32_t height,
    OvraPixelFormatCode in_format, OvraPixelFormatCode out_format,
    const OvraChannelPolynomial* coefficients) {
  return ovra::ConvertByChannelTablesOnce({source, destination, width, height},
                                          {in_format, out_format}, coefficients,
                                          ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraConvColor1DTbl_Free(uintptr_t* handle) {
  return ovra::FreeChannelTables(handle);
}

OVRA_API OvraStatus OVRA_CALL OvraConvColorCoef_Free(uintptr_t* handle) {
  return ovra::FreeChannelTables(handle);
}
