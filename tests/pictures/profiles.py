"""Colour profiles, and what sRGB makes of their colours; pictures that carry them."""
import os, struct, zlib
import numpy as np
from PIL import Image
from files import TEMPORARY, noise, opaque, picture, random, read, run, temporary, write
from formats import GRAY, GRAY_ALPHA, RGB, bgr_rows, chunk, png, with_marker

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
