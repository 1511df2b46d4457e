// SPDX-License-Identifier: MIT
#include "color/channel_tables.h"

#include <utility>

#include "color/channel_tables_kernels.h"
#include "color/handle.h"
#include "core/work_memory.h"

namespace ovra {
namespace {

static_assert(sizeof(ChannelPolynomial) == 32);

constexpr int kChannels = 3;

// What a handle stands for.
struct ChannelTables {
  FormatPair formats;
  WorkMemory<uint16_t> table[kChannels];  // an entry for every value of the input depth
};

Status Accept(const FormatPair& formats, DecodedFormatPair* decoded) {
  constexpr FormatRules kRules = {
      .channels = NumberSet::Of(kChannels),
      .channels_refused = OVRA_ERROR_TABLE_CHANNELS,
      .depths_bits = NumberSet::Between(8, 16),
      .depth_refused = OVRA_ERROR_TABLE_DEPTH,
      .accepts_model = IsRgbBgrOrYcc,
      .model_refused = OVRA_ERROR_TABLE_COLOR_MODEL,
      .arrangement_refused = OVRA_ERROR_TABLE_ARRANGEMENT,
  };
  return AcceptFormats(formats, kRules, kRules, decoded);
}

// Makes the tables whose entries are entry(channel, value, greatest entry).
template <class Entry>
Status MakeTables(const FormatPair& formats, const Entry& entry, ContextPtr<ChannelTables>* made) {
  DecodedFormatPair decoded;
  const Status status = Accept(formats, &decoded);
  if (status != OVRA_OK) return status;
  ContextPtr<ChannelTables> context = MakeContext<ChannelTables>();
  if (context == nullptr) return OVRA_ERROR_NO_MEMORY;
  context->formats = formats;
  const uint32_t last = decoded.input.MaxSample();
  for (int k = 0; k < kChannels; ++k) {
    WorkMemory<uint16_t>& table = context->table[k];
    if (!table.Allocate(uint64_t{last} + 1)) return OVRA_ERROR_NO_MEMORY;
    for (uint32_t v = 0; v <= last; ++v) table[v] = entry(k, v, decoded.output.MaxSample());
  }
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

SampleTables PrepareTables(const ChannelTables& context, const DecodedFormatPair& formats) {
  SampleTables tables = {};
  const bool reversed = formats.input.color_model == OVRA_MODEL_BGR;
  for (int k = 0; k < kChannels; ++k) {
    tables.table[k] = context.table[reversed ? kChannels - 1 - k : k].data();
  }
  tables.last = formats.input.MaxSample();
  if (formats.input.depth_bits == 8 && formats.output.depth_bits == 8) {
    for (int k = 0; k < kChannels; ++k) {
      for (int v = 0; v < 256; ++v) tables.bytes[k][v] = static_cast<uint8_t>(tables.table[k][v]);
    }
  }
  return tables;
}

template <class In, class Out>
void ConvertRows(const ImagePair& images, const DecodedFormatPair& formats,
                 const SampleTables& tables, KernelTier tier) {
  MapChannelsRow<In, Out>* const map_row = SelectMapChannels<In, Out>(tier);
  ForEachRow(images, formats, [&](const uint8_t* source, uint8_t* destination) {
    map_row(reinterpret_cast<const In*>(source), reinterpret_cast<Out*>(destination), images.width,
            tables);
  });
}

Status Convert(const ImagePair& images, const FormatPair& formats, const ChannelTables& context,
               const ChannelTableStatuses& statuses, KernelTier tier) {
  DecodedFormatPair decoded;
  const Status status = Accept(formats, &decoded);
  if (status != OVRA_OK) return status;
  if (formats != context.formats) return statuses.format_changed;
  const SampleTables tables = PrepareTables(context, decoded);
  WithSampleTypes(
      decoded, [&]<class In, class Out>() { ConvertRows<In, Out>(images, decoded, tables, tier); });
  return OVRA_OK;
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
  if (status != OVRA_OK) return status;
  return Convert(images, formats, *context, statuses, tier);
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
  if (images.HasNull() || handle == 0) return statuses.null;
  if (images.HasZeroSide()) return statuses.zero_size;
  return Convert(images, formats, *ContextOf<ChannelTables>(handle), statuses, tier);
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
  ReleaseHandle<ChannelTables>(handle);
  return OVRA_OK;
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

OVRA_API OvraStatus OVRA_CALL OvraConvColor1DTbl(const uint8_t* src, uint8_t* dst, int32_t width,
                                                 int32_t height, OvraPixelFormatCode in_format,
                                                 OvraPixelFormatCode out_format, uintptr_t handle) {
  return ovra::ConvertByChannelTables({src, dst, width, height}, {in_format, out_format}, handle,
                                      ovra::kTableStatuses, ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraConvColorCoef(const uint8_t* src, uint8_t* dst, int32_t width,
                                                int32_t height, OvraPixelFormatCode in_format,
                                                OvraPixelFormatCode out_format, uintptr_t handle) {
  return ovra::ConvertByChannelTables({src, dst, width, height}, {in_format, out_format}, handle,
                                      ovra::kCoefficientStatuses, ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraConvColor1DTblSingleStep(const uint8_t* src, uint8_t* dst,
                                                           int32_t width, int32_t height,
                                                           OvraPixelFormatCode in_format,
                                                           OvraPixelFormatCode out_format,
                                                           const OvraChannelTableSet* tables) {
  return ovra::ConvertByChannelTablesOnce({src, dst, width, height}, {in_format, out_format},
                                          tables, ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraConvColorCoefSingleStep(
    const uint8_t* src, uint8_t* dst, int32_t width, int32_t height, OvraPixelFormatCode in_format,
    OvraPixelFormatCode out_format, const OvraChannelPolynomial* coefficients) {
  return ovra::ConvertByChannelTablesOnce({src, dst, width, height}, {in_format, out_format},
                                          coefficients, ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraConvColor1DTbl_Free(uintptr_t* handle) {
  return ovra::FreeChannelTables(handle);
}

OVRA_API OvraStatus OVRA_CALL OvraConvColorCoef_Free(uintptr_t* handle) {
  return ovra::FreeChannelTables(handle);
}
