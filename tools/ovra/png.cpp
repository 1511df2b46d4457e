// SPDX-License-Identifier: MIT
// PNG by libpng. Its errors are long jumps: what is jumped over holds nothing that needs a
// destructor, and everything that does lives outside the guarded steps.
#include <png.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <bit>
#include <csetjmp>
#include <cstring>
#include <optional>
#include <utility>

#include "codecs.h"
#include "error.h"

namespace ovra_host {
namespace {

// Chunks of text and profiles may be compressed a thousandfold, and libpng keeps what it expands.
// Honest pictures have a few of them; these limits keep the memory for all together below 256 MiB.
constexpr png_uint_32 kMaxKeptChunks = 64;
constexpr png_alloc_size_t kMaxChunkBytes = 4'000'000;

// Chunks that are skipped unread: nothing here uses them, and they could be large.
constexpr png_byte kSkippedChunks[] = "zTXt\0sPLT\0hIST\0sCAL\0pCAL";

constexpr char kXmpKey[] = "XML:com.adobe.xmp";
constexpr char kCommentKey[] = "Comment";
constexpr double kInchesPerMeter = 1 / 0.0254;

void OnError(png_structp png, png_const_charp message) {
  static_cast<ErrorText*>(png_get_error_ptr(png))->Set(message);
  png_longjmp(png, 1);
}

void OnWarning(png_structp, png_const_charp) {}

// Runs a step; false when libpng jumped out of it.
template <class Step>
bool RunGuarded(png_structp png, const Step& step) {
  if (setjmp(png_jmpbuf(png)) != 0) return false;
  step();
  return true;
}

Metadata MetadataOf(png_structp png, png_infop info) {
  Metadata metadata;
  png_charp name = nullptr;
  int compression = 0;
  png_bytep bytes = nullptr;
  png_uint_32 size = 0;
  if (png_get_iCCP(png, info, &name, &compression, &bytes, &size) != 0) {
    metadata.profile.assign(bytes, bytes + size);
  }
  if (png_get_eXIf_1(png, info, &size, &bytes) != 0) metadata.exif.assign(bytes, bytes + size);
  png_textp texts = nullptr;
  const int count = png_get_text(png, info, &texts, nullptr);
  for (const png_text* text = texts; text != texts + count; ++text) {
    const std::string value(text->text == nullptr ? "" : text->text);
    if (std::strcmp(text->key, kXmpKey) == 0) metadata.xmp.assign(value.begin(), value.end());
    if (std::strcmp(text->key, kCommentKey) == 0) metadata.comment = value;
  }
  png_uint_32 x = 0;
  png_uint_32 y = 0;
  int unit = 0;
  if (png_get_pHYs(png, info, &x, &y, &unit) != 0 && unit == PNG_RESOLUTION_METER) {
    metadata.resolution = {CleanResolution(x / kInchesPerMeter),
                           CleanResolution(y / kInchesPerMeter)};
  }
  return metadata;
}

class PngReader : public RowReader {
 public:
  explicit PngReader(InputFile file) : file_(std::move(file)) {
    png_ = png_create_read_struct(PNG_LIBPNG_VER_STRING, &error_, OnError, OnWarning);
    if (png_ != nullptr) info_ = png_create_info_struct(png_);
    Open();
  }
  ~PngReader() override { png_destroy_read_struct(&png_, &info_, nullptr); }

  void ReadRow(uint8_t* row) override {
    if (interlaced_ && !whole_) ReadWhole();
    if (whole_) {
      std::memcpy(row, whole_->Row(next_row_++), header_.row_bytes());
    } else {
      Run([this, row] { png_read_row(png_, row, nullptr); });
    }
  }

  void Finish() override {
    Run([this] { png_read_end(png_, info_); });
    header_.metadata = MetadataOf(png_, info_);
  }

