#!/usr/bin/env python3
"""Makes everything in samples/gallery that is data: meshes, textures, shaders, declarations, the baked
shadows of the ground, and the project. Run it from anywhere; it writes beside this folder.

Needs python3-numpy and python3-pil; takes about a minute. The project as committed is its output."""

import math
import pathlib
import sys

import numpy as np
from PIL import Image

import shapes
import textures

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent
sys.path.append(str(ROOT.parent / 'source'))

import project_files
from project_files import camera, mesh_file, vector

SUN = np.array([-0.5883, 0.5720, -0.5717])
SHADOW_HALF = 24.0  # metres from the middle that the shadow picture covers
rng = np.random.default_rng(7)


# ---- files -------------------------------------------------------------------------------------

def write_json(name, tree):
    project_files.write_json(ROOT / name, tree)


def write_mesh(name, mesh):
    count = len(mesh.positions)
    vertex = np.zeros(count, dtype=[('p', '<f4', 3), ('n', '<f4', 3), ('t', '<f4', 2), ('g', '<f4', 4),
                                    ('c', 'u1', 4)])
    vertex['p'], vertex['n'], vertex['t'], vertex['g'] = \
        mesh.positions, mesh.normals, mesh.texcoords, mesh.tangents()
    shade = np.clip(mesh.occlusion * 255 + 0.5, 0, 255).astype(np.uint8)
    vertex['c'] = np.stack([shade, shade, shade, np.full(count, 255, np.uint8)], axis=1)
    attributes = [('POSITION', 6, 0), ('NORMAL', 6, 12), ('TEXCOORD', 16, 24), ('TANGENT', 2, 32),
                  ('COLOR', 28, 48)]
    low, high = mesh.positions.min(axis=0), mesh.positions.max(axis=0)
    centre = (low + high) / 2
    radius = float(np.linalg.norm(mesh.positions - centre, axis=1).max())
    data = mesh_file(attributes, vertex.itemsize, count, vertex.tobytes(),
                     mesh.triangles.astype('<u4').tobytes(), centre, radius * 1.00001, low, high)
    (ROOT / 'meshes' / f'{name}.vlmb').write_bytes(data)


def save_color(name, color):
    pixels = (np.clip(color, 0, 1) * 255 + 0.5).astype(np.uint8)
    Image.fromarray(pixels, 'RGB').save(ROOT / 'textures' / f'{name}.jpg', quality=90, subsampling=0)


def save_normal(name, normal):
    pixels = (np.clip(normal, 0, 1) * 255 + 0.5).astype(np.uint8)
    Image.fromarray(pixels, 'RGBA').save(ROOT / 'textures' / f'{name}.png', optimize=True)


# ---- content -----------------------------------------------------------------------------------

def lattice_noise():
    table = rng.random((32, 32, 32)) * 2 - 1

    def noise(p):
        i, f = np.floor(p).astype(int), p - np.floor(p)
        f = f * f * (3 - 2 * f)
        total = 0
        for dx in (0, 1):
            for dy in (0, 1):
                for dz in (0, 1):
                    weight = np.where(dx, f[..., 0], 1 - f[..., 0]) * np.where(dy, f[..., 1], 1 - f[..., 1]) * \
                        np.where(dz, f[..., 2], 1 - f[..., 2])
                    total = total + weight * table[(i[..., 0] + dx) % 32, (i[..., 1] + dy) % 32, (i[..., 2] + dz) % 32]
        return total

    return noise


def make_meshes():
    noise = lattice_noise()
    return {
        'column': shapes.column(), 'entablature': shapes.entablature(3.0), 'corner': shapes.entablature(1.34),
        'pedestal': shapes.pedestal(), 'knot': shapes.knot(), 'vase': shapes.vase(), 'shell': shapes.shell(),
        'flower': shapes.flower(), 'rock': shapes.rock(noise), 'topiary': shapes.topiary(noise),
        'planter': shapes.planter(), 'lantern_post': shapes.lantern_post(),
        'lantern_globe': shapes.ball(0.13, 28, 18).moved([0, 0.84, 0]),
        'slab': shapes.box(1.985, 0.2, 1.985, 0.018).moved([0, -0.2, 0]),
        'step': shapes.box(3.0, 0.18, 0.9, 0.025, 0.5), 'rim': shapes.ring(4.55, 5.25, 0.42),
        'island': shapes.ring(0.0001, 1.25, 0.55, 96), 'pool': shapes.disc(4.6),
        'sky': shapes.ball(420, 64, 40).inside_out(),
    }


