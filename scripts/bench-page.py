#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""bench-page.py RESULTS DOCS

Writes DOCS/benchmarks.md and its plots in DOCS/images/benchmarks/ from the JSON files that bench.sh
leaves in RESULTS. The text is in DOCS/benchmarks.in.md, where {{name}} stands for a table or a number.
Plots are drawn by gnuplot.
"""
import json
import pathlib
import re
import subprocess
import sys

RADII = [5, 10, 20, 35, 50, 75, 100]


class Results:
    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        self.cases = {}
        for file in sorted(self.folder.glob("*.json")):
            report = json.loads(file.read_text())
            self.context = report["context"]
            for case in report["benchmarks"]:
                name = re.sub(r"/(iterations:\d+|manual_time|real_time)", "", case["name"])
                self.cases[name] = case

    def value(self, name, counter, form="{:.2f}"):
        """A counter of a case as text; a dash for a case that wasn't measured."""
        case = self.cases.get(name)
        return form.format(case[counter]) if case else "–"

    def seconds(self, name):
        return self.cases[name]["real_time"] / 1000.0


def table(head, rows):
    lines = ["| " + " | ".join(head) + " |", "| " + " | ".join(["---"] * len(head)) + " |"]
    lines += ["| " + " | ".join(row) + " |" for row in rows]
    return "\n".join(lines)


def peers(results):
    def row(label, case, most):
        return [label] + [results.value(f"peer.{case}/{r}", "ratio") for r in RADII] + [most]

    return table(
        ["", *(f"R {r}" for r in RADII), "wanted at most"],
        [
            row("beside OpenCV's `filter2D`", "filter2D", "1.0 / 0.65 / 0.4 at 20 / 50 / 100"),
            row("beside FFTW on the whole image", "fftw", "1.5 at 50"),
            row("exposure 10 beside exposure 0", "exposure", "1.3 at 50"),
        ],
    )


def transforms(results):
    sizes = [128, 256, 512]

    def row(lanes, kind, most):
        label = f"{lanes} lanes, " + ("complex" if kind == "ratio" else "real, there and back")
        return [label] + [results.value(f"transform.{kind}.{lanes}/{b}", "ratio") for b in sizes] + [most]

    lanes = [4, 10, 30, 80]
    return table(
        ["", *(f"B = {b}" for b in sizes), "wanted at most"],
        [row(n, "ratio", "0.85") for n in lanes] + [row(n, "real", "1.2") for n in lanes],
    )


def versions(results):
    def row(label, name, most):
        cells = [results.value(f"version.{name}/{r}", "ratio") for r in (20, 50)]
        return [label, *cells, most]

    rows = []
    for layers in (6, 16):
        for mode in ("Normal", "Split"):
            rows.append(row(f"every layer in every block, {layers} layers, {mode}",
                            f"noise.{layers}.{mode}", "0.56"))
    for layers in (6, 16):
        for mode in ("Normal", "Split"):
            most = "0.35 at 20" if layers == 16 else ""
            rows.append(row(f"street, {layers} layers, {mode}", f"street.{layers}.{mode}", most))
    return table(["", "R 20", "R 50", "wanted at most"], rows)


def workers(results):
    def row(label, name, most):
        return [label, results.value(f"scaling.{name}", "ratio"), most]

    return table(
        ["", "two beside one", "wanted at most"],
        [
            row("no depth, R 20", "workers.1/20", ""),
            row("no depth, R 50", "workers.1/50", "0.58"),
            row("6 layers, R 20", "workers.6/20", ""),
            row("6 layers, R 50", "workers.6/50", "0.63"),
            row("arithmetic alone", "arithmetic", ""),
            row("copying memory alone", "copying", ""),
        ],
    )


SIZES = [500, 2074, 8294, 33178]


def sizes(results):
    rows = []
    for radius in (20, 50, 100):
        values = [results.cases[f"scaling.size/{radius}/{s}"]["ns"] for s in SIZES]
        spread = 100.0 * (max(values) / min(values) - 1.0)
        rows.append([f"R {radius}"] + [f"{v:.1f}" for v in values] + [f"{spread:.0f} %"])
    return table(["ns per block pixel", *(f"{s / 1000:.1f} MP" for s in SIZES), "largest over smallest"], rows)


STAGES = ["kernels", "bank", "depth", "store", "forward", "multiply", "inverse", "unpack"]
FRAMES = [(n, mode, r) for n, modes in ((1, ["normal"]), (6, ["normal", "split"]), (16, ["normal", "split"]))
          for mode in modes for r in (20, 50)]


def stages(results):
    rows = []
    for n, mode, radius in FRAMES:
        case = results.cases[f"frame.parts.{n}.{mode}/{radius}"]
        rows.append([f"{n}, {mode}, R {radius}"] + [f"{case[s]:.3f}" for s in STAGES])
    return table(["layers, mode", *STAGES], rows)


