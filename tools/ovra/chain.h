// SPDX-License-Identifier: MIT
// Several commands, one after the other, on a picture in memory.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "command.h"

namespace ovra_host {

// The stages of a chain and their words. | or the end of a line stands between stages, white space
// between words, quotes of either kind around words that hold such; a # begins a remark.
std::vector<std::vector<std::string>> ParseChain(const std::string& text);

class Chain {
 public:
  // Throws Error, which names the stage, where one is no command line.
  Chain(const std::string& text, const CommonOptions& common);
  Chain(const Chain&) = delete;
  Chain& operator=(const Chain&) = delete;

  Picture operator()(Picture picture) const;

 private:
  CommonOptions common_;
  std::vector<std::unique_ptr<CLI::App>> apps_;  // hold the options of the operations
  std::vector<PictureOperation> operations_;
};

}  // namespace ovra_host
