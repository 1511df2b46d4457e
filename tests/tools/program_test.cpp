// SPDX-License-Identifier: MIT
// The built program as a user runs it. What its command lines do to small pictures is written down in
// commands.txt; here is what that cannot say.
#include <cmath>
#include <fstream>
#include <sstream>

#include "ovra/filter.h"
#include "tools/run_program.h"

namespace {

using ovra_host::FileFormat;
using ovra_host::Image;
using ovra_test::Bytes;
using ovra_test::FileBytes;
using ovra_test::ProgramTest;
using ovra_test::RunResult;

// A part of commands.txt: its name, and lines of a word and what belongs to it.
struct Script {
  std::string name;
  std::vector<std::string> lines;
};

std::vector<Script> ReadScripts() {
  std::vector<Script> scripts;
  std::ifstream file(OVRA_COMMANDS);
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    if (line[0] == '[') {
      scripts.push_back({line.substr(1, line.size() - 2), {}});
    } else {
      scripts.back().lines.push_back(line);
    }
  }
  return scripts;
}

class Commands : public ProgramTest, public testing::WithParamInterface<Script> {
 protected:
  void Execute(const std::string& line) {
    SCOPED_TRACE(line);
    std::istringstream words(line);
    std::string word;
    words >> word >> std::ws;
    const size_t bar = line.find(" | ");
    const std::string text = line.substr(word.size() + 1, bar - word.size() - 1);
    const std::string arguments = bar == std::string::npos ? text : line.substr(bar + 3);
    if (word == "run") {
      const RunResult result = Run(arguments);
      ASSERT_EQ(result.exit_code, 0) << result.errors;
    } else if (word == "says") {
      const RunResult result = Run(arguments);
      const std::string told = result.output + result.errors;
      EXPECT_NE(told.find(text), std::string::npos) << told;
    } else if (word == "fails") {
      ExpectFailure(arguments, text);
    } else if (word == "text") {
      const std::string name = Next(words);
      WriteText(name, Unescaped(words));
    } else if (word == "holds") {
      const FileBytes bytes = ovra_test::ReadBytes(folder_.File(Next(words)));
      EXPECT_EQ(std::string(bytes.begin(), bytes.end()), Unescaped(words));
    } else if (word == "files") {
      EXPECT_EQ(folder_.FileCount(), std::stoul(text));
    } else if (word == "picture") {
      Draw(words);
    } else {
      ASSERT_TRUE(word == "shows" || word == "nearly");
      Compare(words, word == "nearly" ? std::stoi(Next(words)) : 0);
    }
  }

 private:
  // The name of a file, depth, channels, size, and the first samples.
  struct Described {
    std::string name;
    Image image;
    std::vector<int> samples;
  };

  static std::string Next(std::istringstream& words) {
    std::string word;
    words >> word >> std::ws;
    return word;
  }

  static std::string Unescaped(std::istringstream& words) {
    std::string rest;
    std::getline(words, rest);
    for (size_t at = 0; (at = rest.find("\\n")) != std::string::npos;) rest.replace(at, 2, "\n");
    return rest;
  }

  static Described Describe(std::istringstream& words) {
    std::string name;
    uint32_t depth_bits = 0;
    uint32_t channels = 0;
    int32_t width = 0;
    int32_t height = 0;
    char by = 0;
    words >> name >> depth_bits >> channels >> width >> by >> height;
    Described described = {name, Image(width, height, FileFormat(depth_bits, channels)), {}};
    for (int sample = 0; words >> sample;) described.samples.push_back(sample);
    return described;
  }

  static size_t Count(const Image& image) { return image.size_bytes() / image.bytes_per_sample(); }

  // The samples are repeated until the picture is full.
  void Draw(std::istringstream& words) const {
    Described d = Describe(words);
    for (size_t i = 0; i < Count(d.image); ++i) {
      const int sample = d.samples[i % d.samples.size()];
      if (d.image.depth_bits() == 8) {
        d.image.data()[i] = static_cast<uint8_t>(sample);
      } else {
        d.image.Row16(0)[i] = static_cast<uint16_t>(sample);
      }
    }
    Write(d.name, d.image);
  }

  void Compare(std::istringstream& words, int tolerance) const {
    const Described d = Describe(words);
    const Image result = Read(d.name);
    EXPECT_EQ(result.width(), d.image.width());
    EXPECT_EQ(result.height(), d.image.height());
    ASSERT_EQ(result.format(), d.image.format());
    ASSERT_LE(d.samples.size(), Count(result));
    for (size_t i = 0; i < d.samples.size(); ++i) {
      const int sample = result.depth_bits() == 8 ? result.data()[i] : result.Row16(0)[i];
      EXPECT_LE(std::abs(sample - d.samples[i]), tolerance) << sample << " at " << i;
    }
  }
};

TEST_P(Commands, DoWhatIsWrittenDown) {
  for (const std::string& line : GetParam().lines) ASSERT_NO_FATAL_FAILURE(Execute(line));
}

INSTANTIATE_TEST_SUITE_P(Program, Commands, testing::ValuesIn(ReadScripts()),
                         [](const auto& script) { return script.param.name; });

Image Noisy() {
  Image image(30, 20, FileFormat(8, 3));
  for (size_t i = 0; i < image.size_bytes(); ++i) {
    image.data()[i] = static_cast<uint8_t>(i * i % 37 * 6);
  }
  return image;
}

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

// Each command hands its options over: compared with calls of the library.
TEST_F(ProgramTest, SmoothsAndSoftens) {
  const Image image = Noisy();
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
}

// The options are handed over: compared with calls of the library.
TEST_F(ProgramTest, Sharpens) {
  const Image image = Noisy();
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

TEST_F(ProgramTest, WritesToAFullDeviceFail) {
  EXPECT_EQ(Run("help rotate").output, Run("rotate --help").output);
  const char* const full_disk = "! '" OVRA_PROGRAM "' --help >/dev/full 2>/dev/null";
  EXPECT_EQ(Run("--version", full_disk).exit_code, 0);
}

}  // namespace
