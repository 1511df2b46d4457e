// SPDX-License-Identifier: MIT
// The files of a command that makes one picture of one: a pair of names, or many pictures and a
// pattern for the names of the results.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "batch.h"
#include "command.h"
#include "image_io.h"

namespace ovra_host {

using FileOperation = std::function<void(const std::string& input, const std::string& output)>;

// An operation that changes nothing but the pixels.
PictureOperation OnPixels(std::function<Image(const Image&)> operation);

// Reads, works and writes, as the common options say.
FileOperation OnFiles(const CommonOptions& common, PictureOperation operation);

struct FileOptions {
  std::vector<std::string> names;
  std::string pattern;
  int jobs = UsualJobs();
  bool resume = false;
};

// Adds the file names, -o, --jobs and --resume.
std::shared_ptr<FileOptions> AddFileOptions(CLI::App& command);

// With -o every file is worked on, up to --jobs at a time. The operation must bear being called in
// parallel.
void RunOnFiles(const FileOptions& options, const CommonOptions& common,
                const FileOperation& operation);

// Makes the operation what the command does: to its files, or to the picture that a chain hands on.
// A command may have another way for files than to read, work and write.
void AddPictureFiles(CLI::App& command, const CommonOptions& common, PictureOperation operation,
                     FileOperation on_files = nullptr);

}  // namespace ovra_host
