// SPDX-License-Identifier: MIT
#include "picture_files.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <set>
#include <utility>

#include "memory_share.h"

namespace ovra_host {
namespace {

namespace fs = std::filesystem;

struct FilePair {
  std::string input;
  std::string output;
};

constexpr std::string_view kStemMark = "%s";

std::string OutputFor(const std::string& input, const std::string& pattern) {
  std::string output = pattern;
  const size_t mark = output.find(kStemMark);
  if (mark != std::string::npos) {
    return output.replace(mark, kStemMark.size(), fs::path(input).stem().string());
  }
  if (pattern == kStandardStream) return output;
  if (fs::is_directory(pattern) || !fs::path(pattern).has_extension()) {
    return (fs::path(pattern) / fs::path(input).filename()).string();
  }
  return output;
}

std::vector<FilePair> PairsFor(const FileOptions& options) {
  if (options.pattern.empty()) {
    if (options.names.size() == 2) return {{options.names[0], options.names[1]}};
    throw Error(options.names.size() == 1
                    ? "a name for the result is missing behind " + options.names[0]
                    : "several pictures need -o FOLDER or -o 'FOLDER/%s.jpg'");
  }
  std::vector<FilePair> pairs;
  std::set<std::string> outputs;
  for (const std::string& input : options.names) {
    const std::string output = OutputFor(input, options.pattern);
    if (!outputs.insert(output).second) {
      throw Error("two results would be named " + output + "; -o needs a %s or a folder");
    }
    std::error_code absent;
    if (fs::equivalent(input, output, absent))
      throw Error(output + ": would replace its own input");
    pairs.push_back({input, output});
  }
  return pairs;
}

void Work(const FilePair& pair, const FileOperation& operation) {
  try {
    operation(pair.input, pair.output);
  } catch (const Error& error) {
    throw ErrorAbout({pair.input == kStandardStream ? kStandardInput : pair.input,
                      pair.output == kStandardStream ? kStandardOutput : pair.output},
                     error);
  }
}

// Outputs appear when they are whole: what is there, and is newer than its input, is finished.
bool IsFinished(const FilePair& pair) {
  std::error_code absent;
  const fs::file_time_type output = fs::last_write_time(pair.output, absent);
  if (absent) return false;
  const fs::file_time_type input = fs::last_write_time(pair.input, absent);
  return !absent && output > input;
}

}  // namespace

PictureOperation OnPixels(std::function<Image(const Image&)> operation) {
  return [operation = std::move(operation)](Picture picture) {
    picture.image = operation(picture.image);
    return picture;
  };
}

FileOperation OnFiles(const CommonOptions& common, PictureOperation operation) {
  return [&common, operation = std::move(operation)](const std::string& input,
                                                     const std::string& output) {
    auto reader = OpenPicture(input, common.read.open);
    const MemoryShare share(reader->header());
    Picture picture = ReadPicture(*reader, input, common.read);
    reader.reset();
    const std::string size = std::to_string(picture.image.width()) + " x " +
                             std::to_string(picture.image.height()) + " pixels";
    try {
      picture = operation(std::move(picture));
    } catch (const Error& error) {
      throw Error(input + " (" + size + "): " + error.what());
    }
    WritePicture(picture, output, common.write);
  };
}

std::shared_ptr<FileOptions> AddFileOptions(CLI::App& command) {
  auto options = std::make_shared<FileOptions>();
  command
      .add_option("files", options->names,
                  "picture to read and picture to write; with -o all are read; - is standard input "
                  "or output")
      ->required()
      ->type_name("INPUT OUTPUT");
  command
      .add_option("-o,--output", options->pattern,
                  "folder for the results, or a name in which %s stands for that of each picture")
      ->type_name("NAME");
  command
      .add_option("-j,--jobs", options->jobs,
                  "pictures to work on at a time; without it, as many as there are processors")
      ->check(CLI::Range(1, kMaxJobs))
      ->type_name("N");
  command.add_flag("--resume", options->resume,
                   "leave out pictures whose results are there and newer than they are");
  return options;
}

void RunOnFiles(const FileOptions& options, const CommonOptions& common,
                const FileOperation& operation) {
  std::vector<FilePair> pairs = PairsFor(options);
  for (const FilePair& pair : pairs) {
    CheckOutput(pair.output, common.write);
    if (pair.output == kStandardStream) KeepStandardOutputForAPicture();
  }
  const bool is_batch = pairs.size() > 1;
  if (options.resume) {
    const size_t finished = std::erase_if(pairs, IsFinished);
    if (finished > 0) PrintNote(std::to_string(finished) + " of them finished before");
  }
  std::vector<std::string> names;
  for (const FilePair& pair : pairs) {
    names.push_back(pair.input);
    const fs::path folder = fs::path(pair.output).parent_path();
    if (!options.pattern.empty() && !folder.empty()) fs::create_directories(folder);
  }
  if (pairs.empty()) return;
  if (!is_batch) return Work(pairs[0], operation);
  const double seconds =
      RunBatch(names, options.jobs, [&](size_t i) { Work(pairs[i], operation); });
  char text[80];
  std::snprintf(text, sizeof(text), "%zu pictures, %.3g a second", pairs.size(),
                static_cast<double>(pairs.size()) / seconds);
  PrintNote(text);
}

void AddPictureFiles(CLI::App& command, const CommonOptions& common, PictureOperation operation,
                     FileOperation on_files) {
  if (common.stages != nullptr) {
    command.callback(
        [&common, operation = std::move(operation)] { common.stages->push_back(operation); });
    return;
  }
  if (!on_files) on_files = OnFiles(common, std::move(operation));
  command.callback([options = AddFileOptions(command), on_files = std::move(on_files), &common] {
    RunOnFiles(*options, common, on_files);
  });
}

}  // namespace ovra_host
