// SPDX-License-Identifier: MIT
// What command lines of the program do to small pictures is written down in commands.txt.
#include <cmath>
#include <fstream>
#include <sstream>

#include "tools/run_program.h"

namespace ovra_test {
namespace {

using Texts = std::vector<std::string>;

// A part of commands.txt: its name, and lines of a word and what belongs to it.
struct Script {
  std::string name;
  Texts lines;
};

Texts Split(const std::string& text, const std::string& separator) {
  const size_t at = text.find(separator);
  if (at == std::string::npos) return {text};
  Texts parts = Split(text.substr(at + separator.size()), separator);
  parts.insert(parts.begin(), text.substr(0, at));
  return parts;
}

std::string Replaced(std::string text, const std::string& old, const std::string& by) {
  for (size_t at = 0; (at = text.find(old, at)) != std::string::npos; at += by.size()) {
    text.replace(at, old.size(), by);
  }
  return text;
}

// The part once for every choice from its lines `with NAMES = VALUES | ...`.
std::vector<Script> Expanded(const Script& script) {
  const auto is_choice = [](const std::string& line) { return line.rfind("with ", 0) == 0; };
  const auto with = std::find_if(script.lines.begin(), script.lines.end(), is_choice);
  if (with == script.lines.end()) return {script};
  const Texts parts = Split(with->substr(5), " = ");
  const Texts names = Split(parts.at(0), " ");
  std::vector<Script> all;
  int number = 0;
  for (const std::string& choice : Split(parts.at(1), " | ")) {
    const Texts values = names.size() == 1 ? Texts{choice} : Split(choice, " ");
    Script one = {script.name + "_" + std::to_string(number++), {with + 1, script.lines.end()}};
    for (std::string& line : one.lines) {
      for (size_t i = 0; i < names.size(); ++i) line = Replaced(line, "$" + names[i], values.at(i));
    }
    for (const Script& each : Expanded(one)) all.push_back(each);
  }
  return all;
}

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
  std::vector<Script> all;
  for (const Script& script : scripts) {
    for (const Script& each : Expanded(script)) all.push_back(each);
  }
  return all;
}

// A number, or a percentage of the greatest sample.
int Sample(const std::string& word, const Image& image) {
  const double value = std::stod(word);
  return static_cast<int>(
      std::lround(word.back() == '%' ? value / 100 * image.max_sample() : value));
}

std::vector<int> Samples(const Image& image) {
  if (image.depth_bits() == 8) return {image.data(), image.data() + image.size_bytes()};
  const auto* const samples = reinterpret_cast<const uint16_t*>(image.data());
  return {samples, samples + image.size_bytes() / 2};
}

class Commands : public ProgramTest, public testing::WithParamInterface<Script> {
 protected:
  void Execute(const std::string& line) {
    SCOPED_TRACE(line);
    std::istringstream words(line);
    const std::string word = Next(words);
    const std::string rest = line.substr(word.size() + 1);
    const std::string text = rest.substr(0, rest.find(" | "));
    const std::string arguments = rest.substr(text == rest ? 0 : text.size() + 3);
    if (word == "run") {
      ExpectSuccess(rest);
    } else if (word == "shell") {
      const RunResult result = Shell(rest);
      ASSERT_EQ(result.exit_code, 0) << result.errors;
    } else if (word == "says") {
      const RunResult result = Run(arguments);
      const std::string told = result.output + result.errors;
      EXPECT_NE(told.find(text), std::string::npos) << told;
    } else if (word == "fails") {
      ExpectFailure(arguments, Unescaped(text));
    } else if (word == "text") {
      const std::string name = Next(words);
      WriteText(name, Unescaped(rest.substr(std::min(name.size() + 1, rest.size()))));
    } else if (word == "holds") {
      const std::string name = Next(words);
      const FileBytes bytes = ReadBytes(folder_.File(name));
      EXPECT_EQ(std::string(bytes.begin(), bytes.end()), Unescaped(rest.substr(name.size() + 1)));
    } else if (word == "files") {
      EXPECT_EQ(folder_.FileCount(), std::stoul(rest));
    } else if (word == "picture") {
      Draw(words);
    } else if (word == "orientation") {
      const auto value = static_cast<uint8_t>(std::stoi(Next(words)));
      const std::string name = Next(words);
      ovra_host::WritePicture({Read(name), WithOrientation(value)}, folder_.File(name));
    } else if (word == "within") {
      const std::string low = Next(words);
      const std::string high = Next(words);
      const Image image = Read(Next(words));
      for (const int sample : Samples(image)) {
        ASSERT_TRUE(Sample(low, image) <= sample && sample <= Sample(high, image)) << sample;
      }
    } else {
      Compare(word, words);
    }
  }

