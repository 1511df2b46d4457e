// SPDX-License-Identifier: MIT
// The two ends of every conversion: a file that is read, and one that appears only when whole.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "temporary_files.h"

namespace ovra_host {

struct StreamCloser {
  void operator()(std::FILE* stream) const { std::fclose(stream); }
};
// Pixels of the largest picture that is read unless the user allows more: enough for the largest
// scans and panoramas, and an end to files of a few kilobytes that claim years of work.
constexpr uint64_t kUsualMaxPixels = 2'500'000'000;

using Stream = std::unique_ptr<std::FILE, StreamCloser>;

// The name that stands for standard input where a picture is read, and for standard output where one
// is written.
inline constexpr const char* kStandardStream = "-";
inline constexpr const char* kStandardInput = "standard input";
inline constexpr const char* kStandardOutput = "standard output";

// Keeps standard output for a picture: from now on the program's words go to standard error. Throws
// Error where standard output is a terminal. Called before anything is printed; more calls do nothing.
void KeepStandardOutputForAPicture();

// A regular file open for reading. What comes by standard input is put into one, without a name,
// first: readers go back and forth.
class InputFile {
 public:
  // What is known of the bytes behind a header: samples as they are, a compression of known strength,
  // or one that may make any picture of a few bytes.
  enum class Holds { kCompressed, kPlainSamples, kAnything };

  // Anything else, as a pipe, is refused before it is opened: opening could wait without end. No
  // picture in it may have more than so many pixels.
  explicit InputFile(const std::string& path, uint64_t max_pixels = kUsualMaxPixels);

  const std::string& path() const { return path_; }
  std::FILE* stream() const { return stream_.get(); }
  uint64_t size() const { return size_; }
  uint64_t max_pixels() const { return max_pixels_; }

  // Reads bytes from an offset, apart from the stream; false where the file ends before.
  bool ReadAt(uint64_t offset, uint8_t* to, size_t bytes) const;

  // Throws unless a picture of this size can come out of a file this long. Called with what a header
  // claims, before memory is asked for.
  void CheckClaim(uint64_t width, uint64_t height, uint64_t bytes_per_pixel,
                  Holds holds = Holds::kCompressed) const;

  // Throws Error about this file.
  [[noreturn]] void Refuse(const std::string& reason) const;

 private:
  void TakeStandardInput();

  std::string path_;
  uint64_t max_pixels_;
  Stream stream_;
  uint64_t size_ = 0;
};

enum class Overwrite { kWritable, kReadOnlyToo };

// A file that is written under another name in the same folder. Commit gives it its own name in one
// step; without it everything is removed again. A symbolic link is followed, also one that leads to
// no file yet; a file of several names keeps them and gets the new content by copying. Standard output
// gets it by copying too. A file that may not be written is replaced only when that is asked for.
class OutputFile {
 public:
  explicit OutputFile(const std::string& path, Overwrite overwrite = Overwrite::kWritable);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  const std::string& path() const { return path_; }
  std::FILE* stream() const { return stream_.get(); }

  // Writes bytes at an offset, apart from the stream; false on failure.
  bool WriteAt(uint64_t offset, const uint8_t* from, size_t bytes) const;

  void Commit();

  // Tells the user something about this file.
  void Note(const std::string& text) const;

  // Throw Error about this file.
  [[noreturn]] void Refuse(const std::string& reason) const;
  [[noreturn]] void RefuseWithSystemMessage() const;

 private:
  bool MoveToItsName();
  bool CopyToItsName() const;
  bool CopyToStandardOutput() const;

  std::string path_;
  std::string final_path_;  // where path_ leads to when it is a symbolic link
  bool has_other_names_ = false;
  TemporaryName temporary_;
  Stream stream_;
};

}  // namespace ovra_host
