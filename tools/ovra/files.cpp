// SPDX-License-Identifier: MIT
#include "files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "error.h"
#include "image.h"

namespace ovra_host {
namespace {

// No compression of the formats read here makes more bytes of one: deflate stays below 1033, LZW
// and JPEG below 4000.
constexpr uint64_t kMaxExpansion = 4096;

// Bits of a new file's mode, less the user's mask, as any program makes them.
constexpr mode_t kNewFileMode = 0666;

std::string SystemMessage() {
  return std::strerror(errno);
}

// The mode of the file that will be replaced, or of a new one.
mode_t ModeFor(const std::string& path) {
  struct stat existing;
  if (::stat(path.c_str(), &existing) == 0) return existing.st_mode & 07777;
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return kNewFileMode & ~mask;
}

}  // namespace

InputFile::InputFile(const std::string& path) : path_(path) {
  stream_.reset(std::fopen(path.c_str(), "rbe"));
  if (!stream_) Refuse(SystemMessage());
  struct stat information;
  if (::fstat(::fileno(stream()), &information) != 0) Refuse(SystemMessage());
  if (!S_ISREG(information.st_mode)) Refuse("is not a regular file");
  size_ = static_cast<uint64_t>(information.st_size);
}

void InputFile::CheckClaim(uint64_t width, uint64_t height, uint64_t bytes_per_pixel) const {
  const auto max_side = static_cast<uint64_t>(kMaxSide);
  const std::string claim = std::to_string(width) + " x " + std::to_string(height) + " pixels";
  if (width == 0 || height == 0) Refuse("claims " + claim);
  if (width > max_side || height > max_side) Refuse("is too large: " + claim);
  const uint64_t bytes = width * height * bytes_per_pixel;
  if (bytes > static_cast<uint64_t>(kMaxImageBytes)) Refuse("is too large: " + claim);
  if (bytes / kMaxExpansion > size_) Refuse("is too short for the " + claim + " that it claims");
}

void InputFile::Refuse(const std::string& reason) const {
  throw Error(path_ + ": " + reason);
}

OutputFile::OutputFile(const std::string& path) : path_(path), final_path_(path) {
  std::error_code ignored;  // a path that leads nowhere yet stays as it is
  const std::filesystem::path target = std::filesystem::canonical(path, ignored);
  if (!target.empty()) final_path_ = target.string();
  if (!target.empty() && !std::filesystem::is_regular_file(target)) {
    Refuse("exists and is not a regular file");
  }
  temporary_path_ = final_path_ + ".XXXXXX";
  const int descriptor = ::mkostemp(temporary_path_.data(), O_CLOEXEC);
  if (descriptor < 0) {
    temporary_path_.clear();
    Refuse("cannot be written: " + SystemMessage());
  }
  stream_.reset(::fdopen(descriptor, "w+b"));
  // The destructor does not run when this fails, so the file is removed here.
  if (!stream_ || ::fchmod(descriptor, ModeFor(final_path_)) != 0) {
    const std::string message = SystemMessage();
    if (!stream_) ::close(descriptor);
    ::unlink(temporary_path_.c_str());
    Refuse("cannot be written: " + message);
  }
}

OutputFile::~OutputFile() {
  stream_.reset();
  if (!temporary_path_.empty()) ::unlink(temporary_path_.c_str());
}

void OutputFile::Commit() {
  const bool written = std::fflush(stream()) == 0 && std::ferror(stream()) == 0 &&
                       ::fsync(::fileno(stream())) == 0 && std::fclose(stream_.release()) == 0 &&
                       std::rename(temporary_path_.c_str(), final_path_.c_str()) == 0;
  if (!written) Refuse("cannot be written: " + SystemMessage());
  temporary_path_.clear();
}

void OutputFile::Refuse(const std::string& reason) const {
  throw Error(path_ + ": " + reason);
}

}  // namespace ovra_host
