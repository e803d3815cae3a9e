# SPDX-License-Identifier: Apache-2.0
"""Images of the lens benchmark as arrays of scene-linear light, and how much two of them differ.

Measures leave out a margin of MARGIN pixels, into which light comes from outside the picture.
"""
import numpy
import OpenImageIO

MARGIN = 48


def scenes(folder):
    """The names of the scenes that scenes.py has finished."""
    return sorted(file.stem for file in folder.glob("*.json") if "-" not in file.stem)


def read(file):
    """Height x width x 3, float. Fails where the file can't be read."""
    image = OpenImageIO.ImageInput.open(str(file))
    if image is None:
        raise OSError(f"{file}: {OpenImageIO.geterror()}")
    pixels = image.read_image(OpenImageIO.FLOAT)
    image.close()
    if pixels is None:
        raise OSError(f"{file}: {OpenImageIO.geterror()}")
    return numpy.asarray(pixels, dtype=numpy.float64)[:, :, :3]


def truth(folder, name):
    """What the lens shows: the mean of both seeds."""
    return (read(folder / f"{name}-truth.exr") + read(folder / f"{name}-truth2.exr")) / 2.0


def write(file, image, kind):
    """Height x width x 3, as `kind` of channel: uint8 or float."""
    height, width, channels = image.shape
    described = OpenImageIO.ImageSpec(width, height, channels, kind)
    described["Compression"] = "jpeg:85" if file.suffix == ".jpg" else "zip"
    output = OpenImageIO.ImageOutput.create(str(file))
    if output is None or not output.open(str(file), described) or not output.write_image(
            numpy.ascontiguousarray(image, dtype=numpy.float32)):
        raise OSError(f"{file}: {OpenImageIO.geterror()}")
    output.close()


def encoded(light):
    """Clipped to 0..1 and encoded as sRGB (IEC 61966-2-1)."""
    light = numpy.clip(light, 0.0, 1.0)
    return numpy.where(light <= 0.0031308, 12.92 * light, 1.055 * light ** (1.0 / 2.4) - 0.055)


def inside(image):
    return image[MARGIN:-MARGIN, MARGIN:-MARGIN]


def luma(image):
    """With the weights of ITU-R BT.709."""
    return image @ numpy.array([0.2126, 0.7152, 0.0722])


def psnr(image, truth):
    """In dB, of what a screen shows."""
    error = numpy.mean((encoded(inside(image)) - encoded(inside(truth))) ** 2)
    return float("inf") if error == 0.0 else -10.0 * numpy.log10(error)


def smoothed(image):
    """By a Gaussian of 11 x 11 pixels, sigma 1.5; 5 pixels less at each side."""
    weights = numpy.exp(-0.5 * (numpy.arange(-5, 6) / 1.5) ** 2)
    weights /= weights.sum()
    rows, columns = image.shape
    image = sum(w * image[i:rows - 10 + i] for i, w in enumerate(weights))
    return sum(w * image[:, i:columns - 10 + i] for i, w in enumerate(weights))


def ssim(image, truth):
    """Structural similarity (Wang, Bovik, Sheikh, Simoncelli 2004) of luma as a screen shows it."""
    a, b = (luma(encoded(inside(light))) for light in (image, truth))
    mean_a, mean_b = smoothed(a), smoothed(b)
    variance_a, variance_b = smoothed(a * a) - mean_a ** 2, smoothed(b * b) - mean_b ** 2
    covariance = smoothed(a * b) - mean_a * mean_b
    c1, c2 = 0.01 ** 2, 0.03 ** 2
    similarity = ((2.0 * mean_a * mean_b + c1) * (2.0 * covariance + c2)
                  / ((mean_a ** 2 + mean_b ** 2 + c1) * (variance_a + variance_b + c2)))
    return float(similarity.mean())


def stops(image, truth):
    """The difference of each pixel's light in stops; 0.01 keeps the dark from counting."""
    a, b = (numpy.maximum(luma(light), 0.0) + 0.01 for light in (image, truth))
    return numpy.abs(numpy.log2(a / b))
