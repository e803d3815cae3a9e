#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""file_times.py TOOL [MEGAPIXELS...]

Compares the time that TOOL takes to read and write an image, with Blur Radius 0, with that of oiiotool
for the same files, and its memory with one RGBA float image. Medians of three runs in turns.
"""
import os
import statistics
import subprocess
import sys
import tempfile
import time

KINDS = {'PNG': ('png', 'uint8'), 'JPEG': ('jpg', 'uint8'),
         'half EXR': ('exr', 'half'), 'float EXR': ('exr', 'float')}
RUNS = 3


def measure(command):
    """Seconds of the clock, seconds of the processors, and the peak of the memory in bytes."""
    begin = time.monotonic()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    if status != 0:
        sys.exit(f'failed: {" ".join(command)}')
    return time.monotonic() - begin, usage.ru_utime + usage.ru_stime, usage.ru_maxrss * 1024


def compare(tool, folder, name, megapixels):
    suffix, kind = KINDS[name]
    width, height = round((megapixels * 1.5e6) ** 0.5), round((megapixels / 1.5e-6) ** 0.5)
    source, result = f'{folder}/in.{suffix}', f'{folder}/out.{suffix}'
    subprocess.run(['oiiotool', '--pattern', 'fill:topleft=0,.2,.9:topright=.9,.5,0:bottomleft=.2,1,.3'
                    ':bottomright=.7,.1,.6', f'{width}x{height}', '3', '--noise:stddev=0.03',
                    '-d', kind, '-o', source], check=True)
    commands = ([tool, 'render', source, '-o', result, '--blur-radius', '0', '--raw', '--quiet'],
                ['oiiotool', source, '-o', result])
    runs = [[measure(command) for command in commands] for _ in range(RUNS)]
    own, other = [[statistics.median(run[i][k] for run in runs) for k in range(3)] for i in range(2)]
    memory = own[2] / (width * height * 16)
    print(f'{name:9} {megapixels:3} MP  {own[0]:6.2f} s, oiiotool {other[0]:6.2f} s: {own[0] / other[0]:.2f}'
          f'  (processors {own[1] / other[1]:.2f})  memory {memory:.2f}', flush=True)


def main():
    tool, sizes = sys.argv[1], [int(size) for size in sys.argv[2:]] or [1, 96]
    with tempfile.TemporaryDirectory() as folder:
        for size in sizes:
            for name in KINDS:
                compare(tool, folder, name, size)


main()
