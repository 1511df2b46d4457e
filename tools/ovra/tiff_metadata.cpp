// SPDX-License-Identifier: MIT
#include "exif.h"
#include "tiff_session.h"

namespace ovra_host {
namespace {

constexpr double kCentimetersPerInch = 2.54;

// Bytes of one of the units in which libtiff counts a field; bare IPTC records are words in some
// versions of it, bytes in others.
size_t UnitBytes(const TiffSession& session, ttag_t tag) {
  const TIFFField* const field = TIFFFieldWithTag(session.get(), tag);
  const int bytes = field == nullptr ? 0 : TIFFDataWidth(TIFFFieldDataType(field));
  return bytes > 0 ? static_cast<size_t>(bytes) : 1;
}

Blob BlobField(const TiffSession& session, ttag_t tag) {
  uint32_t count = 0;
  const uint8_t* bytes = nullptr;
  if (TIFFGetField(session.get(), tag, &count, &bytes) == 0 || bytes == nullptr) return {};
  const uint64_t size = uint64_t{count} * UnitBytes(session, tag);
  return size <= kMaxBlobBytes ? Blob(bytes, bytes + size) : Blob();
}

void SetBlob(const TiffSession& session, ttag_t tag, const Blob& blob) {
  if (blob.empty()) return;
  TIFFSetField(session.get(), tag, static_cast<uint32_t>(blob.size()), blob.data());
}

// IPTC readers look at the bare record; others at the resource blocks.
void SetIptc(const TiffSession& session, const Blob& blocks) {
  SetBlob(session, TIFFTAG_PHOTOSHOP, blocks);
  Blob record = FindIptcRecord(blocks);
  if (record.empty()) return;
  const size_t unit = UnitBytes(session, TIFFTAG_RICHTIFFIPTC);
  record.resize((record.size() + unit - 1) / unit * unit);
  TIFFSetField(session.get(), TIFFTAG_RICHTIFFIPTC, static_cast<uint32_t>(record.size() / unit),
               record.data());
}

// The directories of the photograph and the place stand right behind the header, where libtiff,
// which appends, leaves them alone.
void SetExif(const TiffSession& session, const OutputFile& file, const Blob& exif) {
  TIFF* const tiff = session.get();
  TIFFSetField(tiff, TIFFTAG_ORIENTATION, ExifOrientation(exif));
  constexpr uint32_t kHeaderBytes = 8;
  const ExifForTiff parts = SplitExif(exif, kHeaderBytes);
  for (const auto& [tag, text] : parts.texts) TIFFSetField(tiff, tag, text.c_str());
  if (parts.directories.empty()) return;
  if (TIFFIsBigTIFF(tiff) != 0) {
    NoteLeftOut(file, "a TIFF above 4 GB is written without EXIF data");
    return;
  }
  if (!file.WriteAt(kHeaderBytes, parts.directories.data(), parts.directories.size())) {
    file.RefuseWithSystemMessage();
  }
  if (parts.exif_offset != 0) {
    TIFFSetField(tiff, TIFFTAG_EXIFIFD, static_cast<uint64_t>(parts.exif_offset));
  }
  if (parts.gps_offset != 0) {
    TIFFSetField(tiff, TIFFTAG_GPSIFD, static_cast<uint64_t>(parts.gps_offset));
  }
}

}  // namespace

Metadata TiffMetadata(const TiffSession& session, const InputFile& file) {
  Metadata metadata;
  metadata.profile = BlobField(session, TIFFTAG_ICCPROFILE);
  metadata.xmp = BlobField(session, TIFFTAG_XMLPACKET);
  metadata.iptc = BlobField(session, TIFFTAG_PHOTOSHOP);
  const Blob record = BlobField(session, TIFFTAG_RICHTIFFIPTC);
  if (metadata.iptc.empty() && !record.empty()) {
    metadata.iptc = WrapIptcRecord(record.data(), record.size());
  }
  const auto read = [&file](uint64_t offset, uint8_t* to, size_t bytes) {
    return file.ReadAt(offset, to, bytes);
  };
  metadata.exif = ExifOfTiff(read, session.Field<uint16_t>(TIFFTAG_ORIENTATION));
  const auto unit = session.Field<uint16_t>(TIFFTAG_RESOLUTIONUNIT);
  const double factor = unit == RESUNIT_INCH         ? 1
                        : unit == RESUNIT_CENTIMETER ? kCentimetersPerInch
                                                     : 0;
  float x = 0;
  float y = 0;
  if (TIFFGetField(session.get(), TIFFTAG_XRESOLUTION, &x) != 0 &&
      TIFFGetField(session.get(), TIFFTAG_YRESOLUTION, &y) != 0 && x > 0 && y > 0) {
    metadata.resolution = {CleanResolution(x * factor), CleanResolution(y * factor)};
  }
  return metadata;
}

void SetTiffMetadata(const TiffSession& session, const OutputFile& file, const Metadata& metadata) {
  SetBlob(session, TIFFTAG_ICCPROFILE, metadata.profile);
  SetBlob(session, TIFFTAG_XMLPACKET, metadata.xmp);
  if (!metadata.iptc.empty()) SetIptc(session, metadata.iptc);
  if (!metadata.exif.empty()) SetExif(session, file, metadata.exif);
  char* described = nullptr;
  if (!metadata.comment.empty() &&
      TIFFGetField(session.get(), TIFFTAG_IMAGEDESCRIPTION, &described) == 0) {
    TIFFSetField(session.get(), TIFFTAG_IMAGEDESCRIPTION, metadata.comment.c_str());
  }
  if (metadata.resolution.x > 0) {
    TIFFSetField(session.get(), TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
    TIFFSetField(session.get(), TIFFTAG_XRESOLUTION, metadata.resolution.x);
    TIFFSetField(session.get(), TIFFTAG_YRESOLUTION, metadata.resolution.y);
  }
}

}  // namespace ovra_host
