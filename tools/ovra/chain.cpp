// SPDX-License-Identifier: MIT
#include "chain.h"

#include <cctype>
#include <string_view>
#include <utility>

#include "commands.h"
#include "usage.h"

namespace ovra_host {
namespace {

// One command line of a chain, whose operation goes into common.stages.
std::unique_ptr<CLI::App> ReadStage(const std::vector<std::string>& words,
                                    const CommonOptions& common) {
  auto app = std::make_unique<CLI::App>();
  app->set_help_flag();
  app->require_subcommand(1);
  AddPictureCommands(*app, common);
  try {
    app->parse(std::vector<std::string>(words.rbegin(), words.rend()));
  } catch (const CLI::ParseError& error) {
    throw Error(UsageMessage(*app, words, error));
  }
  return app;
}

}  // namespace

std::vector<std::vector<std::string>> ParseChain(const std::string& text) {
  constexpr std::string_view kBetweenStages = "|\n";
  std::vector<std::vector<std::string>> stages(1);
  for (size_t at = 0; at < text.size();) {
    const char c = text[at];
    if (kBetweenStages.find(c) != std::string_view::npos) {
      if (!stages.back().empty()) stages.emplace_back();
      ++at;
    } else if (std::isspace(static_cast<unsigned char>(c)) != 0) {
      ++at;
    } else if (c == '#') {
      at = std::min(text.find('\n', at), text.size());
    } else {
      std::string word;
      for (char quote = 0; at < text.size(); ++at) {
        const char letter = text[at];
        if (quote != 0 ? letter == quote : letter == '"' || letter == '\'') {
          quote = quote != 0 ? 0 : letter;
        } else if (quote == 0 &&
                   (letter == '|' || std::isspace(static_cast<unsigned char>(letter)))) {
          break;
        } else {
          word += letter;
        }
      }
      stages.back().push_back(word);
    }
  }
  if (stages.back().empty()) stages.pop_back();
  return stages;
}

Chain::Chain(const std::string& text, const CommonOptions& common) : common_(common) {
  common_.stages = &operations_;
  for (const std::vector<std::string>& words : ParseChain(text)) {
    try {
      apps_.push_back(ReadStage(words, common_));
    } catch (const Error& error) {
      throw Error("stage " + std::to_string(apps_.size() + 1) + ": " + error.what());
    }
  }
  if (apps_.empty()) throw Error("the chain is empty");
}

Picture Chain::operator()(Picture picture) const {
  for (const PictureOperation& operation : operations_) picture = operation(std::move(picture));
  return picture;
}

}  // namespace ovra_host
