// SPDX-License-Identifier: MIT
// The two ends of every conversion: a file that is read, and one that appears only when whole.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

namespace ovra_host {

struct StreamCloser {
  void operator()(std::FILE* stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<std::FILE, StreamCloser>;

// A regular file open for reading.
class InputFile {
 public:
  explicit InputFile(const std::string& path);

  const std::string& path() const { return path_; }
  std::FILE* stream() const { return stream_.get(); }
  uint64_t size() const { return size_; }

  // Throws unless a picture of this size can come out of a file this long and is not too large.
  // Called with what a header claims, before memory is asked for.
  void CheckClaim(uint64_t width, uint64_t height, uint64_t bytes_per_pixel) const;

  // Throws Error about this file.
  [[noreturn]] void Refuse(const std::string& reason) const;

 private:
  std::string path_;
  Stream stream_;
  uint64_t size_ = 0;
};

// A file that is written under another name in the same folder. Commit gives it its own name in one
// step; without it everything is removed again.
class OutputFile {
 public:
  explicit OutputFile(const std::string& path);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  const std::string& path() const { return path_; }
  std::FILE* stream() const { return stream_.get(); }

  void Commit();

  // Throws Error about this file.
  [[noreturn]] void Refuse(const std::string& reason) const;

 private:
  std::string path_;
  std::string final_path_;  // where path_ leads to when it is a symbolic link
  std::string temporary_path_;
  Stream stream_;
};

}  // namespace ovra_host
