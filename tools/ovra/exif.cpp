// SPDX-License-Identifier: MIT
#include "exif.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace ovra_host {
namespace {

enum Tag : uint16_t {
  kOrientation = 0x0112,
  kExifDirectory = 0x8769,
  kGpsDirectory = 0x8825,
  kPixelWidth = 0xA002,
  kPixelHeight = 0xA003,
  kInteroperability = 0xA005,  // a directory whose offset would dangle
};

// Tags of the first directory that tell about the photograph: description, maker, model,
// orientation, software, date, author, copyright. The others tell about the pixels of that file.
constexpr std::array<uint16_t, 8> kDescriptions = {0x010E, 0x010F, 0x0110, kOrientation,
                                                   0x0131, 0x0132, 0x013B, 0x8298};

constexpr uint16_t kTextType = 2;
constexpr uint16_t kShortType = 3;
constexpr uint16_t kLongType = 4;
constexpr size_t kHeaderBytes = 8;
constexpr size_t kEntryBytes = 12;
constexpr size_t kInlineBytes = 4;  // of a value that stands in its entry
constexpr size_t kMaxEntries = 1000;

// Bytes of a value of a type, and of the numbers it is made of.
struct TypeSize {
  uint8_t value;
  uint8_t number;
};
constexpr std::array<TypeSize, 13> kTypes = {{{0, 0},
                                              {1, 1},
                                              {1, 1},
                                              {2, 2},
                                              {4, 4},
                                              {8, 4},
                                              {1, 1},
                                              {1, 1},
                                              {2, 2},
                                              {4, 4},
                                              {8, 4},
                                              {4, 4},
                                              {8, 8}}};

// A value in little-endian order.
struct Entry {
  uint16_t tag;
  uint16_t type;
  uint32_t count;
  Blob value;
};
using Directory = std::vector<Entry>;

uint32_t Number(const uint8_t* bytes, size_t count, bool big_endian) {
  uint32_t value = 0;
  for (size_t i = 0; i < count; ++i) value = value << 8 | bytes[big_endian ? i : count - 1 - i];
  return value;
}

void Append(Blob* blob, uint32_t value, size_t bytes) {
  for (size_t i = 0; i < bytes; ++i) blob->push_back(static_cast<uint8_t>(value >> 8 * i));
}

void Put(Blob* blob, size_t at, uint32_t value) {
  for (size_t i = 0; i < 4; ++i) (*blob)[at + i] = static_cast<uint8_t>(value >> 8 * i);
}

class TiffStructure {
 public:
  explicit TiffStructure(ReadBytesAt read) : read_(std::move(read)) {
    std::array<uint8_t, kHeaderBytes> header;
    if (!read_(0, header.data(), header.size())) return;
    big_endian_ = header[0] == 'M';
    constexpr uint32_t kMagic = 42;
    if ((header[0] != 'I' && header[0] != 'M') || header[1] != header[0]) return;
    if (Number(&header[2], 2, big_endian_) != kMagic) return;
    first_directory_ = Number(&header[4], 4, big_endian_);
  }

  bool big_endian() const { return big_endian_; }
  uint32_t first_directory() const { return first_directory_; }  // 0 when there is none

  // Number of entries; 0 where the offset leads nowhere.
  size_t EntryCount(uint32_t directory) const {
    std::array<uint8_t, 2> count;
    if (directory == 0 || !read_(directory, count.data(), count.size())) return 0;
    return std::min<size_t>(Number(count.data(), 2, big_endian_), kMaxEntries);
  }

  // Where the entry of a tag stands, as it is in the file; 0 without.
  uint32_t FindEntry(uint32_t directory, uint16_t tag) const {
    const size_t count = EntryCount(directory);
    std::array<uint8_t, kEntryBytes> bytes;
    for (size_t i = 0; i < count; ++i) {
      const auto at = static_cast<uint32_t>(directory + 2 + kEntryBytes * i);
      if (!read_(at, bytes.data(), bytes.size())) return 0;
      if (Number(bytes.data(), 2, big_endian_) == tag) return at;
    }
    return 0;
  }

  // The single whole number of an entry; 0 without.
  uint32_t Value(uint32_t directory, uint16_t tag) const {
    const uint32_t at = FindEntry(directory, tag);
    std::array<uint8_t, kEntryBytes> bytes;
    if (at == 0 || !read_(at, bytes.data(), bytes.size())) return 0;
    const bool is_short = Number(&bytes[2], 2, big_endian_) == kShortType;
    return Number(&bytes[8], is_short ? 2 : 4, big_endian_);
  }

