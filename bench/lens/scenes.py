# SPDX-License-Identifier: Apache-2.0
"""blender --background --factory-startup --python bench/lens/scenes.py -- FOLDER [OPTION...]

Renders the scenes of the lens benchmark with the path tracer on the processor. Everything is made here,
from formulas with fixed seeds. Surfaces emit their texture and neither light nor reflect, so that the
lens is all that is sampled. For each scene NAME it writes to FOLDER, in scene-linear float:

    NAME-pinhole.exr  everything in focus
    NAME-depth.exr    distance along the camera's axis in metres, 1e10 where there is only sky
    NAME-truth.exr    through the lens
    NAME-truth2.exr   the same from another seed, with --second-seed: the two differ by noise alone
    NAME.json         focal length and sensor width in mm, f-stop, focus distance in metres

What FOLDER has already is kept.
"""
import argparse
import json
import math
import pathlib
import random
import sys

import bmesh
import bpy
from mathutils import Vector

FOCAL_LENGTH, F_STOP, SENSOR_WIDTH = 85.0, 1.2, 36.0
LIGHT = Vector((-0.5, -0.7, 0.6)).normalized()  # where the painted shading comes from


# --- Materials ---

def ramp(nodes, dark, bright, low, high):
    node = nodes.new("ShaderNodeValToRGB")
    for element, position, colour in zip(node.color_ramp.elements, (low, high), (dark, bright)):
        element.position, element.color = position, (*colour, 1.0)
    return node


def shading(nodes, links):
    """A factor from 0.25, turned away from LIGHT, to 1."""
    geometry = nodes.new("ShaderNodeNewGeometry")
    dot = nodes.new("ShaderNodeVectorMath")
    dot.operation = "DOT_PRODUCT"
    dot.inputs[1].default_value = LIGHT
    links.new(geometry.outputs["Normal"], dot.inputs[0])
    factor = nodes.new("ShaderNodeMapRange")
    factor.inputs["From Min"].default_value = -0.6
    factor.inputs["To Min"].default_value = 0.25
    links.new(dot.outputs["Value"], factor.inputs["Value"])
    return factor.outputs["Result"]


def material(texture, scale, dark, bright, low=0.4, high=0.6, shaded=True):
    """Emits a texture (noise, voronoi or checker) of `scale` per metre, from dark to bright."""
    made = bpy.data.materials.new(texture)
    made.use_nodes = True
    made.cycles.sample_as_light = False
    nodes, links = made.node_tree.nodes, made.node_tree.links
    nodes.clear()
    kind = {"noise": "ShaderNodeTexNoise", "voronoi": "ShaderNodeTexVoronoi", "checker": "ShaderNodeTexChecker"}
    pattern = nodes.new(kind[texture])
    pattern.inputs["Scale"].default_value = scale
    if texture == "noise":
        pattern.inputs["Detail"].default_value = 6.0
    geometry, place = nodes.new("ShaderNodeNewGeometry"), nodes.new("ShaderNodeVectorMath")
    place.inputs[1].default_value = (0.0137, 0.0137, 0.0137)  # no plane lies between two layers of a checker
    links.new(geometry.outputs["Position"], place.inputs[0])
    links.new(place.outputs["Vector"], pattern.inputs["Vector"])
    colours = ramp(nodes, dark, bright, low, high)
    links.new(pattern.outputs["Distance" if texture == "voronoi" else "Fac"], colours.inputs["Fac"])
    emission = nodes.new("ShaderNodeEmission")
    links.new(colours.outputs["Color"], emission.inputs["Color"])
    if shaded:
        links.new(shading(nodes, links), emission.inputs["Strength"])
    output = nodes.new("ShaderNodeOutputMaterial")
    links.new(emission.outputs["Emission"], output.inputs["Surface"])
    return made


def lamp(colour, strength):
    made = bpy.data.materials.new("lamp")
    made.use_nodes = True
    made.cycles.sample_as_light = False
    nodes, links = made.node_tree.nodes, made.node_tree.links
    nodes.clear()
    emission = nodes.new("ShaderNodeEmission")
    emission.inputs["Color"].default_value = (*colour, 1.0)
    emission.inputs["Strength"].default_value = strength
    output = nodes.new("ShaderNodeOutputMaterial")
    links.new(emission.outputs["Emission"], output.inputs["Surface"])
    return made