TEXTURES = {  # name: (function, size, arguments)
    'travertine': (textures.travertine, 512, ()),
    'slab_dark': (textures.slab, 512, ([0.17, 0.165, 0.16], [0.36, 0.34, 0.31])),
    'slab_light': (textures.slab, 512, ([0.42, 0.38, 0.32], [0.66, 0.60, 0.51])),
    'marble': (textures.marble, 512, ()),
    'bronze': (textures.bronze, 256, ()),
    'glaze': (textures.glaze, 256, ()),
    'basalt': (textures.basalt, 256, ()),
    'leaves': (textures.leaves, 256, ()),
    'terracotta': (textures.terracotta, 256, ()),
    'ripples': (textures.ripples, 256, ()),
}

# name: (textures, ground?, rgb and metalness, repeats, roughness factor, normal strength, glow)
MATERIALS = {
    'travertine': ('travertine', False, [0.96, 0.92, 0.86, 0.0], 1.0, 1.0, 0.8, 0.0),
    'slab_dark': ('slab_dark', True, [0.95, 0.93, 0.9, 0.0], 0.5, 0.9, 0.9, 0.0),
    'slab_light': ('slab_light', True, [0.95, 0.92, 0.87, 0.0], 0.5, 0.95, 0.9, 0.0),
    'marble': ('marble', False, [1.0, 0.99, 0.97, 0.0], 1.0, 1.0, 0.6, 0.0),
    'bronze': ('bronze', False, [1.0, 0.95, 0.9, 0.85], 1.0, 1.0, 0.9, 0.0),
    'glaze': ('glaze', False, [1.0, 1.0, 1.0, 0.0], 1.0, 1.0, 0.7, 0.0),
    'basalt': ('basalt', False, [1.0, 1.0, 1.0, 0.0], 1.0, 0.95, 1.0, 0.0),
    'leaves': ('leaves', False, [1.0, 1.0, 1.0, 0.0], 2.0, 1.0, 1.0, 0.0),
    'terracotta': ('terracotta', False, [1.0, 1.0, 1.0, 0.0], 1.0, 1.0, 0.9, 0.0),
    'iron': ('bronze', False, [0.10, 0.10, 0.11, 0.6], 2.0, 1.3, 0.8, 0.0),
    'globe': ('marble', False, [1.0, 0.78, 0.48, 0.0], 1.0, 1.0, 0.0, 2.2),
}


def turn(degrees):
    half = math.radians(degrees) / 2
    return [0.0, round(math.sin(half), 6), 0.0, round(math.cos(half), 6)]


class Scene:
    def __init__(self):
        self.groups = {}
        self.placed = []  # (mesh, position, turn in degrees, scale), for the shadows

    def add(self, group, name, parts, position, degrees=0.0, scale=1.0):
        """One node that carries an entity for each (mesh, material)."""
        node = {'name': name, 'position': [round(float(v), 4) for v in position], 'orientation': turn(degrees),
                'scale': [float(scale)] * 3,
                'entities': [{'mesh': mesh, 'material': material} for mesh, material in parts]}
        self.groups.setdefault(group, []).append(node)
        self.placed += [(mesh, position, degrees, scale) for mesh, _ in parts]

    def tree(self):
        nodes = []
        for group, children in self.groups.items():
            nodes.append({'name': group, 'position': [0.0, 0.0, 0.0], 'orientation': turn(0),
                          'scale': [1.0, 1.0, 1.0], 'nodes': children})
        return {'nodes': nodes}


