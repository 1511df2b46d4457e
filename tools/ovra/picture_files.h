// SPDX-License-Identifier: MIT
// The files of a command that makes one picture of one: a pair of names, or many pictures and a
// pattern for the names of the results.
#pragma once

#include <functional>
#include <string>

#include "command.h"
#include "image_io.h"

namespace ovra_host {

using FileOperation = std::function<void(const std::string& input, const std::string& output)>;
using PictureOperation = std::function<Picture(Picture)>;

// Reads, works and writes, as the common options say.
FileOperation OnPictures(const CommonOptions& common, PictureOperation operation);

// The same for an operation that changes nothing but the pixels.
FileOperation OnImages(const CommonOptions& common, std::function<Image(const Image&)> operation);

// Adds the file names, -o and --jobs, and makes the operation what the command does. With -o every
// file is worked on, up to --jobs at a time; files that fail are told at the end and do not stop the
// others. The operation must bear being called in parallel.
void AddPictureFiles(CLI::App& command, const CommonOptions& common, FileOperation operation);

}  // namespace ovra_host
