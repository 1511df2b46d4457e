// SPDX-License-Identifier: MIT
// The built program as a user runs it, in a folder of its own.
#pragma once

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "image_io.h"
#include "support/random.h"
#include "tools/temporary_folder.h"

namespace ovra_test {

using ovra_host::FileFormat;
using ovra_host::Image;

struct RunResult {
  int exit_code;
  std::string output;
  std::string errors;
};

inline std::vector<uint8_t> Bytes(const Image& image) {
  return std::vector<uint8_t>(image.data(), image.data() + image.size_bytes());
}

// Random bytes, the same at each call.
inline Image Noise(int32_t width, int32_t height, uint32_t depth_bits, uint32_t channels) {
  Image image(width, height, FileFormat(depth_bits, channels));
  Random random(depth_bits + channels);
  std::generate_n(image.data(), image.size_bytes(), [&] { return uint8_t(random() >> 24); });
  return image;
}

class ProgramTest : public testing::Test {
 protected:
  // Arguments are separated by spaces; file names are those in the test's folder, which is the
  // program's current one.
  RunResult Run(const std::string& arguments) const { return Shell("$OVRA " + arguments); }

  // What a shell says in the test's folder; $OVRA is the program.
  RunResult Shell(const std::string& commands) const {
    const std::string command = "cd '" + folder_.File("") + "' && OVRA='" OVRA_PROGRAM "' && (" +
                                commands + ") >'" + logs_.File("out") + "' 2>'" +
                                logs_.File("err") + "'";
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, Text("out"), Text("err")};
  }

  void ExpectSuccess(const std::string& arguments) const {
    const RunResult result = Run(arguments);
    ASSERT_EQ(result.exit_code, 0) << arguments << "\n" << result.errors;
  }

  // Runs the command on a.tif, which becomes `source`, for b.tif, which is to be `expected`.
  void ExpectResult(const std::string& command, const Image& source, const Image& expected) const {
    Write("a.tif", source);
    ExpectSuccess(command + " a.tif b.tif");
    EXPECT_EQ(Bytes(Read("b.tif")), Bytes(expected)) << command;
  }

  void ExpectFailure(const std::string& arguments, const std::string& text) const {
    const RunResult result = Run(arguments);
    EXPECT_NE(result.exit_code, 0) << arguments;
    EXPECT_NE(result.errors.find(text), std::string::npos) << arguments << "\n" << result.errors;
    const auto lines = [](const std::string& t) { return std::count(t.begin(), t.end(), '\n'); };
    EXPECT_EQ(lines(result.errors), 1 + lines(text)) << result.errors;
    EXPECT_EQ(result.errors.rfind("ovra: ", 0), 0U) << result.errors;
  }

  Image Read(const std::string& name) const { return ovra_host::ReadImage(folder_.File(name)); }

  void Write(const std::string& name, const Image& image) const {
    ovra_host::WriteImage(image, folder_.File(name));
  }

  void WriteText(const std::string& name, const std::string& text) const {
    WriteBytes(folder_.File(name), FileBytes(text.begin(), text.end()));
  }

  TemporaryFolder folder_;

 private:
  std::string Text(const std::string& kind) const {
    const FileBytes bytes = ReadBytes(logs_.File(kind));
    return std::string(bytes.begin(), bytes.end());
  }

  TemporaryFolder logs_;
};

// Runs the program and answers the most memory that it held, in bytes; -1 when it fails.
inline int64_t PeakMemory(const std::vector<std::string>& arguments) {
  std::vector<char*> words;
  for (const std::string& word : arguments) words.push_back(const_cast<char*>(word.c_str()));
  words.push_back(nullptr);
  const pid_t child = ::fork();
  if (child == 0) {
    ::execv(OVRA_PROGRAM, words.data());
    ::_exit(127);
  }
  int status = 0;
  rusage usage = {};
  ::wait4(child, &status, 0, &usage);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? int64_t{1024} * usage.ru_maxrss : -1;
}

}  // namespace ovra_test
