# SPDX-License-Identifier: Apache-2.0
"""preset_schema_test.py TOOL GENERATOR SCHEMA

The schema is the one that is made from the tool's controls; it takes what the tool writes, and refuses
what the tool refuses.
"""
import json
import pathlib
import subprocess
import sys
import tempfile

import jsonschema

tool, generator, schema_file = sys.argv[1:]
schema = json.loads(pathlib.Path(schema_file).read_text())
made = subprocess.run([sys.executable, generator, tool], check=True, capture_output=True, text=True)
assert made.stdout == pathlib.Path(schema_file).read_text(), \
    "docs/preset.schema.json differs from what scripts/preset-schema.py makes"
jsonschema.Draft202012Validator.check_schema(schema)
validator = jsonschema.Draft202012Validator(schema)

folder = tempfile.TemporaryDirectory()
file = pathlib.Path(folder.name) / "look.json"


def tool_takes(preset):
    file.write_text(json.dumps(preset))
    saved = str(file.with_name("again.json"))
    run = subprocess.run([tool, "params", "--preset", str(file), "--save-preset", saved],
                         capture_output=True, text=True)
    return run.returncode == 0


written = [
    [],
    ["--blur-radius", "1001:2,1024:30:smooth,1030:1:hold", "--vertices", "1:3,2:4",
     "--focus-point-0", "1:10%/20%,5:3.5%/-4%", "--focus-point-1", "3,4.5",
     "--composite-mode", "split", "--placement", "stretch", "--roundness", "-0.99"],
    ["--depth-map-layer", "z.exr:Z", "--depth-kind", "distance", "--depth-near", "1", "--depth-far",
     "inf", "--depth-inverse", "--focus-at", "50%,50%", "--custom-blur-shape", "a.png"]]
for options in written:
    subprocess.run([tool, "params", *options, "--save-preset", str(file)], check=True)
    validator.validate(json.loads(file.read_text()))

START = {"effect": "Orbel", "version": "1.4.0"}


def parameters(**controls):
    return START | {"parameters": {name.replace("_", " "): v for name, v in controls.items()}}


def keys(*list_of_keys):
    return {"keys": [dict(zip(("frame", "value", "interpolation"), k)) for k in list_of_keys]}


good = [
    START,
    START | {"$schema": "preset.schema.json", "frame": -3},
    parameters(Blur_Radius=500, Placement=2, Edge_Behavior=False, Focus_Point_0=[1, 2.5]),
    parameters(Rotation=keys((1, 0), (9, 720, "smooth")), Channel=keys((1, "Red"), (2, 5, "hold"))),
    START | {"inputs": {"camera": {"exif": True, "focus": "inf", "unit": "ft"},
                        "depth": {"file": "z.exr", "auto": True}, "shape": {"file": "a.png"}}},
    START | {"tool": {"bits": 16, "occlusion": "auto", "linear": True, "raw": False}}]
bad = [
    [], {}, {"effect": "Orbel"}, START | {"effect": "Glow"}, START | {"version": "1.4"},
    START | {"frame": 0.5}, START | {"frame": 1000000000}, START | {"parameter": {}},
    parameters(Blur_Radius=501), parameters(Blur_Radius="5"), parameters(Blur_Raduis=5),
    parameters(Vertices=3.5), parameters(Placement="Centre"), parameters(Placement=3),
    parameters(Edge_Behavior=1), parameters(Layer="a.png"), parameters(Focus_Point_0=[1]),
    parameters(Focus_Point_0=[1, "2%"]), parameters(Focus_Point_0=["1", "2"]),
    parameters(Vertices=keys((1, 3, "linear"), (2, 4))), parameters(Vertices=keys()),
    parameters(Vertices=keys((1, 3, "ease"))), parameters(Vertices={"keys": [{"frame": 1}]}),
    parameters(Use_Focus_Point=keys((1, True), (2, False))),
    START | {"inputs": {"depth": {"near": -1}}}, START | {"inputs": {"depth": {"kind": "z"}}},
    START | {"inputs": {"shape": {}}}, START | {"inputs": {"camera": {"f-stop": 0}}},
    START | {"tool": {"linear": "yes"}}, START | {"tool": {"threads": 3}}]
for preset in good:
    validator.validate(preset)
    assert tool_takes(preset), preset
for preset in bad:
    assert not validator.is_valid(preset), preset
    assert not tool_takes(preset), preset
