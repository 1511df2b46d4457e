// SPDX-License-Identifier: MIT
// A photograph from file to file: reads a PNG, reduces it to 640 pixels of width, sharpens what the
// reduction has softened, and writes a PNG. Needs libpng.
//
//   c++ -std=c++17 photograph.cpp $(pkg-config --cflags --libs OvraBase libpng) -o photograph
//   ./photograph IN.png OUT.png
#include <png.h>

#include <iostream>
#include <ovra/ovra.hpp>
#include <stdexcept>
#include <string>

namespace {

constexpr int32_t kNewWidth = 640;

ovra::Image Read(const std::string& name) {
  png_image png = {};
  png.version = PNG_IMAGE_VERSION;
  if (png_image_begin_read_from_file(&png, name.c_str()) == 0) {
    throw std::runtime_error(name + ": " + png.message);
  }
  png.format = PNG_FORMAT_RGB;
  ovra::Image image({static_cast<int32_t>(png.width), static_cast<int32_t>(png.height)},
                    ovra::Format::Rgb());
  if (png_image_finish_read(&png, nullptr, image.view().data(), 0, nullptr) == 0) {
    throw std::runtime_error(name + ": " + png.message);
  }
  return image;
}

void Write(const std::string& name, const ovra::Image& image) {
  png_image png = {};
  png.version = PNG_IMAGE_VERSION;
  png.format = PNG_FORMAT_RGB;
  png.width = static_cast<png_uint_32>(image.width());
  png.height = static_cast<png_uint_32>(image.height());
  if (png_image_write_to_file(&png, name.c_str(), 0, image.view().data(), 0, nullptr) == 0) {
    throw std::runtime_error(name + ": " + png.message);
  }
}

ovra::Image Reduced(const ovra::Image& photograph) {
  const int64_t width = photograph.width();
  const int64_t height = (photograph.height() * int64_t{kNewWidth} + width / 2) / width;
  ovra::Image reduced({kNewWidth, static_cast<int32_t>(height)}, photograph.format());
  ovra::ResizeImage(photograph, reduced).OrThrow();

  const auto weights = ovra::GaussianWeights(0.8).value();
  const auto tables = ovra::ResponseTables::Make(ovra::DefaultCurves()).value();
  const auto sharpen = ovra::YUsm::Make(reduced.format(), weights, 2.0F, tables).value();
  sharpen(reduced, reduced).OrThrow();
  return reduced;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: photograph IN.png OUT.png\n";
    return 2;
  }
  try {
    Write(argv[2], Reduced(Read(argv[1])));
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
  return 0;
}
