// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cctype>
#include <cstdio>
#include <sstream>

#include "error.h"
#include "help_text.h"
#include "manual.h"

namespace ovra_host {

std::vector<const CLI::App*> Commands(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App* command) { return !command->get_name().empty(); });
}

namespace {

// Also those that stand in groups, which are commands without a name.
std::vector<const CLI::Option*> AllOptions(const CLI::App& command) {
  std::vector<const CLI::Option*> options = command.get_options();
  const auto is_group = [](const CLI::App* inner) { return inner->get_name().empty(); };
  for (const CLI::App* group : command.get_subcommands(is_group)) {
    std::vector<const CLI::Option*> more = AllOptions(*group);
    std::erase(more, group->get_help_ptr());  // which every group has, too
    options.insert(options.end(), more.begin(), more.end());
  }
  return options;
}

std::string Joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
  return text;
}

std::string SpellingsOf(const std::vector<const CLI::Option*>& options) {
  std::vector<std::string> all;
  for (const CLI::Option* option : options) {
    for (const std::string& spelling : Spellings(*option)) all.push_back(spelling);
  }
  return Joined(all);
}

std::string NamesOf(const std::vector<const CLI::App*>& commands) {
  std::vector<std::string> names;
  for (const CLI::App* command : commands) names.push_back(command->get_name());
  return Joined(names);
}

std::string WithBackslashes(const std::string& text, const std::string& special) {
  std::string escaped;
  for (const char c : text) {
    if (special.find(c) != std::string::npos) escaped += '\\';
    escaped += c;
  }
  return escaped;
}

std::string Quoted(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

void WriteBash(const CLI::App& app) {
  const std::string commands = NamesOf(Commands(app));
  std::string alternatives = commands;
  std::replace(alternatives.begin(), alternatives.end(), ' ', '|');
  std::printf(
      "# Completions of ovra for bash.\n"
      "_ovra() {\n"
      "  local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD-1]} command= words= "
      "word\n"
      "  for word in \"${COMP_WORDS[@]:1:COMP_CWORD-1}\"; do\n"
      "    case $word in %s) command=$word; break ;; esac\n"
      "  done\n"
      "  case \"$command $prev\" in\n",
      alternatives.c_str());
  for (const CLI::App* command : Commands(app)) {
    for (const CLI::Option* option : Options(*command)) {
      if (Words(*option).empty()) continue;
      for (const std::string& spelling : Spellings(*option)) {
        std::printf("    \"%s %s\") words='%s' ;;\n", command->get_name().c_str(), spelling.c_str(),
                    Joined(Words(*option)).c_str());
      }
    }
  }
  std::printf(
      "    *)\n"
      "      if [[ $cur == -* ]]; then\n"
      "        words='%s'\n"
      "        case $command in\n",
      SpellingsOf(Options(app)).c_str());
  for (const CLI::App* command : Commands(app)) {
    std::printf("          %s) words+=' %s' ;;\n", command->get_name().c_str(),
                SpellingsOf(Options(*command)).c_str());
  }
  std::printf(
      "        esac\n"
      "      elif [[ -z $command ]]; then\n"
      "        words='%s help'\n"
      "      fi ;;\n"
      "  esac\n"
      "  mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$cur\")\n"
      "}\n"
      "complete -o default -F _ovra ovra  # files, where there are no words\n",
      commands.c_str());
}

// What _arguments takes for the options.
void WriteZshOptions(const std::vector<const CLI::Option*>& options) {
  for (const CLI::Option* option : options) {
    std::string value;
    if (option->get_type_size() != 0) {
      const std::string words = Joined(Words(*option));
      value = ":value:" + (words.empty() ? "_files" : "(" + words + ")");
    }
    for (const std::string& spelling : Spellings(*option)) {
      const std::string text = WithBackslashes(option->get_description(), ":[]\\");
      std::printf(" \\\n      %s", Quoted(spelling + "[" + text + "]" + value).c_str());
    }
  }
}

void WriteZsh(const CLI::App& app) {
  std::printf("#compdef ovra\n_ovra() {\n  local -a commands=(\n");
  for (const CLI::App* command : Commands(app)) {
    std::printf("    %s\n", Quoted(command->get_name() + ":" + command->get_description()).c_str());
  }
  std::printf(
      "  )\n"
      "  local curcontext=$curcontext context state line\n"
      "  typeset -A opt_args\n"
      "  _arguments -C");
  WriteZshOptions(Options(app));
  std::printf(
      " \\\n"
      "      '1:command:->command' '*::argument:->argument' && return\n"
      "  case $state in\n"
      "  command) _describe command commands ;;\n"
      "  argument)\n"
      "    case $words[1] in\n");
  for (const CLI::App* command : Commands(app)) {
    std::printf("    %s) _arguments", command->get_name().c_str());
    WriteZshOptions(Options(*command));
    std::printf(" \\\n      '*:file:_files' ;;\n");
  }
  std::printf("    esac ;;\n  esac\n}\n_ovra \"$@\"\n");
}

void WriteFishOptions(const std::vector<const CLI::Option*>& options, const std::string& when) {
  for (const CLI::Option* option : options) {
    std::string line = "complete -c ovra" + when;
    for (const std::string& spelling : Spellings(*option)) {
      line += spelling[1] == '-' ? " -l " + spelling.substr(2) : " -s " + spelling.substr(1);
    }
    const std::vector<std::string> words = Words(*option);
    if (!words.empty()) {
      line += " -x -a " + Quoted(Joined(words));
    } else if (option->get_type_size() != 0) {
      line += " -r";
    }
    std::printf("%s -d %s\n", line.c_str(), Quoted(option->get_description()).c_str());
  }
}

void WriteFish(const CLI::App& app) {
  std::printf("# Completions of ovra for fish.\n");
  for (const CLI::App* command : Commands(app)) {
    std::printf("complete -c ovra -n __fish_use_subcommand -a %s -d %s\n",
                command->get_name().c_str(), Quoted(command->get_description()).c_str());
  }
  WriteFishOptions(Options(app), "");
  for (const CLI::App* command : Commands(app)) {
    WriteFishOptions(Options(*command),
                     " -n '__fish_seen_subcommand_from " + command->get_name() + "'");
  }
}

}  // namespace

