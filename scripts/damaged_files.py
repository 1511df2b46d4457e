# SPDX-License-Identifier: MIT
"""Damages files in the ways that transfers, disks and bad writers do, with a seeded generator."""
import re
import struct
import zlib

PNG_SIGNATURE = 8


def with_exif(png):
    """The PNG file with an orientation, for readers of metadata to have something to read."""
    exif = b"II*\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0\x06\0\0\0\0\0\0\0"
    end = PNG_SIGNATURE + 25  # behind the header chunk
    return png[:end] + struct.pack(">I", len(exif)) + sealed(b"eXIf" + exif) + png[end:]


def sealed(chunk):
    """A PNG chunk's type and data with the checksum that belongs to them."""
    return chunk + struct.pack(">I", zlib.crc32(chunk))


def pieces(data):
    """The file in its own parts: PNG chunks, JPEG segments, else lines or blocks."""
    if data.startswith(b"\x89PNG"):
        found, at = [data[:PNG_SIGNATURE]], PNG_SIGNATURE
        while at < len(data):
            size = 12 + struct.unpack_from(">I", data, at)[0]
            found.append(data[at:at + size])
            at += size
        return found
    if data.startswith(b"\xff\xd8"):
        return re.split(rb"(?=\xff[\xc0-\xfe])", data)
    if not data.startswith((b"II", b"MM", b"BM")):
        return data.splitlines(keepends=True)
    return [data[at:at + 64] for at in range(0, len(data), 64)]


def bits(data, chance):
    """Up to eight bits turn over, half of the time near the beginning."""
    changed = bytearray(data)
    for _ in range(chance.randint(1, 8)):
        at = chance.randrange(chance.choice([min(len(data), 200), len(data)]))
        changed[at] ^= 1 << chance.randrange(8)
    return bytes(changed)


def cut(data, chance):
    return data[:chance.randrange(len(data))]


def repeated(data, chance):
    """A part of the file stands there twice, or many times."""
    parts = pieces(data)
    at = chance.randrange(len(parts))
    return b"".join(parts[:at] + [parts[at]] * chance.choice([2, 3, 50]) + parts[at + 1:])


def lengths(data, chance):
    """A number of two or four bytes, of either order, says something else."""
    changed = bytearray(data)
    form = chance.choice(["<H", ">H", "<I", ">I"])
    size = struct.calcsize(form)
    at = chance.randrange(max(1, chance.choice([min(len(data), 200), len(data)]) - size))
    most = (1 << 8 * size) - 1
    number = struct.unpack_from(form, changed, at)[0]
    number = chance.choice([0, 1, number + 1, number - 1, number * 2, most, most // 2, most // 2 + 1])
    struct.pack_into(form, changed, at, number & most)
    return bytes(changed)


def swapped(data, chance):
    """Two parts of the file stand in each other's places."""
    parts = pieces(data)
    one, other = chance.randrange(len(parts)), chance.randrange(len(parts))
    parts[one], parts[other] = parts[other], parts[one]
    return b"".join(parts)


WAYS = [bits, cut, repeated, lengths, swapped]


def resealed(data):
    """A PNG file whose chunks have the checksums of what they hold now, as far as it goes."""
    at, out = PNG_SIGNATURE, [data[:PNG_SIGNATURE]]
    while at + 12 <= len(data):
        end = at + 8 + struct.unpack_from(">I", data, at)[0]
        if end + 4 > len(data):
            break
        out.append(data[at:at + 4] + sealed(data[at + 4:end]))
        at = end + 4
    return b"".join(out) + data[at:]


def damaged(data, number, chance):
    """The file with the damage of that number; the checksums of a PNG file are right every other time."""
    bad = WAYS[number % len(WAYS)](data, chance)
    is_png = bad.startswith(b"\x89PNG")
    return resealed(bad) if is_png and chance.random() < 0.5 else bad
