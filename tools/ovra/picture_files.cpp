// SPDX-License-Identifier: MIT
#include "picture_files.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <mutex>
#include <set>
#include <thread>
#include <utility>

namespace ovra_host {
namespace {

namespace fs = std::filesystem;

struct FileOptions {
  std::vector<std::string> names;
  std::string pattern;
  int jobs = 1;
};

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
  if (fs::is_directory(pattern) || pattern.back() == '/') {
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
  const fs::path folder = fs::path(pairs[0].output).parent_path();
  if (!folder.empty()) fs::create_directories(folder);
  return pairs;
}

// Works through the pairs with so many threads. Failures come in the order of the pairs.
class Jobs {
 public:
  Jobs(const std::vector<FilePair>& pairs, const FileOperation& operation)
      : pairs_(pairs), operation_(operation), failures_(pairs.size()) {}

  std::vector<std::string> Run(int count) {
    std::vector<std::thread> threads;
    const int useful =
        static_cast<int>(std::min<size_t>(static_cast<size_t>(count), pairs_.size()));
    for (int i = 0; i < useful; ++i) threads.emplace_back([this] { Work(); });
    for (std::thread& thread : threads) thread.join();
    if (IsTerminal()) std::fprintf(stderr, "\r\033[K");
    std::erase(failures_, "");
    return std::move(failures_);
  }

 private:
  static bool IsTerminal() { return ::isatty(STDERR_FILENO) != 0; }

  void Work() {
    for (size_t i = next_++; i < pairs_.size(); i = next_++) {
      try {
        operation_(pairs_[i].input, pairs_[i].output);
      } catch (const std::bad_alloc&) {
        failures_[i] = pairs_[i].input + ": out of memory";
      } catch (const std::exception& error) {
        failures_[i] = error.what();
      }
      ++done_;
      if (IsTerminal()) {
        std::fprintf(stderr, "\r%zu of %zu pictures", done_.load(), pairs_.size());
      }
    }
  }

  const std::vector<FilePair>& pairs_;
  const FileOperation& operation_;
  std::vector<std::string> failures_;
  std::atomic<size_t> next_ = 0;
  std::atomic<size_t> done_ = 0;
};

void Run(const FileOptions& options, const CommonOptions& common, const FileOperation& operation) {
  const std::vector<FilePair> pairs = PairsFor(options);
  for (const FilePair& pair : pairs) CheckOutput(pair.output, common.write);
  if (pairs.size() == 1) return operation(pairs[0].input, pairs[0].output);
  const std::vector<std::string> failures = Jobs(pairs, operation).Run(options.jobs);
  if (failures.empty()) return;
  for (const std::string& failure : failures) PrintNote(failure);
  throw Error(std::to_string(failures.size()) + " of " + std::to_string(pairs.size()) +
              " pictures failed");
}

}  // namespace

FileOperation OnPictures(const CommonOptions& common, PictureOperation operation) {
  return [&common, operation](const std::string& input, const std::string& output) {
    Picture picture = ReadPicture(input, common.read);
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

namespace {

// Every refusal names a file.
FileOperation Named(const FileOperation& operation) {
  return [operation](const std::string& input, const std::string& output) {
    try {
      operation(input, output);
    } catch (const Error& error) {
      const std::string text = error.what();
      const bool is_named =
          text.find(input) != std::string::npos || text.find(output) != std::string::npos;
      throw Error(is_named ? text : input + ": " + text);
    }
  };
}

}  // namespace

FileOperation OnImages(const CommonOptions& common, std::function<Image(const Image&)> operation) {
  return OnPictures(common, [operation](Picture picture) {
    picture.image = operation(picture.image);
    return picture;
  });
}

void AddPictureFiles(CLI::App& command, const CommonOptions& common, FileOperation operation) {
  constexpr int kMaxJobs = 32;
  const auto options = std::make_shared<FileOptions>();
  command
      .add_option("files", options->names,
                  "picture to read and picture to write; with -o all are read")
      ->required()
      ->type_name("INPUT OUTPUT");
  command
      .add_option("-o,--output", options->pattern,
                  "folder for the results, or a name in which %s stands for that of each picture")
      ->type_name("NAME");
  command.add_option("-j,--jobs", options->jobs, "pictures to work on at a time")
      ->check(CLI::Range(1, kMaxJobs))
      ->type_name("N")
      ->capture_default_str();
  command.callback(
      [options, operation = Named(operation), &common] { Run(*options, common, operation); });
}

}  // namespace ovra_host
