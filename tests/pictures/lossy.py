"""Pictures whose pixels a codec decides: what the codec's own command decodes is the measure."""
import os
import numpy as np
from PIL import Image
from files import TEMPORARY, opaque, picture, run, temporary, without_ink
from formats import RGB, RGBA, exif, png, wide


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
    jpeg_tiff, webp_tiff = f"{TEMPORARY}/jpeg.tif", f"{TEMPORARY}/webp.tif"
    run("convert", ppm, "-compress", "jpeg", jpeg_tiff)
    run("tiffcp", "-c", "webp", temporary(image, "lossy.tif"), webp_tiff)
    for kind, path in ("jpeg", jpeg_tiff), ("webp", webp_tiff):
        run("tiff2rgba", "-c", "none", path, f"{TEMPORARY}/rgba.tif")
        at = picture(f"{kind}-tiff", np.array(Image.open(f"{TEMPORARY}/rgba.tif").convert("RGBA")))
        os.replace(path, at(f"{kind}.tif"))
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