def sky(dark, bright):
    """A gradient from the horizon, dark, to the zenith."""
    world = bpy.data.worlds.new("sky")
    bpy.context.scene.world = world
    world.use_nodes = True
    world.cycles.sampling_method = "NONE"
    nodes, links = world.node_tree.nodes, world.node_tree.links
    place = nodes.new("ShaderNodeTexCoord")
    height = nodes.new("ShaderNodeSeparateXYZ")
    links.new(place.outputs["Generated"], height.inputs["Vector"])
    colours = ramp(nodes, dark, bright, 0.0, 0.25)
    links.new(height.outputs["Z"], colours.inputs["Fac"])
    links.new(colours.outputs["Color"], nodes["Background"].inputs["Color"])


# --- Shapes. The camera is at the origin and looks along y, so y is the distance; z is up. ---

def put(shape, paint, place=(0, 0, 0), size=(1, 1, 1), turn=(0, 0, 0)):
    thing = bpy.data.objects.new("thing", shape)
    thing.location, thing.scale, thing.rotation_euler = place, size, turn
    if not shape.materials:
        shape.materials.append(paint)
    thing.material_slots[0].link = "OBJECT"
    thing.material_slots[0].material = paint
    bpy.context.collection.objects.link(thing)


def shape(make, smooth=True):
    mesh = bpy.data.meshes.new("shape")
    form = bmesh.new()
    make(form)
    for face in form.faces:
        face.smooth = smooth
    form.to_mesh(mesh)
    form.free()
    return mesh


def ball():
    return shape(lambda form: bmesh.ops.create_uvsphere(form, u_segments=48, v_segments=24, radius=1.0))


def box():
    return shape(lambda form: bmesh.ops.create_cube(form, size=2.0), smooth=False)


def cone(top=0.0):
    return shape(lambda form: bmesh.ops.create_cone(
        form, cap_ends=True, segments=48, radius1=1.0, radius2=top, depth=2.0), smooth=top > 0.9)


def sheet(corners):
    """A polygon in space."""
    def make(form):
        form.faces.new([form.verts.new(corner) for corner in corners])
    return shape(make, smooth=False)


def wall(y, half=None):
    """A plane across the view, by default wider than it."""
    half = half or 0.4 * y
    return sheet([(-half, y, -half), (half, y, -half), (half, y, half), (-half, y, half)])


def threads(lines, thickness, closed=False):
    """Tubes of radius `thickness` along lines of (x, y, z, factor of the radius)."""
    curve = bpy.data.curves.new("threads", "CURVE")
    curve.dimensions = "3D"
    curve.bevel_depth, curve.bevel_resolution = thickness, 1
    for line in lines:
        spline = curve.splines.new("POLY")
        spline.points.add(len(line) - 1)
        for point, (x, y, z, factor) in zip(spline.points, line):
            point.co, point.radius = (x, y, z, 1.0), factor
        spline.use_cyclic_u = closed
    return curve


def circle(radius, height=0.0, steps=64):
    turns = [2.0 * math.pi * i / steps for i in range(steps)]
    return [(radius * math.cos(t), radius * math.sin(t), height, 1.0) for t in turns]


WARM = [(1.0, 0.72, 0.4), (1.0, 0.45, 0.18), (1.0, 0.9, 0.75), (0.5, 0.75, 1.0), (1.0, 0.3, 0.3)]


def lamps(dice, count, place, size, strength=(5.0, 60.0)):
    """`count` balls, at what `place()` returns, with radii in `size` and strengths in `strength`."""
    paints = [lamp(colour, strength[0] * (strength[1] / strength[0]) ** (i / 3.0))
              for colour in WARM for i in range(4)]
    form = ball()
    for _ in range(count):
        put(form, dice.choice(paints), place(), [dice.uniform(*size)] * 3)


def across(dice, y, margin=1.0):
    """A point of the view at distance y; the picture has 16:9."""
    half = margin * 0.5 * SENSOR_WIDTH / FOCAL_LENGTH * y
    return dice.uniform(-half, half), y, dice.uniform(-half, half) * 9.0 / 16.0


# --- Scenes: each returns its focus distance, and the pitch of the camera in degrees if it has one. ---

