// SPDX-License-Identifier: MIT
#include "usage.h"

#include <algorithm>

#include "suggestion.h"

namespace ovra_host {
namespace {

std::vector<std::string> CommandNames(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* command : app.get_subcommands({})) names.push_back(command->get_name());
  return names;
}

// The long options of a command, also those that stand in groups.
std::vector<std::string> OptionNames(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::Option* option : app.get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  }
  for (const CLI::App* group : app.get_subcommands({})) {
    if (!group->get_name().empty()) continue;
    const std::vector<std::string> more = OptionNames(*group);
    names.insert(names.end(), more.begin(), more.end());
  }
  return names;
}

bool Holds(const std::vector<std::string>& words, const std::string& word) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

bool IsOption(const std::string& word) {
  return word.size() > 1 && word[0] == '-';
}

std::string Hint(const std::string& typed, const std::vector<std::string>& words,
                 const std::string& help) {
  const std::string nearest = NearestWord(typed, words);
  return nearest.empty() ? "see " + help : "did you mean " + nearest + "?";
}

// The first long option that is none of these; empty when there is no such.
std::string UnknownOption(const std::vector<std::string>& words,
                          const std::vector<std::string>& options) {
  for (const std::string& word : words) {
    std::string name = word.substr(0, word.find('='));
    if (name.rfind("--", 0) == 0 && !Holds(options, name)) return name;
  }
  return "";
}

}  // namespace

std::string UnknownCommand(const CLI::App& app, const std::vector<std::string>& words) {
  const std::vector<std::string> commands = CommandNames(app);
  const auto is_command = [&](const std::string& word) { return Holds(commands, word); };
  if (std::any_of(words.begin(), words.end(), is_command)) return "";
  // What is near to a command rather than the value of an option before it.
  auto typed = std::find_if(words.begin(), words.end(), [&](const std::string& word) {
    return !IsOption(word) && !NearestWord(word, commands).empty();
  });
  if (typed == words.end()) typed = std::find_if_not(words.begin(), words.end(), IsOption);
  if (typed == words.end()) return "";
  return "there is no command \"" + *typed + "\"; " + Hint(*typed, commands, "ovra --help");
}

std::string UsageMessage(const CLI::App& app, const std::vector<std::string>& words,
                         const CLI::ParseError& error) {
  std::string unknown_command = UnknownCommand(app, words);
  if (!unknown_command.empty()) return unknown_command;
  const std::vector<std::string> commands = CommandNames(app);
  const auto command = std::find_if(words.begin(), words.end(),
                                    [&](const std::string& word) { return Holds(commands, word); });
  std::vector<std::string> options = OptionNames(app);
  if (command == words.end()) {
    const std::string unknown = UnknownOption(words, options);
    return unknown.empty()
               ? "no command; see ovra --help"
               : "there is no option " + unknown + "; " + Hint(unknown, options, "ovra --help");
  }
  const std::string help = "ovra " + *command + " --help";
  const std::vector<std::string> own = OptionNames(*app.get_subcommand(*command));
  options.insert(options.end(), own.begin(), own.end());
  const std::string unknown = UnknownOption(words, options);
  if (unknown.empty()) return std::string(error.what()) + "; see " + help;
  return *command + " has no option " + unknown + "; " + Hint(unknown, options, help);
}

}  // namespace ovra_host