  Directory Read(uint32_t directory) const {
    Directory entries;
    const size_t count = EntryCount(directory);
    size_t bytes = 0;  // entries may all claim the same ones
    for (size_t i = 0; i < count && bytes <= kMaxBlobBytes; ++i) {
      Entry entry;
      if (!ReadEntry(directory + 2 + kEntryBytes * i, &entry)) continue;
      bytes += entry.value.size();
      entries.push_back(std::move(entry));
    }
    return entries;
  }

 private:
  bool ReadEntry(uint64_t at, Entry* entry) const {
    std::array<uint8_t, kEntryBytes> bytes;
    if (!read_(at, bytes.data(), bytes.size())) return false;
    entry->tag = static_cast<uint16_t>(Number(bytes.data(), 2, big_endian_));
    entry->type = static_cast<uint16_t>(Number(&bytes[2], 2, big_endian_));
    entry->count = Number(&bytes[4], 4, big_endian_);
    if (entry->type == 0 || entry->type >= kTypes.size()) return false;
    const TypeSize size = kTypes[entry->type];
    const uint64_t value_bytes = uint64_t{entry->count} * size.value;
    if (value_bytes > kMaxBlobBytes / 4) return false;
    uint8_t probe;
    uint64_t value_at = at + 8;
    if (value_bytes > kInlineBytes) {
      value_at = Number(&bytes[8], 4, big_endian_);
      if (!read_(value_at + value_bytes - 1, &probe, 1)) return false;  // before memory is taken
    }
    entry->value.resize(static_cast<size_t>(value_bytes));
    if (!entry->value.empty() && !read_(value_at, entry->value.data(), entry->value.size())) {
      return false;
    }
    if (big_endian_) {
      for (auto number = entry->value.begin(); number != entry->value.end();
           number += size.number) {
        std::reverse(number, number + size.number);
      }
    }
    return true;
  }

  ReadBytesAt read_;
  bool big_endian_ = false;
  uint32_t first_directory_ = 0;
};

ReadBytesAt ReaderOf(const Blob& blob) {
  return [&blob](uint64_t offset, uint8_t* to, size_t bytes) {
    if (offset > blob.size() || bytes > blob.size() - offset) return false;
    std::memcpy(to, blob.data() + offset, bytes);
    return true;
  };
}

TiffStructure StructureOf(const Blob& blob) {
  return TiffStructure(ReaderOf(blob));
}

// Overwrites the number of an entry of one short or long; other entries stay.
void Overwrite(Blob* exif, uint32_t directory, uint16_t tag, uint32_t value) {
  const TiffStructure structure = StructureOf(*exif);
  const uint32_t at = structure.FindEntry(directory, tag);
  if (at == 0) return;
  uint8_t* const entry = exif->data() + at;
  const uint32_t type = Number(entry + 2, 2, structure.big_endian());
  if ((type != kShortType && type != kLongType) ||
      Number(entry + 4, 4, structure.big_endian()) != 1) {
    return;
  }
  const size_t bytes = type == kShortType ? 2 : 4;
  for (size_t i = 0; i < bytes; ++i) {
    const size_t shift = 8 * (structure.big_endian() ? bytes - 1 - i : i);
    entry[8 + i] = static_cast<uint8_t>(value >> shift);
  }
}

// Adds a directory with its values behind it to a blob that stands at `base` in its file. Answers
// its offset in the file, 0 for an empty one.
uint32_t AppendDirectory(Blob* blob, uint32_t base, Directory directory) {
  if (directory.empty()) return 0;
  std::sort(directory.begin(), directory.end(),
            [](const Entry& a, const Entry& b) { return a.tag < b.tag; });
  if (blob->size() % 2 != 0) blob->push_back(0);
  const size_t start = blob->size();
  Append(blob, static_cast<uint32_t>(directory.size()), 2);
  blob->resize(start + 2 + kEntryBytes * directory.size() + 4);  // ends with "no next directory"
  for (size_t i = 0; i < directory.size(); ++i) {
    const Entry& entry = directory[i];
    const size_t at = start + 2 + kEntryBytes * i;
    Put(blob, at, entry.tag | uint32_t{entry.type} << 16);
    Put(blob, at + 4, entry.count);
    if (entry.value.size() <= kInlineBytes) {
      std::copy(entry.value.begin(), entry.value.end(),
                blob->begin() + static_cast<std::ptrdiff_t>(at + 8));
      continue;
    }
    if (blob->size() % 2 != 0) blob->push_back(0);
    Put(blob, at + 8, base + static_cast<uint32_t>(blob->size()));
    blob->insert(blob->end(), entry.value.begin(), entry.value.end());
  }
  return base + static_cast<uint32_t>(start);
}

Entry OffsetEntry(uint16_t tag, uint32_t offset) {
  Entry entry = {tag, kLongType, 1, {}};
  Append(&entry.value, offset, 4);
  return entry;
}

Directory PhotographEntries(const TiffStructure& structure) {
  Directory entries = structure.Read(structure.Value(structure.first_directory(), kExifDirectory));
  std::erase_if(entries, [](const Entry& entry) { return entry.tag == kInteroperability; });
  return entries;
}

Directory PlaceEntries(const TiffStructure& structure) {
  return structure.Read(structure.Value(structure.first_directory(), kGpsDirectory));
}

}  // namespace

