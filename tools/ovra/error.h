// SPDX-License-Identifier: MIT
// What goes wrong, as an exception whose text is the one line that the user sees.
#pragma once

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <initializer_list>
#include <stdexcept>
#include <string>

#include "ovra/status.h"

namespace ovra_host {

class Error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Ends the program with a status; all that is to say has been said.
struct Exit {
  explicit Exit(int status) : code(status) {}
  int code;
};

// The same error, told about the first of these names unless it is told about one of them.
inline Error ErrorAbout(std::initializer_list<std::string> names, const Error& error) {
  const std::string text = error.what();
  const auto is_told_about = [&text](const std::string& name) { return text.rfind(name, 0) == 0; };
  const bool is_told = std::any_of(names.begin(), names.end(), is_told_about);
  return Error(is_told ? text : *names.begin() + ": " + text);
}

// Tells the user, in a line of standard error, what does not stop the work.
inline void PrintNote(const std::string& text) {
  const char* const over_a_progress_bar = ::isatty(STDERR_FILENO) != 0 ? "\r\033[K" : "";
  std::fprintf(stderr, "%sovra: %s\n", over_a_progress_bar, text.c_str());
}

// Throws the text and number of a status that is not OVRA_OK.
inline void CheckStatus(OvraStatus status, const std::string& function) {
  if (status == OVRA_OK) return;
  throw Error(function + ": " + OvraStatusText(status) + " (status " + std::to_string(status) +
              ")");
}

}  // namespace ovra_host
