// SPDX-License-Identifier: MIT
// What goes wrong, as an exception whose text is the one line that the user sees.
#pragma once

#include <cstdio>
#include <stdexcept>
#include <string>

#include "ovra/status.h"

namespace ovra_host {

class Error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Tells the user, in a line of standard error, what does not stop the work.
inline void PrintNote(const std::string& text) {
  std::fprintf(stderr, "ovra: %s\n", text.c_str());
}

// Throws the text and number of a status that is not OVRA_OK.
inline void CheckStatus(OvraStatus status, const std::string& function) {
  if (status == OVRA_OK) return;
  throw Error(function + ": " + OvraStatusText(status) + " (status " + std::to_string(status) +
              ")");
}

}  // namespace ovra_host
