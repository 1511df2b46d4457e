// SPDX-License-Identifier: MIT
// Statuses of colour cubes, per-channel tables, polynomials and matrices, and the lives of handles.
#include <vector>

#include "conformance/statuses.h"

namespace {

using namespace ovra_test;

constexpr OvraPixelFormatCode kRgb10 = 0x122;
constexpr OvraPixelFormatCode kRgb16 = 0x128;
constexpr OvraPixelFormatCode kCmyk = 0x1230;

// The statuses of a family of conversions.
struct Family {
  OvraStatus null;
  OvraStatus zero_size;
  OvraStatus changed;
};

// A source and a destination of two pixels.
struct Pixels {
  alignas(2) uint8_t from[12] = {1, 2, 3, 4, 5, 6};
  alignas(2) uint8_t to[16] = {7, 7, 7, 7, 7, 7, 7};
};

// --- Tables, polynomials, matrices -----------------------------------------------------------

constexpr FormatStatuses kTableFormats = {OVRA_ERROR_TABLE_CHANNELS, OVRA_ERROR_TABLE_DEPTH,
                                          OVRA_ERROR_TABLE_COLOR_MODEL,
                                          OVRA_ERROR_TABLE_ARRANGEMENT};
constexpr FormatStatuses kMatrixFormats = {OVRA_ERROR_MATRIX_CHANNELS, OVRA_ERROR_MATRIX_DEPTH,
                                           OVRA_ERROR_MATRIX_COLOR_MODEL,
                                           OVRA_ERROR_MATRIX_ARRANGEMENT};

// Both words are decoded before either is judged, the input first.
Faults WrongFormats(size_t in, size_t out, const FormatStatuses& statuses) {
  const auto judge = [&statuses](size_t format) {
    return Each(statuses.channels, {{format, 0x30, kChannelsField}}) +
           RefusedFormats(format, statuses) +
           Each(statuses.model, {{format, OVRA_MODEL_GREY, kModelField | kOrderField}});
  };
  return MalformedFormat(in) + MalformedFormat(out) + judge(in) + judge(out);
}

void ExpectInitStatuses(auto* init, auto* free, const auto* parameters, OvraStatus null,
                        const FormatStatuses& formats) {
  enum : size_t { kIn, kOut, kParameters, kHandle };
  uintptr_t handle = 0;
  ExpectStatuses(InitAndFree(init, free, null), std::tuple(kRgb, kRgb, parameters, &handle), {},
                 Nulls(null, {kParameters, kHandle}) + WrongFormats(kIn, kOut, formats));
  EXPECT_EQ(free(nullptr), null);
  EXPECT_EQ(free(&handle), OVRA_OK);
}

void ExpectConversionStatuses(auto* convert, auto given, const Family& family,
                              const FormatStatuses& formats) {
  enum : size_t { kFrom, kTo, kWidth, kHeight, kIn, kOut, kGiven };
  Pixels pixels;
  Faults faults = Nulls(family.null, {kFrom, kTo, kGiven}) +
                  Each(family.zero_size, {{kWidth, 0}, {kHeight, 0}}) +
                  WrongFormats(kIn, kOut, formats);
  if (family.changed != OVRA_OK) {
    // Bits 28 to 31 mean nothing, and are compared.
    faults = faults + Each(family.changed,
                           {{kIn, kRgb | 0x80000000U}, {kOut, kRgb | 0x10000000U}, {kOut, kRgb16}});
  }
  faults = faults + Each(kWritesNothing, {{kWidth, -2}, {kHeight, -1}}) +
           Faults{{kWritesNothing, {{kWidth, kMin}, {kHeight, kMin}}}};
  ExpectStatuses(convert, std::tuple(pixels.from + 0, pixels.to + 0, 2, 1, kRgb, kRgb, given),
                 pixels.to, faults);
}

constexpr Family kTables = {OVRA_ERROR_TABLE_NULL, OVRA_ERROR_TABLE_ZERO_SIZE,
                            OVRA_ERROR_TABLE_FORMAT_CHANGED};
constexpr Family kPolynomials = {OVRA_ERROR_COEFFICIENT_NULL, OVRA_ERROR_COEFFICIENT_ZERO_SIZE,
                                 OVRA_ERROR_FORMAT_CHANGED};
constexpr Family kMatrices = {OVRA_ERROR_MATRIX_NULL, OVRA_ERROR_MATRIX_ZERO_SIZE,
                              OVRA_ERROR_FORMAT_CHANGED};

Family InOneStep(Family family) {
  family.changed = OVRA_OK;
  return family;
}

TEST(Statuses, ChannelTablesAndPolynomials) {
  const std::vector<uint16_t> table(256, 9);
  const OvraChannelTableSet tables = {{table.data(), table.data(), table.data()}};
  const OvraChannelPolynomial polynomials[3] = {{9, 0, 0, 0}};
  ExpectInitStatuses(OvraConvColor1DTbl_Init, OvraConvColorCoef_Free, &tables,
                     OVRA_ERROR_TABLE_NULL, kTableFormats);
  ExpectInitStatuses(OvraConvColorCoef_Init, OvraConvColor1DTbl_Free, polynomials,
                     OVRA_ERROR_TABLE_NULL, kTableFormats);
  uintptr_t handle = 0;
  ASSERT_EQ(OvraConvColor1DTbl_Init(kRgb, kRgb, &tables, &handle), OVRA_OK);
  ExpectConversionStatuses(OvraConvColor1DTbl, handle, kTables, kTableFormats);
  ExpectConversionStatuses(OvraConvColorCoef, handle, kPolynomials, kTableFormats);
  EXPECT_EQ(OvraConvColor1DTbl_Free(&handle), OVRA_OK);
  const OvraChannelTableSet* const set = &tables;
  ExpectConversionStatuses(OvraConvColor1DTblSingleStep, set, InOneStep(kTables), kTableFormats);
  ExpectConversionStatuses(OvraConvColorCoefSingleStep, polynomials + 0, InOneStep(kPolynomials),
                           kTableFormats);
  // Each of the tables, after the sizes and before the formats.
  Pixels pixels;
  const auto convert = [&pixels](const uint16_t* t0, const uint16_t* t1, const uint16_t* t2,
                                 OvraPixelFormatCode format, int32_t width) {
    const OvraChannelTableSet given = {{t0, t1, t2}};
    const OvraStatus status =
        OvraConvColor1DTblSingleStep(pixels.from, pixels.to, width, 1, format, kRgb, &given);
    uintptr_t none = 77;
    if (status == OVRA_ERROR_TABLE_NULL_TABLE) {
      EXPECT_EQ(OvraConvColor1DTbl_Init(format, kRgb, &given, &none), status);
      EXPECT_EQ(none, 0U);
    }
    return status;
  };
  const uint16_t* const t = table.data();
  ExpectStatuses(convert, std::tuple(t, t, t, kRgb, 2), pixels.to,
                 Each(OVRA_ERROR_TABLE_ZERO_SIZE, {{4, 0}}) +
                     Faults{{OVRA_ERROR_TABLE_NULL_TABLE, {{0, nullptr}, {4, 2}}}} +
                     Nulls(OVRA_ERROR_TABLE_NULL_TABLE, {1, 2}) +
                     Each(OVRA_ERROR_TABLE_CHANNELS, {{3, 0x110}}));
}

TEST(Statuses, Matrices) {
  const OvraColorMatrix matrix = {{{1}, {0, 1}, {0, 0, 1}}, 0};
  const OvraColorMatrix* const given = &matrix;
  ExpectInitStatuses(OvraConvColorMtx_Init, OvraConvColorMtx_Free, given, OVRA_ERROR_MATRIX_NULL,
                     kMatrixFormats);
  uintptr_t handle = 0;
  ASSERT_EQ(OvraConvColorMtx_Init(kRgb, kRgb, &matrix, &handle), OVRA_OK);
  ExpectConversionStatuses(OvraConvColorMtx, handle, kMatrices, kMatrixFormats);
  EXPECT_EQ(OvraConvColorMtx_Free(&handle), OVRA_OK);
  ExpectConversionStatuses(OvraConvColorMtxSingleStep, given, InOneStep(kMatrices), kMatrixFormats);
}

// --- Cubes -----------------------------------------------------------------------------------

const uint16_t kGrid[2] = {0, 255};

class CubeStatuses : public testing::Test {
 protected:
  uint16_t lattice_[8 * 4] = {1, 2, 3, 4};
  const OvraColorCube cube_ = {2, kGrid, 2, kGrid, 2, kGrid, lattice_};
  Pixels pixels_;
};

Faults Without(OvraStatus status, Faults faults) {
  std::erase_if(faults, [status](const Fault& fault) { return fault.status == status; });
  return faults;
}

// What chooses the variant is looked at before all else.
Faults RefusedDispatch(size_t in, size_t out) {
  return {{OVRA_ERROR_FORMAT_DEPTH, {{in, 0x0F, kDepthField}}},
          {OVRA_ERROR_FORMAT_DEPTH, {{in, 0x0A, kDepthField}}},
          {OVRA_ERROR_FORMAT_CHANNELS, {{out, 0xF0, kChannelsField}, {in, 0, kDepthField}}}};
}

// The rest, by the rules of the variant: 8-bit input first, then deeper one.
Faults RefusedByCubes(size_t in, size_t out) {
  return Without(OVRA_ERROR_FORMAT_DEPTH, MalformedFormat(in)) +
         Without(OVRA_ERROR_FORMAT_CHANNELS, MalformedFormat(out)) +
         Each(OVRA_ERROR_CUBE_CHANNELS, {{in, 0x30, kChannelsField}, {in, 0x00, kChannelsField}}) +
         Each(OVRA_ERROR_CUBE_INPUT_DEPTH, {{in, 0x29, kDepthField | kChannelsField}}) +
         Each(OVRA_ERROR_CUBE_COLOR_MODEL,
              {{in, OVRA_MODEL_GREY, 0xFF0F}, {in, OVRA_MODEL_TRIPLE_4, kModelField}}) +
         Each(OVRA_ERROR_CUBE_ARRANGEMENT,
              {{in, 0x20000 | OVRA_MODEL_BGR, kArrangementField | kModelField}}) +
         Faults{{OVRA_ERROR_CUBE_CHANNELS, {{out, 0x10, kChannelsField}, {in, kRgb}}}} +
         Each(OVRA_ERROR_CUBE_CHANNELS, {{out, 0x00, kChannelsField}}) +
         Each(OVRA_ERROR_CUBE_DEPTH,
              {{out, 0x25, kDepthField | kChannelsField}, {out, 9, kDepthField}}) +
         Each(OVRA_ERROR_CUBE_COLOR_MODEL,
              {{out, OVRA_MODEL_CMYK | 0x20, 0xFFFF}, {out, OVRA_MODEL_RGBA | 0x30, 0xFFFF}}) +
         Faults{{OVRA_ERROR_CUBE_ARRANGEMENT, {{in, kRgb}, {out, 0x10000 | kCmyk}}},
                {OVRA_ERROR_CUBE_COLOR_MODEL, {{in, kRgb10}, {out, 0x115}}},
                {OVRA_ERROR_CUBE_COLOR_MODEL, {{in, kRgb10}, {out, 0x130}}},
                {OVRA_ERROR_CUBE_DEPTH, {{in, kRgb10}, {out, kRgb16}}},
                {OVRA_ERROR_CUBE_ARRANGEMENT, {{in, kRgb10}, {out, 0x10000 | kCmyk}}},
                {OVRA_OK, {{in, kRgb10}, {out, kCmyk}}},
                {OVRA_OK, {{out, 0x324}}}};
}

TEST_F(CubeStatuses, Init) {
  enum : size_t { kIn, kOut, kCube, kHandle };
  uintptr_t handle = 0;
  const OvraColorCube* const cube = &cube_;
  ExpectStatuses(InitAndFree(OvraConvColorCube_Init, OvraConvColorCube_Free),
                 std::tuple(kRgb, kRgb, cube, &handle), {},
                 Nulls(OVRA_ERROR_CUBE_NULL, {kHandle}) + RefusedDispatch(kIn, kOut) +
                     Faults{{OVRA_ERROR_CUBE_NULL, {{kCube, nullptr}, {kOut, kRgb}}}} +
                     RefusedByCubes(kIn, kOut));
  EXPECT_EQ(OvraConvColorCube_Free(nullptr), OVRA_ERROR_CUBE_NULL);
  EXPECT_EQ(OvraConvColorCube_Free(&handle), OVRA_ERROR_CUBE_NULL);
}

TEST_F(CubeStatuses, Records) {
  enum : size_t { kCount0, kGrid0, kCount1, kGrid1, kCount2, kGrid2, kLattice };
  const auto init = [](auto... record) {
    const OvraColorCube cube = {record...};
    uintptr_t handle = 77;
    const OvraStatus status = OvraConvColorCube_Init(kRgb, kRgb, &cube, &handle);
    EXPECT_EQ(handle != 0, status == OVRA_OK);
    if (handle != 0) OvraConvColorCube_Free(&handle);
    return status;
  };
  Faults faults = Each(OVRA_ERROR_CUBE_GRID_COUNT, {{kCount0, 0}, {kCount1, 1}, {kCount2, 0}}) +
                  Nulls(OVRA_ERROR_CUBE_NULL_GRID, {kGrid0, kGrid1, kGrid2}) +
                  Faults{{OVRA_ERROR_CUBE_NULL,
                          {{kLattice, nullptr}, {kCount0, 2}, {kCount1, 2}, {kCount2, 2}}}};
  // Products that are small, or 0, modulo 2^32 or 2^64.
  for (const uint32_t count : {65537U, 0x80000001U, 0xFFFFFFFFU}) {
    faults.push_back(
        {OVRA_ERROR_NO_MEMORY, {{kCount0, count}, {kCount1, count}, {kCount2, count}}});
  }
  for (const size_t count : {kCount0, kCount1, kCount2}) {
    faults.push_back(
        {OVRA_ERROR_CUBE_GRID_COUNT, {{kCount0, 2}, {kCount1, 2}, {kCount2, 2}, {count, 65537}}});
  }
  ExpectStatuses(init, std::tuple(2U, kGrid + 0, 2U, kGrid + 0, 2U, kGrid + 0, lattice_ + 0), {},
                 faults);
}

TEST_F(CubeStatuses, Conversion) {
  enum : size_t { kFrom, kTo, kWidth, kHeight, kIn, kOut, kGiven };
  uintptr_t handle = 0;
  ASSERT_EQ(OvraConvColorCube_Init(kRgb, kRgb, &cube_, &handle), OVRA_OK);
  ExpectStatuses(
      OvraConvColorCube, std::tuple(pixels_.from + 0, pixels_.to + 0, 2, 1, kRgb, kRgb, handle),
      pixels_.to,
      Each(OVRA_ERROR_CUBE_NULL, {{kGiven, 0}}) + RefusedDispatch(kIn, kOut) +
          Nulls(OVRA_ERROR_CUBE_NULL, {kFrom, kTo}) +
          Each(OVRA_ERROR_CUBE_ZERO_SIZE, {{kWidth, 0}, {kHeight, 0}}) +
          Each(OVRA_ERROR_CUBE_FORMAT_CHANGED, {{kIn, 0x220}, {kOut, 0x124}, {kIn, 0x80000120U}}) +
          Each(kWritesNothing, {{kWidth, -2}, {kHeight, -2}}) +
          Faults{{kWritesNothing, {{kWidth, kMin}, {kHeight, kMin}}}});
  EXPECT_EQ(OvraConvColorCube_Free(&handle), OVRA_OK);
  EXPECT_EQ(handle, 0U);
  const OvraColorCube* const cube = &cube_;
  ExpectStatuses(OvraConvColorCubeSingleStep,
                 std::tuple(pixels_.from + 0, pixels_.to + 0, 1, 1, kRgb, kRgb, cube), pixels_.to,
                 Nulls(OVRA_ERROR_CUBE_NULL, {kGiven}) + RefusedDispatch(kIn, kOut) +
                     Faults{{OVRA_ERROR_CUBE_NULL, {{kFrom, nullptr}, {kIn, 0}, {kOut, 0}}}} +
                     Nulls(OVRA_ERROR_CUBE_NULL, {kTo}) +
                     Each(OVRA_ERROR_CUBE_ZERO_SIZE, {{kWidth, 0}, {kHeight, 0}}) +
                     RefusedByCubes(kIn, kOut));
}

// A call names a variant by its own formats; that variant's rules judge the handle's.
TEST_F(CubeStatuses, HandlesOfAnotherVariant) {
  const struct {
    OvraPixelFormatCode made_in, made_out, in, out;
    OvraStatus status;
  } cases[] = {
      {kRgb, kRgb, 0, kRgb, OVRA_ERROR_CUBE_FORMAT_CHANGED},
      {kRgb, kRgb, kRgb16, kRgb, OVRA_ERROR_CUBE_FORMAT_CHANGED},
      {0x124, kRgb, kRgb, kRgb, OVRA_ERROR_CUBE_FORMAT_CHANGED},
      {kRgb16, kRgb, kRgb, kRgb, OVRA_ERROR_CUBE_DEPTH},
      {kRgb, kRgb, kRgb, kCmyk, OVRA_ERROR_CUBE_COLOR_MODEL},
      {kRgb, kCmyk, kRgb, kRgb, OVRA_ERROR_CUBE_CHANNELS},
      {kRgb16, kCmyk, kRgb16, kRgb, OVRA_ERROR_CUBE_COLOR_MODEL},
      {kRgb16, kCmyk, kRgb16, kCmyk, OVRA_OK},
  };
  for (const auto& c : cases) {
    uintptr_t handle = 0;
    ASSERT_EQ(OvraConvColorCube_Init(c.made_in, c.made_out, &cube_, &handle), OVRA_OK);
    EXPECT_EQ(OvraConvColorCube(pixels_.from, pixels_.to, 1, 1, c.in, c.out, handle), c.status)
        << &c - cases;
    EXPECT_EQ(OvraConvColorCube_Free(&handle), OVRA_OK);
  }
}

TEST_F(CubeStatuses, Cascade) {
  enum : size_t { kCount0, kGrid0, kCount1, kGrid1, kCount2, kGrid2, kLattice };
  uint16_t nodes[24] = {5, 6, 7};
  const auto cascade = [](auto n0, auto g0, auto n1, auto g1, auto n2, auto g2, auto nodes_of_first,
                          auto n, auto g, auto last_n, auto last_g, auto nodes_of_second,
                          bool has_first, bool has_second) {
    const OvraColorCube first = {n0, g0, n1, g1, n2, g2, nodes_of_first};
    const OvraColorCube second = {n, g, 2, kGrid, last_n, last_g, nodes_of_second};
    return OvraCascade3D(has_first ? &first : nullptr, has_second ? &second : nullptr);
  };
  enum : size_t { kCount = 7, kGridOfSecond, kLastCount, kLastGrid, kSecondLattice, kHas, kHas2 };
  const uint16_t* const g = kGrid;
  Faults faults = Each(OVRA_ERROR_CASCADE_NULL, {{kHas, 0}, {kHas2, 0}, {kLattice, nullptr}});
  const auto add_axis = [&faults](size_t count, size_t grid) {
    faults = faults + Each(OVRA_ERROR_CASCADE_GRID_COUNT, {{count, 0}}) +
             Nulls(OVRA_ERROR_CASCADE_NULL_GRID, {grid});
  };
  for (const size_t axis : {kCount0, kCount1, kCount2}) add_axis(axis, axis + 1);
  faults = faults + Nulls(OVRA_ERROR_CASCADE_NULL, {kSecondLattice});
  add_axis(kCount, kGridOfSecond);
  add_axis(kLastCount, kLastGrid);
  faults = faults + Each(OVRA_ERROR_CASCADE_CONVERSION, {{kCount, 1}});
  // More nodes than an image is wide.
  for (const auto& [count0, count1, count2] : {std::tuple(0x80000000U, 2U, 2U),
                                               {0x40000001U, 2U, 2U},
                                               {65536U, 65536U, 2U},
                                               {65536U, 65536U, 65536U},
                                               {3U, 0x55555556U, 0xC0000000U}}) {
    faults.push_back({OVRA_ERROR_CASCADE_CONVERSION,
                      {{kCount0, count0}, {kCount1, count1}, {kCount2, count2}, {kCount, 2}}});
  }
  ExpectStatuses(cascade,
                 std::tuple(2U, g, 2U, g, 2U, g, nodes + 0, 2U, g, 2U, g, lattice_ + 0, true, true),
                 std::span(reinterpret_cast<uint8_t*>(nodes), sizeof nodes), faults);
}

}  // namespace
