// SPDX-License-Identifier: MIT
// WebP by libwebp. What its functions call a picture is freed on every way; exceptions pass none.
#include <webp/decode.h>
#include <webp/demux.h>
#include <webp/encode.h>
#include <webp/mux.h>

#include <memory>
#include <utility>
#include <vector>

#include "exif.h"
#include "picture_forms.h"
#include "whole_rows.h"

namespace ovra_host {
namespace {

constexpr int kUsualQuality = 90;

// Of a file; longer ones could not be told from a mistake.
constexpr uint64_t kMaxFileBytes = uint64_t{1} << 30;

struct DemuxerDeleter {
  void operator()(WebPDemuxer* demuxer) const { WebPDemuxDelete(demuxer); }
};
struct AnimationDeleter {
  void operator()(WebPAnimDecoder* decoder) const { WebPAnimDecoderDelete(decoder); }
};
struct MuxDeleter {
  void operator()(WebPMux* mux) const { WebPMuxDelete(mux); }
};

class WebpReader : public WholeReader {
 public:
  explicit WebpReader(InputFile file) : file_(std::move(file)) {
    if (file_.size() > kMaxFileBytes) file_.Refuse("is too large for a WebP file");
    bytes_.resize(static_cast<size_t>(file_.size()));
    if (!file_.ReadAt(0, bytes_.data(), bytes_.size())) file_.Refuse("cannot be read");
    data_ = {bytes_.data(), bytes_.size()};
    demuxer_.reset(WebPDemux(&data_));
    if (!demuxer_) file_.Refuse("WebP: is damaged or cut off");
    const uint32_t width = WebPDemuxGetI(demuxer_.get(), WEBP_FF_CANVAS_WIDTH);
    const uint32_t height = WebPDemuxGetI(demuxer_.get(), WEBP_FF_CANVAS_HEIGHT);
    file_.CheckClaim(width, height, 1, InputFile::Holds::kAnything);
    const uint32_t frames = WebPDemuxGetI(demuxer_.get(), WEBP_FF_FRAME_COUNT);
    is_animation_ = (Flags() & ANIMATION_FLAG) != 0;
    if (frames > 1) {
      notes_.push_back("moves; the first of its " + std::to_string(frames) + " pictures is read");
    }
    header_.width = static_cast<int32_t>(width);
    header_.height = static_cast<int32_t>(height);
    header_.format = FileFormat(8, (Flags() & ALPHA_FLAG) != 0 ? 4 : 3);
    header_.metadata.profile = Chunk("ICCP", ICCP_FLAG);
    header_.metadata.exif = WithoutExifMark(Chunk("EXIF", EXIF_FLAG));
    header_.metadata.xmp = Chunk("XMP ", XMP_FLAG);
  }

 private:
  uint32_t Flags() const { return WebPDemuxGetI(demuxer_.get(), WEBP_FF_FORMAT_FLAGS); }

  Blob Chunk(const char* name, uint32_t flag) const {
    WebPChunkIterator chunk = {};
    Blob blob;
    if ((Flags() & flag) == 0) return blob;
    if (WebPDemuxGetChunk(demuxer_.get(), name, 1, &chunk) != 0 &&
        chunk.chunk.size <= kMaxBlobBytes) {
      blob.assign(chunk.chunk.bytes, chunk.chunk.bytes + chunk.chunk.size);
    }
    WebPDemuxReleaseChunkIterator(&chunk);
    return blob;
  }

  void Decode(Image* image) override {
    const bool done = is_animation_ ? DecodeFirst(image) : DecodeStill(image);
    if (!done) file_.Refuse("WebP: is damaged or cut off");
  }

  bool DecodeStill(Image* image) const {
    WebPDecoderConfig config;
    if (WebPInitDecoderConfig(&config) == 0) return false;
    config.output.colorspace = image->channels() == 4 ? MODE_RGBA : MODE_RGB;
    config.output.is_external_memory = 1;
    config.output.u.RGBA.rgba = image->data();
    config.output.u.RGBA.stride = static_cast<int>(image->stride());
    config.output.u.RGBA.size = image->size_bytes();
    return WebPDecode(bytes_.data(), bytes_.size(), &config) == VP8_STATUS_OK;
  }

  // The first picture of several, on the canvas of all.
  bool DecodeFirst(Image* image) const {
    const std::unique_ptr<WebPAnimDecoder, AnimationDeleter> decoder(
        WebPAnimDecoderNew(&data_, nullptr));
    uint8_t* canvas = nullptr;
    int time = 0;
    if (!decoder || WebPAnimDecoderGetNext(decoder.get(), &canvas, &time) == 0) return false;
    const size_t pixels = image->size_bytes() / image->channels();
    for (size_t i = 0; i < pixels; ++i) {
      std::copy_n(canvas + 4 * i, image->channels(), image->data() + image->channels() * i);
    }
    return true;
  }

