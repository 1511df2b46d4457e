// SPDX-License-Identifier: MIT
// JPEG by libjpeg. Its errors are long jumps: what is jumped over holds nothing that needs a
// destructor, and everything that does lives outside the guarded steps.
#include <cstdio>
// libjpeg's header needs FILE and size_t declared before it.
#include <jerror.h>
#include <jpeglib.h>

#include <csetjmp>
#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

#include "codecs.h"
#include "error.h"
#include "jpeg_markers.h"
#include "srgb.h"

namespace ovra_host {
namespace {

// A progressive file may hold any number of scans of the whole picture, a byte or two each; honest
// ones hold a few dozen at most.
constexpr int kMaxScans = 500;

constexpr int kUsualQuality = 92;

// From this quality on colours are stored at full resolution.
constexpr int kFullColorQuality = 90;

// Up to so many pixels the codes are fitted to the picture, for which libjpeg keeps it whole.
constexpr int64_t kMaxFittedPixels = 64'000'000;

constexpr double kCentimetersPerInch = 2.54;

struct JpegErrors {
  jpeg_error_mgr manager;  // first, so that its address is that of the whole
  std::jmp_buf jump;
  ErrorText error;
};

[[noreturn]] void OnError(j_common_ptr codec) {
  auto* const errors = reinterpret_cast<JpegErrors*>(codec->err);
  char message[JMSG_LENGTH_MAX];
  codec->err->format_message(codec, message);
  errors->error.Set(message);
  std::longjmp(errors->jump, 1);
}

// Warnings (below 0) tell of missing or damaged data, which libjpeg would replace by grey; a
// picture is read whole or not at all. Superfluous bytes, odd version numbers and a damaged profile
// do no harm.
void OnMessage(j_common_ptr codec, int level) {
  const int code = codec->err->msg_code;
  const bool harmless = code == JWRN_EXTRANEOUS_DATA || code == JWRN_ADOBE_XFORM ||
                        code == JWRN_JFIF_MAJOR || code == JWRN_BOGUS_ICC;
  if (level < 0 && !harmless) OnError(codec);
}

void LimitScans(j_common_ptr codec) {
  const auto* const decoder = reinterpret_cast<j_decompress_ptr>(codec);
  if (decoder->input_scan_number > kMaxScans) ERREXIT(codec, JERR_BAD_PROGRESSION);
}

void PrepareErrors(JpegErrors* errors) {
  jpeg_std_error(&errors->manager);
  errors->manager.error_exit = OnError;
  errors->manager.emit_message = OnMessage;
}

// Runs a step; false when libjpeg jumped out of it.
template <class Step>
bool RunGuarded(JpegErrors& errors, const Step& step) {
  if (setjmp(errors.jump) != 0) return false;
  step();
  return true;
}

class JpegReader : public RowReader {
 public:
  JpegReader(InputFile file, int32_t eighths) : file_(std::move(file)), eighths_(eighths) {
    PrepareErrors(&errors_);
    decoder_.err = &errors_.manager;
    progress_.progress_monitor = LimitScans;
    try {
      Open();
    } catch (...) {  // the destructor of the class does not run
      jpeg_destroy_decompress(&decoder_);
      throw;
    }
  }
  ~JpegReader() override { jpeg_destroy_decompress(&decoder_); }

  void ReadRow(uint8_t* row) override {
    Run([this, row] {
      JSAMPROW to = cmyk_ ? inks_.data() : row;
      if (decoder_.output_scanline == 0) jpeg_start_decompress(&decoder_);
      jpeg_read_scanlines(&decoder_, &to, 1);
    });
    if (cmyk_) cmyk_->ConvertRow(inks_.data(), row, header_.width);
  }

  void Finish() override {
    Run([this] { jpeg_finish_decompress(&decoder_); });
  }

 private:
  template <class Step>
  void Run(const Step& step) {
    if (!RunGuarded(errors_, step)) file_.Refuse(std::string("JPEG: ") + errors_.error.text);
  }

  void Open() {
    Run([this] { ReadHeader(); });
    const auto channels = static_cast<uint32_t>(decoder_.num_components);
    if (channels == 2 || channels > 4) {
      file_.Refuse("JPEG: only grey, RGB and CMYK are read, not " + std::to_string(channels) +
                   " channels");
    }
    file_.CheckClaim(decoder_.image_width, decoder_.image_height, channels);
    if (jpeg_has_multiple_scans(&decoder_)) CheckFitsWhole(channels);
    SetOutput(channels);
    header_.metadata = JpegMetadata(decoder_.marker_list);
    JOCTET* profile = nullptr;
    unsigned bytes = 0;
    Run([&] { jpeg_read_icc_profile(&decoder_, &profile, &bytes); });
    if (profile != nullptr) header_.metadata.profile.assign(profile, profile + bytes);
    std::free(profile);
    if (channels == 4) ConvertInks();
    SetResolution();
  }

  // Colours and size as rows will have them.
  void SetOutput(uint32_t channels) {
    decoder_.out_color_space = channels == 1 ? JCS_GRAYSCALE : channels == 3 ? JCS_RGB : JCS_CMYK;
    decoder_.scale_num = static_cast<unsigned>(eighths_);
    decoder_.scale_denom = 8;
    Run([this] { jpeg_calc_output_dimensions(&decoder_); });
    header_.width = static_cast<int32_t>(decoder_.output_width);
    header_.height = static_cast<int32_t>(decoder_.output_height);
    header_.format = FileFormat(8, channels == 1 ? 1 : 3);
  }

