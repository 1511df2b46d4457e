// SPDX-License-Identifier: MIT
// The man page and what shells complete, made from the descriptions of commands and options.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace ovra_host {

// Parts of the descriptions, for the writers of all forms.
std::vector<const CLI::App*> Commands(const CLI::App& app);
std::vector<const CLI::Option*> Options(const CLI::App& command);  // without file names
std::vector<const CLI::Option*> Positionals(const CLI::App& command);
std::vector<std::string> Spellings(const CLI::Option& option);  // "-o", "--output"
std::vector<std::string> Words(const CLI::Option& option);  // that it may take, where it is words

// To standard output. The date is that of the page, as 2026-01-31. Throws Error for another shell than
// bash, zsh and fish.
void WriteManPage(const CLI::App& app, const std::string& version, const std::string& date);
void WriteCompletion(const CLI::App& app, const std::string& shell);

}  // namespace ovra_host