  InputFile file_;
  std::vector<uint8_t> bytes_;
  WebPData data_ = {nullptr, 0};
  std::unique_ptr<WebPDemuxer, DemuxerDeleter> demuxer_;
  bool is_animation_ = false;
};

class WebpWriter : public WholeWriter {
 public:
  WebpWriter(OutputPtr file, const PictureHeader& header, int quality)
      : WholeWriter(std::move(file), header), metadata_(header.metadata), quality_(quality) {
    NoteMetadata("WebP", metadata_);
  }

 private:
  void Encode(const Image& image) override {
    WebPMemoryWriter pixels;
    WebPMemoryWriterInit(&pixels);
    const auto as_it_is = [](const Image& color) { return color; };
    const int error = EncodePixels(
        image.channels() == 1 ? OnThreeChannels(image, GreyBecomes::kColor, as_it_is) : image,
        &pixels);
    if (error != VP8_ENC_OK) {
      WebPMemoryWriterClear(&pixels);
      file_->Refuse("WebP: cannot be encoded (error " + std::to_string(error) + ")");
    }
    const bool is_whole = WriteFile({pixels.mem, pixels.size});
    WebPMemoryWriterClear(&pixels);
    if (!is_whole) file_->Refuse("WebP: cannot be put together");
  }

  // Answers an error of WebPEncodingError.
  int EncodePixels(const Image& image, WebPMemoryWriter* to) const {
    WebPConfig config;
    WebPPicture picture;
    if (WebPConfigPreset(&config, WEBP_PRESET_PHOTO, static_cast<float>(quality_)) == 0 ||
        WebPPictureInit(&picture) == 0) {
      return VP8_ENC_ERROR_INVALID_CONFIGURATION;
    }
    picture.width = image.width();
    picture.height = image.height();
    picture.writer = WebPMemoryWrite;
    picture.custom_ptr = to;
    const auto stride = static_cast<int>(image.stride());
    const bool imported = image.channels() == 4
                              ? WebPPictureImportRGBA(&picture, image.data(), stride) != 0
                              : WebPPictureImportRGB(&picture, image.data(), stride) != 0;
    if (imported) WebPEncode(&config, &picture);
    const int error = imported ? picture.error_code : VP8_ENC_ERROR_OUT_OF_MEMORY;
    WebPPictureFree(&picture);
    return error;
  }

  bool WriteFile(const WebPData& pixels) const {
    const std::unique_ptr<WebPMux, MuxDeleter> mux(WebPMuxNew());
    if (!mux || WebPMuxSetImage(mux.get(), &pixels, 0) != WEBP_MUX_OK) return false;
    const auto add = [&mux](const char* name, const Blob& blob) {
      const WebPData data = {blob.data(), blob.size()};
      return blob.empty() || WebPMuxSetChunk(mux.get(), name, &data, 0) == WEBP_MUX_OK;
    };
    if (!add("ICCP", metadata_.profile) || !add("EXIF", metadata_.exif) ||
        !add("XMP ", metadata_.xmp)) {
      return false;
    }
    WebPData assembled = {nullptr, 0};
    if (WebPMuxAssemble(mux.get(), &assembled) != WEBP_MUX_OK) return false;
    try {
      Put(assembled.bytes, assembled.size);
    } catch (...) {
      WebPDataClear(&assembled);
      throw;
    }
    WebPDataClear(&assembled);
    return true;
  }

  Metadata metadata_;
  int quality_;
};

}  // namespace

std::unique_ptr<RowReader> OpenWebp(InputFile file, const OpenOptions&) {
  return std::make_unique<WebpReader>(std::move(file));
}

std::unique_ptr<RowWriter> CreateWebp(OutputPtr file, const PictureHeader& header,
                                      const WriteOptions& options) {
  if (header.depth_bits() != 8) RefuseDeep(*file, "WebP");
  if (header.width > WEBP_MAX_DIMENSION || header.height > WEBP_MAX_DIMENSION) {
    file->Refuse("is too large for WebP, whose sides are " + std::to_string(WEBP_MAX_DIMENSION) +
                 " at most; use PNG or TIFF");
  }
  return std::make_unique<WebpWriter>(std::move(file), header,
                                      options.quality.value_or(kUsualQuality));
}

}  // namespace ovra_host
