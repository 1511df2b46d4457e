// SPDX-License-Identifier: MIT
#include "files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
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

mode_t ModeOfNewFiles() {
  static const mode_t mask = [] {  // asking for it changes it: once, whatever the number of threads
    const mode_t present = ::umask(0);
    ::umask(present);
    return present;
  }();
  return kNewFileMode & ~mask;
}

// Where a path leads when its last part is a symbolic link, whether or not something is there.
std::filesystem::path Followed(const std::string& path) {
  constexpr int kMaxLinks = 40;
  std::filesystem::path target = path;
  std::error_code error;
  for (int i = 0; i < kMaxLinks && std::filesystem::is_symlink(target, error); ++i) {
    const std::filesystem::path next = std::filesystem::read_symlink(target, error);
    if (error) break;
    target = target.parent_path() / next;  // an absolute one replaces all before it
  }
  return target;
}

// A file without a name, for what streams bring or take.
Stream MakeNamelessFile() {
  return Stream(std::tmpfile());
}

bool CopyAll(std::FILE* from, std::FILE* to) {
  std::array<char, 1 << 16> buffer;
  size_t count = 0;
  while ((count = std::fread(buffer.data(), 1, buffer.size(), from)) > 0) {
    if (std::fwrite(buffer.data(), 1, count, to) != count) return false;
  }
  return std::ferror(from) == 0 && std::fflush(to) == 0;
}

// Nobody may write it, or this user may not.
bool IsReadOnly(const std::string& path, mode_t mode) {
  constexpr mode_t kAnyWriter = 0222;
  return (mode & kAnyWriter) == 0 || ::access(path.c_str(), W_OK) != 0;
}

// The descriptor that leads where standard output led.
int KeptStandardOutput() {
  static const int kept = [] {
    const int descriptor = ::dup(STDOUT_FILENO);
    return descriptor >= 0 && ::dup2(STDERR_FILENO, STDOUT_FILENO) >= 0 ? descriptor : -1;
  }();
  return kept;
}

}  // namespace

void KeepStandardOutputForAPicture() {
  if (::isatty(STDOUT_FILENO) != 0) throw Error("standard output is a terminal, not for pictures");
  KeptStandardOutput();
}

void InputFile::TakeStandardInput() {
  path_ = kStandardInput;
  stream_ = MakeNamelessFile();
  if (!stream_ || !CopyAll(stdin, stream_.get())) Refuse("cannot be read: " + SystemMessage());
  size_ = static_cast<uint64_t>(::ftello(stream()));
  std::rewind(stream());
}

InputFile::InputFile(const std::string& path, uint64_t max_pixels)
    : path_(path), max_pixels_(max_pixels) {
  if (path == kStandardStream) {
    TakeStandardInput();
    return;
  }
  struct stat information;
  if (::stat(path.c_str(), &information) != 0) Refuse(SystemMessage());
  if (!S_ISREG(information.st_mode)) Refuse("is not a regular file");
  // Something else may have taken its place: opened this way, not even a pipe waits.
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) Refuse(SystemMessage());
  stream_.reset(::fdopen(descriptor, "rb"));
  if (!stream_) ::close(descriptor);
  if (!stream_ || ::fstat(descriptor, &information) != 0) Refuse(SystemMessage());
  if (!S_ISREG(information.st_mode)) Refuse("is not a regular file");
  size_ = static_cast<uint64_t>(information.st_size);
}

bool InputFile::ReadAt(uint64_t offset, uint8_t* to, size_t bytes) const {
  if (offset > size_ || bytes > size_ - offset) return false;
  while (bytes > 0) {
    const ssize_t count = ::pread(::fileno(stream()), to, bytes, static_cast<off_t>(offset));
    if (count <= 0) return false;
    to += count;
    offset += static_cast<uint64_t>(count);
    bytes -= static_cast<size_t>(count);
  }
  return true;
}

