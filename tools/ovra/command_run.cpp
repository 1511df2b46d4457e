// SPDX-License-Identifier: MIT
#include "chain.h"
#include "commands.h"
#include "files.h"
#include "picture_files.h"

namespace ovra_host {
namespace {

constexpr char kRecipeMark = '@';

std::string ReadRecipe(const std::string& path) {
  constexpr uint64_t kMaxBytes = 1 << 16;
  const InputFile file(path);
  if (file.size() > kMaxBytes) file.Refuse("is too long for a recipe");
  std::string text(static_cast<size_t>(file.size()), '\0');
  if (std::fread(text.data(), 1, text.size(), file.stream()) != text.size()) {
    file.Refuse("cannot be read");
  }
  return text;
}

}  // namespace

void AddRunCommand(CLI::App& app, const CommonOptions& common) {
  CLI::App* const command =
      app.add_subcommand("run", "Work on pictures by several commands, one after the other");
  const auto chain = std::make_shared<std::string>();
  command
      ->add_option("chain", *chain,
                   "commands with their options and without files, | between them; or the name of "
                   "a file that holds them, behind an @")
      ->required()
      ->type_name("CHAIN");
  const auto files = AddFileOptions(*command);
  command->footer(
      "Pictures stay in memory between the commands, and what they carry goes into the result as\n"
      "from a single one. Options that all commands share stand behind run. In a file commands "
      "may\n"
      "stand in a line each, without |, and a # begins a remark. Words with spaces are quoted.\n\n"
      "Example:\n"
      "  ovra run \"resize --fit 1200x800 | sharpen | curve --contrast 0.2\" *.jpg -o out\n"
      "  ovra run @web.recipe *.jpg -o 'web/%s.jpg'");
  command->callback([chain, files, &common] {
    const bool is_recipe = !chain->empty() && chain->front() == kRecipeMark;
    const Chain operation(is_recipe ? ReadRecipe(chain->substr(1)) : *chain, common);
    RunOnFiles(*files, common, OnFiles(common, [&operation](Picture picture) {
      return operation(std::move(picture));
    }));
  });
}

}  // namespace ovra_host
