#!/usr/bin/env python3
"""Makes the pictures of this folder and hashes.txt. One folder per picture; all its files show the same.

The hashes come from the pixels that the files were made from, by the definition, not from any decoder;
where a lossy codec decides the pixels, from that codec's own command (djpeg, dwebp, heif-convert).
Needs Pillow, NumPy and the tools of libjpeg-turbo, libtiff, libwebp, libheif, giflib and OpenJPEG.
"""
import hashlib, io, os, struct, subprocess, sys, zlib
import numpy as np
from PIL import Image, ImageCms

ROOT = os.path.dirname(os.path.abspath(__file__))
TEMPORARY = "/tmp/pictures-in-the-making"
hashes = {}


def pixel_hash(rgba):
    rgba = rgba.astype(int)
    alpha = rgba[:, :, 3:]
    colour = (rgba[:, :, :3] * alpha * 2 + 255) // 510  # round(c * a / 255); no value lies half-way
    pixels = np.concatenate([colour, alpha], 2).astype(np.uint8)
    header = f"{rgba.shape[1]}x{rgba.shape[0]}:rgba8-srgb:"
    return hashlib.sha256(header.encode() + pixels.tobytes()).hexdigest()


def opaque(rgb):
    return np.dstack([rgb, np.full(rgb.shape[:2], 255, np.uint8)])


def picture(name, rgba):
    os.makedirs(f"{ROOT}/{name}", exist_ok=True)
    hashes[name] = pixel_hash(rgba)
    return lambda file: f"{ROOT}/{name}/{file}"


def run(*command):
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def temporary(image, file):
    image.save(f"{TEMPORARY}/{file}")
    return f"{TEMPORARY}/{file}"


def write(path, content):
    with open(path, "wb") as file:
        file.write(content)


def read(path):
    with open(path, "rb") as file:
        return file.read()


# ---- PNG: written by hand, for its types and depths ---------------------------------------------------------


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


# ---- orientation --------------------------------------------------------------------------------------------

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


# ---- BMP and ICO: written by hand ---------------------------------------------------------------------------


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


# ---- profiles -----------------------------------------------------------------------------------------------


def xyz(values):
    return b"XYZ " + bytes(4) + b"".join(struct.pack(">i", round(v * 65536)) for v in values)


def icc(columns, exponent, gray=False):
    """A matrix profile (ICC.1:2001), version 2.1, of one exponent; or a gray one."""
    curve = b"curv" + bytes(4) + struct.pack(">IH", 1, round(exponent * 256)) + bytes(2)
    text = b"made here"
    description = b"desc" + bytes(4) + struct.pack(">I", len(text) + 1) + text + bytes(1 + 8 + 3 + 67)
    tags = {b"desc": description, b"cprt": b"text" + bytes(4) + text + b"\0", b"wtpt": xyz((0.9642, 1, 0.8249))}
    if gray:
        tags[b"kTRC"] = curve
    else:
        for name, column in zip((b"rXYZ", b"gXYZ", b"bXYZ"), columns):
            tags[name] = xyz(column)
        tags.update({b"rTRC": curve, b"gTRC": curve, b"bTRC": curve})
    table, body, start = struct.pack(">I", len(tags)), b"", 128 + 4 + 12 * len(tags)
    for name, data in tags.items():
        table += name + struct.pack(">II", start + len(body), len(data))
        body += data + bytes(-len(data) % 4)
    header = struct.pack(">I4sI4s4s4s12s4s4sI", start + len(body), b"lcms", 0x02100000, b"mntr",
                         b"GRAY" if gray else b"RGB ", b"XYZ ", bytes(12), b"acsp", bytes(4), 0)
    header += bytes(20) + struct.pack(">IIII", 0, 63190, 65536, 54061)
    return header.ljust(128, b"\0") + table + body


