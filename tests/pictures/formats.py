"""PNG, BMP, ICO, GIF and EXIF as bytes, for the kinds of them that no tool writes."""
import io, struct, zlib
import numpy as np
from PIL import Image
from files import write

def chunk(name, data):
    return struct.pack(">I", len(data)) + name + data + struct.pack(">I", zlib.crc32(name + data))


PASSES = [(0, 0, 8, 8), (4, 0, 8, 8), (0, 4, 4, 8), (2, 0, 4, 4), (0, 2, 2, 4), (1, 0, 2, 2), (0, 1, 1, 2)]


def packed_rows(samples, depth):
    """Rows of samples (height, width, channels), most significant bit first, bytes per row whole."""
    rows = samples.reshape(samples.shape[0], -1)
    if depth == 16:
        return [row.astype(">u2").tobytes() for row in rows]
    bits = (rows[:, :, None] >> np.arange(depth - 1, -1, -1)) & 1
    return [np.packbits(row.reshape(-1).astype(np.uint8)).tobytes() for row in bits]


def png(path, samples, kind, depth=8, interlaced=False, before=b"", after=b""):
    samples = samples.reshape(samples.shape[0], samples.shape[1], -1)
    height, width = samples.shape[:2]
    parts = [samples[y::dy, x::dx] for x, y, dx, dy in PASSES] if interlaced else [samples]
    rows = [row for part in parts if part.size for row in packed_rows(part, depth)]
    data = zlib.compress(b"".join(b"\0" + row for row in rows), 9)
    header = struct.pack(">IIBBBBB", width, height, depth, kind, 0, 0, interlaced)
    write(path, b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + before + chunk(b"IDAT", data) + after +
          chunk(b"IEND", b""))


GRAY, RGB, PALETTE, GRAY_ALPHA, RGBA = 0, 2, 3, 4, 6


def wide(samples):
    return samples.astype(np.uint16) * 257


STORED = {  # what is stored so that the orientation shows the picture
    1: lambda a: a, 2: lambda a: a[:, ::-1], 3: lambda a: a[::-1, ::-1], 4: lambda a: a[::-1],
    5: lambda a: a.transpose(1, 0, 2), 6: lambda a: a.transpose(1, 0, 2)[::-1],
    7: lambda a: a[::-1, ::-1].transpose(1, 0, 2), 8: lambda a: a.transpose(1, 0, 2)[:, ::-1],
}


def exif(orientation, big_endian=False):
    order = ">" if big_endian else "<"
    other = struct.pack(order + "HHII", 0x0100, 4, 1, 7)  # another tag before
    tag = struct.pack(order + "HHIHH", 0x0112, 3, 1, orientation, 0)
    return ((b"MM\0*" if big_endian else b"II*\0") + struct.pack(order + "IH", 8, 2) + other + tag + bytes(4))


def with_marker(jpeg, number, content):
    return jpeg[:2] + struct.pack(">BBH", 0xFF, number, len(content) + 2) + content + jpeg[2:]


def bitmap(bits, width, height, rows, palette=b"", compression=0, masks=b"", size=40, colours=0, tail=b""):
    if size == 12:
        header = struct.pack("<IHHHH", 12, width, height, 1, bits)
    else:
        header = struct.pack("<IiiHHIIiiII", size, width, height, 1, bits, compression, 0, 2835, 2835, colours, 0)
        if size > 40:
            header += (masks.ljust(16, b"\0") + b"BGRs").ljust(size - 40, b"\0")[:size - 40]
            masks = b""
    return header + masks + palette + tail, b"".join(rows)


def bmp(path, *arguments, **named):
    head, pixels = bitmap(*arguments, **named)
    write(path, b"BM" + struct.pack("<IHHI", 14 + len(head) + len(pixels), 0, 0, 14 + len(head)) + head + pixels)


def padded(row):
    return row + bytes(-len(row) % 4)


def bgr_rows(pixels, order=(2, 1, 0)):
    return [padded(row.tobytes()) for row in pixels[::-1][:, :, list(order)]]


def ico(path, width, height, head, pixels, mask):
    content = head + pixels + b"".join(padded(row) for row in packed_rows(mask[::-1], 1))
    write(path, struct.pack("<HHH", 0, 1, 1) + struct.pack("<BBBBHHII", width, height, 0, 0, 1, 0, len(content), 22) +
          content)


def runs(indices, halves):
    """Run-length coding: every row has runs, and literals where they are longer than two."""
    out = b""
    for row in indices[::-1]:
        x = 0
        while x < len(row):
            run = 1
            while x + run < len(row) and run < 255 and row[x + run] == row[x]:
                run += 1
            rest = row[x:x + 5]
            if run < 3 and len(rest) == 5:
                pair = list(rest) + [0]
                data = bytes(pair[i] << 4 | pair[i + 1] for i in (0, 2, 4)) if halves else bytes(rest)
                out += bytes([0, 5]) + data + bytes(len(data) % 2)
                x += 5
            else:
                out += bytes([run, int(row[x]) * 17 if halves else int(row[x])])
                x += run
        out += b"\0\0"
    return out + b"\0\1"


def placed_gif(indices, table, left, top, width, height):
    """A frame that is smaller than its screen, the indices as codes of nine bits without compression."""
    frame = io.BytesIO()
    image = Image.fromarray(indices, "P")
    image.putpalette(table.tobytes())
    image.save(frame, "GIF", transparency=15, optimize=False)
    gif = bytearray(frame.getvalue())
    struct.pack_into("<HH", gif, 6, width, height)
    at = gif.rindex(struct.pack("<BHHHH", 0x2C, 0, 0, indices.shape[1], indices.shape[0]))
    struct.pack_into("<HH", gif, at + 1, left, top)
    return bytes(gif)
