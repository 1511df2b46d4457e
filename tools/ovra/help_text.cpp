// SPDX-License-Identifier: MIT
#include "help_text.h"

#include <regex>

namespace ovra_host {

// The name of the type, and the limits that a check adds as ":FLOAT in [0.3 - 10]" unless the name
// tells them.
std::string ValueText(const CLI::Option& option) {
  if (option.get_type_size() == 0) return "";
  static const std::regex limits(":(?:INT|FLOAT|POSITIVE)(?: in \\[(.*) - (.*)\\])?$");
  std::string text = option.get_type_name();
  std::smatch match;
  if (!std::regex_search(text, match, limits)) return text;
  const std::string name = match.prefix();
  const bool tells_limits = !match[1].matched || name.find("..") != std::string::npos;
  return tells_limits ? name : name + " (" + match[1].str() + ".." + match[2].str() + ")";
}

std::string HelpFormatter::make_option_opts(const CLI::Option* option) const {
  std::string text = " " + ValueText(*option);
  if (!option->get_default_str().empty()) text += " [" + option->get_default_str() + "]";
  if (option->get_required()) text += " REQUIRED";
  return text;
}

}  // namespace ovra_host
