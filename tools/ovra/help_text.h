// SPDX-License-Identifier: MIT
// What the descriptions of commands and options say, for --help and for all that is made from them.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace ovra_host {

// What stands behind an option: "WxH", "PIXELS (0.3..10)"; empty for a flag.
std::string ValueText(const CLI::Option& option);

class HelpFormatter : public CLI::Formatter {
 public:
  std::string make_option_opts(const CLI::Option* option) const override;
};

}  // namespace ovra_host