 private:
  static std::string Next(std::istringstream& words) {
    std::string word;
    words >> word;
    return word;
  }

  static std::string Unescaped(const std::string& text) { return Replaced(text, "\\n", "\n"); }

  // EXIF data that holds nothing but an orientation.
  static ovra_host::Metadata WithOrientation(uint8_t value) {
    ovra_host::Metadata metadata;
    metadata.exif = {'I', 'I', 42, 0, 8, 0,     0, 0, 1, 0, 0x12, 0x01, 3,
                     0,   1,   0,  0, 0, value, 0, 0, 0, 0, 0,    0,    0};
    return metadata;
  }

  // Depth, channels and size.
  static Image Described(std::istringstream& words) {
    uint32_t depth_bits = 0;
    uint32_t channels = 0;
    int32_t width = 0;
    int32_t height = 0;
    char by = 0;
    words >> depth_bits >> channels >> width >> by >> height;
    return Image(width, height, FileFormat(depth_bits, channels));
  }

  void Draw(std::istringstream& words) const {
    const std::string name = Next(words);
    Image image = Described(words);
    std::vector<int> samples;
    for (std::string word; words >> word && word != "noise";) {
      samples.push_back(Sample(word, image));
    }
    if (samples.empty()) {
      image = Noise(image.width(), image.height(), image.depth_bits(), image.channels());
    }
    for (size_t i = 0; i < image.size_bytes() / image.bytes_per_sample() && !samples.empty(); ++i) {
      const int sample = samples[i % samples.size()];
      if (image.depth_bits() == 8) {
        image.data()[i] = static_cast<uint8_t>(sample);
      } else {
        image.Row16(0)[i] = static_cast<uint16_t>(sample);
      }
    }
    Write(name, image);
  }

  // A file with what is described, or with another file.
  void Compare(const std::string& word, std::istringstream& words) const {
    const bool is_described = word == "shows" || word == "nearly";
    ASSERT_TRUE(is_described || word == "same" || word == "alike") << word;
    const bool is_exact = word == "shows" || word == "same";
    const int tolerance = is_exact ? 0 : std::stoi(Next(words));
    const Image result = Read(Next(words));
    const Image expected = is_described ? Described(words) : Read(Next(words));
    std::vector<int> samples = is_described ? std::vector<int>() : Samples(expected);
    for (std::string sample; words >> sample;) samples.push_back(Sample(sample, expected));
    EXPECT_EQ(result.width(), expected.width());
    EXPECT_EQ(result.height(), expected.height());
    ASSERT_EQ(result.format(), expected.format());
    const std::vector<int> actual = Samples(result);
    ASSERT_LE(samples.size(), actual.size());
    for (size_t i = 0; i < samples.size(); ++i) {
      ASSERT_LE(std::abs(actual[i] - samples[i]), tolerance) << actual[i] << " at " << i;
    }
  }
};

TEST_P(Commands, DoWhatIsWrittenDown) {
  for (const std::string& line : GetParam().lines) ASSERT_NO_FATAL_FAILURE(Execute(line));
}

INSTANTIATE_TEST_SUITE_P(Program, Commands, testing::ValuesIn(ReadScripts()),
                         [](const auto& script) { return script.param.name; });

}  // namespace
}  // namespace ovra_test