 private:
  // The destructor of the class does not run when the constructor throws.
  void Open() {
    try {
      Run([this] { ReadHeader(); });
      header_.width = static_cast<int32_t>(png_get_image_width(png_, info_));
      header_.height = static_cast<int32_t>(png_get_image_height(png_, info_));
      header_.format = FileFormat(png_get_bit_depth(png_, info_), png_get_channels(png_, info_));
      header_.metadata = MetadataOf(png_, info_);
      interlaced_ = png_get_interlace_type(png_, info_) != PNG_INTERLACE_NONE;
      file_.CheckClaim(static_cast<uint64_t>(header_.width), static_cast<uint64_t>(header_.height),
                       header_.depth_bits() / 8 * header_.channels());
    } catch (...) {
      png_destroy_read_struct(&png_, &info_, nullptr);
      throw;
    }
  }

  template <class Step>
  void Run(const Step& step) {
    if (png_ == nullptr || info_ == nullptr) file_.Refuse("libpng cannot be started");
    if (!RunGuarded(png_, step)) file_.Refuse(std::string("PNG: ") + error_.text);
  }

  // Reads up to the pixels and asks for grey, RGB or RGBA of 8 or 16 bits in native byte order.
  void ReadHeader() {
    png_init_io(png_, file_.stream());
    png_set_user_limits(png_, kMaxSide, kMaxSide);
    png_set_chunk_cache_max(png_, kMaxKeptChunks);
    png_set_chunk_malloc_max(png_, kMaxChunkBytes);
    png_set_keep_unknown_chunks(png_, PNG_HANDLE_CHUNK_NEVER, kSkippedChunks,
                                sizeof(kSkippedChunks) / 5);
    png_read_info(png_, info_);
    png_set_expand(png_);  // palettes to RGB, fewer than 8 bits to 8, transparent colours to alpha
    const bool has_alpha = (png_get_color_type(png_, info_) & PNG_COLOR_MASK_ALPHA) != 0 ||
                           png_get_valid(png_, info_, PNG_INFO_tRNS) != 0;
    if (has_alpha) png_set_gray_to_rgb(png_);
    if constexpr (std::endian::native == std::endian::little) png_set_swap(png_);
    png_set_interlace_handling(png_);
    png_read_update_info(png_, info_);
  }

  void ReadWhole() {
    whole_.emplace(header_.width, header_.height, header_.format);
    std::vector<png_bytep> rows;
    for (int32_t y = 0; y < header_.height; ++y) rows.push_back(whole_->Row(y));
    Run([this, &rows] { png_read_image(png_, rows.data()); });
  }

  InputFile file_;
  ErrorText error_;
  png_structp png_ = nullptr;
  png_infop info_ = nullptr;
  bool interlaced_ = false;
  std::optional<Image> whole_;  // of an interlaced picture, whose rows come in seven rounds
  int32_t next_row_ = 0;
};

class PngWriter : public RowWriter {
 public:
  PngWriter(OutputPtr file, const PictureHeader& header, std::optional<int> compression)
      : file_(std::move(file)) {
    png_ = png_create_write_struct(PNG_LIBPNG_VER_STRING, &error_, OnError, OnWarning);
    if (png_ != nullptr) info_ = png_create_info_struct(png_);
    try {
      Run([&] { WriteHeader(header, compression); });
    } catch (...) {
      png_destroy_write_struct(&png_, &info_);
      throw;
    }
  }
  ~PngWriter() override { png_destroy_write_struct(&png_, &info_); }

  void WriteRow(const uint8_t* row) override {
    Run([this, row] { png_write_row(png_, row); });
  }

  void Finish() override {
    Run([this] { png_write_end(png_, nullptr); });
    file_->Commit();
  }

 private:
  template <class Step>
  void Run(const Step& step) {
    if (png_ == nullptr || info_ == nullptr) file_->Refuse("libpng cannot be started");
    if (!RunGuarded(png_, step)) file_->Refuse(std::string("PNG: ") + error_.text);
  }

