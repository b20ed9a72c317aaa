#!/usr/bin/env python3
"""Makes the pictures of this folder and hashes.txt. One folder per picture; all its files show the same.

The hashes come from the pixels that the files were made from, by the definition, not from any decoder;
where a lossy codec decides the pixels, from that codec's own command (djpeg, dwebp, heif-convert).
Needs Pillow, NumPy and the tools of libjpeg-turbo, libtiff, libwebp, libheif, giflib and OpenJPEG.
"""
import os, struct, zlib
import numpy as np
from PIL import Image, ImageCms
from files import ROOT, TEMPORARY, hashes, noise, opaque, picture, random, read, run, temporary, without_ink, write
from formats import *
from lossy import lossy
from profiles import SRGB, gray_profile, icc, to_pcs, wide_gamut


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
                           ("zstd", "-c", "zstd"), ("lzma", "-c", "lzma"), ("packbits", "-c", "packbits"),
                           ("tiles", "-t", "-w", "16", "-l", "16"), ("planes", "-p", "separate", "-c", "lzw"),
                           ("big-endian", "-B"), ("64", "-8"),
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


def black_ink():
    cmyk = noise(7, 9, 4)
    rgb = without_ink(cmyk)
    at = picture("black-ink", opaque(rgb))
    image = Image.frombytes("CMYK", (9, 7), cmyk.tobytes())
    image.save(at("cmyk.tif"))
    run("tiffcp", "-p", "separate", at("cmyk.tif"), at("cmyk-planes.tif"))
    png(at("rgb.png"), rgb, RGB)


if __name__ == "__main__":
    os.makedirs(TEMPORARY, exist_ok=True)
    for make in (colours, translucent, cut_out, grays, sixteen, bilevel, five_bits, turned, blocks, inks, black_ink,
                 lossy, wide_gamut, gray_profile):
        make()
    with open(f"{ROOT}/hashes.txt", "w") as file:
        file.writelines(f"{name} {value}\n" for name, value in sorted(hashes.items()))