uint16_t ExifOrientation(const Blob& exif) {
  constexpr uint32_t kLastOrientation = 8;
  const TiffStructure structure = StructureOf(exif);
  const uint32_t value = structure.Value(structure.first_directory(), kOrientation);
  return value >= 1 && value <= kLastOrientation ? static_cast<uint16_t>(value) : kUpright;
}

void SetExifUpright(Blob* exif) {
  const TiffStructure structure = StructureOf(*exif);
  const uint32_t first = structure.first_directory();
  Overwrite(exif, first, kOrientation, kUpright);
  const size_t count = structure.EntryCount(first);
  const size_t next = first + 2 + kEntryBytes * count;
  if (count > 0 && next + 4 <= exif->size()) Put(exif, next, 0);
}

void SetExifSize(Blob* exif, int32_t width, int32_t height) {
  const TiffStructure structure = StructureOf(*exif);
  const uint32_t directory = structure.Value(structure.first_directory(), kExifDirectory);
  Overwrite(exif, directory, kPixelWidth, static_cast<uint32_t>(width));
  Overwrite(exif, directory, kPixelHeight, static_cast<uint32_t>(height));
}

Blob ExifOfTiff(const ReadBytesAt& read, uint16_t orientation) {
  const TiffStructure structure(read);
  Directory main = structure.Read(structure.first_directory());
  std::erase_if(main, [](const Entry& entry) {
    return std::find(kDescriptions.begin(), kDescriptions.end(), entry.tag) == kDescriptions.end();
  });
  const bool had_orientation =
      std::erase_if(main, [](const Entry& entry) { return entry.tag == kOrientation; }) > 0;
  if (had_orientation || orientation != kUpright) {
    main.push_back({kOrientation, kShortType, 1, {static_cast<uint8_t>(orientation), 0}});
  }
  Blob blob = {'I', 'I', 42, 0, 0, 0, 0, 0};
  const uint32_t exif = AppendDirectory(&blob, 0, PhotographEntries(structure));
  const uint32_t gps = AppendDirectory(&blob, 0, PlaceEntries(structure));
  if (exif != 0) main.push_back(OffsetEntry(kExifDirectory, exif));
  if (gps != 0) main.push_back(OffsetEntry(kGpsDirectory, gps));
  if (main.empty()) return {};
  Put(&blob, 4, AppendDirectory(&blob, 0, main));
  return blob.size() <= kMaxBlobBytes ? blob : Blob();
}

Blob WithOrientation(Blob exif, uint16_t orientation) {
  const TiffStructure structure = StructureOf(exif);
  Overwrite(&exif, structure.first_directory(), kOrientation, orientation);
  if (ExifOrientation(exif) == orientation) return exif;
  return ExifOfTiff(ReaderOf(exif), orientation);
}

Blob WithoutExifMark(Blob exif) {
  constexpr std::array<uint8_t, 6> kMark = {'E', 'x', 'i', 'f', 0, 0};
  if (exif.size() >= kMark.size() && std::equal(kMark.begin(), kMark.end(), exif.begin())) {
    exif.erase(exif.begin(), exif.begin() + kMark.size());
  }
  return exif;
}

ExifForTiff SplitExif(const Blob& exif, uint32_t offset) {
  const TiffStructure structure = StructureOf(exif);
  ExifForTiff parts;
  for (const Entry& entry : structure.Read(structure.first_directory())) {
    const bool described =
        std::find(kDescriptions.begin(), kDescriptions.end(), entry.tag) != kDescriptions.end();
    if (!described || entry.type != kTextType) continue;
    const auto end = std::find(entry.value.begin(), entry.value.end(), 0);
    parts.texts.emplace_back(entry.tag, std::string(entry.value.begin(), end));
  }
  parts.exif_offset = AppendDirectory(&parts.directories, offset, PhotographEntries(structure));
  parts.gps_offset = AppendDirectory(&parts.directories, offset, PlaceEntries(structure));
  return parts;
}

}  // namespace ovra_host
