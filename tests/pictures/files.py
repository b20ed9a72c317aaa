"""What the pictures here are made with: hashes, folders, commands, pixels."""
import hashlib, os, subprocess
import numpy as np

ROOT = os.path.dirname(os.path.abspath(__file__))
TEMPORARY = "/tmp/pictures-in-the-making"
hashes = {}  # by folder


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


random = np.random.default_rng(7)


def noise(height, width, channels, most=255, step=1):
    return (random.integers(0, most // step + 1, (height, width, channels)) * step).astype(np.uint8)


def without_ink(cmyk):
    c = 255 - cmyk.astype(int)
    return ((c[:, :, :3] * c[:, :, 3:] * 2 + 255) // 510).astype(np.uint8)