  void WriteHeader(const PictureHeader& header, std::optional<int> compression) {
    const int color_type = header.channels() == 1   ? PNG_COLOR_TYPE_GRAY
                           : header.channels() == 3 ? PNG_COLOR_TYPE_RGB
                                                    : PNG_COLOR_TYPE_RGB_ALPHA;
    png_init_io(png_, file_->stream());
    png_set_benign_errors(png_, 1);  // an odd profile is left out and does no more harm
    png_set_user_limits(png_, kMaxSide, kMaxSide);
    png_set_IHDR(png_, info_, static_cast<png_uint_32>(header.width),
                 static_cast<png_uint_32>(header.height), static_cast<int>(header.depth_bits()),
                 color_type, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    SetCompression(compression);
    SetMetadata(header.metadata);
    png_write_info(png_, info_);
    if constexpr (std::endian::native == std::endian::little) png_set_swap(png_);
  }

  // One filter and little search: most of the time goes into the search, and files are hardly larger.
  void SetCompression(std::optional<int> compression) {
    if (compression) return png_set_compression_level(png_, *compression);
    png_set_compression_level(png_, 1);
    png_set_filter(png_, PNG_FILTER_TYPE_BASE, PNG_FILTER_SUB);
    png_set_compression_strategy(png_, Z_FILTERED);
  }

  void SetMetadata(const Metadata& metadata) {
    if (!metadata.profile.empty()) {
      png_set_iCCP(png_, info_, "profile", PNG_COMPRESSION_TYPE_BASE, metadata.profile.data(),
                   static_cast<png_uint_32>(metadata.profile.size()));
      if (png_get_valid(png_, info_, PNG_INFO_iCCP) == 0) {
        NoteLeftOut(*file_, "PNG cannot hold its colour profile");
      }
    }
    if (!metadata.exif.empty()) {
      png_set_eXIf_1(png_, info_, static_cast<png_uint_32>(metadata.exif.size()),
                     const_cast<png_bytep>(metadata.exif.data()));
    }
    if (!metadata.xmp.empty()) SetText(kXmpKey, metadata.xmp.data(), metadata.xmp.size());
    if (!metadata.comment.empty()) {
      SetText(kCommentKey, metadata.comment.data(), metadata.comment.size());
    }
    if (!metadata.iptc.empty()) NoteLeftOut(*file_, "PNG has no place for IPTC data");
    if (metadata.resolution.x > 0) {
      const auto per_meter = [](double per_inch) {
        return static_cast<png_uint_32>(per_inch * kInchesPerMeter + 0.5);
      };
      png_set_pHYs(png_, info_, per_meter(metadata.resolution.x), per_meter(metadata.resolution.y),
                   PNG_RESOLUTION_METER);
    }
  }

  void SetText(const char* key, const void* text, size_t bytes) {
    // The plain form is for Latin-1; texts here are UTF-8, which is the same for ASCII.
    const auto* const begin = static_cast<const unsigned char*>(text);
    const bool ascii = std::all_of(begin, begin + bytes, [](unsigned char c) { return c < 128; });
    // libpng copies up to the first zero and no further than there is one.
    png_text entry = {};
    texts_[text_count_].assign(reinterpret_cast<const char*>(text), bytes);
    entry.key = const_cast<png_charp>(key);
    entry.text = texts_[text_count_].data();
    entry.compression =
        ascii && key != kXmpKey ? PNG_TEXT_COMPRESSION_NONE : PNG_ITXT_COMPRESSION_NONE;
    ++text_count_;
    png_set_text(png_, info_, &entry, 1);
  }

  OutputPtr file_;
  ErrorText error_;
  png_structp png_ = nullptr;
  png_infop info_ = nullptr;
  std::array<std::string, 2> texts_;
  size_t text_count_ = 0;
};

}  // namespace

std::unique_ptr<RowReader> OpenPng(InputFile file, const OpenOptions&) {
  return std::make_unique<PngReader>(std::move(file));
}

std::unique_ptr<RowWriter> CreatePng(OutputPtr file, const PictureHeader& header,
                                     const WriteOptions& options) {
  return std::make_unique<PngWriter>(std::move(file), header, options.compression);
}

}  // namespace ovra_host
