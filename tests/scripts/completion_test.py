#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""completion_test.py SHELL FOLDER

Loads the completion script for bash, zsh or fish from FOLDER into the real shell and completes
command lines with it. Bash and zsh run on a pseudoterminal, get keys, and run a function that prints
the words of the completed line; fish answers by itself. A shell that isn't installed is a failure.
"""
import os
import pathlib
import pty
import re
import select
import shutil
import subprocess
import sys
import tempfile
import time

# The keys before the tab, and the words of the line after it.
CASES = [
    ("orbel rend", ["render"]),
    ("orbel help comp", ["help", "compare"]),
    ("orbel render --blur-ra", ["render", "--blur-radius"]),
    ("orbel render --alpha ass", ["render", "--alpha", "associated"]),
    ("orbel render in.png --composite-mode sp", ["render", "in.png", "--composite-mode", "split"]),
    ("orbel render -o pho", ["render", "-o", "photo file.png"]),
    ("orbel render pho", ["render", "photo file.png"]),
    ("orbel render --preset=pho", ["render", "--preset=photo file.png"]),
    ("orbel aperture hear", ["aperture", "heart"]),
    ("orbel doctor --bun", ["doctor", "--bundle"]),
]
# Where nothing fits, no file is offered.
NOTHING = [("orbel render --vertices pho", ["render", "--vertices", "pho"]),
           ("orbel about pho", ["about", "pho"])]
EQUALS = ("orbel render --alpha=str", ["render", "--alpha=straight"])
LONGEST_WAIT = 60.0


class Shell:
    """A shell on a pseudoterminal."""

    def __init__(self, command, folder):
        self.process, self.terminal = pty.fork()
        if self.process == 0:
            os.chdir(folder)
            environment = {"PATH": os.environ["PATH"], "HOME": folder, "TERM": "dumb", "LC_ALL": "C.UTF-8"}
            os.execvpe(command[0], command, environment)
        self.seen = ""

    def send(self, text):
        os.write(self.terminal, text.encode())

    def read_until(self, pattern):
        """The first match of `pattern` in what the shell prints; forgets all up to it."""
        end = time.monotonic() + LONGEST_WAIT
        while not (match := re.search(pattern, self.seen)):
            ready, _, _ = select.select([self.terminal], [], [], max(0.0, end - time.monotonic()))
            if not ready:
                sys.exit(f"the shell printed no {pattern}, but:\n{self.seen}")
            try:
                self.seen += os.read(self.terminal, 4096).decode(errors="replace")
            except OSError:
                sys.exit(f"the shell ended before it printed {pattern}:\n{self.seen}")
        self.seen = self.seen[match.end():]
        return match

    def close(self):
        self.send("exit\n")
        os.close(self.terminal)
        os.waitpid(self.process, 0)


# Prints each word between marks that no prompt or echo contains in this order.
PRINTER = """orbel() { printf '%s' '@''('; printf '<%s>' "$@"; printf '%s\\n' ')''@'; }"""
START = {
    "bash": (["bash", "--norc", "--noprofile", "-i"],
             "source {folder}/orbel.bash; bind 'set bell-style none'"),
    "zsh": (["zsh", "-f", "-i"],
            "fpath=({folder} $fpath); autoload -Uz compinit && compinit -u -D; unsetopt beep zle_bracketed_paste"),
}


def completed_on_terminal(shell, folder, work):
    command, load = START[shell]
    run = Shell(command, work)
    run.send(load.format(folder=folder) + "\n" + PRINTER + "\n" + "echo 're''ady'\n")
    run.read_until(r"ready\r")
    for keys, _ in [*CASES, *NOTHING, EQUALS]:
        run.send(keys + "\t\n")
        yield re.findall(r"<([^>]*)>", run.read_until(r"@\((.*?)\)@\r").group(1))
    run.close()


def completed_by_fish(folder, work):
    for keys, words in [*CASES, *NOTHING, EQUALS]:
        result = subprocess.run(
            ["fish", "--no-config", "-c", f"source {folder}/orbel.fish; complete -C '{keys}'"],
            cwd=work, env={**os.environ, "HOME": work, "LC_ALL": "C.UTF-8"}, check=True, capture_output=True, text=True)
        if result.stderr:
            sys.exit(f"fish reports:\n{result.stderr}")
        # Candidates for the last word, each with a description after a tab.
        candidates = [line.split("\t")[0] for line in result.stdout.splitlines()]
        last = candidates[0] if len(candidates) == 1 else keys.split()[-1] + "".join(candidates)
        yield [*words[:-1], last]


def main():
    shell, folder = sys.argv[1], pathlib.Path(sys.argv[2]).resolve()
    if shutil.which(shell) is None:
        sys.exit(f"{shell} isn't installed; scripts/setup.sh test installs it")
    with tempfile.TemporaryDirectory() as work:
        pathlib.Path(work, "photo file.png").touch()
        found = completed_by_fish(folder, work) if shell == "fish" else completed_on_terminal(shell, folder, work)
        failures = 0
        for (keys, wanted), words in zip([*CASES, *NOTHING, EQUALS], found, strict=True):
            words = [word.rstrip() for word in words]
            if words != wanted:
                print(f"{keys!r} was completed to {words} instead of {wanted}")
                failures += 1
    sys.exit(failures != 0)


main()
