// SPDX-License-Identifier: MIT
// AVIF by libavif.
#include <avif/avif.h>

#include <memory>
#include <thread>
#include <utility>

#include "exif.h"
#include "picture_forms.h"
#include "whole_rows.h"

namespace ovra_host {
namespace {

constexpr int kUsualQuality = 80;

// From this quality on colours are stored at full resolution.
constexpr int kFullColorQuality = 90;

// What 16 bits are stored with: the most that the format has.
constexpr uint32_t kMostBits = 12;

// Of 0..10: larger ones take much longer for files hardly smaller.
constexpr int kSpeed = 6;

struct AvifDeleter {
  void operator()(avifDecoder* decoder) const { avifDecoderDestroy(decoder); }
  void operator()(avifEncoder* encoder) const { avifEncoderDestroy(encoder); }
  void operator()(avifImage* image) const { avifImageDestroy(image); }
};

// What libavif reads through: only what it asks for comes from the file.
struct FileIo {
  avifIO io = {};
  const InputFile* file = nullptr;
  Blob bytes;

  static avifResult Read(avifIO* io, uint32_t, uint64_t offset, size_t size, avifROData* out) {
    auto* const self = static_cast<FileIo*>(io->data);
    const uint64_t file_bytes = self->file->size();
    if (offset > file_bytes) return AVIF_RESULT_IO_ERROR;
    self->bytes.resize(static_cast<size_t>(std::min<uint64_t>(size, file_bytes - offset)));
    if (!self->file->ReadAt(offset, self->bytes.data(), self->bytes.size())) {
      return AVIF_RESULT_IO_ERROR;
    }
    *out = {self->bytes.data(), self->bytes.size()};
    return AVIF_RESULT_OK;
  }
};

// The orientation as EXIF counts it, of the turn and the mirror of the container: the picture is
// first turned by quarters to the left, then mirrored.
uint16_t Orientation(const avifImage& image) {
  const uint32_t quarters =
      (image.transformFlags & AVIF_TRANSFORM_IROT) != 0 ? image.irot.angle & 3U : 0;
  const bool mirrors = (image.transformFlags & AVIF_TRANSFORM_IMIR) != 0;
  constexpr uint16_t kTurned[] = {1, 8, 3, 6};
  constexpr uint16_t kThenTopDown[] = {4, 5, 2, 7};
  constexpr uint16_t kThenLeftRight[] = {2, 7, 4, 5};
  if (!mirrors) return kTurned[quarters];
  return image.imir.mode == 0 ? kThenTopDown[quarters] : kThenLeftRight[quarters];
}

class AvifReader : public WholeReader {
 public:
  explicit AvifReader(InputFile file) : file_(std::move(file)), decoder_(avifDecoderCreate()) {
    if (!decoder_) file_.Refuse("AVIF: libavif cannot be started");
    io_.io.read = FileIo::Read;
    io_.io.sizeHint = file_.size();
    io_.io.data = &io_;
    io_.file = &file_;
    avifDecoderSetIO(decoder_.get(), &io_.io);
    decoder_->imageSizeLimit = static_cast<uint32_t>(
        std::min<uint64_t>(file_.max_pixels(), AVIF_DEFAULT_IMAGE_SIZE_LIMIT));
    Check(avifDecoderParse(decoder_.get()));
    SetHeader();
  }

 private:
  void Check(avifResult result) const {
    if (result != AVIF_RESULT_OK) {
      file_.Refuse(std::string("AVIF: ") + avifResultToString(result));
    }
  }

  void SetHeader() {
    const avifImage& image = *decoder_->image;
    file_.CheckClaim(image.width, image.height, 1, InputFile::Holds::kAnything);
    header_.width = static_cast<int32_t>(image.width);
    header_.height = static_cast<int32_t>(image.height);
    const bool is_grey = image.yuvFormat == AVIF_PIXEL_FORMAT_YUV400;
    header_.format = FileFormat(image.depth > 8 ? 16 : 8, decoder_->alphaPresent != 0 ? 4
                                                          : is_grey                   ? 1
                                                                                      : 3);
    Metadata& metadata = header_.metadata;
    metadata.profile = BlobOf(image.icc);
    metadata.xmp = BlobOf(image.xmp);
    // Pixels are turned by what the container says, whatever the orientation tag is.
    metadata.exif = WithOrientation(WithoutExifMark(BlobOf(image.exif)), Orientation(image));
    if (decoder_->imageCount > 1) {
      notes_.push_back("moves; the first of its " + std::to_string(decoder_->imageCount) +
                       " pictures is read");
    }
  }

  static Blob BlobOf(const avifRWData& data) {
    return data.size <= kMaxBlobBytes ? Blob(data.data, data.data + data.size) : Blob();
  }

  void Decode(Image* image) override {
    Check(avifDecoderNextImage(decoder_.get()));
    const avifImage& decoded = *decoder_->image;
    if (decoded.width != static_cast<uint32_t>(image->width()) ||
        decoded.height != static_cast<uint32_t>(image->height())) {
      file_.Refuse("AVIF: its sizes do not agree");
    }
    // libavif knows no grey: that stands in all three.
    const bool is_grey = image->channels() == 1;
    Image color(is_grey ? image->width() : 1, is_grey ? image->height() : 1,
                FileFormat(image->depth_bits(), 3));
    Image& to = is_grey ? color : *image;
    avifRGBImage rgb;
    avifRGBImageSetDefaults(&rgb, &decoded);
    rgb.depth = to.depth_bits();
    rgb.format = to.channels() == 4 ? AVIF_RGB_FORMAT_RGBA : AVIF_RGB_FORMAT_RGB;
    rgb.pixels = to.data();
    rgb.rowBytes = static_cast<uint32_t>(to.stride());
    Check(avifImageYUVToRGB(&decoded, &rgb));
    if (is_grey) CopyChannel(color, 0, image, 0);
  }

