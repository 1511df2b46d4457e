// SPDX-License-Identifier: MIT
#include <cstdio>
#include <sstream>

#include "help_text.h"
#include "manual.h"

namespace ovra_host {
namespace {

void Put(const std::string& line) {
  std::printf("%s\n", line.c_str());
}

// Text for the formatter: nothing in it is a request, and hyphens of what is typed stay such.
std::string Escaped(const std::string& text) {
  std::string escaped = !text.empty() && (text[0] == '.' || text[0] == '\'') ? "\\&" : "";
  for (const char c : text) {
    if (c == '\\') {
      escaped += "\\e";
    } else if (c == '-') {
      escaped += "\\-";
    } else if (c == '\'') {
      escaped += "\\(aq";
    } else {
      escaped += c;
    }
  }
  return escaped;
}

// Prose in short lines, a sentence a line at the most, as the sources of pages are written.
void PutProse(const std::string& text) {
  constexpr size_t kLongest = 72;
  std::istringstream words(text);
  std::string line;
  for (std::string word; words >> word;) {
    if (line.size() + word.size() > kLongest) {
      Put(Escaped(line));
      line.clear();
    }
    line += (line.empty() ? "" : " ") + word;
    if (word.back() == '.') {
      Put(Escaped(line));
      line.clear();
    }
  }
  if (!line.empty()) Put(Escaped(line));
}

// Paragraphs are filled; lines that stand further in are examples, and stay as they are.
void PutText(const std::string& text) {
  std::istringstream lines(text);
  bool in_example = false;
  bool is_new_paragraph = true;
  for (std::string line; std::getline(lines, line);) {
    const bool is_example = line.rfind("  ", 0) == 0;
    if (in_example && !is_example) Put(".EE");
    if (line.empty() || in_example != is_example) is_new_paragraph = true;
    if (is_example && !in_example) Put(".PP\n.EX");
    if (!line.empty() && !is_example && is_new_paragraph) {
      Put(".PP");
      is_new_paragraph = false;
    }
    in_example = is_example;
    if (is_example) Put(Escaped(line));
    if (!is_example) PutProse(line);
  }
  if (in_example) Put(".EE");
}

// What a file is called: the form of several, or the name of one.
std::string FileText(const CLI::Option& file) {
  const std::string form = ValueText(file);
  return "\\fI" + Escaped(form == "FILE" ? file.get_single_name() : form) + "\\fR";
}

void PutOption(const CLI::Option& option) {
  std::string heading;
  for (const std::string& spelling : Spellings(option)) {
    heading += (heading.empty() ? "\\fB" : ", \\fB") + Escaped(spelling) + "\\fR";
  }
  const std::string value = ValueText(option);
  if (!value.empty()) heading += " \\fI" + Escaped(value) + "\\fR";
  Put(".TP\n" + heading);
  std::string text = option.get_description();
  if (!option.get_default_str().empty()) text += " [" + option.get_default_str() + "]";
  if (option.get_required()) text += " (required)";
  PutProse(text);
}

void PutCommand(const CLI::App& command) {
  Put(".SS " + command.get_name());
  std::string synopsis = "\\fBovra " + command.get_name() + "\\fR [\\fIoption\\fR]...";
  for (const CLI::Option* file : Positionals(command)) {
    synopsis += " " + FileText(*file);
  }
  Put(synopsis + "\n.PP");
  PutProse(command.get_description() + ".");
  for (const CLI::Option* file : Positionals(command)) {
    Put(".TP\n" + FileText(*file));
    PutProse(file->get_description());
  }
  for (const CLI::Option* option : Options(command)) PutOption(*option);
  PutText(command.get_footer());
}

}  // namespace

void WriteManPage(const CLI::App& app, const std::string& version, const std::string& date) {
  Put(".TH OVRA 1 " + date + " \"" + version + "\" \"User Commands\"");
  Put(".SH NAME\novra \\- work on picture files");
  Put(".SH SYNOPSIS\n\\fBovra\\fR [\\fIoption\\fR]... \\fIcommand\\fR [\\fIargument\\fR]...");
  Put(".SH DESCRIPTION");
  PutProse(app.get_description());
  PutText(app.get_footer());
  Put(".SH OPTIONS\nThese stand before or behind the command.");
  for (const CLI::Option* option : Options(app)) PutOption(*option);
  Put(".SH COMMANDS");
  for (const CLI::App* command : Commands(app)) PutCommand(*command);
  Put(".SH EXIT STATUS");
  PutProse(
      "0 when all was done, 1 when something failed, 2 when the command line cannot be read. "
      "compare "
      "answers 0 for equal pictures, 1 for others and 2 in trouble.");
  Put(".SH ENVIRONMENT\n.TP\n\\fBOVRA_TIER\\fR");
  PutProse("plain, sse or avx2: the widest vector instructions that the library may use.");
}

}  // namespace ovra_host