def plot(folder, name, commands, data):
    (folder / f"{name}.svg").unlink(missing_ok=True)
    blocks = "\n".join(f"${key} << EOD\n{value}\nEOD" for key, value in data.items())
    script = (f"{blocks}\nset terminal svg size 720,400 font 'sans-serif,13' background '#ffffff'\n"
              f"set output '{folder / (name + '.svg')}'\nset grid ytics\nset border 3\n"
              f"set tics nomirror\n{commands}\n")
    subprocess.run(["gnuplot"], input=script, text=True, check=True)


def plots(results, folder):
    folder.mkdir(parents=True, exist_ok=True)
    lines = {"ours": [], "opencv": [], "fftw": []}
    for r in RADII:
        lines["ours"].append(f"{r} {results.seconds(f'peer.fftw/{r}')}")
        lines["fftw"].append(f"{r} {results.value(f'peer.fftw/{r}', 'peer', '{}')}")
        if f"peer.filter2D/{r}" in results.cases:
            lines["opencv"].append(f"{r} {results.value(f'peer.filter2D/{r}', 'peer', '{}')}")
    sides = [("$ours", "Orbel"), ("$opencv", "OpenCV filter2D"), ("$fftw", "FFTW, whole image")]
    drawn = [(key, title) for key, title in sides if lines[key[1:]]]
    plot(folder, "radius",
         "set key top left\nset yrange [0:]\nset xlabel 'blur radius, pixels'\nset ylabel 'seconds'\nplot "
         + ", ".join(f"{key} with linespoints lw 2 pt 7 title '{title}'" for key, title in drawn),
         {key[1:]: "\n".join(lines[key[1:]]) for key, _ in drawn})

    rows = []
    for n, mode, radius in FRAMES:
        case = results.cases[f"frame.parts.{n}.{mode}/{radius}"]
        total = sum(case[s] for s in STAGES)
        rows.append(f"\"{n} {mode} R{radius}\" " + " ".join(str(100 * case[s] / total) for s in STAGES))
    plot(folder, "stages",
         "set style data histograms\nset style histogram rowstacked\nset style fill solid 0.8 noborder\n"
         "set boxwidth 0.7\nset yrange [0:100]\nset ylabel 'per cent of the frame'\nset key outside right\n"
         "set xtics rotate by -35\nplot "
         + ", ".join(f"$rows using {i + 2}:xtic(1) title '{s}'" for i, s in enumerate(STAGES)),
         {"rows": "\n".join(rows)})

    data = {}
    for mode in ("normal", "split"):
        data[mode] = "\n".join(f"{n} {results.seconds(f'frame.parts.{n}.{mode}/20')}" for n in (2, 6, 16))
    plot(folder, "layers",
         "set key top left\nset yrange [0:]\nset xrange [0:17]\nset xlabel 'depth layers'\n"
         "set ylabel 'seconds, R 20'\nplot $normal with linespoints lw 2 pt 7 title 'Normal', "
         "$split with linespoints lw 2 pt 7 title 'Split'", data)

    data = {f"r{r}": "\n".join(f"{s / 1000} {results.cases[f'scaling.size/{r}/{s}']['ns']}" for s in SIZES)
            for r in (20, 50, 100)}
    plot(folder, "pixels",
         "set logscale x\nset yrange [0:]\nset xlabel 'megapixels'\nset ylabel 'ns per block pixel'\nplot "
         + ", ".join(f"$r{r} with linespoints lw 2 pt 7 title 'R {r}'" for r in (20, 50, 100)), data)


def machine(results):
    caches = ", ".join(f"L{c['level']} {c['size'] // 1024} KB" for c in results.context["caches"]
                       if c["type"] != "Instruction")
    return f"{results.context['num_cpus']} processors at {results.context['mhz_per_cpu']} MHz, {caches}"


def main(results_folder, docs):
    results = Results(results_folder)
    docs = pathlib.Path(docs)
    plots(results, docs / "images" / "benchmarks")
    size = int((results.folder / "bundle-bytes").read_text()) / 1e6
    values = {
        "machine": machine(results),
        "date": results.context["date"][:10],
        "peers": peers(results),
        "transforms": transforms(results),
        "versions": versions(results),
        "workers": workers(results),
        "sizes": sizes(results),
        "stages": stages(results),
        "bundle": f"{size:.1f} MB",
        "baseline": (results.folder / "baseline").read_text().strip(),
        "compiler": subprocess.run(["c++", "--version"], capture_output=True, text=True, check=True).stdout.split("\n")[0],
    }
    page = (docs / "benchmarks.in.md").read_text()
    page = re.sub(r"\{\{(\w+)\}\}", lambda match: values[match.group(1)], page)
    (docs / "benchmarks.md").write_text(page)


if __name__ == "__main__":
    main(*sys.argv[1:])
