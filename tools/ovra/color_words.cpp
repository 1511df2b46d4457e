// SPDX-License-Identifier: MIT
#include "color_words.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <string_view>

#include "error.h"
#include "suggestion.h"

namespace ovra_host {
namespace {

struct NamedColor {
  std::string_view name;
  uint32_t rgb;
};

// The basic names of CSS (CSS Color Module Level 4, 6.1) and those asked for most beside them.
constexpr std::array<NamedColor, 22> kNames = {{
    {"black", 0x000000},   {"silver", 0xC0C0C0}, {"gray", 0x808080},    {"grey", 0x808080},
    {"white", 0xFFFFFF},   {"maroon", 0x800000}, {"red", 0xFF0000},     {"purple", 0x800080},
    {"fuchsia", 0xFF00FF}, {"green", 0x008000},  {"lime", 0x00FF00},    {"olive", 0x808000},
    {"yellow", 0xFFFF00},  {"navy", 0x000080},   {"blue", 0x0000FF},    {"teal", 0x008080},
    {"aqua", 0x00FFFF},    {"cyan", 0x00FFFF},   {"magenta", 0xFF00FF}, {"orange", 0xFFA500},
    {"brown", 0xA52A2A},   {"pink", 0xFFC0CB},
}};

// Red, green and blue of "#F80" or "#FF8800".
std::optional<uint32_t> ParseHex(std::string_view digits) {
  uint32_t value = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, value, 16);
  if (error != std::errc() || stop != end) return std::nullopt;
  if (digits.size() == 6) return value;
  if (digits.size() != 3) return std::nullopt;
  return (value >> 8) * 0x110000 + (value >> 4 & 15) * 0x1100 + (value & 15) * 0x11;
}

std::optional<uint32_t> ParseWord(const std::string& text) {
  if (text[0] == '#') return ParseHex(std::string_view(text).substr(1));
  const auto* const found = std::find_if(kNames.begin(), kNames.end(),
                                         [&](const NamedColor& c) { return c.name == text; });
  if (found == kNames.end()) return std::nullopt;
  return found->rgb;
}

[[noreturn]] void RefuseForm(const std::string& option, const std::string& text) {
  std::vector<std::string> names;
  for (const NamedColor& color : kNames) names.emplace_back(color.name);
  const std::string nearest = NearestWord(text, names);
  throw Error(option + ": \"" + text + "\" is not N or N,N,N, #RRGGBB or the name of a color" +
              (nearest.empty() ? "" : "; did you mean " + nearest + "?"));
}

std::vector<uint16_t> ParseSamples(const std::string& option, const std::string& text,
                                   uint32_t max) {
  std::vector<uint16_t> samples;
  const char* position = text.data();
  const char* const end = position + text.size();
  while (true) {
    uint32_t value = 0;
    const auto [next, error] = std::from_chars(position, end, value);
    if (error != std::errc() || (next != end && *next != ',')) RefuseForm(option, text);
    if (value > max) {
      throw Error(option + ": " + std::to_string(value) + " is beyond " + std::to_string(max) +
                  ", the brightest of this picture");
    }
    samples.push_back(static_cast<uint16_t>(value));
    if (next == end) return samples;
    position = next + 1;
  }
}

std::vector<uint16_t> ScaledWord(uint32_t rgb, uint32_t max) {
  std::vector<uint16_t> samples;
  for (const uint32_t shift : {16U, 8U, 0U}) {
    const uint32_t value = rgb >> shift & UINT8_MAX;
    samples.push_back(static_cast<uint16_t>((value * max + UINT8_MAX / 2) / UINT8_MAX));
  }
  return samples;
}

}  // namespace

std::vector<uint16_t> ParseColor(const std::string& option, const std::string& text,
                                 uint32_t depth_bits, uint32_t channels) {
  const uint32_t max = (1U << depth_bits) - 1;
  const std::optional<uint32_t> word = text.empty() ? std::nullopt : ParseWord(text);
  std::vector<uint16_t> color = word ? ScaledWord(*word, max) : ParseSamples(option, text, max);
  if (color.size() == 1 && channels > 1) color.resize(3, color[0]);
  if (color.size() == 3 && channels == 4) color.push_back(static_cast<uint16_t>(max));
  const bool is_grey = color.size() == 3 && color[0] == color[1] && color[1] == color[2];
  if (word && is_grey && channels == 1) color.resize(1);
  if (color.size() == channels) return color;
  throw Error(option + ": " + (word ? text : std::to_string(color.size()) + " values") +
              " for a picture of " +
              (channels == 1 ? "grey" : std::to_string(channels) + " channels"));
}

}  // namespace ovra_host
