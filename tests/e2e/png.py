"""Writes images as small PNG files (PNG standard, second edition)."""

import collections
import struct
import zlib

PALETTE_SIZE = 256


def reduced(pixels):
    """Returns the colours to keep and, for each colour of the image, the number of the kept one that replaces it.

    A rare colour is replaced by the nearest one that is kept.
    """
    counted = collections.Counter(pixels)
    kept = [colour for colour, _ in counted.most_common(PALETTE_SIZE)]

    def nearest(colour):
        return min(range(len(kept)), key=lambda i: sum((a - b) ** 2 for a, b in zip(kept[i], colour)))

    numbers = {colour: number for number, colour in enumerate(kept)}
    return kept, {colour: numbers[colour] if colour in numbers else nearest(colour) for colour in counted}


def chunk(name, data):
    return struct.pack(">I", len(data)) + name + data + struct.pack(">I", zlib.crc32(name + data))


def png(image):
    """Returns the file for an image given as width, height and three bytes per pixel. A palette keeps it small."""
    width, height, rgb = image
    pixels = [rgb[i:i + 3] for i in range(0, len(rgb), 3)]
    palette, numbers = reduced(pixels)
    indices = bytes(map(numbers.__getitem__, pixels))
    rows = b"".join(b"\0" + indices[y * width:(y + 1) * width] for y in range(height))
    header = struct.pack(">IIBBBBB", width, height, 8, 3, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"PLTE", b"".join(palette)) +
            chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b""))