  InputFile file_;
  FileIo io_;  // outlives the decoder
  std::unique_ptr<avifDecoder, AvifDeleter> decoder_;
};

class AvifWriter : public WholeWriter {
 public:
  AvifWriter(OutputPtr file, const PictureHeader& header, int quality)
      : WholeWriter(std::move(file), header), metadata_(header.metadata), quality_(quality) {
    NoteMetadata("AVIF", metadata_);
    if (header.depth_bits() > kMostBits) {
      file_->Note("AVIF holds " + std::to_string(kMostBits) + " bits a sample; lowered from 16");
    }
  }

 private:
  void Check(avifResult result) const {
    if (result != AVIF_RESULT_OK) {
      file_->Refuse(std::string("AVIF: ") + avifResultToString(result));
    }
  }

  void Encode(const Image& image) override {
    const uint32_t bits = std::min(image.depth_bits(), kMostBits);
    const avifPixelFormat format = image.channels() == 1           ? AVIF_PIXEL_FORMAT_YUV400
                                   : quality_ >= kFullColorQuality ? AVIF_PIXEL_FORMAT_YUV444
                                                                   : AVIF_PIXEL_FORMAT_YUV420;
    const std::unique_ptr<avifImage, AvifDeleter> planes(
        avifImageCreate(image.width(), image.height(), static_cast<int>(bits), format));
    const std::unique_ptr<avifEncoder, AvifDeleter> encoder(avifEncoderCreate());
    if (!planes || !encoder) file_->Refuse("AVIF: libavif cannot be started");
    planes->matrixCoefficients = AVIF_MATRIX_COEFFICIENTS_BT601;
    SetMetadata(planes.get());
    if (image.channels() == 1) {
      SetGrey(image, planes.get());
    } else {
      SetColors(image, planes.get());
    }
    encoder->speed = kSpeed;
    encoder->maxThreads = static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
    encoder->minQuantizer = encoder->maxQuantizer =
        (100 - quality_) * AVIF_QUANTIZER_WORST_QUALITY / 100;
    struct Output {
      ~Output() { avifRWDataFree(&data); }
      avifRWData data = AVIF_DATA_EMPTY;
    } output;
    Check(avifEncoderWrite(encoder.get(), planes.get(), &output.data));
    Put(output.data.data, output.data.size);
  }

  // Sets what turns the picture, too, from the orientation tag. Without a profile colours are sRGB.
  void SetMetadata(avifImage* image) const {
    const auto& [profile, exif, xmp, iptc, comment, resolution] = metadata_;
    if (profile.empty()) {
      image->colorPrimaries = AVIF_COLOR_PRIMARIES_BT709;
      image->transferCharacteristics = AVIF_TRANSFER_CHARACTERISTICS_SRGB;
    } else {
      avifImageSetProfileICC(image, profile.data(), profile.size());
    }
    if (!exif.empty()) avifImageSetMetadataExif(image, exif.data(), exif.size());
    if (!xmp.empty()) avifImageSetMetadataXMP(image, xmp.data(), xmp.size());
  }

  void SetGrey(const Image& image, avifImage* to) const {
    avifImageAllocatePlanes(to, AVIF_PLANES_YUV);
    if (to->yuvPlanes[AVIF_CHAN_Y] == nullptr) Check(AVIF_RESULT_OUT_OF_MEMORY);
    for (int32_t y = 0; y < image.height(); ++y) {
      ConvertDepth(image.Row(y), image.depth_bits(),
                   to->yuvPlanes[AVIF_CHAN_Y] +
                       size_t{to->yuvRowBytes[AVIF_CHAN_Y]} * static_cast<size_t>(y),
                   to->depth, static_cast<size_t>(image.width()));
    }
  }

  void SetColors(const Image& image, avifImage* to) const {
    avifRGBImage rgb;
    avifRGBImageSetDefaults(&rgb, to);
    rgb.depth = image.depth_bits();
    rgb.format = image.channels() == 4 ? AVIF_RGB_FORMAT_RGBA : AVIF_RGB_FORMAT_RGB;
    rgb.pixels = const_cast<uint8_t*>(image.data());  // libavif does not write to it
    rgb.rowBytes = static_cast<uint32_t>(image.stride());
    Check(avifImageRGBToYUV(to, &rgb));
  }

  Metadata metadata_;
  int quality_;
};

}  // namespace

std::unique_ptr<RowReader> OpenAvif(InputFile file, const OpenOptions&) {
  return std::make_unique<AvifReader>(std::move(file));
}

std::unique_ptr<RowWriter> CreateAvif(OutputPtr file, const PictureHeader& header,
                                      const WriteOptions& options) {
  const uint64_t pixels =
      static_cast<uint64_t>(header.width) * static_cast<uint64_t>(header.height);
  if (pixels > AVIF_DEFAULT_IMAGE_SIZE_LIMIT ||
      std::max(header.width, header.height) > AVIF_DEFAULT_IMAGE_DIMENSION_LIMIT) {
    file->Refuse("is too large for AVIF, which holds " +
                 std::to_string(AVIF_DEFAULT_IMAGE_SIZE_LIMIT) + " pixels and sides of " +
                 std::to_string(AVIF_DEFAULT_IMAGE_DIMENSION_LIMIT) + " at most; use PNG or TIFF");
  }
  return std::make_unique<AvifWriter>(std::move(file), header,
                                      options.quality.value_or(kUsualQuality));
}

}  // namespace ovra_host
