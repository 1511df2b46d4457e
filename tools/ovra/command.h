// SPDX-License-Identifier: MIT
// What the subcommands share. Each of them is one file command_<name>.cpp with one function
// Add<Name>Command, declared in commands.h and called by main.
#pragma once

#include <CLI/CLI.hpp>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "error.h"
#include "image.h"
#include "image_io.h"

namespace ovra_host {

using PictureOperation = std::function<Picture(Picture)>;
using TimeSink = std::function<void(const std::string& function, double milliseconds)>;

// Options that stand before or after any subcommand.
struct CommonOptions {
  TimeSink on_time;  // is told how long each call of the library took, when there is one
  ReadOptions read;
  WriteOptions write;

  // While a chain is read, what the commands in it do to a picture; they take no files then.
  std::vector<PictureOperation>* stages = nullptr;
};

struct Position {
  int32_t x = 0;
  int32_t y = 0;
};

struct Size {
  int32_t width = 0;
  int32_t height = 0;
};

struct Rectangle {
  Position position;
  Size size;
};

// Options of a text form: "X,Y", "WxH" and "X,Y,W,H", whole numbers, sizes above 0. The value is
// written while the command line is read; a text that does not fit is a usage error.
CLI::Option* AddPosition(CLI::App& command, const std::string& name, Position& value,
                         const std::string& description);
CLI::Option* AddSize(CLI::App& command, const std::string& name, Size& value,
                     const std::string& description);
CLI::Option* AddRectangle(CLI::App& command, const std::string& name, Rectangle& value,
                          const std::string& description);

// An option whose value is one of a few words, or the number that a word stands for.
using Choices = std::vector<std::pair<std::string, int32_t>>;
CLI::Option* AddChoice(CLI::App& command, const std::string& name, int32_t& value,
                       const Choices& choices, const std::string& description);

// --fill COLOR: around a picture, in one of the forms of color_words.h.
CLI::Option* AddFill(CLI::App& command, std::string& fill);
std::vector<uint16_t> ParseFill(const std::string& text, const Image& image);

// The modes of OvraRotateImage by name.
const Choices& TurnChoices();

// File names; that of an input is required. An output's extension is checked before any work is done.
CLI::Option* AddInput(CLI::App& command, const std::string& name, std::string& path,
                      const std::string& description = "picture to read");
CLI::Option* AddOutput(CLI::App& command, const std::string& name, std::string& path,
                       const std::string& description);

// Calls the library: `call` answers a status, and one that is not OVRA_OK becomes an Error with its
// text.
template <class Call>
void CallLibrary(const CommonOptions& common, const std::string& function, const Call& call) {
  const auto start = std::chrono::steady_clock::now();
  const OvraStatus status = call();
  const std::chrono::duration<double, std::milli> elapsed =
      std::chrono::steady_clock::now() - start;
  CheckStatus(status, function);
  if (common.on_time) common.on_time(function, elapsed.count());
}

}  // namespace ovra_host
