#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""preset-schema.py TOOL

Prints the JSON schema of presets, docs/preset.schema.json, with the controls that the tool lists.
"""
import json
import subprocess
import sys

FRAME = {"type": "integer", "minimum": -999999999, "maximum": 999999999}
PERCENT = {"type": "string", "pattern": r"^[+-]?[0-9]+(\.[0-9]+)?([eE][+-]?[0-9]+)?%$"}
DISTANCE = {"anyOf": [{"type": "number", "minimum": 0}, {"const": "inf"}]}
LENGTH = {"type": "number", "exclusiveMinimum": 0}
TEXT = {"type": "string", "minLength": 1}
FLAG = {"type": "boolean"}
TEXTS = ["occlusion", "region", "downsample", "bits", "alpha", "pixel-aspect", "colour-in",
         "colour-out", "ocio", "output-type", "survey"]
FLAGS = ["keep-overscan", "linear", "raw", "pass-through", "crop-to-display"]


def reference(name):
    return {"$ref": f"#/$defs/{name}"}


def closed(properties, required=(), **more):
    """An object with no other members."""
    rule = {"type": "object", "properties": properties, "additionalProperties": False, **more}
    return rule | {"required": list(required)} if required else rule


def pair(item):
    return {"type": "array", "prefixItems": [item, item], "items": False, "minItems": 2}


def value(control):
    """What a control takes at one time."""
    if "choices" in control:
        numbers = {"type": "integer", "minimum": 1, "maximum": len(control["choices"])}
        return {"anyOf": [{"enum": control["choices"]}, numbers]}
    kind = control["type"]
    if kind == "box":
        return FLAG
    if kind == "point":
        return reference("point")
    rule = {"type": "integer" if kind == "whole number" else "number"}
    if "range" in control:
        # Limits are stored in steps of 1/65536 and meant as they are shown.
        low, high = (round(limit, control["decimals"]) for limit in control["range"])
        rule |= {"minimum": low, "maximum": high}
    return rule


def parameter(control):
    once = value(control)
    if not control["can_vary"]:
        return once
    ways = ["hold", "linear", "smooth"]
    if control["type"] in ("box", "choice", "whole number"):
        ways = ["hold"]
    key = closed({"frame": reference("frame"), "value": once, "interpolation": {"enum": ways}},
                 ["frame", "value"])
    keys = closed({"keys": {"type": "array", "minItems": 1, "items": key}}, ["keys"])
    return {"anyOf": [once, keys]}


def schema(controls):
    valued = [c for c in controls if "option" in c and c["type"] != "layer"]
    depth = closed({"file": TEXT, "kind": {"enum": ["distance", "disparity", "normalised"]},
                    "near": DISTANCE, "far": DISTANCE, "auto": FLAG, "inverse": FLAG,
                    "focus": DISTANCE, "focus-at": reference("point")})
    camera = closed({"exif": FLAG, "focal-length": LENGTH, "f-stop": LENGTH,
                     "sensor-width": LENGTH, "sensor-height": LENGTH, "focus": DISTANCE,
                     "breathing": FLAG, "unit": {"enum": ["m", "cm", "mm", "ft", "in"]}})
    tool = {name: {"anyOf": [TEXT, {"type": "number"}]} for name in TEXTS}
    tool |= {name: FLAG for name in FLAGS}
    members = {
        "$schema": {"type": "string"},
        "effect": {"const": "Orbel"},
        "version": {"type": "string", "pattern": r"^[0-9]{1,5}\.[0-9]{1,5}\.[0-9]{1,5}$",
                    "description": "of the program that wrote the preset"},
        "frame": reference("frame") | {"description": "of the image that has these settings"},
        "parameters": closed({c["label"]: parameter(c) for c in valued},
                             description="the controls of the effect by their labels"),
        "inputs": closed({"depth": depth, "shape": closed({"file": TEXT}, ["file"]),
                          "camera": camera},
                         description="files, relative to the preset, and what their values mean"),
        "tool": closed(tool, description="options of the command line by their names")}
    return {"$schema": "https://json-schema.org/draft/2020-12/schema", "title": "Preset of Orbel",
            **closed(members, ["effect", "version"]),
            "$defs": {"frame": FRAME,
                      "point": {"anyOf": [pair({"type": "number"}), pair(PERCENT)],
                                "description": "in pixels, or in percent of the image"}}}


def main():
    listed = subprocess.run([sys.argv[1], "params", "--json"], check=True, capture_output=True)
    print(json.dumps(schema(json.loads(listed.stdout)), indent=2))


if __name__ == "__main__":
    main()
