// SPDX-License-Identifier: MIT
// The built program as a user runs it.
#include "tools/run_program.h"

#include <sstream>

#include "ovra/filter.h"

namespace {

using ovra_host::FileFormat;
using ovra_host::Image;
using ovra_test::Bytes;
using ovra_test::FileBytes;
using ovra_test::ProgramTest;
using ovra_test::RunResult;

TEST_F(ProgramTest, HelpHasAnExampleForEveryCommand) {
  const RunResult all = Run("--help");
  EXPECT_EQ(all.exit_code, 0);
  const size_t list = all.output.find("Subcommands:\n");
  ASSERT_NE(list, std::string::npos);
  std::istringstream lines(all.output.substr(list));
  std::string line;
  std::getline(lines, line);
  int commands = 0;
  for (; std::getline(lines, line) && !line.empty();) {
    if (line.rfind("   ", 0) == 0) continue;  // a description that runs on
    const std::string name = line.substr(2, line.find(' ', 2) - 2);
    const RunResult help = Run(name + " --help");
    EXPECT_EQ(help.exit_code, 0) << name;
    EXPECT_NE(help.output.find("\n  ovra " + name + " "), std::string::npos) << name;
    ++commands;
  }
  EXPECT_GE(commands, 4);
}

TEST_F(ProgramTest, InfoTellsWhatTheFileIs) {
  Write("a.tif", Counting(16, 3));
  const RunResult result = Run("info a.tif");
  EXPECT_EQ(result.exit_code, 0);
  for (const char* text : {"2 x 3 pixels", "3 (RGB)", "16 bits", "0x00000128", "12 bytes"}) {
    EXPECT_NE(result.output.find(text), std::string::npos) << text << "\n" << result.output;
  }
}

// Each failure is told in one line, in the user's words.
TEST_F(ProgramTest, SaysWhatIsWrong) {
  Write("a.png", Counting(8, 3));
  Write("b.png", Counting(8, 1));
  const struct {
    const char* arguments;
    const char* text;
  } cases[] = {
      {"rotat a.png b.png", "did you mean rotate?"},
      {"blur a.png b.png", "there is no command \"blur\"; see ovra --help"},
      {"resize --hight 3 a.png c.png", "resize has no option --hight; did you mean --height?"},
      {"rotate --mode left a.png", "a name for the result is missing"},
      {"rotate --mode left a.png b.png c.png", "-o FOLDER"},
      {"rotate --mode left a.png b.png -o c.png", "two results would be named c.png"},
      {"rotate --mode left a.png b.png -o .", "would replace its own input"},
      {"rotate --mode left --quality 50 a.png c.png", "--quality is for JPEG"},
      {"canvas --size 9x9 --fill 300 a.png c.png", "300 is beyond 255"},
      {"canvas --size 9x9 --fill 1,,2 a.png c.png", "is not N or N,N,N"},
  };
  for (const auto& c : cases) ExpectFailure(c.arguments, c.text);
  EXPECT_EQ(folder_.FileCount(), 2U);
  EXPECT_EQ(Run("help rotate").output, Run("rotate --help").output);
  const char* const full_disk = "! '" OVRA_PROGRAM "' --help >/dev/full 2>/dev/null";
  EXPECT_EQ(Run("--version", full_disk).exit_code, 0);
}

TEST_F(ProgramTest, WorksOnSeveralPictures) {
  for (const char* name : {"a.png", "b.png", "c.png"}) Write(name, Counting(8, 3));
  WriteText("broken.png", "no picture");
  const RunResult result =
      Run("rotate --mode left a.png broken.png b.png c.png -o 'out/%s-left.tif' --jobs 3");
  EXPECT_NE(result.exit_code, 0);
  EXPECT_EQ(result.errors,
            "ovra: broken.png: is not a PNG, JPEG, TIFF or BMP file\n"
            "ovra: 1 of 4 pictures failed\n");
  for (const char* name : {"a", "b", "c"}) {
    EXPECT_EQ(Read(std::string("out/") + name + "-left.tif").width(), 3) << name;
  }
}

// Grey stands in three channels, alpha is put back, deep samples keep what is not changed.
TEST_F(ProgramTest, EveryCommandTakesEveryKindOfPicture) {
  WriteText("same.cube", "LUT_1D_SIZE 2\n0 0 0\n1 1 1\n");
  for (const char* command :
       {"rotate --mode half", "resize --width 30", "canvas --size 60x60 --fill 9", "smooth",
        "softfocus", "sharpen", "sharpen --double", "lut --cube same.cube", "curve --gamma 1",
        "matrix --saturation 1"}) {
    for (const uint32_t depth_bits : {8U, 16U}) {
      for (const uint32_t channels : {1U, 3U, 4U}) {
        Image image(40, 40, FileFormat(depth_bits, channels));
        std::fill_n(image.data(), image.size_bytes(), uint8_t{77});
        Write("a.png", image);
        const RunResult run = Run(std::string(command) + " a.png b.png");
        ASSERT_EQ(run.exit_code, 0) << command << depth_bits << channels << run.errors;
        const Image result = Read("b.png");
        EXPECT_EQ(result.depth_bits(), depth_bits) << command;
        EXPECT_TRUE(result.channels() == channels || result.channels() == 3) << command;
        EXPECT_NEAR(result.Row(20)[81], 77, 1) << command << depth_bits << channels;
      }
    }
  }
}

TEST_F(ProgramTest, RotatesByNameAndByNumber) {
  const Image image = Counting(8, 1);  // 1 2 / 3 4 / 5 6
  Write("a.png", image);
  ASSERT_EQ(Run("rotate --mode left a.png left.tif").exit_code, 0);
  ASSERT_EQ(Run("rotate --mode 3 a.png right.png").exit_code, 0);
  EXPECT_EQ(Bytes(Read("left.tif")), (std::vector<uint8_t>{2, 4, 6, 1, 3, 5}));
  EXPECT_EQ(Bytes(Read("right.png")), (std::vector<uint8_t>{5, 3, 1, 6, 4, 2}));
  EXPECT_EQ(Read("left.tif").width(), 3);
}

TEST_F(ProgramTest, ResizesToTheSizeAskedFor) {
  Image image(40, 20, FileFormat(16, 3));
  for (int32_t y = 0; y < 20; ++y)
    std::fill_n(image.Row16(y), 120, static_cast<uint16_t>(y * 3000));
  Write("a.tif", image);
  const struct {
    const char* options;
    int32_t width;
    int32_t height;
  } cases[] = {{"--width 60", 60, 30},
               {"--height 5", 10, 5},
               {"--width 12 --height 30", 12, 30},
               {"--scale 0.05", 2, 1},
               {"--fit 60x60", 60, 30},
               {"--fit 60x15", 30, 15},
               {"--crop 3,5,10,8", 10, 8},
               {"--crop 3,5,10,8 --scale 2.5", 25, 20}};
  for (const auto& c : cases) {
    ASSERT_EQ(Run(std::string("resize a.tif b.tif ") + c.options).exit_code, 0) << c.options;
    const Image result = Read("b.tif");
    EXPECT_EQ(result.width(), c.width) << c.options;
    EXPECT_EQ(result.height(), c.height) << c.options;
    EXPECT_EQ(result.format(), image.format()) << c.options;
  }
  ASSERT_EQ(Run("resize a.tif b.tif --crop 3,5,10,8").exit_code, 0);
  EXPECT_EQ(Read("b.tif").Row16(2)[0], 7 * 3000);  // a part without a size stays as it is
  ExpectFailure("resize a.tif b.tif --crop 35,5,10,8", "(status 114)");
  ExpectFailure("resize a.tif b.tif --scale 0.5 --fit 9x9", "--fit");
  ExpectFailure("resize a.tif b.tif --width 0", "--width");
}

TEST_F(ProgramTest, PlacesOnACanvas) {
  Write("a.png", Counting(8, 1));
  ASSERT_EQ(Run("canvas --size 4x3 --offset 2,0 --fill 9 a.png b.png").exit_code, 0);
  EXPECT_EQ(Bytes(Read("b.png")), (std::vector<uint8_t>{9, 9, 1, 2, 9, 9, 3, 4, 9, 9, 5, 6}));
  ASSERT_EQ(Run("canvas --size 4x5 a.png b.png").exit_code, 0);  // in the middle
  EXPECT_EQ(Read("b.png").Row(1)[1], 1);
  Write("c.tif", Counting(16, 3));
  ASSERT_EQ(Run("canvas --size 3x3 --offset 1,0 --fill 1000,2000,60000 c.tif d.tif").exit_code, 0);
  const Image wide = Read("d.tif");
  EXPECT_EQ(std::vector<uint16_t>(wide.Row16(0), wide.Row16(0) + 3),
            (std::vector<uint16_t>{1000, 2000, 60000}));
  ExpectFailure("canvas --size 1x3 --offset 0,0 a.png b.png", "(status 194)");
  ExpectFailure("canvas --size 4x5 --offset -1,0 a.png b.png", "(status 194)");
  ExpectFailure("canvas --size 4x5 --fill 1,2 a.png b.png", "--fill");
  ExpectFailure("canvas --size 4x5 --fill 70000 a.png b.png", "70000");
  ExpectFailure("canvas --size 4by5 a.png b.png", "4by5");
}

TEST_F(ProgramTest, ComposesByCopyAlphaAndMask) {
  Image background(2, 1, FileFormat(8, 3));
  Image overlay(1, 1, FileFormat(8, 3));
  Image alpha(1, 1, FileFormat(8, 4));
  Image mask(1, 1, FileFormat(8, 1));
  for (int c = 0; c < 3; ++c) overlay.data()[c] = alpha.data()[c] = 200;
  alpha.data()[3] = mask.data()[0] = 63;  // a quarter
  Write("back.png", background);
  Write("over.png", overlay);
  Write("alpha.png", alpha);
  Write("mask.png", mask);
  const struct {
    const char* arguments;
    uint8_t left;
    uint8_t right;
  } cases[] = {{"over.png out.png --at 1,0", 0, 200},
               {"alpha.png out.png", 50, 0},
               {"alpha.png out.png --weight-of background", 150, 0},
               {"over.png out.png --at 1,0 --mask mask.png", 0, 50},
               {"over.png out.png --at -1,0", 0, 0}};
  for (const auto& c : cases) {
    ASSERT_EQ(Run(std::string("compose back.png ") + c.arguments).exit_code, 0) << c.arguments;
    const Image result = Read("out.png");
    EXPECT_EQ(result.data()[0], c.left) << c.arguments;
    EXPECT_EQ(result.data()[5], c.right) << c.arguments;
  }
  ExpectFailure("compose mask.png alpha.png out.png", "(status 228)");
  ExpectFailure("compose back.png over.png out.png --mask back.png", "mask");
}

// Each command hands its options over: compared with calls of the library.
TEST_F(ProgramTest, SmoothsAndSoftens) {
  Image image(30, 20, FileFormat(8, 3));
  for (size_t i = 0; i < image.size_bytes(); ++i) {
    image.data()[i] = static_cast<uint8_t>(i * i % 37 * 6);
  }
  Write("a.png", image);
  Image expected(30, 20, FileFormat(8, 3));
  ASSERT_EQ(OvraEFilterImage(image.data(), expected.data(), 30, 20, image.format()), OVRA_OK);
  ASSERT_EQ(Run("smooth a.png b.png").exit_code, 0);
  EXPECT_EQ(Bytes(Read("b.png")), Bytes(expected));
  OvraSoftFocusParams params = {};
  params.radius = 500;
  params.decay_exponent = 1;
  params.decay_base = 0.2;
  params.mix = 0.8;
  ASSERT_EQ(OvraSoftFocus(image.data(), expected.data(), 30, 20, &params), OVRA_OK);
  ASSERT_EQ(Run("softfocus --radius 500 --decay 0.2 --mix 0.8 a.png b.png").exit_code, 0);
  EXPECT_EQ(Bytes(Read("b.png")), Bytes(expected));
  ExpectFailure("softfocus --decay 1 a.png b.png", "--decay");
}

TEST_F(ProgramTest, ShowsDifferences) {
  Image first(4, 1, FileFormat(8, 1));
  Image second(4, 1, FileFormat(8, 1));
  const uint8_t changes[] = {0, 1, 9, 80};
  for (size_t i = 0; i < 4; ++i) {
    first.data()[i] = 100;
    second.data()[i] = static_cast<uint8_t>(100 + changes[i]);
  }
  Write("a.png", first);
  Write("b.png", second);
  ASSERT_EQ(Run("difference --gain 10 a.png b.png d.png").exit_code, 0);
  EXPECT_EQ(Bytes(Read("d.png")), (std::vector<uint8_t>{128, 138, 218, 255}));
  ASSERT_EQ(Run("difference --gain 10 b.png a.png d.png").exit_code, 0);
  EXPECT_EQ(Bytes(Read("d.png")), (std::vector<uint8_t>{128, 118, 38, 0}));
  Write("c.tif", Counting(16, 1));
  ASSERT_EQ(Run("difference c.tif c.tif d.tif").exit_code, 0);
  EXPECT_EQ(*Read("d.tif").Row16(2), 32768);
  ExpectFailure("difference a.png c.tif d.png", "one size and format");
}

// The options are handed over: compared with calls of the library.
TEST_F(ProgramTest, Sharpens) {
  Image image(30, 20, FileFormat(8, 3));
  for (size_t i = 0; i < image.size_bytes(); ++i) {
    image.data()[i] = static_cast<uint8_t>(i * i % 37 * 6);
  }
  Write("a.png", image);
  const int32_t taps[] = {10, 30, 48, 30, 10};
  const OvraResponsePoint levels[] = {{0.0, 0.5}, {1.0, 1.5}};
  const OvraResponsePoint differences[] = {{-1.0, 1.0}, {0.0, 0.25}, {1.0, 0.75}};
  std::vector<int16_t> level(OVRA_LEVEL_TABLE_SIZE);
  std::vector<int16_t> difference(OVRA_DIFFERENCE_TABLE_SIZE);
  ASSERT_EQ(
      OvraYUsmMakeTable(image.format(), 2, levels, 3, differences, level.data(), difference.data()),
      OVRA_OK);
  const std::string options =
      "--taps 10,30,48,30,10 --level 0:0.5,1:1.5 --difference -1:1,0:0.25,1:0.75 ";

  Image expected = image;
  ASSERT_EQ(OvraYUsmSingleStep(image.data(), expected.data(), 30, 20, image.format(), 5, taps, 3.0F,
                               level.data(), difference.data()),
            OVRA_OK);
  ASSERT_EQ(Run("sharpen --amount 3 " + options + "a.png b.png").exit_code, 0);
  EXPECT_EQ(Bytes(Read("b.png")), Bytes(expected));

  const int32_t coarse[] = {16, 16, 16, 32, 16, 16, 16};
  ASSERT_EQ(OvraYUsmDoubleSingleStep(image.data(), expected.data(), 30, 20, image.format(), 7,
                                     coarse, 5, taps, 1.5F, level.data(), difference.data(), 3.0F,
                                     level.data(), difference.data()),
            OVRA_OK);
  ASSERT_EQ(Run("sharpen --double --amount 3 --coarse-amount 1.5 " + options +
                "--coarse-taps 16,16,16,32,16,16,16 a.png b.png")
                .exit_code,
            0);
  EXPECT_EQ(Bytes(Read("b.png")), Bytes(expected));
}

// A sample that the mask leaves alone keeps the bits that the mask does not see.
TEST_F(ProgramTest, SharpensSixteenBits) {
  Image image(40, 40, FileFormat(16, 3));
  for (int32_t y = 0; y < 40; ++y) {
    for (size_t i = 0; i < 120; ++i) image.Row16(y)[i] = i < 60 ? 12345 : 45679;
  }
  Write("a.png", image);
  ASSERT_EQ(Run("sharpen --radius 1 a.png b.png").exit_code, 0);
  const Image sharp = Read("b.png");
  ASSERT_EQ(sharp.format(), image.format());
  EXPECT_EQ(sharp.Row16(20)[0], 12345);
  EXPECT_EQ(sharp.Row16(20)[119], 45679);
  EXPECT_LT(sharp.Row16(20)[59], 12345);
  EXPECT_GT(sharp.Row16(20)[60], 45679);
  EXPECT_EQ((sharp.Row16(20)[59] - 12345) % 4, 0);
}

TEST_F(ProgramTest, SharpenShowsWhatItUses) {
  Write("a.png", Image(40, 40, FileFormat(8, 3)));
  const RunResult result = Run("sharpen --double --radius 0.6 --show a.png b.png");
  EXPECT_EQ(result.exit_code, 0);
  for (const char* text :
       {"coarse taps ", "coarse difference ", "fine amount 1.8\n", "fine level 0:1,1:1\n"}) {
    EXPECT_NE(result.output.find(text), std::string::npos) << text << "\n" << result.output;
  }
}

TEST_F(ProgramTest, SharpenRefuses) {
  Write("a.png", Image(40, 40, FileFormat(8, 3)));
  Write("deep.png", Image(40, 40, FileFormat(16, 3)));
  Write("tiny.png", Counting(8, 3));
  ExpectFailure("sharpen --taps 1,2,1 a.png b.png", "sum to 4");
  ExpectFailure("sharpen --level 0:1 a.png b.png", "--level");
  ExpectFailure("sharpen --level 0:1,1:x a.png b.png", "--level");
  ExpectFailure("sharpen --difference 0:1,0:2 a.png b.png", "(status 126)");
  ExpectFailure("sharpen --coarse-amount 2 a.png b.png", "--double");
  ExpectFailure("sharpen --amount 20 --difference -1:99,1:99 deep.png b.png", "--amount");
  ExpectFailure("sharpen tiny.png b.png", "(status 117)");
  EXPECT_EQ(folder_.FileCount(), 3U);
}

TEST_F(ProgramTest, TimesTheLibraryCallOnRequest) {
  Write("a.png", Counting(8, 3));
  EXPECT_EQ(Run("rotate --mode half a.png b.png").output, "");
  for (const char* arguments :
       {"--time rotate --mode half a.png b.png", "rotate --mode half a.png b.png --time"}) {
    const RunResult result = Run(arguments);
    EXPECT_EQ(result.output.rfind("OvraRotateImage ", 0), 0U) << result.output;
    EXPECT_NE(result.output.find(" ms\n"), std::string::npos);
  }
}

TEST_F(ProgramTest, FailsWithOneLine) {
  Write("a.png", Counting(16, 3));
  ExpectFailure("", "no command");
  ExpectFailure("frobnicate a.png", "");
  ExpectFailure("info", "required");
  ExpectFailure("info absent.png", "absent.png: No such file");
  ExpectFailure("rotate --mode sideways a.png b.png", "sideways");
  ExpectFailure("rotate --mode 8 a.png b.png", "--mode");
  ExpectFailure("rotate --mode left a.png b.gif", "b.gif");
  ExpectFailure("rotate --mode left a.png b.jpg", "8 bits");
  ExpectFailure("rotate --mode left a.png b.png --quality 0", "quality");
  EXPECT_EQ(folder_.FileCount(), 1U);
}

TEST_F(ProgramTest, FailureLeavesAnExistingOutputAsItWas) {
  Write("a.png", Counting(16, 3));
  const FileBytes before = {'k', 'e', 'e', 'p'};
  for (const char* name : {"b.jpg", "b.png"}) ovra_test::WriteBytes(folder_.File(name), before);
  ExpectFailure("rotate --mode left a.png b.jpg", "8 bits");  // found out when the file is open
  ExpectFailure("rotate --mode left absent.png b.png", "absent.png");
  for (const char* name : {"b.jpg", "b.png"}) {
    EXPECT_EQ(ovra_test::ReadBytes(folder_.File(name)), before) << name;
  }
  EXPECT_EQ(folder_.FileCount(), 3U);
}

// The disk is full as far as the program can tell: no file may grow past a few bytes.
TEST_F(ProgramTest, FullDiskLeavesAnExistingOutputAsItWas) {
  Image image(600, 600, FileFormat(8, 3));
  for (size_t i = 0; i < image.size_bytes(); ++i)
    image.data()[i] = static_cast<uint8_t>(i * i >> 9);
  Write("a.png", image);
  const FileBytes before = {'k', 'e', 'e', 'p'};
  for (const char* extension : {".png", ".jpg", ".tif", ".bmp"}) {
    const std::string name = std::string("b") + extension;
    ovra_test::WriteBytes(folder_.File(name), before);
    const RunResult result = Run("rotate --mode half a.png " + name, "ulimit -f 8 && trap '' XFSZ");
    EXPECT_EQ(result.exit_code, 1) << name;
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
    EXPECT_EQ(ovra_test::ReadBytes(folder_.File(name)), before) << name;
  }
  EXPECT_EQ(folder_.FileCount(), 5U);
}

TEST_F(ProgramTest, InputMayBeItsOwnOutput) {
  Write("a.png", Counting(8, 1));
  ASSERT_EQ(Run("rotate --mode mirror a.png a.png").exit_code, 0);
  EXPECT_EQ(Bytes(Read("a.png")), (std::vector<uint8_t>{2, 1, 4, 3, 6, 5}));
}

// --- Looks -----------------------------------------------------------------------------------

// A .cube file of two points an axis: each output channel is the inverse of one input channel.
std::string InvertingCube() {
  std::string text = "LUT_3D_SIZE 2\n";
  for (int row = 0; row < 8; ++row) {
    text += row & 1 ? "0 " : "1 ";
    text += row & 2 ? "0 " : "1 ";
    text += row & 4 ? "0\n" : "1\n";
  }
  return text;
}

// All 8-bit values, or the 16-bit ones made of equal bytes, in each channel.
Image AllCodes(uint32_t depth_bits) {
  Image image(256, 3, FileFormat(depth_bits, 3));
  const size_t sample_bytes = image.bytes_per_sample();
  for (size_t i = 0; i < image.size_bytes(); ++i) {
    const size_t row = i / image.row_bytes();
    const size_t sample = i % image.row_bytes() / sample_bytes;
    const bool rising = sample % 3 == row;
    image.data()[i] = static_cast<uint8_t>(rising ? sample / 3 : 255 - sample / 3);
  }
  return image;
}

TEST_F(ProgramTest, LutAppliesCubes) {
  WriteText("invert.cube", InvertingCube());
  for (const uint32_t depth_bits : {8U, 16U}) {
    const Image image = AllCodes(depth_bits);
    Write("a.png", image);
    ASSERT_EQ(Run("lut --cube invert.cube a.png b.png").exit_code, 0);
    const Image result = Read("b.png");
    ASSERT_EQ(result.format(), image.format());
    for (size_t i = 0; i < image.size_bytes() / image.bytes_per_sample(); ++i) {
      if (depth_bits == 8) {
        ASSERT_EQ(result.data()[i], 255 - image.data()[i]) << i;
      } else {  // 12 bits: a truncated fraction is off by up to a step, rounding by half of one
        ASSERT_NEAR(result.Row16(0)[i], 65535 - image.Row16(0)[i], 24) << i;
      }
    }
  }
}

TEST_F(ProgramTest, LutAppliesCurvesToEachChannel) {
  WriteText("curve.cube", "LUT_1D_SIZE 2\n1 0 0\n0 1 0\n");
  const Image image = AllCodes(16);
  Write("a.tif", image);
  ASSERT_EQ(Run("lut --cube curve.cube a.tif b.tif").exit_code, 0);
  const Image result = Read("b.tif");
  for (size_t i = 0; i < image.size_bytes() / 2; i += 3) {
    ASSERT_EQ(result.Row16(0)[i], 65535 - image.Row16(0)[i]);
    ASSERT_EQ(result.Row16(0)[i + 1], image.Row16(0)[i + 1]);
    ASSERT_EQ(result.Row16(0)[i + 2], 0);
  }
}

TEST_F(ProgramTest, LutTakesGreyPicturesAsColor) {
  WriteText("curve.cube", "LUT_1D_SIZE 2\n1 0 .5\n0 1 .5\n");
  Write("a.png", Counting(8, 1));
  ASSERT_EQ(Run("lut --cube curve.cube a.png b.png").exit_code, 0);
  const std::vector<uint8_t> result = Bytes(Read("b.png"));
  ASSERT_EQ(result.size(), 18U);
  EXPECT_EQ(std::vector<uint8_t>(result.begin(), result.begin() + 6),
            (std::vector<uint8_t>{254, 1, 128, 253, 2, 128}));
}

TEST_F(ProgramTest, CascadeJoinsTwoLooks) {
  WriteText("invert.cube", InvertingCube());
  std::string dim = "DOMAIN_MAX 1 1 1\nLUT_3D_SIZE 2\n";
  for (int row = 0; row < 8; ++row) {
    dim += std::string(row & 1 ? ".5 " : "0 ") + (row & 2 ? ".25 " : "0 ") + (row & 4 ? "1" : "0") +
           "\n";
  }
  WriteText("dim.cube", dim);
  ASSERT_EQ(Run("cascade invert.cube dim.cube both.cube").exit_code, 0);
  Write("a.png", AllCodes(8));
  ASSERT_EQ(Run("lut --cube invert.cube a.png b.png").exit_code, 0);
  ASSERT_EQ(Run("lut --cube dim.cube b.png c.png").exit_code, 0);
  ASSERT_EQ(Run("lut --cube both.cube a.png d.png").exit_code, 0);
  const std::vector<uint8_t> in_turn = Bytes(Read("c.png"));
  const std::vector<uint8_t> joined = Bytes(Read("d.png"));
  for (size_t i = 0; i < joined.size(); ++i) ASSERT_NEAR(joined[i], in_turn[i], 1) << i;
}

TEST_F(ProgramTest, LooksThatCannotBeAppliedLeaveNoOutput) {
  WriteText("invert.cube", InvertingCube());
  WriteText("curve.cube", "LUT_1D_SIZE 2\n1 0 0\n0 1 0\n");
  WriteText("broken.cube", "# a comment\nLUT_3D_SIZE 2\n0 0 zero\n");
  Write("a.png", Counting(8, 3));
  ExpectFailure("lut --cube broken.cube a.png b.png", "broken.cube:3: expected 3 numbers");
  ExpectFailure("lut --cube none.cube a.png b.png", "none.cube: ");
  ExpectFailure("cascade invert.cube curve.cube b.cube", "curve.cube: is not a table of three");
  ExpectFailure("cascade broken.cube invert.cube b.cube", "broken.cube:3");
  EXPECT_EQ(folder_.FileCount(), 4U);
}

TEST_F(ProgramTest, ChangesTonesByCurves) {
  Image image(2, 1, FileFormat(8, 3));
  const std::vector<uint8_t> samples = {0, 51, 102, 153, 204, 255};
  std::copy(samples.begin(), samples.end(), image.data());
  Write("a.png", image);
  const struct {
    const char* options;
    std::vector<uint8_t> expected;
  } cases[] = {
      {"--points 0:0,1:1", samples},
      {"--gamma 1", samples},
      {"--points 0:1,1:0", {255, 204, 153, 102, 51, 0}},
      {"--linear --points 0.2:0,0.6:1", {0, 0, 128, 255, 255, 255}},  // 127.5 is rounded up
      {"--gamma 2,1,0.5", {0, 51, 41, 198, 204, 255}},                // 255 sqrt(0.6), 255 * 0.16
      {"--red 0:1,1:1 --blue 0:0,1:0", {255, 51, 0, 255, 204, 0}},
      {"--linear --points 0:1,1:0 --green 0:0,1:0.25", {255, 51, 153, 102, 13, 0}},
      // The slope is 1 at (0, 0), 0 at (0.6, 0.6) as the curve turns, -1.5 at the end.
      {"--points 0:0,0.6:0.6,1:0", {0, 62, 125, 153, 96, 0}},
  };
  for (const auto& c : cases) {
    ASSERT_EQ(Run(std::string("curve a.png b.png ") + c.options).exit_code, 0) << c.options;
    EXPECT_EQ(Bytes(Read("b.png")), c.expected) << c.options;
  }
  Image wide(1, 1, FileFormat(16, 3));
  for (int k = 0; k < 3; ++k) wide.Row16(0)[k] = 16384;
  Write("wide.tif", wide);
  ASSERT_EQ(Run("curve --gamma 2 wide.tif out.tif").exit_code, 0);
  EXPECT_EQ(Read("out.tif").Row16(0)[0], 32768);  // 65535 * sqrt(16384 / 65535) = 32767.75
  ExpectFailure("curve a.png b.png", "is required");
  ExpectFailure("curve --gamma 1,2 a.png b.png", "--gamma");
  ExpectFailure("curve --points 0:0 a.png b.png", "two points");
  ExpectFailure("curve --points 0:0,2:1 a.png b.png", "0..1");
}

TEST_F(ProgramTest, MixesChannelsByAMatrix) {
  Image image(1, 1, FileFormat(8, 3));
  const std::vector<uint8_t> samples = {100, 50, 200};
  std::copy(samples.begin(), samples.end(), image.data());
  Write("a.png", image);
  const struct {
    const char* options;
    std::vector<uint8_t> expected;
  } cases[] = {
      {"--saturation 1", {100, 50, 200}},
      {"--saturation 0", {71, 71, 71}},  // 0.2126 * 100 + 0.7152 * 50 + 0.0722 * 200 = 71.46
      {"--gains 0.5,2,2", {50, 100, 255}},
      {"--sepia", {116, 103, 80}},  // 115.55, 102.8, 80.1
  };
  for (const auto& c : cases) {
    ASSERT_EQ(Run(std::string("matrix a.png b.png ") + c.options).exit_code, 0) << c.options;
    EXPECT_EQ(Bytes(Read("b.png")), c.expected) << c.options;
  }
  Image white(1, 1, FileFormat(16, 3));
  for (int k = 0; k < 3; ++k) white.Row16(0)[k] = 65535;
  Write("white.tif", white);
  for (const char* options : {"--saturation 0", "--saturation 1.12"}) {
    ASSERT_EQ(Run(std::string("matrix white.tif out.tif ") + options).exit_code, 0);
    EXPECT_EQ(Bytes(Read("out.tif")), Bytes(white)) << options;
  }
  WriteText("m.txt", "# exchanged\n0 1 0\n\n1,0,0\n0 0 0.5");
  ASSERT_EQ(Run("matrix --file m.txt a.png b.png").exit_code, 0);
  EXPECT_EQ(Bytes(Read("b.png")), (std::vector<uint8_t>{50, 100, 100}));
  WriteText("m.txt", "0 0 0 .5 0 0 0 0 0 0\n0 0 0 0 1 0 0 0 0 0 # squares\n0 0 0 0 0 0 0 0 0 1\n");
  ASSERT_EQ(Run("matrix --file m.txt a.png b.png").exit_code, 0);
  EXPECT_EQ(Bytes(Read("b.png")), (std::vector<uint8_t>{128, 39, 78}));  // 100², 200 * 100 / 255
  const struct {
    const char* text;
    const char* error;
  } refused[] = {{"1 0 0\n0 1 0\n", "less than three"}, {"1 0 0\n0 1 0\n0 0 1\n1 1 1\n", "line 4"},
                 {"1 0 0\n\n0 1\n0 0 1\n", "line 3"},   {"1 0\n0 1\n0 0\n", "line 1"},
                 {"1 0 0\n0 one 0\n0 0 1\n", "line 2"}, {"1 0 inf\n0 1 0\n0 0 1\n", "line 1"}};
  for (const auto& c : refused) {
    WriteText("m.txt", c.text);
    ExpectFailure("matrix --file m.txt a.png b.png", c.error);
  }
  ExpectFailure("matrix a.png b.png", "Exactly 1 option");
  ExpectFailure("matrix --sepia --saturation 2 a.png b.png", "2 were given");
  ExpectFailure("matrix --gains 1,2 a.png b.png", "--gains");
}

}  // namespace
