#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""gegl.py FOLDER

Blurs the pinhole images in FOLDER by GEGL's lens-blur, whose mask holds the radius of each pixel: that of
the lens, as a part of the largest one in the picture. Writes NAME-gegl.exr and NAME-gegl.seconds for each
scene. Seconds are those of the program less those of a run that only copies, the smallest of three.
"""
import json
import pathlib
import subprocess
import sys
import time

import numpy

import measure

REPEATS = 3


def radii(depth, facts):
    """In pixels, of the disc that a point becomes: focal length and aperture squared, over the focus."""
    pixel = facts["sensor_width_mm"] / depth.shape[1]
    reach = facts["focal_length_mm"] ** 2 / facts["f_stop"] / 2.0 / pixel / 1000.0  # pixels, for each 1/m
    return reach * numpy.abs(1.0 / depth - 1.0 / facts["focus_m"])


def run(source, result, *operation):
    best = float("inf")
    for _ in range(REPEATS):
        begin = time.monotonic()
        subprocess.run(["gegl", source, "-o", result, "--", *operation], check=True, stderr=subprocess.DEVNULL)
        best = min(best, time.monotonic() - begin)
    return best


def main(folder):
    folder = pathlib.Path(folder)
    for name in measure.scenes(folder):
        facts = json.loads((folder / f"{name}.json").read_text())
        radius = radii(measure.read(folder / f"{name}-depth.exr"), facts)
        mask, pinhole, result = (folder / f"{name}-{kind}.exr" for kind in ("gegl-mask", "pinhole", "gegl"))
        measure.write(mask, radius / radius.max(), "float")
        idle = run(pinhole, result, "gegl:nop")
        seconds = run(pinhole, result, "gegl:lens-blur", f"radius={radius.max()}", "linear-mask=true",
                      "aux=[", "gegl:load", f"path={mask}", "]")
        (folder / f"{name}-gegl.seconds").write_text(f"{seconds - idle}\n")


if __name__ == "__main__":
    main(*sys.argv[1:])