def portrait(dice):
    put(wall(8.0), material("voronoi", 6, (0.02, 0.025, 0.04), (0.16, 0.1, 0.07), 0.1, 0.6))
    lamps(dice, 110, lambda: across(dice, dice.uniform(7.0, 7.9)), (0.006, 0.025))
    lamps(dice, 14, lambda: across(dice, dice.uniform(3.5, 5.0)), (0.004, 0.01))
    skin = material("noise", 60, (0.42, 0.2, 0.13), (0.75, 0.45, 0.32), 0.3, 0.7)
    cloth = material("checker", 70, (0.03, 0.06, 0.12), (0.25, 0.3, 0.4))
    dark, x = lamp((0.02, 0.015, 0.01), 1.0), -0.07
    put(ball(), skin, (x, 2.09, 0.03), (0.078, 0.09, 0.108))
    put(ball(), skin, (x + 0.015, 1.995, 0.015), (0.013, 0.02, 0.022))
    for side in (-0.03, 0.042):
        put(ball(), dark, (x + side, 2.008, 0.05), (0.011, 0.006, 0.006))
    put(ball(), material("noise", 200, (0.4, 0.08, 0.08), (0.6, 0.15, 0.12)), (x + 0.01, 2.007, -0.025),
        (0.024, 0.008, 0.006))
    put(cone(1.0), skin, (x, 2.12, -0.1), (0.045, 0.045, 0.08))
    put(ball(), cloth, (x, 2.14, -0.27), (0.22, 0.1, 0.13))
    strands = []
    for _ in range(1400):
        round_head, up = dice.uniform(-0.35, math.pi + 0.35), dice.uniform(0.35, 1.0)
        out = math.sqrt(1.0 - up * up)
        start = Vector((0.08 * out * math.cos(round_head), 0.092 * out * math.sin(round_head), 0.11 * up))
        sway, wave, fall = start.normalized(), dice.uniform(0, 6.28), dice.uniform(0.1, 0.26)
        loose = dice.random() ** 6 * 0.05
        line = []
        for i in range(11):
            t = i / 10.0
            away = (0.012 + loose) * math.sin(t * math.pi * 0.9) + 0.004 * math.sin(9.0 * t + wave)
            point = start + sway * away + Vector((start.x * 0.5 * t, 0.0, -fall * t * t))
            line.append((x + point.x, 2.09 + point.y, 0.035 + point.z, 1.0 - 0.6 * t))
        strands.append(line)
    put(threads(strands, 0.00035), material("noise", 90, (0.05, 0.025, 0.012), (0.42, 0.22, 0.1), 0.35, 0.65))
    return 2.0


def grass(dice):
    put(wall(25.0), material("noise", 0.5, (0.02, 0.04, 0.07), (0.3, 0.26, 0.2), 0.3, 0.75, shaded=False))
    put(sheet([(-9, 0.6, -0.32), (9, 0.6, -0.32), (9, 25.1, -0.32), (-9, 25.1, -0.32)]),
        material("voronoi", 25, (0.01, 0.015, 0.01), (0.07, 0.06, 0.03), 0.1, 0.7))
    greens = [((0.04, 0.09, 0.02), (0.2, 0.36, 0.07)), ((0.08, 0.1, 0.02), (0.5, 0.45, 0.12)),
              ((0.02, 0.06, 0.03), (0.1, 0.25, 0.1))]
    for dark, bright in greens:
        blades = []
        for _ in range(260):
            y = 1.0 / dice.uniform(1.0 / 9.0, 1.0 / 1.25)
            x, height = across(dice, y, 1.15)[0], dice.uniform(0.18, 0.42)
            lean, turn, width = dice.uniform(-0.16, 0.16), dice.uniform(-0.1, 0.1), dice.uniform(0.4, 1.2)
            blades.append([(x + lean * t * t, y + turn * t * t, -0.32 + height * t, width * (1.02 - t))
                           for t in (i / 8.0 for i in range(9))])
        put(threads(blades, 0.003), material("noise", 45, dark, bright, 0.35, 0.65))
    lamps(dice, 45, lambda: across(dice, 1.0 / dice.uniform(1.0 / 9.0, 1.0 / 1.5), 0.95), (0.0015, 0.005))
    return 2.5