WHITE = (0.3127, 0.3290)
SRGB = ((0.64, 0.33), (0.30, 0.60), (0.15, 0.06))
BRADFORD = np.array([[0.8951, 0.2664, -0.1614], [-0.7502, 1.7135, 0.0367], [0.0389, -0.0685, 1.0296]])


def to_pcs(primaries):
    """The matrix from linear light to XYZ of D50: primaries, white D65, Bradford adaptation."""
    columns = np.array([[x / y, 1, (1 - x - y) / y] for x, y in primaries]).T
    white = np.array([WHITE[0] / WHITE[1], 1, (1 - sum(WHITE)) / WHITE[1]])
    matrix = columns * np.linalg.solve(columns, white)
    cone = BRADFORD @ np.array([0.9642, 1, 0.8249]) / (BRADFORD @ white)
    return np.linalg.inv(BRADFORD) @ np.diag(cone) @ BRADFORD @ matrix


def encoded(light):
    light = np.clip(light, 0, 1)
    return np.where(light <= 0.0031308, light * 12.92, 1.055 * light ** (1 / 2.4) - 0.055) * 255


def converted(rgb, primaries, exponent):
    light = (rgb / 255.0) ** exponent
    return encoded(light @ (np.linalg.inv(to_pcs(SRGB)) @ to_pcs(primaries)).T)


# ---- the pictures -------------------------------------------------------------------------------------------

random = np.random.default_rng(7)


