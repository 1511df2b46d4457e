// SPDX-License-Identifier: MIT
// Files under passing names, which are gone when the program is, also when a signal ends it.
#pragma once

#include <string>

namespace ovra_host {

// From now on SIGINT, SIGTERM and SIGHUP remove all passing names before they end the program.
void RemoveTemporaryFilesOnSignals();

// A passing name. The file behind it is removed with this object, unless it got its own name.
class TemporaryName {
 public:
  TemporaryName() = default;
  ~TemporaryName();
  TemporaryName(const TemporaryName&) = delete;
  TemporaryName& operator=(const TemporaryName&) = delete;

  // Makes a new file in a folder ("" is the current one) and answers its descriptor; below 0 with
  // errno set when that fails. Called once.
  int Create(const std::string& folder);

  // False with errno set when that fails.
  bool RenameTo(const std::string& path);

 private:
  struct Slot* slot_ = nullptr;
};

}  // namespace ovra_host