def lattice(dice):
    put(wall(14.0), material("noise", 0.8, (0.02, 0.03, 0.06), (0.15, 0.12, 0.14), 0.3, 0.7, shaded=False))
    lamps(dice, 50, lambda: across(dice, dice.uniform(9.0, 13.0)), (0.01, 0.03))
    posters = [material("checker", 14, (0.04, 0.05, 0.09), (0.7, 0.62, 0.5)),
               material("voronoi", 22, (0.75, 0.3, 0.1), (0.05, 0.08, 0.12), 0.1, 0.6),
               material("noise", 18, (0.03, 0.1, 0.1), (0.7, 0.75, 0.6), 0.45, 0.55)]
    for x, paint in zip((-0.52, 0.02, 0.54), posters):
        put(sheet([(-0.2, 0, -0.5), (0.2, 0, -0.5), (0.2, 0, 0.24), (-0.2, 0, 0.24)]), paint, (x, 3.5, 0))
    put(ball(), posters[1], (-0.25, 3.35, -0.2), (0.1, 0.1, 0.1))
    put(ball(), posters[0], (0.3, 3.3, -0.22), (0.12, 0.12, 0.12))
    lamps(dice, 12, lambda: across(dice, dice.uniform(3.3, 3.48), 0.9), (0.004, 0.01))
    bars = []
    for i in range(-9, 10):
        bars += [[(0.075 * i + 0.3 * side * s, 1.2 + 0.004 * side, 0.3 * s, 1.0) for s in (-1, 1)]
                 for side in (-1, 1)]
    put(threads(bars, 0.0035), material("noise", 120, (0.1, 0.08, 0.06), (0.5, 0.42, 0.33)))
    lamps(dice, 5, lambda: across(dice, 1.19, 0.9), (0.0012, 0.002), (8.0, 30.0))
    return 3.5


def row(dice):
    sky((0.16, 0.12, 0.16), (0.06, 0.1, 0.25))
    put(sheet([(-14, 0.6, -0.17), (14, 0.6, -0.17), (14, 60, -0.17), (-14, 60, -0.17)]),
        material("checker", 9, (0.05, 0.045, 0.04), (0.3, 0.27, 0.24)))
    colours = [((0.5, 0.06, 0.04), (0.9, 0.5, 0.3)), ((0.04, 0.2, 0.4), (0.5, 0.7, 0.8)),
               ((0.1, 0.3, 0.06), (0.7, 0.75, 0.3)), ((0.3, 0.08, 0.35), (0.8, 0.6, 0.8)),
               ((0.4, 0.25, 0.02), (0.9, 0.8, 0.5)), ((0.05, 0.3, 0.3), (0.7, 0.8, 0.8))]
    forms = [box(), ball(), cone(), cone(1.0)]
    textures = [("checker", 45), ("noise", 50), ("voronoi", 60)]
    for i, y in enumerate((1.3, 1.75, 2.5, 3.6, 5.5, 9.0)):
        texture, scale = textures[i % 3]
        size = 0.07 * (y / 1.3) ** 0.6
        put(forms[i % 4], material(texture, scale, *colours[i], 0.35, 0.65),
            ((0.058 * i - 0.15) * y, y, -0.17 + 1.2 * size), (size, size, 1.2 * size), (0, 0, 0.5 * i))
    lamps(dice, 30, lambda: (lambda x, y, z: (x, y, 0.35 * abs(z)))(*across(dice, dice.uniform(4.0, 30.0), 0.95)),
          (0.006, 0.03))
    lamps(dice, 8, lambda: (lambda x, y, z: (x, y, 0.5 * z))(*across(dice, dice.uniform(1.3, 2.4), 0.9)),
          (0.001, 0.003))
    return 2.5