def place_everything():
    scene = Scene()
    scene.add('surroundings', 'sky', [('sky', 'sky')], [0, 0, 0])
    scene.add('pool', 'water', [('pool', 'water')], [0, 0.24, 0])
    scene.add('pool', 'rim', [('rim', 'travertine')], [0, 0, 0])
    scene.add('pool', 'island', [('island', 'travertine')], [0, 0, 0])
    scene.add('pool', 'knot', [('knot', 'bronze')], [0, 0.08, 0], 20, 1.5)

    for row in range(-11, 12):
        for column in range(-11, 12):
            x, z = column * 2.0, row * 2.0
            if math.hypot(abs(x) + 1, abs(z) + 1) < 4.9:
                continue
            path = abs(row) <= 1 or abs(column) <= 1 or max(abs(row), abs(column)) in (7, 8)
            height = 0.0 if path else round(float(rng.uniform(-0.012, 0.004)), 4)
            scene.add('floor', f'slab {row + 12}-{column + 12}',
                      [('slab', 'slab_light' if path else 'slab_dark')], [x, height, z])

    xs = [-13.5 + 3 * k for k in range(10)]
    spots = [(x, z, 0) for x in xs for z in (-13.5, 13.5)] + [(x, z, 90) for z in xs[1:-1] for x in (-13.5, 13.5)]
    front = lambda x, z: z < -13 and abs(x) < 8  # the side that the visitor comes from stays open
    number = 0
    for x, z, degrees in spots:
        if front(x, z):
            continue
        number += 1
        scene.add('colonnade', f'column {number}', [('column', 'travertine')], [x, 0, z], 90 * (number % 4))
    number = 0
    for k in range(9):
        middle = -12 + 3 * k
        for x, z, degrees in ((middle, 13.5, 0), (-13.5, middle, 90), (13.5, middle, 90), (middle, -13.5, 0)):
            if degrees == 0 and z < 0 and abs(middle) < 9.5:
                continue
            number += 1
            scene.add('colonnade', f'beam {number}', [('entablature', 'travertine')], [x, 5.2, z], degrees)
    for k, (x, z) in enumerate([(-13.5, -13.5), (13.5, -13.5), (-13.5, 13.5), (13.5, 13.5)]):
        scene.add('colonnade', f'corner {k + 1}', [('corner', 'travertine')], [x, 5.201, z])

    works = [('flower', 'marble'), ('vase', 'glaze'), ('shell', 'marble'), ('knot', 'bronze'), ('rock', 'basalt'),
             ('vase', 'terracotta'), ('flower', 'bronze'), ('shell', 'glaze')]
    for k in range(16):
        angle = 2 * math.pi * (k + 0.5) / 16
        x, z = 8.2 * math.cos(angle), 8.2 * math.sin(angle)
        work, material = works[(k * 3) % 8]
        scale = {'flower': 0.85, 'vase': 0.8, 'shell': 0.62, 'knot': 0.62, 'rock': 0.75}[work]
        scene.add('sculptures', f'pedestal {k + 1}', [('pedestal', 'travertine')], [x, 0, z], 90 - math.degrees(angle))
        scene.add('sculptures', f'{work} {k + 1}', [(work, material)], [x, 1.02, z], 37.0 * k, scale)

    for k in range(28):
        side, step = divmod(k, 7)
        along = -9 + 3 * step
        x, z = [(along, 11.2), (along, -11.2), (11.2, along), (-11.2, along)][side]
        if side == 1 and abs(along) < 7:
            continue
        scene.add('garden', f'topiary {k + 1}', [('planter', 'terracotta'), ('topiary', 'leaves')], [x, 0, z],
                  53.0 * k, 0.86 + 0.03 * ((k * 5) % 7))

    for k in range(24):
        angle = 2 * math.pi * k / 24
        scene.add('lights', f'lantern {k + 1}', [('lantern_post', 'iron'), ('lantern_globe', 'globe')],
                  [4.9 * math.cos(angle), 0.42, 4.9 * math.sin(angle)], 15.0 * k, 0.8)
    for k in range(20):
        side, step = divmod(k, 5)
        along = -12 + 6 * step
        x, z = [(along, 15.4), (along, -15.4), (15.4, along), (-15.4, along)][side]
        if side == 1 and abs(along) < 7:
            continue
        scene.add('lights', f'garden lantern {k + 1}', [('lantern_post', 'iron'), ('lantern_globe', 'globe')],
                  [x, 0, z], 0, 1.25)
    return scene


# ---- shadows -----------------------------------------------------------------------------------

def blurred(picture, radius):
    """Three box filters: close to a Gaussian."""
    for _ in range(3):
        for axis in (0, 1):
            padded = np.pad(picture, [(radius + 1, radius) if a == axis else (0, 0) for a in (0, 1)], 'edge')
            total = np.cumsum(padded, axis=axis)
            width = 2 * radius + 1
            picture = (np.take(total, range(width, total.shape[axis]), axis) -
                       np.take(total, range(0, total.shape[axis] - width), axis)) / width
    return picture