std::vector<const CLI::Option*> Options(const CLI::App& command) {
  std::vector<const CLI::Option*> options = AllOptions(command);
  std::erase_if(options, [](const CLI::Option* option) { return option->get_positional(); });
  return options;
}

std::vector<const CLI::Option*> Positionals(const CLI::App& command) {
  std::vector<const CLI::Option*> options = AllOptions(command);
  std::erase_if(options, [](const CLI::Option* option) { return !option->get_positional(); });
  return options;
}

std::vector<std::string> Spellings(const CLI::Option& option) {
  std::vector<std::string> spellings;
  for (const std::string& name : option.get_snames()) spellings.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) spellings.push_back("--" + name);
  return spellings;
}

std::vector<std::string> Words(const CLI::Option& option) {
  std::vector<std::string> words;
  std::istringstream text(ValueText(option));
  for (std::string word; std::getline(text, word, '|');) words.push_back(word);
  const auto is_word = [](const std::string& word) {
    return std::all_of(word.begin(), word.end(), [](unsigned char c) {
      return std::islower(c) != 0 || std::isdigit(c) != 0 || c == '-';
    });
  };
  const bool are_words = words.size() > 1 && std::all_of(words.begin(), words.end(), is_word);
  return are_words ? words : std::vector<std::string>();
}

void WriteCompletion(const CLI::App& app, const std::string& shell) {
  if (shell == "bash") return WriteBash(app);
  if (shell == "zsh") return WriteZsh(app);
  if (shell == "fish") return WriteFish(app);
  throw Error("completions are for bash, zsh and fish, not for " + shell);
}

}  // namespace ovra_host
