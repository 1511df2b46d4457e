// SPDX-License-Identifier: MIT
// What to say about a command line that cannot be read, in the user's words.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace ovra_host {

// Empty when there is a command, or no word that could be one.
std::string UnknownCommand(const CLI::App& app, const std::vector<std::string>& words);

std::string UsageMessage(const CLI::App& app, const std::vector<std::string>& words,
                         const CLI::ParseError& error);

}  // namespace ovra_host
