#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""page.py RESULTS DOCS

Writes DOCS/lens.md and its pictures in DOCS/images/lens/ from what run.sh leaves in RESULTS. The text is
in DOCS/lens.in.md, where {{name}} stands for a table or a number.
"""
import json
import pathlib
import re
import sys

import numpy

import measure

# What comes after the scene in a file's name, and how the page calls it.
WAYS = {
    "orbel-normal": "Orbel, Normal",
    "orbel-split": "Orbel, Split",
    "orbel-normal-occlusion": "Orbel, Normal, occlusion",
    "orbel-split-occlusion": "Orbel, Split, occlusion",
    "defocus": "Defocus, its best f-stop",
    "gegl": "GEGL's lens-blur",
    "pinhole": "no blur",
    "truth2": "the lens, one seed beside the other",
}
# Left and top of the part of each scene that is shown.
CROPS = {"portrait": (300, 60), "grass": (360, 180), "lattice": (420, 150), "row": (250, 170), "table": (400, 180),
         "plane": (340, 250), "rack_near": (150, 60), "rack_far": (320, 130)}
CROP = (240, 180)
SHOWN = ["truth", "orbel-normal", "orbel-split", "orbel-split-occlusion", "defocus", "gegl"]
WHITE_STOPS = 2.0  # the error that the error pictures show as white


class Results:
    """The measures of each way for each scene; ways that have no image of a scene are left out."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        self.facts = {name: json.loads((self.folder / f"{name}.json").read_text())
                      for name in CROPS if name in measure.scenes(self.folder)}
        self.truths = {name: measure.truth(self.folder, name) for name in self.facts}
        self.measures = {way: {name: self.measured(name, way) for name in self.facts if self.file(name, way).exists()}
                         for way in WAYS}
        self.measures = {way: scenes for way, scenes in self.measures.items() if scenes}

    def file(self, name, way):
        return self.folder / f"{name}-{way}.exr"

    def measured(self, name, way):
        image, truth = measure.read(self.file(name, way)), self.truths[name]
        if way == "truth2":  # which is a part of the truth
            truth = measure.read(self.file(name, "truth"))
        error = measure.inside(measure.stops(image, truth))
        values = {"psnr": measure.psnr(image, truth), "ssim": measure.ssim(image, truth),
                  "median": numpy.median(error), "most": numpy.percentile(error, 95)}
        seconds = self.folder / f"{name}-{way}.seconds"
        if seconds.exists():
            values["seconds"] = float(seconds.read_text())
        return values

    def table(self, measure_name, form):
        rows = []
        for way, scenes in self.measures.items():
            cells = [scenes.get(name, {}).get(measure_name) for name in self.facts]
            if any(cell is not None for cell in cells):
                cells.append(numpy.mean(cells) if None not in cells else None)
                rows.append([WAYS[way]] + [form.format(cell) if cell is not None else "–" for cell in cells])
        return table(["", *self.facts, "mean"], rows)


def table(head, rows):
    lines = ["| " + " | ".join(head) + " |", "| " + " | ".join(["---"] * len(head)) + " |"]
    lines += ["| " + " | ".join(row) + " |" for row in rows]
    return "\n".join(lines)


def sweeps(results):
    """The f-stops at which Defocus is nearest to the truth."""
    rows = []
    for name, facts in results.facts.items():
        file = results.folder / f"{name}-defocus.json"
        if not file.exists():
            continue
        runs = json.loads(file.read_text())
        best = max(runs, key=lambda run: run["psnr"])
        rows.append([name, f"{best['f_stop']:.1f}", f"{best['f_stop'] / facts['f_stop']:.1f}"])
    return table(["", "best f-stop", "times the lens's"], rows)


def sheet(results, name):
    """What the ways make of a part of the scene, above their errors; float, for a screen."""
    left, top = CROPS[name]
    part = numpy.s_[top:top + CROP[1], left:left + CROP[0]]
    columns = []
    for way in SHOWN:
        if not results.file(name, way).exists():
            continue
        truth = results.truths[name]
        image = truth if way == "truth" else measure.read(results.file(name, way))
        error = measure.stops(image, truth)[part] / WHITE_STOPS
        error = numpy.repeat(numpy.clip(error, 0.0, 1.0)[:, :, None], 3, axis=2)
        columns.append(numpy.vstack([measure.encoded(image[part]), error]))
    return numpy.hstack(columns)


def pictures(results, folder):
    folder.mkdir(parents=True, exist_ok=True)
    parts = []
    for name in results.facts:
        measure.write(folder / f"{name}.jpg", sheet(results, name), "uint8")
        parts.append(f"![{name}](images/lens/{name}.jpg)")
    return "\n\n".join(parts)


def shown(results):
    """The columns of the pictures."""
    name = next(iter(results.facts))
    return "; ".join({"truth": "the lens", **WAYS}[way] for way in SHOWN if results.file(name, way).exists())


def main(results_folder, docs):
    results = Results(results_folder)
    docs = pathlib.Path(docs)
    facts = next(iter(results.facts.values()))
    values = {
        "focal": f"{facts['focal_length_mm']:g}",
        "fstop": f"{facts['f_stop']:g}",
        "samples": str(facts["samples"]),
        "margin": str(measure.MARGIN),
        "white": f"{WHITE_STOPS:g}",
        "processors": (results.folder / "processors").read_text().strip(),
        "blender": (results.folder / "blender").read_text().strip(),
        "psnr": results.table("psnr", "{:.2f}"),
        "ssim": results.table("ssim", "{:.4f}"),
        "median": results.table("median", "{:.3f}"),
        "most": results.table("most", "{:.2f}"),
        "seconds": results.table("seconds", "{:.2f}"),
        "sweeps": sweeps(results),
        "columns": shown(results),
        "pictures": pictures(results, docs / "images" / "lens"),
    }
    page = (docs / "lens.in.md").read_text()
    page = re.sub(r"\{\{(\w+)\}\}", lambda match: values[match.group(1)], page)
    (docs / "lens.md").write_text(page)


if __name__ == "__main__":
    main(*sys.argv[1:])