def bake_shadows(scene, meshes, size=1024):
    """Red: sun that reaches the ground. Green: sky that reaches it. From points strewn over every
    surface that throws a shadow, projected along the sun and straight down."""
    fine = size * 2
    hard = np.zeros((fine, fine), bool)
    soft = np.zeros((fine, fine), bool)
    near = np.zeros((fine, fine), bool)
    for name, position, degrees, scale in scene.placed:
        if name in ('sky', 'slab', 'pool'):
            continue
        mesh = meshes[name]
        corners = mesh.positions[mesh.triangles].astype(float) * scale
        area = np.linalg.norm(np.cross(corners[:, 1] - corners[:, 0], corners[:, 2] - corners[:, 0]), axis=1) / 2
        count = int(min(max(area.sum() / (2 * SHADOW_HALF / fine) ** 2 * 3, 4000), 400000))
        pick = rng.choice(len(area), count, p=area / area.sum())
        a, b = rng.random(count), rng.random(count)
        flip = a + b > 1
        a[flip], b[flip] = 1 - a[flip], 1 - b[flip]
        c = corners[pick]
        points = c[:, 0] + (c[:, 1] - c[:, 0]) * a[:, None] + (c[:, 2] - c[:, 0]) * b[:, None]
        angle = math.radians(degrees)
        s, o = math.sin(angle), math.cos(angle)
        points = np.stack([points[:, 0] * o + points[:, 2] * s, points[:, 1], -points[:, 0] * s + points[:, 2] * o],
                          axis=1) + np.asarray(position, float)
        points = points[points[:, 1] > 0.01]
        shadow = points - SUN * (points[:, 1:2] / SUN[1])
        for target, at, keep in ((hard, shadow, points[:, 1] < 1.6), (soft, shadow, points[:, 1] >= 1.6),
                                 (near, points, points[:, 1] < 0.7)):
            pixel = ((at[keep][:, [0, 2]] + SHADOW_HALF) / (2 * SHADOW_HALF) * fine).astype(int)
            inside = ((pixel >= 0) & (pixel < fine)).all(axis=1)
            target[pixel[inside, 1], pixel[inside, 0]] = True
    closed = lambda mask: blurred(mask.astype(float), 1) > 0.28
    sun = (1 - np.clip(blurred(closed(hard).astype(float), 2), 0, 1)) * \
        (1 - np.clip(blurred(closed(soft).astype(float), 6), 0, 1))
    foot = closed(near).astype(float)
    sky = (1 - 0.55 * blurred(foot, 14)) * (1 - 0.55 * blurred(foot, 40)) * \
        (1 - 0.25 * blurred(closed(soft | hard).astype(float), 60))
    half = lambda p: p.reshape(size, 2, size, 2).mean(axis=(1, 3))
    picture = np.stack([half(sun), half(sky), np.zeros((size, size))], axis=-1)
    Image.fromarray((np.clip(picture, 0, 1) * 255 + 0.5).astype(np.uint8), 'RGB').save(
        ROOT / 'textures' / 'ground_shadows.png', optimize=True)


# ---- declarations ------------------------------------------------------------------------------

def write_sources():
    sky = (HERE / 'sky.hlsli').read_text()
    vertex = (HERE / 'lit.vertex.hlsl').read_text()
    for name in ('lit', 'sky', 'water'):
        folder = ROOT / f'{name}_src'
        folder.mkdir(exist_ok=True)
        pixel = (HERE / f'{name}.pixel.hlsl.in').read_text().replace('#include_sky\n', sky)
        (folder / 'pixelShader.hlsl').write_text(pixel)
        (folder / 'vertexShader.hlsl').write_text(vertex)


def program(name, folder, macros=()):
    pixel = {'stage': 'PIXEL', 'file': f'{folder}_src/pixelShader.hlsl'}
    if macros:
        pixel['macros'] = [{'name': macro, 'value': '1'} for macro in macros]
    return {'name': name, 'type': 'PIPELINE', 'crossCompilerDefines': True,
            'stages': [{'stage': 'VERTEX', 'file': f'{folder}_src/vertexShader.hlsl'}, pixel]}


def shader(name, program_name, pictures, samplers, vectors):
    buffers = [{'slot': 0, 'space': 0, 'slots': [{'type': 'VIEW_MATRIX'}, {'type': 'PROJECTION_MATRIX'},
                                                 {'type': 'CAMERA_POSITION'}]}]
    if vectors:
        buffers.append({'slot': 1, 'space': 0, 'slots': vectors})
    return {'name': name, 'program': program_name,
            'textures': [{'texture': t, 'slot': k, 'space': 0} for k, t in enumerate(pictures)],
            'samplers': [{'sampler': s, 'slot': k, 'space': 0} for k, s in enumerate(samplers)],
            'constantBuffers': buffers, 'instanceSlots': [{'type': 'WORLD_MATRIX'}], 'maxInstancesPerBuffer': 1024}


