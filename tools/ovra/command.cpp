// SPDX-License-Identifier: MIT
#include "command.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <string_view>

#include "color_words.h"
#include "ovra/geometry.h"

namespace ovra_host {
namespace {

// Reads whole numbers with a separator between each two, and nothing else.
template <size_t kCount>
bool ParseNumbers(std::string_view text, char separator, std::array<int32_t, kCount>* numbers) {
  const char* position = text.data();
  const char* const end = position + text.size();
  for (size_t i = 0; i < kCount; ++i) {
    if (i > 0 && (position == end || *position++ != separator)) return false;
    const auto [next, error] = std::from_chars(position, end, (*numbers)[i]);
    if (error != std::errc()) return false;
    position = next;
  }
  return position == end;
}

// An option that `parse` reads; where it answers false, the text is refused.
template <class Parse>
CLI::Option* AddParsed(CLI::App& command, const std::string& name, const std::string& form,
                       const std::string& description, const Parse& parse) {
  const auto read = [=](const std::string& text) {
    if (!parse(text)) throw CLI::ConversionError(name + ": \"" + text + "\" is not " + form);
  };
  return command.add_option_function<std::string>(name, read, description)->type_name(form);
}

}  // namespace

CLI::Option* AddPosition(CLI::App& command, const std::string& name, Position& value,
                         const std::string& description) {
  return AddParsed(command, name, "X,Y", description, [&value](const std::string& text) {
    std::array<int32_t, 2> numbers;
    if (!ParseNumbers(text, ',', &numbers)) return false;
    value = {numbers[0], numbers[1]};
    return true;
  });
}

CLI::Option* AddSize(CLI::App& command, const std::string& name, Size& value,
                     const std::string& description) {
  return AddParsed(command, name, "WxH", description, [&value](const std::string& text) {
    std::array<int32_t, 2> numbers;
    if (!ParseNumbers(text, 'x', &numbers) || numbers[0] < 1 || numbers[1] < 1) return false;
    value = {numbers[0], numbers[1]};
    return true;
  });
}

CLI::Option* AddRectangle(CLI::App& command, const std::string& name, Rectangle& value,
                          const std::string& description) {
  return AddParsed(command, name, "X,Y,W,H", description, [&value](const std::string& text) {
    std::array<int32_t, 4> numbers;
    if (!ParseNumbers(text, ',', &numbers) || numbers[2] < 1 || numbers[3] < 1) return false;
    value = {{numbers[0], numbers[1]}, {numbers[2], numbers[3]}};
    return true;
  });
}

CLI::Option* AddChoice(CLI::App& command, const std::string& name, int32_t& value,
                       const Choices& choices, const std::string& description) {
  std::string words;
  for (const auto& [word, number] : choices) words += (words.empty() ? "" : "|") + word;
  return AddParsed(command, name, words, description, [&value, choices](const std::string& text) {
    for (const auto& [word, number] : choices) {
      if (text != word && text != std::to_string(number)) continue;
      value = number;
      return true;
    }
    return false;
  });
}

CLI::Option* AddFill(CLI::App& command, std::string& fill) {
  return command
      .add_option("--fill", fill,
                  "color around it: a name as white, #RRGGBB, or one value a channel or one for "
                  "all, 0..255, of 16-bit pictures 0..65535")
      ->type_name(kColorForms)
      ->capture_default_str();
}

std::vector<uint16_t> ParseFill(const std::string& text, const Image& image) {
  return ParseColor("--fill", text, image.depth_bits(), image.channels());
}

const Choices& TurnChoices() {
  static const Choices choices = {
      {"none", OVRA_ROTATE_NONE},     {"left", OVRA_ROTATE_QUARTER_LEFT},
      {"half", OVRA_ROTATE_HALF},     {"right", OVRA_ROTATE_QUARTER_RIGHT},
      {"mirror", OVRA_ROTATE_MIRROR}, {"anti-transpose", OVRA_ROTATE_ANTI_TRANSPOSE},
      {"flip", OVRA_ROTATE_FLIP},     {"transpose", OVRA_ROTATE_TRANSPOSE},
  };
  return choices;
}

CLI::Option* AddInput(CLI::App& command, const std::string& name, std::string& path,
                      const std::string& description) {
  return command.add_option(name, path, description)->required()->type_name("FILE");
}

CLI::Option* AddOutput(CLI::App& command, const std::string& name, std::string& path,
                       const std::string& description) {
  const auto check = [](const std::string& text) -> std::string {
    try {
      CheckOutput(text);
    } catch (const Error& error) {
      return error.what();
    }
    return "";
  };
  return command.add_option(name, path, description)
      ->type_name("FILE")
      ->check(CLI::Validator(check, ""));
}

}  // namespace ovra_host