def noise(height, width, channels, most=255, step=1):
    return (random.integers(0, most // step + 1, (height, width, channels)) * step).astype(np.uint8)


def colours():
    rgb = noise(19, 27, 3)
    at = picture("colours", opaque(rgb))
    height, width = rgb.shape[:2]
    calibrated = chunk(b"gAMA", struct.pack(">I", 45455))
    primaries = chunk(b"cHRM", struct.pack(">8I", 31270, 32900, 64000, 33000, 30000, 60000, 15000, 6000))
    png(at("rgb.png"), rgb, RGB)
    png(at("rgb-interlaced.png"), rgb, RGB, interlaced=True)
    png(at("rgb-16.png"), wide(rgb), RGB, 16)
    png(at("rgb-16-interlaced.png"), wide(rgb), RGB, 16, interlaced=True)
    png(at("rgba.png"), opaque(rgb), RGBA)
    png(at("srgb.png"), rgb, RGB, before=chunk(b"sRGB", b"\0") + calibrated)
    png(at("gamma.png"), rgb, RGB, before=calibrated)
    png(at("gamma-primaries.png"), rgb, RGB, before=calibrated + primaries)
    profile = ImageCms.ImageCmsProfile(ImageCms.createProfile("sRGB")).tobytes()
    png(at("srgb-profile.png"), rgb, RGB, before=chunk(b"iCCP", b"s\0\0" + zlib.compress(profile)))
    image = Image.fromarray(rgb)
    image.save(at("srgb-profile.webp"), lossless=True, icc_profile=profile)
    bmp(at("24.bmp"), 24, width, height, bgr_rows(rgb))
    bmp(at("24-core.bmp"), 24, width, height, bgr_rows(rgb), size=12)
    bmp(at("24-top-down.bmp"), 24, width, -height, bgr_rows(rgb[::-1]))
    four = np.dstack([rgb, np.zeros((height, width), np.uint8)])
    bmp(at("32.bmp"), 32, width, height, bgr_rows(four, (2, 1, 0, 3)))
    bmp(at("32-fields.bmp"), 32, width, height, bgr_rows(four, (3, 0, 1, 2)), compression=3,
        masks=struct.pack("<III", 0xFF00, 0xFF0000, 0xFF000000))
    bmp(at("32-v5.bmp"), 32, width, height, bgr_rows(four, (3, 2, 1, 0)), compression=3, size=124,
        masks=struct.pack("<IIII", 0xFF000000, 0xFF0000, 0xFF00, 0))
    head, pixels = bitmap(24, width, height * 2, bgr_rows(rgb))
    ico(at("24.ico"), width, height, head, pixels, np.zeros((height, width, 1), np.uint8))
    plain = temporary(image, "colours.tif")
    for name, *options in [("none", "-c", "none"), ("lzw", "-c", "lzw:2"), ("zip", "-c", "zip:2"),
                           ("packbits", "-c", "packbits"), ("tiles", "-t", "-w", "16", "-l", "16"),
                           ("planes", "-p", "separate", "-c", "lzw"), ("big-endian", "-B"), ("64", "-8"),
                           ("plane-tiles", "-p", "separate", "-t", "-w", "16", "-l", "16"), ("strips", "-r", "4")]:
        run("tiffcp", *options, plain, at(f"{name}.tif"))
    for depth in "12", "16":
        run("convert", plain, "-depth", depth, at(f"{depth}.tif"))
    run("convert", plain, "-depth", "16", "-interlace", "plane", at("planes-16.tif"))
    image.save(at("lossless.webp"), lossless=True)
    image.save(at("profile-of-another-kind.webp"), lossless=True, icc_profile=icc((), 1.5, gray=True))
    image.save(at("profile-damaged.tif"), icc_profile=icc(to_pcs(SRGB).T, 1.5)[:200])
    ppm = temporary(image, "colours.ppm")
    for name in "lossless.jp2", "lossless.j2k":
        run("opj_compress", "-n", "3", "-i", ppm, "-o", at(name))


def translucent():
    rgba = noise(17, 21, 4)
    rgba[:3, :, 3] = 0
    rgba[3:6, :, 3] = 255
    at = picture("translucent", rgba)
    height, width = rgba.shape[:2]
    png(at("rgba.png"), rgba, RGBA)
    png(at("rgba-interlaced.png"), rgba, RGBA, interlaced=True)
    png(at("rgba-16.png"), wide(rgba), RGBA, 16)
    masks = struct.pack("<IIII", 0xFF0000, 0xFF00, 0xFF, 0xFF000000)
    for size in 56, 108, 124:
        bmp(at(f"32-{size}.bmp"), 32, width, height, bgr_rows(rgba, (2, 1, 0, 3)), compression=3, size=size, masks=masks)
    head, pixels = bitmap(32, width, height * 2, bgr_rows(rgba, (2, 1, 0, 3)))
    ico(at("32.ico"), width, height, head, pixels, np.ones((height, width, 1), np.uint8))
    content = read(at("rgba.png"))
    write(at("png.ico"), struct.pack("<HHHBBBBHHII", 0, 1, 1, width, height, 0, 0, 1, 32, len(content), 22) + content)
    image = Image.fromarray(rgba, "RGBA")
    image.save(at("lossless.webp"), lossless=True, exact=True)
    image.save(at("unassociated.tif"), compression="tiff_lzw")
    multiplied = rgba.astype(int)
    multiplied[:, :, :3] = (multiplied[:, :, :3] * multiplied[:, :, 3:] * 2 + 255) // 510
    Image.fromarray(multiplied.astype(np.uint8), "RGBA").save(at("associated.tif"))
    extra = [struct.pack("<HHIHH", 338, 3, 1, kind, 0) for kind in (2, 1)]  # unassociated, associated
    write(at("associated.tif"), read(at("associated.tif")).replace(*extra))
    run("opj_compress", "-n", "3", "-i", at("rgba.png"), "-o", at("lossless.jp2"))


def cut_out():
    palette = noise(1, 15, 3)[0]
    indices = random.integers(0, 15, (20, 24)).astype(np.uint8)
    hole = (np.add.outer(np.arange(20), np.arange(24)) % 5 == 0)
    hole[:4] = True
    hole[-3:] = True
    hole[:, :2] = True
    rgba = np.dstack([palette[indices], np.where(hole, 0, 255).astype(np.uint8)])
    at = picture("cut-out", rgba)
    indexed = np.where(hole, 15, indices).astype(np.uint8)
    table = np.vstack([palette, [[9, 9, 9]]]).astype(np.uint8)
    entries, transparent = chunk(b"PLTE", table.tobytes()), chunk(b"tRNS", bytes([255] * 15 + [0]))
    png(at("palette-8.png"), indexed, PALETTE, 8, before=entries + transparent)
    png(at("palette-4.png"), indexed, PALETTE, 4, interlaced=True, before=entries + transparent)
    keyed = table[indexed]
    png(at("key.png"), keyed, RGB, before=chunk(b"tRNS", struct.pack(">HHH", 9, 9, 9)))
    png(at("key-16.png"), wide(keyed), RGB, 16, before=chunk(b"tRNS", struct.pack(">HHH", 9 * 257, 9 * 257, 9 * 257)))
    image = Image.fromarray(indexed, "P")
    image.putpalette(table.tobytes())
    image.save(at("plain.gif"), transparency=15, interlace=0)
    image.save(at("interlaced.gif"), transparency=15, interlace=1)
    other = Image.fromarray(indexed[::-1].copy(), "P")
    other.putpalette(table.tobytes())
    image.save(at("animated.gif"), transparency=15, save_all=True, append_images=[other], disposal=2)
    write(at("placed.gif"), placed_gif(indexed[4:17, 2:], table, 2, 4, 24, 20))
    frames = [Image.fromarray(rgba, "RGBA"), Image.fromarray(rgba[::-1].copy(), "RGBA")]
    frames[0].save(at("animated.webp"), save_all=True, append_images=frames[1:], lossless=True, exact=True)
    bgr = b"".join(bytes([*colour[::-1], 0]) for colour in table)
    for bits in 4, 8:
        rows = [padded(row) for row in packed_rows(indexed[::-1][:, :, None], bits)]
        head, pixels = bitmap(bits, 24, 40, rows, palette=bgr, colours=16)
        ico(at(f"{bits}.ico"), 24, 20, head, pixels, hole[:, :, None].astype(np.uint8))


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


def grays():
    gray = noise(16, 22, 1)
    gray[5:9, 3:15] = 77  # runs
    at = picture("grays", opaque(np.repeat(gray, 3, 2)))
    height, width = gray.shape[:2]
    png(at("8.png"), gray, GRAY)
    png(at("8-interlaced.png"), gray, GRAY, interlaced=True)
    png(at("16.png"), wide(gray), GRAY, 16)
    png(at("alpha.png"), np.dstack([gray, np.full_like(gray, 255)]), GRAY_ALPHA)
    png(at("alpha-16.png"), wide(np.dstack([gray, np.full_like(gray, 255)])), GRAY_ALPHA, 16)
    png(at("rounded-16.png"), np.clip(wide(gray).astype(int) + 128, 0, 65535), GRAY, 16)  # just not the next one
    ramp = b"".join(bytes([g, g, g, 0]) for g in range(256))
    rows = [padded(row.tobytes()) for row in gray[::-1]]
    bmp(at("8.bmp"), 8, width, height, rows, palette=ramp)
    bmp(at("runs-8.bmp"), 8, width, height, [runs(gray[:, :, 0], False)], palette=ramp, compression=1)
    image = Image.fromarray(gray[:, :, 0])
    image.save(at("plain.gif"))
    image.save(at("black-is-zero.tif"), compression="tiff_lzw")
    image.save(at("white-is-zero.tif"), tiffinfo={262: 0})  # Pillow inverts
    Image.fromarray(wide(gray)[:, :, 0]).save(at("16.tif"))
    run("tiffcp", "-B", at("16.tif"), at("16-big-endian.tif"))
    pgm = temporary(image, "grays.pgm")
    run("opj_compress", "-n", "3", "-i", pgm, "-o", at("lossless.jp2"))


def sixteen():
    palette = noise(1, 16, 3)[0]
    indices = np.repeat(random.integers(0, 16, (15, 13)), random.integers(1, 4, 13), 1).astype(np.uint8)
    at = picture("sixteen", opaque(palette[indices]))
    height, width = indices.shape
    entries = chunk(b"PLTE", palette.tobytes())
    bgr = b"".join(bytes([*colour[::-1], 0]) for colour in palette)
    png(at("4.png"), indices, PALETTE, 4, before=entries)
    png(at("8.png"), indices, PALETTE, 8, before=entries)
    rows = [padded(row) for row in packed_rows(indices[::-1][:, :, None], 4)]
    bmp(at("4.bmp"), 4, width, height, rows, palette=bgr)
    bmp(at("runs-4.bmp"), 4, width, height, [runs(indices, True)], palette=bgr, compression=2)
    bmp(at("4-core.bmp"), 4, width, height, rows, palette=b"".join(bytes(colour[::-1]) for colour in palette), size=12)
    image = Image.fromarray(indices, "P")
    image.putpalette(palette.tobytes())
    image.save(at("plain.gif"))
    image.save(at("palette.tif"), compression="packbits")


def bilevel():
    bits = random.integers(0, 2, (14, 29)).astype(np.uint8)
    at = picture("bilevel", opaque(np.repeat(bits[:, :, None] * 255, 3, 2).astype(np.uint8)))
    height, width = bits.shape
    black_white = bytes([0, 0, 0, 0, 255, 255, 255, 0])
    for depth in 1, 2, 4:
        png(at(f"gray-{depth}.png"), bits * (2 ** depth - 1), GRAY, depth)
    png(at("palette-1.png"), 1 - bits, PALETTE, 1, before=chunk(b"PLTE", bytes([255] * 3 + [0] * 3)))
    bmp(at("1.bmp"), 1, width, height, [padded(row) for row in packed_rows(bits[::-1][:, :, None], 1)],
        palette=black_white)
    image = Image.fromarray(bits * 255).convert("1")
    image.save(at("1.tif"))
    image.save(at("fax.tif"), compression="group4")
    image.save(at("fax-3.tif"), compression="group3")


def five_bits():
    values = random.integers(0, 32, (9, 14, 3))
    at = picture("five-bits", opaque(((values * 255 * 2 + 31) // 62).astype(np.uint8)))
    png(at("rgb.png"), ((values * 255 * 2 + 31) // 62).astype(np.uint8), RGB)
    words = (values[:, :, 0] << 10 | values[:, :, 1] << 5 | values[:, :, 2]).astype("<u2")
    bmp(at("16.bmp"), 16, 14, 9, [padded(row.tobytes()) for row in words[::-1]])
    words = (values[:, :, 0] | values[:, :, 1] << 6 | values[:, :, 2] << 11).astype("<u2")
    bmp(at("16-fields.bmp"), 16, 14, 9, [padded(row.tobytes()) for row in words[::-1]], compression=3,
        masks=struct.pack("<III", 0x1F, 0x1F << 6, 0x1F << 11))


def turned():
    rgb = noise(11, 18, 3)
    at = picture("turned", opaque(rgb))
    for orientation, stored in STORED.items():
        pixels = np.ascontiguousarray(stored(rgb))
        eXIf = chunk(b"eXIf", exif(orientation, orientation % 2 == 0))
        place = {"before" if orientation % 3 else "after": eXIf}
        png(at(f"{orientation}.png"), pixels, RGB, interlaced=orientation > 6, **place)
        Image.fromarray(pixels).save(at(f"{orientation}.webp"), lossless=True,
                                     exif=(b"Exif\0\0" if orientation % 2 else b"") + exif(orientation))
        plain = temporary(Image.fromarray(pixels), "turned.tif")
        run("tiffset", "-s", "274", str(orientation), plain)
        os.replace(plain, at(f"{orientation}.tif"))


def blocks():
    """Blocks of one gray each survive JPEG at quality 100, whichever way they are turned."""
    gray = np.repeat(np.repeat(noise(5, 3, 1), 8, 0), 8, 1)
    at = picture("blocks", opaque(np.repeat(gray, 3, 2)))
    png(at("gray.png"), gray, GRAY)
    for orientation, stored in STORED.items():
        pgm = temporary(Image.fromarray(np.ascontiguousarray(stored(gray))[:, :, 0]), "blocks.pgm")
        run("cjpeg", "-quality", "100", "-outfile", f"{TEMPORARY}/blocks.jpg", pgm)
        marked = with_marker(read(f"{TEMPORARY}/blocks.jpg"), 0xE1, b"Exif\0\0" + exif(orientation, orientation > 4))
        write(at(f"{orientation}.jpg"), marked)
    run("cjpeg", "-quality", "100", "-progressive", "-outfile", at("progressive.jpg"), pgm)  # the 8th, upright:
    write(at("progressive.jpg"), with_marker(read(at("progressive.jpg")), 0xE1, b"Exif\0\0" + exif(8)))


def inks():
    rgb = np.repeat(np.repeat(noise(2, 3, 3), 8, 0), 8, 1)
    at = picture("inks", opaque(rgb))
    ppm = temporary(Image.fromarray(rgb), "inks.ppm")
    run("cjpeg", "-rgb", "-quality", "100", "-sample", "1x1", "-outfile", at("rgb.jpg"), ppm)
    damaged = with_marker(read(at("rgb.jpg")), 0xE2, b"ICC_PROFILE\0\1\2" + icc(to_pcs(SRGB).T, 1.5))
    write(at("profile-in-part.jpg"), damaged)
    cmyk = Image.frombytes("CMYK", (24, 16), np.dstack([255 - rgb, np.zeros((16, 24), np.uint8)]).tobytes())
    cmyk.save(at("cmyk.jpg"), quality=100, subsampling=0)  # with Adobe's marker, inverted
    cmyk.save(at("cmyk.tif"), compression="tiff_lzw")
    png(at("rgb.png"), rgb, RGB)


def without_ink(cmyk):
    c = 255 - cmyk.astype(int)
    return ((c[:, :, :3] * c[:, :, 3:] * 2 + 255) // 510).astype(np.uint8)


def black_ink():
    cmyk = noise(7, 9, 4)
    rgb = without_ink(cmyk)
    at = picture("black-ink", opaque(rgb))
    image = Image.frombytes("CMYK", (9, 7), cmyk.tobytes())
    image.save(at("cmyk.tif"))
    run("tiffcp", "-p", "separate", at("cmyk.tif"), at("cmyk-planes.tif"))
    png(at("rgb.png"), rgb, RGB)


def ten_bits(path):
    """A PNG of 16 bits that heif-convert has filled from 10, as 8: round(v * 255 / 1023)."""
    raw = f"{TEMPORARY}/deep.rgba"
    run("convert", path, "-depth", "16", raw)
    values = np.fromfile(raw, "<u2").reshape(33, 45, 4).astype(int) >> 6
    return ((values * 255 * 2 + 1023) // 2046).astype(np.uint8)


def lossy():
    y, x = np.mgrid[0:33, 0:45]
    rgb = np.dstack([128 + 90 * np.sin(x / 7 + y / 9), 128 + 90 * np.cos(x / 5), 2 * x + 3 * y]).astype(np.uint8)
    image = Image.fromarray(rgb)
    ppm = temporary(image, "lossy.ppm")

    def reference(name, *command):
        """The picture that the codec's own command decodes."""
        run(*command)
        result = ten_bits(command[-1]) if name.startswith("deep") else np.array(Image.open(command[-1]).convert("RGBA"))
        at = picture(name, result)
        png(at("decoded.png"), result, RGBA)
        return at

    def jpeg(name, *options):
        path = f"{TEMPORARY}/lossy.jpg"
        run("cjpeg", *options, "-outfile", path, ppm)
        at = reference(name, "djpeg", "-dct", "int", "-outfile", f"{TEMPORARY}/{name}.ppm", path)
        os.replace(path, at("baseline.jpg"))
        run("jpegtran", "-progressive", "-copy", "none", "-outfile", at("progressive.jpg"), at("baseline.jpg"))
        run("jpegtran", "-restart", "1", "-copy", "none", "-outfile", at("restart.jpg"), at("baseline.jpg"))
        run("jpegtran", "-arithmetic", "-copy", "none", "-outfile", at("arithmetic.jpg"), at("baseline.jpg"))

    path = f"{TEMPORARY}/ycck.jpg"
    run("convert", ppm, "-colorspace", "CMYK", path)
    at = picture("ycck", opaque(without_ink(np.array(Image.open(path)))))
    os.replace(path, at("ycck.jpg"))
    path = f"{TEMPORARY}/jpeg.tif"
    run("convert", ppm, "-compress", "jpeg", path)
    run("tiff2rgba", "-c", "none", path, f"{TEMPORARY}/rgba.tif")
    at = picture("jpeg-tiff", np.array(Image.open(f"{TEMPORARY}/rgba.tif").convert("RGBA")))
    os.replace(path, at("jpeg.tif"))
    jpeg("jpeg-420", "-quality", "80", "-sample", "2x2")
    jpeg("jpeg-444", "-quality", "80", "-sample", "1x1")
    path = f"{TEMPORARY}/lossy.webp"
    image.save(path, quality=70)
    at = reference("webp-lossy", "dwebp", path, "-o", f"{TEMPORARY}/lossy-webp.png")
    os.replace(path, at("lossy.webp"))
    source = temporary(image, "lossy.png")
    deep = f"{TEMPORARY}/deep.png"
    png(deep, wide(rgb) + 60, RGB, 16)
    translucent = temporary(Image.fromarray(np.dstack([rgb, (x * 5).astype(np.uint8)])), "alpha.png")
    for name, original, *options in [("lossy.heic", source), ("lossy.avif", source, "-A"), ("alpha.avif", translucent, "-A"),
                                     ("deep.heic", deep), ("alpha.heic", translucent)]:
        path = f"{TEMPORARY}/{name}"
        run("heif-enc", *options, "-q", "60", original, "-o", path)
        at = reference(name.replace(".", "-"), "heif-convert", path, f"{TEMPORARY}/{name}.png")
        os.replace(path, at(name))
    for name, *options in [("deep", deep, "-d", "10"), ("turned", source, "--irot", "1", "--imir", "1"),
                           ("lossless", source, "-l")]:
        path = f"{TEMPORARY}/{name}.avif"
        run("avifenc", *options, path)
        at = reference(f"{name}-avif", "heif-convert", path, f"{path}.png")
        os.replace(path, at(f"{name}.avif"))
    path = f"{TEMPORARY}/turned.jpg"  # whose orientation heif-enc copies as EXIF, which counts for nothing here
    image.save(path, quality=95, exif=b"Exif\0\0" + exif(6))
    run("heif-enc", "-q", "60", path, "-o", f"{TEMPORARY}/exif.heic")
    at = reference("exif-heic", "heif-convert", f"{TEMPORARY}/exif.heic", f"{TEMPORARY}/exif.png")
    os.replace(f"{TEMPORARY}/exif.heic", at("exif.heic"))


def wide_gamut():
    """Colours of Display P3's primaries, chosen where rounding is not in doubt."""
    p3 = ((0.680, 0.320), (0.265, 0.690), (0.150, 0.060))
    exponent = 2.19921875  # as a profile can hold it
    found = []
    while len(found) < 6:
        rgb = random.integers(60, 200, 3)
        exact = converted(rgb, p3, exponent)
        if np.all((np.abs(exact - np.round(exact)) < 0.2) & (exact > 20) & (exact < 235)):
            found.append((rgb, np.round(exact)))
    rgb, shown = (np.repeat(np.repeat(np.array([found[:3], found[3:]])[:, :, i], 8, 0), 8, 1).astype(np.uint8)
                  for i in (0, 1))
    at = picture("wide-gamut", opaque(shown))
    profile = icc(to_pcs(p3).T, exponent)
    embedded = chunk(b"iCCP", b"p3\0\0" + zlib.compress(profile))
    png(at("srgb.png"), shown, RGB)
    png(at("profile.png"), rgb, RGB, before=embedded)
    png(at("profile-over-srgb.png"), rgb, RGB, before=embedded + chunk(b"gAMA", struct.pack(">I", 45455)))
    numbers = [round(v * 100000) for pair in (WHITE, *p3) for v in pair]
    png(at("calibrated.png"), rgb, RGB, before=chunk(b"gAMA", struct.pack(">I", round(100000 / exponent))) +
        chunk(b"cHRM", struct.pack(">8I", *numbers)))
    image = Image.fromarray(rgb)
    image.save(at("profile.tif"), icc_profile=profile)
    image.save(at("profile.webp"), lossless=True, icc_profile=profile)
    ppm = temporary(image, "wide.ppm")
    run("cjpeg", "-rgb", "-quality", "100", "-sample", "1x1", "-outfile", f"{TEMPORARY}/wide.jpg", ppm)
    marker = b"ICC_PROFILE\0\1\1" + profile
    write(at("profile.jpg"), with_marker(read(f"{TEMPORARY}/wide.jpg"), 0xE2, marker))
    embedded = struct.pack("<II", 0, 0)
    rows = bgr_rows(rgb)
    size = sum(len(row) for row in rows)
    header = struct.pack("<IiiHHIIiiII", 124, 24, 16, 1, 24, 0, size, 0, 0, 0, 0).ljust(56, b"\0") + b"DEBM"
    header = header.ljust(108, b"\0") + struct.pack("<IIII", 4, 124 + size, len(profile), 0)
    write(at("profile.bmp"), b"BM" + struct.pack("<IHHI", 138 + size + len(profile), 0, 0, 138) + header +
          b"".join(rows) + profile)


def gray_profile():
    exponent = 1.5
    exact = encoded((np.arange(256) / 255) ** exponent)
    sure = np.flatnonzero(np.abs(exact - np.round(exact)) < 0.25)[8:-8]
    gray = np.repeat(np.repeat(random.choice(sure, (3, 4, 1)), 8, 0), 8, 1).astype(np.uint8)
    at = picture("gray-profile", opaque(np.repeat(np.round(exact[gray]).astype(np.uint8), 3, 2)))
    profile = icc((), exponent, gray=True)
    embedded = chunk(b"iCCP", b"g\0\0" + zlib.compress(profile))
    png(at("gray.png"), gray, GRAY, before=embedded)
    png(at("alpha.png"), np.dstack([gray, np.full_like(gray, 255)]), GRAY_ALPHA, before=embedded)
    png(at("calibrated.png"), gray, GRAY, before=chunk(b"gAMA", struct.pack(">I", round(100000 / exponent))))
    image = Image.fromarray(gray[:, :, 0])
    image.save(at("gray.tif"), icc_profile=profile)
    image.save(at("gray.jpg"), quality=100, icc_profile=profile)


if __name__ == "__main__":
    os.makedirs(TEMPORARY, exist_ok=True)
    for make in (colours, translucent, cut_out, grays, sixteen, bilevel, five_bits, turned, blocks, inks, black_ink,
                 lossy, wide_gamut, gray_profile):
        make()
    with open(f"{ROOT}/hashes.txt", "w") as file:
        file.writelines(f"{name} {value}\n" for name, value in sorted(hashes.items()))