void InputFile::CheckClaim(uint64_t width, uint64_t height, uint64_t bytes_per_pixel,
                           Holds holds) const {
  const auto max_side = static_cast<uint64_t>(kMaxSide);
  const std::string claim = std::to_string(width) + " x " + std::to_string(height) + " pixels";
  if (width == 0 || height == 0) Refuse("claims " + claim);
  if (width > max_side || height > max_side) Refuse("is too large: " + claim);
  if (width * height > max_pixels_) {
    Refuse("is too large: " + claim + " are more than the " + std::to_string(max_pixels_) +
           " that --max-pixels allows");
  }
  if (holds == Holds::kAnything) return;
  const uint64_t bytes = width * height * bytes_per_pixel;
  const uint64_t least = holds == Holds::kPlainSamples ? bytes : bytes / kMaxExpansion;
  if (least > size_) Refuse("is too short for the " + claim + " that it claims");
}

void InputFile::Refuse(const std::string& reason) const {
  throw Error(path_ + ": " + reason);
}

OutputFile::OutputFile(const std::string& path, Overwrite overwrite) : path_(path) {
  if (path == kStandardStream) {
    path_ = kStandardOutput;
    stream_ = MakeNamelessFile();
    if (!stream_) RefuseWithSystemMessage();
    return;
  }
  const std::filesystem::path target = Followed(path);
  final_path_ = target.string();
  struct stat existing;
  const bool exists = ::stat(final_path_.c_str(), &existing) == 0;
  if (exists && !S_ISREG(existing.st_mode)) Refuse("exists and is not a regular file");
  if (exists && overwrite == Overwrite::kWritable && IsReadOnly(final_path_, existing.st_mode)) {
    Refuse("is read-only; --force replaces it");
  }
  has_other_names_ = exists && existing.st_nlink > 1;
  const int descriptor = temporary_.Create(target.parent_path().string());
  if (descriptor < 0) RefuseWithSystemMessage();
  stream_.reset(::fdopen(descriptor, "w+b"));
  if (!stream_) ::close(descriptor);
  const mode_t mode = exists ? existing.st_mode & 07777 : ModeOfNewFiles();
  if (!stream_ || ::fchmod(descriptor, mode) != 0) RefuseWithSystemMessage();
}

OutputFile::~OutputFile() = default;

bool OutputFile::WriteAt(uint64_t offset, const uint8_t* from, size_t bytes) const {
  while (bytes > 0) {
    const ssize_t count = ::pwrite(::fileno(stream()), from, bytes, static_cast<off_t>(offset));
    if (count <= 0) return false;
    from += count;
    offset += static_cast<uint64_t>(count);
    bytes -= static_cast<size_t>(count);
  }
  return true;
}

void OutputFile::Commit() {
  const bool flushed = std::fflush(stream()) == 0 && std::ferror(stream()) == 0;
  const bool goes_to_a_stream = final_path_.empty();
  if (!flushed || !(goes_to_a_stream   ? CopyToStandardOutput()
                    : has_other_names_ ? CopyToItsName()
                                       : MoveToItsName())) {
    RefuseWithSystemMessage();
  }
}

bool OutputFile::CopyToStandardOutput() const {
  const int descriptor = KeptStandardOutput();
  if (descriptor < 0) return false;
  const Stream to(::fdopen(descriptor, "wb"));
  std::rewind(stream());
  return to && CopyAll(stream(), to.get());
}

bool OutputFile::MoveToItsName() {
  if (::fsync(::fileno(stream())) != 0) return false;
  if (std::fclose(stream_.release()) != 0) return false;
  return temporary_.RenameTo(final_path_);
}

bool OutputFile::CopyToItsName() const {
  const Stream to(std::fopen(final_path_.c_str(), "wbe"));
  std::rewind(stream());
  return to && CopyAll(stream(), to.get());
}

void OutputFile::Note(const std::string& text) const {
  PrintNote(path_ + ": " + text);
}

void OutputFile::Refuse(const std::string& reason) const {
  throw Error(path_ + ": " + reason);
}

void OutputFile::RefuseWithSystemMessage() const {
  Refuse("cannot be written: " + SystemMessage());
}

}  // namespace ovra_host