  // What writes the Adobe marker stores inks upside down: 255 is no ink.
  void ConvertInks() {
    const bool no_ink_is_255 = decoder_.saw_Adobe_marker != FALSE;
    try {
      cmyk_.emplace(header_.metadata.profile, no_ink_is_255);
    } catch (const Error& error) {
      file_.Refuse(error.what());
    }
    notes_.push_back(cmyk_->note());
    header_.metadata.profile = cmyk_->profile();
    inks_.resize(size_t{4} * static_cast<size_t>(header_.width));
  }

  void ReadHeader() {
    jpeg_create_decompress(&decoder_);
    decoder_.progress = &progress_;
    jpeg_stdio_src(&decoder_, file_.stream());
    for (const int marker : kKeptJpegMarkers) jpeg_save_markers(&decoder_, marker, 0xFFFF);
    jpeg_read_header(&decoder_, TRUE);
  }

  // Of a picture in several scans all coefficients are kept, two bytes each.
  void CheckFitsWhole(uint32_t channels) const {
    const int64_t bytes = int64_t{2} * channels * decoder_.image_width * decoder_.image_height;
    if (bytes > kMaxImageBytes) file_.Refuse("JPEG: is too large for one of several scans");
  }

  void SetResolution() {
    constexpr int kPerInch = 1;
    constexpr int kPerCentimeter = 2;
    if (decoder_.saw_JFIF_marker == FALSE) return;
    const double factor = decoder_.density_unit == kPerInch         ? 1
                          : decoder_.density_unit == kPerCentimeter ? kCentimetersPerInch
                                                                    : 0;
    header_.metadata.resolution = {decoder_.X_density * factor, decoder_.Y_density * factor};
  }

  InputFile file_;
  int32_t eighths_;
  std::optional<CmykConversion> cmyk_;
  std::vector<uint8_t> inks_;
  JpegErrors errors_ = {};
  jpeg_progress_mgr progress_ = {};
  jpeg_decompress_struct decoder_ = {};
};

class JpegWriter : public RowWriter {
 public:
  JpegWriter(OutputPtr file, const PictureHeader& header, int quality) : file_(std::move(file)) {
    PrepareErrors(&errors_);
    encoder_.err = &errors_.manager;
    try {
      const std::vector<JpegMarker> markers = JpegMarkers(header.metadata, *file_);
      Run([&] { WriteHeader(header, markers, quality); });
    } catch (...) {  // the destructor of the class does not run
      jpeg_destroy_compress(&encoder_);
      throw;
    }
  }
  ~JpegWriter() override { jpeg_destroy_compress(&encoder_); }

  void WriteRow(const uint8_t* row) override {
    Run([this, row] {
      JSAMPROW from = const_cast<JSAMPROW>(row);  // libjpeg does not write to it
      jpeg_write_scanlines(&encoder_, &from, 1);
    });
  }

  void Finish() override {
    Run([this] { jpeg_finish_compress(&encoder_); });
    file_->Commit();
  }

 private:
  template <class Step>
  void Run(const Step& step) {
    if (!RunGuarded(errors_, step)) file_->Refuse(std::string("JPEG: ") + errors_.error.text);
  }

  void WriteHeader(const PictureHeader& header, const std::vector<JpegMarker>& markers,
                   int quality) {
    jpeg_create_compress(&encoder_);
    jpeg_stdio_dest(&encoder_, file_->stream());
    encoder_.image_width = static_cast<JDIMENSION>(header.width);
    encoder_.image_height = static_cast<JDIMENSION>(header.height);
    encoder_.input_components = static_cast<int>(header.channels());
    encoder_.in_color_space = header.channels() == 1 ? JCS_GRAYSCALE : JCS_RGB;
    jpeg_set_defaults(&encoder_);
    jpeg_set_quality(&encoder_, quality, TRUE);
    encoder_.optimize_coding = int64_t{header.width} * header.height <= kMaxFittedPixels;
    if (quality >= kFullColorQuality) {
      encoder_.comp_info[0].h_samp_factor = 1;
      encoder_.comp_info[0].v_samp_factor = 1;
    }
    const Resolution& resolution = header.metadata.resolution;
    if (resolution.x > 0 && resolution.x <= UINT16_MAX && resolution.y <= UINT16_MAX) {
      encoder_.density_unit = 1;  // per inch
      encoder_.X_density = static_cast<UINT16>(resolution.x + 0.5);
      encoder_.Y_density = static_cast<UINT16>(resolution.y + 0.5);
    }
    jpeg_start_compress(&encoder_, TRUE);
    for (const JpegMarker& marker : markers) {
      jpeg_write_marker(&encoder_, marker.number, marker.bytes.data(),
                        static_cast<unsigned>(marker.bytes.size()));
    }
    const Blob& profile = header.metadata.profile;
    if (!profile.empty()) {
      jpeg_write_icc_profile(&encoder_, profile.data(), static_cast<unsigned>(profile.size()));
    }
  }

  OutputPtr file_;
  JpegErrors errors_ = {};
  jpeg_compress_struct encoder_ = {};
};

}  // namespace

std::unique_ptr<RowReader> OpenJpeg(InputFile file, const OpenOptions& options) {
  return std::make_unique<JpegReader>(std::move(file), options.eighths);
}

std::unique_ptr<RowWriter> CreateJpeg(OutputPtr file, const PictureHeader& header,
                                      const WriteOptions& options) {
  if (header.depth_bits() != 8) RefuseDeep(*file, "JPEG");
  if (header.channels() == 4) {
    file->Refuse("JPEG holds no alpha; use --background white, PNG or TIFF");
  }
  if (header.width > JPEG_MAX_DIMENSION || header.height > JPEG_MAX_DIMENSION) {
    file->Refuse("is too large for JPEG, whose sides are 65500 at most; use PNG or TIFF");
  }
  return std::make_unique<JpegWriter>(std::move(file), header,
                                      options.quality.value_or(kUsualQuality));
}

}  // namespace ovra_host
