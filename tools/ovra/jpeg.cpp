// SPDX-License-Identifier: MIT
// JPEG by libjpeg. Its errors are long jumps: what is jumped over holds nothing that needs a
// destructor, and everything that does lives outside the guarded steps.
#include <cstdio>
// libjpeg's header needs FILE and size_t declared before it.
#include <jerror.h>
#include <jpeglib.h>

#include <csetjmp>
#include <string>

#include "codecs.h"
#include "error.h"

namespace ovra_host {
namespace {

// A progressive file may hold any number of scans of the whole picture, a byte or two each; honest
// ones hold a few dozen at most.
constexpr int kMaxScans = 500;

// From this quality on colours are stored at full resolution.
constexpr int kFullColorQuality = 90;

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
// picture is read whole or not at all. Superfluous bytes and odd version numbers do no harm.
void OnMessage(j_common_ptr codec, int level) {
  const int code = codec->err->msg_code;
  const bool harmless =
      code == JWRN_EXTRANEOUS_DATA || code == JWRN_ADOBE_XFORM || code == JWRN_JFIF_MAJOR;
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

class JpegReader {
 public:
  explicit JpegReader(const InputFile& file) : file_(file) {
    PrepareErrors(&errors_);
    decoder_.err = &errors_.manager;
    progress_.progress_monitor = LimitScans;
  }
  ~JpegReader() { jpeg_destroy_decompress(&decoder_); }
  JpegReader(const JpegReader&) = delete;
  JpegReader& operator=(const JpegReader&) = delete;

  Image Read() {
    Run([this] { ReadHeader(); });
    const auto channels = static_cast<uint32_t>(decoder_.num_components);
    if (channels != 1 && channels != 3) file_.Refuse("JPEG: only grey and RGB are read, not CMYK");
    file_.CheckClaim(decoder_.image_width, decoder_.image_height, channels);
    Image image(decoder_.image_width, decoder_.image_height, FileFormat(8, channels));
    Run([this, &image] { ReadRows(image); });
    return image;
  }

 private:
  template <class Step>
  void Run(const Step& step) {
    if (!RunGuarded(errors_, step)) file_.Refuse(std::string("JPEG: ") + errors_.error.text);
  }

  void ReadHeader() {
    jpeg_create_decompress(&decoder_);
    decoder_.progress = &progress_;
    jpeg_stdio_src(&decoder_, file_.stream());
    jpeg_read_header(&decoder_, TRUE);
  }

  void ReadRows(Image& image) {
    decoder_.out_color_space = image.channels() == 1 ? JCS_GRAYSCALE : JCS_RGB;
    jpeg_start_decompress(&decoder_);
    while (decoder_.output_scanline < decoder_.output_height) {
      JSAMPROW row = image.Row(static_cast<int32_t>(decoder_.output_scanline));
      jpeg_read_scanlines(&decoder_, &row, 1);
    }
    jpeg_finish_decompress(&decoder_);
  }

  const InputFile& file_;
  JpegErrors errors_ = {};
  jpeg_progress_mgr progress_ = {};
  jpeg_decompress_struct decoder_ = {};
};

class JpegWriter {
 public:
  explicit JpegWriter(const OutputFile& file) : file_(file) {
    PrepareErrors(&errors_);
    encoder_.err = &errors_.manager;
  }
  ~JpegWriter() { jpeg_destroy_compress(&encoder_); }
  JpegWriter(const JpegWriter&) = delete;
  JpegWriter& operator=(const JpegWriter&) = delete;

  void Write(const Image& image, int quality) {
    const bool written = RunGuarded(errors_, [this, &image, quality] { WriteAll(image, quality); });
    if (!written) file_.Refuse(std::string("JPEG: ") + errors_.error.text);
  }

 private:
  void WriteAll(const Image& image, int quality) {
    jpeg_create_compress(&encoder_);
    jpeg_stdio_dest(&encoder_, file_.stream());
    encoder_.image_width = static_cast<JDIMENSION>(image.width());
    encoder_.image_height = static_cast<JDIMENSION>(image.height());
    encoder_.input_components = static_cast<int>(image.channels());
    encoder_.in_color_space = image.channels() == 1 ? JCS_GRAYSCALE : JCS_RGB;
    jpeg_set_defaults(&encoder_);
    jpeg_set_quality(&encoder_, quality, TRUE);
    encoder_.optimize_coding = TRUE;
    if (quality >= kFullColorQuality) {
      encoder_.comp_info[0].h_samp_factor = 1;
      encoder_.comp_info[0].v_samp_factor = 1;
    }
    jpeg_start_compress(&encoder_, TRUE);
    for (int32_t y = 0; y < image.height(); ++y) {
      JSAMPROW row = const_cast<JSAMPROW>(image.Row(y));  // libjpeg does not write to it
      jpeg_write_scanlines(&encoder_, &row, 1);
    }
    jpeg_finish_compress(&encoder_);
  }

  const OutputFile& file_;
  JpegErrors errors_ = {};
  jpeg_compress_struct encoder_ = {};
};

}  // namespace

Image ReadJpeg(const InputFile& file) {
  return JpegReader(file).Read();
}

void WriteJpeg(const Image& image, const OutputFile& file, const WriteOptions& options) {
  if (image.depth_bits() != 8) file.Refuse("JPEG holds 8 bits a sample; use PNG or TIFF for 16");
  if (image.channels() == 4) file.Refuse("JPEG holds no alpha; use PNG or TIFF");
  JpegWriter(file).Write(image, options.jpeg_quality);
}

}  // namespace ovra_host