def table(dice):
    top = -0.42
    put(wall(9.0, 6.0), material("noise", 1.5, (0.02, 0.02, 0.035), (0.16, 0.11, 0.08), 0.3, 0.7, shaded=False))
    lamps(dice, 40, lambda: (dice.uniform(-2, 2), dice.uniform(6.0, 8.8), dice.uniform(-1.2, 0.2)), (0.01, 0.03))
    put(sheet([(-2, 0.7, top), (2, 0.7, top), (2, 4.0, top), (-2, 4.0, top)]),
        material("checker", 11, (0.1, 0.04, 0.025), (0.5, 0.36, 0.25)))
    china = material("noise", 30, (0.5, 0.5, 0.55), (0.8, 0.78, 0.72))
    metal = material("noise", 120, (0.25, 0.27, 0.3), (0.95, 0.95, 0.9))
    blue = lamp((0.05, 0.12, 0.4), 1.0)
    disc, stem = cone(1.0), cone(1.0)
    rim = threads([circle(1.0)], 0.02, closed=True)
    glass = threads([circle(0.034, 0.0), circle(0.038, 0.05), circle(0.03, 0.1)], 0.0009, closed=True)
    for i, y in enumerate((1.3, 1.55, 1.8, 2.05, 2.4, 2.8, 3.3)):
        for x in (-0.3, -0.02, 0.26):
            x += 0.09 * (i % 2) + dice.uniform(-0.03, 0.03)
            put(disc, china, (x, y, top + 0.006), (0.075, 0.075, 0.006))
            put(rim, blue, (x, y, top + 0.012), (0.07, 0.07, 0.07))
            put(glass, metal, (x + 0.1, y - 0.06, top + 0.06))
            put(stem, metal, (x + 0.1, y - 0.06, top + 0.03), (0.002, 0.002, 0.03))
            put(disc, metal, (x + 0.1, y - 0.06, top + 0.002), (0.025, 0.025, 0.002))
            if dice.random() < 0.6:
                lamps(dice, 1, lambda: (x - 0.1, y + 0.05, top + 0.02), (0.004, 0.007), (8.0, 40.0))
    return 2.0, -12.0


def plane(dice):
    put(sheet([(-1, 0.75, -0.191), (1, 0.75, -0.191), (3, 7, 0.888), (-3, 7, 0.888)]),
        material("voronoi", 18, (0.85, 0.7, 0.45), (0.03, 0.05, 0.09), 0.15, 0.6, shaded=False))
    return 2.0


def rack(dice):
    put(wall(12.0), material("noise", 1.2, (0.02, 0.03, 0.05), (0.2, 0.14, 0.1), 0.3, 0.7, shaded=False))
    lamps(dice, 60, lambda: across(dice, dice.uniform(9.0, 11.5)), (0.01, 0.03))
    put(ball(), material("checker", 45, (0.5, 0.07, 0.04), (0.85, 0.7, 0.5)), (-0.15, 1.58, -0.05), (0.08, 0.08, 0.08))
    put(threads([[(-0.15 + 0.004 * k, 1.5, 0.02, 1.0), (-0.19 + 0.02 * k, 1.5, 0.16, 0.3)] for k in range(5)], 0.0015),
        material("noise", 90, (0.05, 0.2, 0.06), (0.3, 0.6, 0.2)))
    put(box(), material("voronoi", 30, (0.8, 0.75, 0.5), (0.05, 0.15, 0.3), 0.1, 0.6), (0.1, 2.5, -0.1),
        (0.12, 0.08, 0.15), (0, 0, 0.5))
    put(threads([circle(0.1, 0.0)], 0.004, closed=True), material("noise", 60, (0.5, 0.4, 0.1), (0.9, 0.8, 0.4)),
        (-0.05, 2.5, 0.12), (1, 1, 1), (1.3, 0, 0.3))
    put(cone(), material("checker", 12, (0.1, 0.3, 0.1), (0.7, 0.75, 0.4)), (0.62, 5.0, -0.1), (0.25, 0.25, 0.4))
    put(ball(), material("noise", 15, (0.15, 0.05, 0.3), (0.8, 0.6, 0.8)), (-0.25, 5.0, 0.15), (0.22, 0.22, 0.22))
    lamps(dice, 6, lambda: across(dice, dice.uniform(1.5, 4.9), 0.9), (0.002, 0.006))


def rack_near(dice):
    rack(dice)
    return 1.5


def rack_far(dice):
    rack(dice)
    return 5.0


SCENES = [portrait, grass, lattice, row, table, plane, rack_near, rack_far]


# --- Rendering ---

