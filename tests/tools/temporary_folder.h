// SPDX-License-Identifier: MIT
// A folder that goes away with the test, and whole files in it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace ovra_test {

using FileBytes = std::vector<uint8_t>;

class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "ovra-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("mkdtemp failed");
    path_ = name;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string File(const std::string& name) const { return (path_ / name).string(); }

  size_t FileCount() const {
    const std::filesystem::directory_iterator files(path_);
    return static_cast<size_t>(std::distance(begin(files), end(files)));
  }

 private:
  std::filesystem::path path_;
};

inline FileBytes ReadBytes(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  return FileBytes(std::istreambuf_iterator<char>(stream), {});
}

inline void WriteBytes(const std::string& path, const FileBytes& bytes) {
  std::ofstream stream(path, std::ios::binary);
  stream.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

}  // namespace ovra_test