def sampler(name, mode, filter_, anisotropy):
    return {'name': name, 'filter': filter_, 'addressU': mode, 'addressV': mode, 'addressW': mode,
            'anisotropy': anisotropy, 'lodBias': 0.0, 'minLod': 0.0, 'maxLod': 1000.0, 'comparison': 'NEVER',
            'borderColor': [0.0, 0.0, 0.0, 0.0]}


def write_declarations(meshes, scene):
    write_json('gallery.vlsa', {'samplers': [sampler('gallery repeat', 'WRAP', 'ANISOTROPIC', 8),
                                             sampler('gallery clamp', 'CLAMP', 'MIN_MAG_MIP_LINEAR', 1)]})
    pictures = []
    for name in TEXTURES:
        if name != 'ripples':
            pictures.append({'name': name, 'file': f'textures/{name}.jpg', 'mipCount': 0, 'gammaCorrected': True})
        pictures.append({'name': f'{name} normal', 'file': f'textures/{name}_normal.png', 'mipCount': 0,
                         'gammaCorrected': False})
    pictures.append({'name': 'ground shadows', 'file': 'textures/ground_shadows.png', 'mipCount': 0,
                     'gammaCorrected': False})
    write_json('gallery.vlte', {'textures': pictures})
    write_json('gallery.vlme', {'meshes': [{'name': m, 'file': f'meshes/{m}.vlmb'} for m in meshes]})
    write_json('gallery.vlpr', {'programs': [program('gallery lit', 'lit'),
                                             program('gallery ground', 'lit', ['GROUND']),
                                             program('gallery sky', 'sky'), program('gallery water', 'water')]})
    shaders, materials = [], []
    for name, (picture, ground, tint, repeats, rough, bump, glow) in MATERIALS.items():
        half = 1 / (2 * SHADOW_HALF)
        vectors = [vector(*tint), vector(repeats, rough, bump, glow), vector(half, half, 0.5, 0.5)]
        shaders.append(shader(name, 'gallery ground' if ground else 'gallery lit',
                              [picture, f'{picture} normal'] + (['ground shadows'] if ground else []),
                              ['gallery repeat', 'gallery clamp'] if ground else ['gallery repeat'], vectors))
    shaders.append(shader('sky', 'gallery sky', [], [], []))
    shaders.append(shader('water', 'gallery water', ['ripples normal'], ['gallery repeat'],
                          [vector(0.012, 0.05, 0.055, 1), vector(1, 1, 0.045, 0), {'type': 'TIME', 'moduloMs': 600000}]))
    for one in shaders:
        materials.append({'name': one['name'], 'shader': one['name'], 'transparent': False})
    write_json('gallery.vlsh', {'shaders': shaders})
    write_json('gallery.vlma', {'materials': materials})
    write_json('gallery.vlca', {'cameras': [camera('visitor', [6.0, 2.6, -15.2], [-1.2, 1.8, 0.0], 54)]})
    passes = [{'type': 'clearTargets', 'name': 'clear', 'clearColor': True, 'clearDepth': True,
               'clearColorValue': '0.02, 0.03, 0.05, 1.0'}, {'type': 'renderScene', 'name': 'gallery'}]
    write_json('gallery.vlco', {'compositors': [{'name': 'gallery', 'nodes': [
        {'name': 'scene', 'active': True, 'operations': [
            {'name': 'to the back buffer', 'colorTargets': ['VORLANE_BACK_BUFFER'],
             'depthTarget': 'VORLANE_DEPTH_BUFFER', 'passes': passes}]}]}]})
    write_json('gallery.vls', {
        'declarations': [f'gallery.{kind}' for kind in ('vlsa', 'vlte', 'vlme', 'vlpr', 'vlsh', 'vlma', 'vlca', 'vlco')],
        'compositor': 'gallery', 'camera': 'visitor', 'scene': scene.tree()})


def main():
    for folder in ('meshes', 'textures'):
        (ROOT / folder).mkdir(exist_ok=True)
    meshes = make_meshes()
    for name, mesh in meshes.items():
        write_mesh(name, mesh)
    for name, (function, size, arguments) in TEXTURES.items():
        color, normal = function(size, rng, *arguments)
        if color is not None:
            save_color(name, color)
        save_normal(f'{name}_normal', normal)
    write_sources()
    scene = place_everything()
    bake_shadows(scene, meshes)
    write_declarations(meshes, scene)
    entities = len(scene.placed)
    print(f'{entities} entities, {sum(len(meshes[m].triangles) for m, *_ in scene.placed)} triangles')


if __name__ == '__main__':
    main()