def camera(focus, pitch):
    data = bpy.data.cameras.new("camera")
    data.lens, data.sensor_width, data.sensor_fit = FOCAL_LENGTH, SENSOR_WIDTH, "HORIZONTAL"
    data.clip_start, data.clip_end = 0.1, 1000.0
    data.dof.focus_distance, data.dof.aperture_fstop, data.dof.aperture_blades = focus, F_STOP, 0
    thing = bpy.data.objects.new("camera", data)
    thing.rotation_euler = (math.radians(90.0 + pitch), 0.0, 0.0)
    bpy.context.collection.objects.link(thing)
    bpy.context.scene.camera = thing


def settings(size):
    scene = bpy.context.scene
    scene.render.engine, scene.cycles.device = "CYCLES", "CPU"
    scene.render.resolution_x, scene.render.resolution_y = size
    scene.render.resolution_percentage = 100
    scene.cycles.use_denoising = scene.cycles.use_adaptive_sampling = False
    scene.cycles.max_bounces = 0
    scene.view_settings.view_transform = "Standard"
    scene.render.use_persistent_data = True
    image = scene.render.image_settings
    image.file_format, image.color_mode, image.color_depth, image.exr_codec = "OPEN_EXR", "RGB", "32", "ZIP"


def depth_file(folder, name):
    """Adds the distances to what the next frame writes; the file's name then ends in the frame."""
    scene = bpy.context.scene
    bpy.context.view_layer.use_pass_z = True
    scene.use_nodes = True
    nodes, links = scene.node_tree.nodes, scene.node_tree.links
    nodes.clear()
    layers, image = nodes.new("CompositorNodeRLayers"), nodes.new("CompositorNodeComposite")
    links.new(layers.outputs["Image"], image.inputs["Image"])
    file = nodes.new("CompositorNodeOutputFile")
    file.base_path = str(folder)
    file.format.file_format, file.format.color_depth, file.format.exr_codec = "OPEN_EXR", "32", "ZIP"
    file.file_slots[0].path = f"{name}-depth-"
    links.new(layers.outputs["Depth"], file.inputs[0])


def render(file, samples, seed, lens):
    if file.exists():
        return
    scene = bpy.context.scene
    scene.camera.data.dof.use_dof = lens
    scene.cycles.samples, scene.cycles.seed = samples, seed
    unfinished = file.with_name(f"unfinished-{file.name}")
    scene.render.filepath = str(unfinished)
    bpy.ops.render.render(write_still=True)
    unfinished.rename(file)


def make(scene, options):
    bpy.ops.wm.read_factory_settings(use_empty=True)
    settings(options.size)
    name, folder = scene.__name__, options.folder
    sky((0.05, 0.05, 0.07), (0.02, 0.03, 0.06))
    made = scene(random.Random(scene.__name__.split("_")[0]))
    focus, pitch = made if isinstance(made, tuple) else (made, 0.0)
    camera(focus, pitch)
    if not (folder / f"{name}-depth.exr").exists():
        depth_file(folder, name)
        render(folder / f"{name}-pinhole.exr", max(64, options.samples // 4), 0, False)
        next(folder.glob(f"{name}-depth-*.exr")).rename(folder / f"{name}-depth.exr")
        bpy.context.scene.use_nodes = False
    render(folder / f"{name}-truth.exr", options.samples, 1, True)
    if options.second_seed:
        render(folder / f"{name}-truth2.exr", options.samples, 2, True)
    facts = {"focal_length_mm": FOCAL_LENGTH, "f_stop": F_STOP, "focus_m": focus, "sensor_width_mm": SENSOR_WIDTH,
             "samples": options.samples}
    (folder / f"{name}.json").write_text(json.dumps(facts, indent=2) + "\n")


def main():
    names = [scene.__name__ for scene in SCENES]
    parser = argparse.ArgumentParser(prog="scenes.py")
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--scenes", type=lambda text: text.split(","), default=names)
    parser.add_argument("--size", type=lambda text: [int(side) for side in text.split("x")], default=[960, 540])
    parser.add_argument("--samples", type=int, default=256)
    parser.add_argument("--second-seed", action="store_true")
    options = parser.parse_args(sys.argv[sys.argv.index("--") + 1:])
    if unknown := set(options.scenes) - set(names):
        parser.error(f"unknown scenes: {', '.join(unknown)}; there are {', '.join(names)}")
    options.folder.mkdir(parents=True, exist_ok=True)
    options.folder = options.folder.resolve()
    for scene in SCENES:
        if scene.__name__ in options.scenes:
            make(scene, options)


main()
