# SPDX-License-Identifier: Apache-2.0
"""blender --background --factory-startup --python bench/lens/defocus.py -- FOLDER [--scenes a,b]

Blurs the pinhole images in FOLDER by the Defocus node of the compositor, with their distances and the
camera of scenes.py. The node's f-stop isn't the lens's: at the same number it blurs about thirty times as
far. So it is swept, and refined around the value that is nearest to the truth in dB. Writes for each scene

    NAME-defocus-F.exr    at each f-stop F
    NAME-defocus.exr      the best of them
    NAME-defocus.json     [{f_stop, seconds, psnr}, ...]
    NAME-defocus.seconds  those of the best

A scene that has them is left out. Seconds are those of the compositing without reading and writing: less those of a tree without the node,
the smallest of three.
"""
import argparse
import json
import pathlib
import shutil
import sys
import time

import bpy

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import measure

SWEEP = [20.0, 24.0, 28.0, 32.0, 38.0, 46.0]  # of the camera's f-stop
REFINE = [0.93, 0.97, 1.03, 1.07]  # of the best of the sweep
REPEATS = 3


def linear(file):
    image = bpy.data.images.load(str(file))
    image.colorspace_settings.name = "Non-Color"
    return image


def compose(folder, name, facts):
    """A compositor that blurs the scene's image, and its Defocus node."""
    bpy.ops.wm.read_factory_settings(use_empty=True)
    scene = bpy.context.scene
    lens = bpy.data.cameras.new("camera")
    lens.lens, lens.sensor_width, lens.sensor_fit = facts["focal_length_mm"], facts["sensor_width_mm"], "HORIZONTAL"
    lens.dof.use_dof, lens.dof.focus_distance, lens.dof.aperture_fstop = True, facts["focus_m"], facts["f_stop"]
    scene.camera = bpy.data.objects.new("camera", lens)
    bpy.context.collection.objects.link(scene.camera)
    scene.view_settings.view_transform = "Standard"
    scene.use_nodes = True
    nodes, links = scene.node_tree.nodes, scene.node_tree.links
    nodes.clear()
    pinhole, depth = nodes.new("CompositorNodeImage"), nodes.new("CompositorNodeImage")
    pinhole.image, depth.image = linear(folder / f"{name}-pinhole.exr"), linear(folder / f"{name}-depth.exr")
    scene.render.resolution_x, scene.render.resolution_y = pinhole.image.size
    scene.render.resolution_percentage = 100
    node = nodes.new("CompositorNodeDefocus")
    node.scene, node.use_zbuffer, node.use_preview, node.use_gamma_correction = scene, True, False, False
    node.bokeh, node.blur_max = "CIRCLE", 100.0
    links.new(pinhole.outputs["Image"], node.inputs["Image"])
    links.new(depth.outputs["Image"], node.inputs["Z"])
    output = nodes.new("CompositorNodeComposite")
    links.new(node.outputs["Image"], output.inputs["Image"])
    image = scene.render.image_settings
    image.file_format, image.color_mode, image.color_depth, image.exr_codec = "OPEN_EXR", "RGB", "32", "NONE"
    return node


def run(file):
    """The seconds of a composition that ends in a file."""
    bpy.context.scene.render.filepath = str(file)
    best = float("inf")
    for _ in range(REPEATS):
        begin = time.monotonic()
        bpy.ops.render.render(write_still=True)
        best = min(best, time.monotonic() - begin)
    return best


def sweep(folder, name):
    facts = json.loads((folder / f"{name}.json").read_text())
    node = compose(folder, name, facts)
    truth = measure.truth(folder, name)
    node.mute = True
    idle = run(folder / f"{name}-defocus-idle.exr")
    node.mute = False
    results = []

    def attempt(f_stop):
        node.f_stop = f_stop
        file = folder / f"{name}-defocus-{f_stop:.3f}.exr"
        seconds = run(file) - idle
        psnr = measure.psnr(measure.read(file), truth)
        results.append({"f_stop": f_stop, "seconds": seconds, "psnr": psnr})
        print(f"{name}: Defocus at f/{f_stop:.3f}: {psnr:.2f} dB, {seconds:.2f} s", flush=True)

    def best():
        return max(results, key=lambda result: result["psnr"])

    for factor in SWEEP:
        attempt(factor * facts["f_stop"])
    centre = best()["f_stop"]
    for factor in REFINE:
        attempt(factor * centre)
    shutil.copy(folder / f"{name}-defocus-{best()['f_stop']:.3f}.exr", folder / f"{name}-defocus.exr")
    (folder / f"{name}-defocus.seconds").write_text(f"{best()['seconds']}\n")
    (folder / f"{name}-defocus.json").write_text(json.dumps(results, indent=2) + "\n")


def main():
    parser = argparse.ArgumentParser(prog="defocus.py")
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--scenes", type=lambda text: text.split(","))
    options = parser.parse_args(sys.argv[sys.argv.index("--") + 1:])
    folder = options.folder.resolve()
    for name in options.scenes or measure.scenes(folder):
        if not (folder / f"{name}-defocus.json").exists():
            sweep(folder, name)


main()
