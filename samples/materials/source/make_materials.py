#!/usr/bin/env python3
"""Makes the meshes and the declarations of samples/materials; the shaders lie beside them as they are.
Run it from anywhere; it writes beside this folder. Needs nothing but Python. The project as committed
is its output."""

import math
import pathlib
import random
import struct
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.append(str(ROOT.parent / 'source'))

from project_files import POINTS, TRIANGLES, camera, mesh_file, vector, write_json

CELLS = 128  # of the pool, on a side; as water.hlsli says
POOL = 2.75  # metres from the middle to the rim
rng = random.Random(5)


# ---- meshes ------------------------------------------------------------------------------------
# Metres, +Y up, +Z forward, left-handed; front faces are clockwise.

def unit(v):
    length = math.sqrt(sum(c * c for c in v))
    return tuple(c / length for c in v)


def write_mesh(name, points, normals, triangles, kinds=None, topology=TRIANGLES, reach=0.0):
    """`kinds`: two numbers for each point. `reach`: what stages add beyond the points."""
    attributes = [('POSITION', 6, 0), ('NORMAL', 6, 12)] + ([('KIND', 16, 24)] if kinds else [])
    rows = [(*p, *n, *(kinds[i] if kinds else ())) for i, (p, n) in enumerate(zip(points, normals))]
    vertices = b''.join(struct.pack(f'<{len(row)}f', *row) for row in rows)
    indices = b''.join(struct.pack('<3I', *t) for t in triangles)
    low = [min(p[k] for p in points) - reach for k in range(3)]
    high = [max(p[k] for p in points) + reach for k in range(3)]
    centre = [(a + b) / 2 for a, b in zip(low, high)]
    radius = max(math.dist(p, centre) for p in points) * 1.00001 + reach
    (ROOT / 'meshes' / f'{name}.vlmb').write_bytes(
        mesh_file(attributes, 4 * len(rows[0]), len(points), vertices, indices, centre, radius, low, high, topology))


def facing(points, normals, triangle):
    """The triangle, turned so that it is clockwise seen from where its normals point."""
    a, b, c = (points[i] for i in triangle)
    u, v = [q - p for p, q in zip(a, b)], [q - p for p, q in zip(a, c)]
    cross = (u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0])
    lean = sum(cross[k] * sum(normals[i][k] for i in triangle) for k in range(3))
    return triangle if lean > 0 else (triangle[0], triangle[2], triangle[1])


def icosphere(level):
    t = (1 + math.sqrt(5)) / 2
    points = [unit(p) for p in [(-1, t, 0), (1, t, 0), (-1, -t, 0), (1, -t, 0), (0, -1, t), (0, 1, t), (0, -1, -t),
                                (0, 1, -t), (t, 0, -1), (t, 0, 1), (-t, 0, -1), (-t, 0, 1)]]
    triangles = [(0, 11, 5), (0, 5, 1), (0, 1, 7), (0, 7, 10), (0, 10, 11), (1, 5, 9), (5, 11, 4), (11, 10, 2),
                 (10, 7, 6), (7, 1, 8), (3, 9, 4), (3, 4, 2), (3, 2, 6), (3, 6, 8), (3, 8, 9), (4, 9, 5), (2, 4, 11),
                 (6, 2, 10), (8, 6, 7), (9, 8, 1)]
    for _ in range(level):
        halves, finer = {}, []

        def half(i, j):
            key = (min(i, j), max(i, j))
            if key not in halves:
                halves[key] = len(points)
                points.append(unit([a + b for a, b in zip(points[i], points[j])]))
            return halves[key]

        for a, b, c in triangles:
            ab, bc, ca = half(a, b), half(b, c), half(c, a)
            finer += [(a, ab, ca), (b, bc, ab), (c, ca, bc), (ab, bc, ca)]
        triangles = finer
    return points, points, [facing(points, points, t) for t in triangles]


def scaled(mesh, factor):
    points, normals, triangles = mesh
    return [tuple(c * factor for c in p) for p in points], normals, triangles


def inside_out(mesh):
    points, normals, triangles = mesh
    return points, [tuple(-c for c in n) for n in normals], [(a, c, b) for a, b, c in triangles]


def turned(profile, steps=72):
    """A solid of revolution; each piece of the profile (radius, height) has a normal of its own."""
    points, normals, triangles = [], [], []
    for (r0, y0), (r1, y1) in zip(profile, profile[1:]):
        n = unit((y1 - y0, r0 - r1))
        start = len(points)
        for k in range(steps + 1):
            angle = 2 * math.pi * k / steps
            c, s = math.cos(angle), math.sin(angle)
            points += [(r0 * c, y0, r0 * s), (r1 * c, y1, r1 * s)]
            normals += [(n[0] * c, n[1], n[0] * s)] * 2
        for k in range(steps):
            i = start + 2 * k
            triangles += [(i, i + 1, i + 2), (i + 1, i + 3, i + 2)]
    solid = [t for t in triangles if len({points[i] for i in t}) == 3]
    return points, normals, [facing(points, normals, t) for t in solid]


def ground():
    """Rings that widen towards the horizon."""
    radii = [2.6, 4, 6, 9, 14, 22, 40, 80, 160, 320]
    return turned([(r, 0.0) for r in reversed(radii)], 48)


def pool():
    """A point for each cell within the round, from -1 to 1."""
    at = lambda k: (k + 0.5) / CELLS * 2 - 1
    inside = lambda x, z: math.hypot(at(x), at(z)) < 1.03
    number = {(x, z): 0 for z in range(CELLS) for x in range(CELLS) if inside(x, z)}
    for i, key in enumerate(number):
        number[key] = i
    points = [(at(x), 0.0, at(z)) for x, z in number]
    normals = [(0.0, 1.0, 0.0)] * len(points)
    triangles = []
    for x, z in number:
        corners = [number.get(key) for key in ((x, z), (x + 1, z), (x, z + 1), (x + 1, z + 1))]
        if None not in corners:
            a, b, c, d = corners
            triangles += [(a, c, b), (b, c, d)]
    return points, normals, [facing(points, normals, t) for t in triangles]


def hairs(count, radius):
    """Roots all over a ball, evenly: each with its length and a number of its own."""
    points, kinds = [], []
    for k in range(count):
        y = 1 - 2 * (k + 0.5) / count
        ring = math.sqrt(1 - y * y)
        angle = math.pi * (3 - math.sqrt(5)) * k
        points.append(unit([c + rng.uniform(-0.02, 0.02) for c in (ring * math.cos(angle), y, ring * math.sin(angle))]))
        kinds.append((rng.uniform(0.72, 1.0), rng.random()))
    return [tuple(c * radius for c in p) for p in points], points, kinds


def write_meshes():
    (ROOT / 'meshes').mkdir(exist_ok=True)
    plinth = [(0.0, 0.62), (0.74, 0.62), (0.80, 0.56), (0.80, 0.50), (0.66, 0.42), (0.62, 0.16), (0.78, 0.10),
              (0.84, 0.06), (0.84, 0.0)]
    rim = [(POOL - 0.02, -0.05), (POOL - 0.02, 0.22), (POOL + 0.06, 0.28), (POOL + 0.34, 0.28), (POOL + 0.42, 0.22),
           (POOL + 0.42, 0.0)]
    meshes = {'sky': inside_out(scaled(icosphere(3), 400.0)), 'ground': ground(),
              'plinth': turned(plinth[::-1]), 'rim': turned(rim[::-1], 128), 'core': scaled(icosphere(2), 0.20),
              'crystal': scaled(icosphere(1), 0.72), 'skin': scaled(icosphere(3), 0.62), 'pool': pool()}
    for name, mesh in meshes.items():
        write_mesh(name, *mesh, reach={'crystal': 0.5, 'pool': 0.2}.get(name, 0.0))
    write_mesh('stone', *icosphere(2), reach=0.4)
    points, normals, kinds = hairs(5600, 0.60)
    write_mesh('fur', points, normals, [], kinds, POINTS, reach=0.6)
    return [*meshes, 'stone', 'fur']


# ---- declarations ------------------------------------------------------------------------------

def program(name, *stages):
    folder = name.replace(' ', '_') + '_src'
    return {'name': name, 'type': 'COMPUTE' if stages == ('COMPUTE',) else 'PIPELINE', 'crossCompilerDefines': True,
            'stages': [{'stage': stage, 'file': f'{folder}/{stage.lower()}Shader.hlsl'} for stage in stages]}


PROGRAMS = [program(name, 'VERTEX', 'PIXEL') for name in ('sky', 'ground', 'plinth', 'glow', 'fur skin', 'water')]
PROGRAMS += [program(name, 'VERTEX', 'GEOMETRY', 'PIXEL') for name in ('fur', 'crystal')]
PROGRAMS += [program('stone', 'VERTEX', 'HULL', 'DOMAIN', 'PIXEL')]
PROGRAMS += [program(name, 'COMPUTE') for name in ('water begin', 'water forces', 'water moves')]

TIME = {'type': 'TIME', 'moduloMs': 600000}


def bound(buffer):
    return [{'buffer': buffer, 'slot': 0, 'space': 0}]


def drawn(name, more=None, read=None):
    """A shader whose program bears its name."""
    buffers = [{'slot': 0, 'space': 0, 'slots': [{'type': 'VIEW_MATRIX'}, {'type': 'PROJECTION_MATRIX'},
                                                 {'type': 'CAMERA_POSITION'}, TIME]}]
    if more:
        buffers.append({'slot': 1, 'space': 0, 'slots': more})
    return {'name': name, 'program': name, 'textures': bound(read) if read else [], 'constantBuffers': buffers,
            'instanceSlots': [{'type': 'WORLD_MATRIX'}], 'maxInstancesPerBuffer': 1024}


def computed(name):
    return {'name': name, 'program': name, 'uavBuffers': bound('water'),
            'constantBuffers': [{'slot': 0, 'space': 0, 'slots': [TIME]}]}


def write_declarations(meshes):
    # Length and width in metres, bend, strength of the wind.
    fur = [vector(0.42, 0.0105, 0.45, 0.30)]
    shaders = [drawn(name) for name in ('sky', 'ground', 'plinth', 'glow', 'fur skin', 'crystal', 'stone')]
    shaders += [drawn('fur', fur), drawn('water', read='water')]
    materials = [{'name': one['name'], 'shader': one['name'], 'transparent': False} for one in shaders]
    shaders += [computed(f'water {step}') for step in ('begin', 'forces', 'moves')]
    write_json(ROOT / 'materials.vlme', {'meshes': [{'name': m, 'file': f'meshes/{m}.vlmb'} for m in meshes]})
    write_json(ROOT / 'materials.vlbu', {'buffers': [
        {'name': 'water', 'elementByteSize': 16, 'elementCount': CELLS * CELLS, 'unorderedAccess': True,
         'shaderResource': True}]})
    write_json(ROOT / 'materials.vlpr', {'programs': PROGRAMS})
    write_json(ROOT / 'materials.vlsh', {'shaders': shaders})
    write_json(ROOT / 'materials.vlma', {'materials': materials})
    write_json(ROOT / 'materials.vlca', {'cameras': [camera('visitor', [1.5, 2.9, -9.9], [0.1, 1.32, 0.0], 43)]})

    groups = CELLS // 8
    step = lambda name: {'type': 'compute', 'name': name, 'shader': f'water {name}', 'x': groups, 'y': groups, 'z': 1}
    passes = [step('begin')] + [step('forces'), step('moves')] * 2
    draws = [{'type': 'clearTargets', 'name': 'clear', 'clearColor': True, 'clearDepth': True,
              'clearColorValue': '0.02, 0.03, 0.05, 1.0'}, {'type': 'renderScene', 'name': 'exhibits'}]
    write_json(ROOT / 'materials.vlco', {'compositors': [{'name': 'materials', 'nodes': [
        {'name': 'water', 'active': True, 'operations': [{'name': 'two steps', 'passes': passes}]},
        {'name': 'scene', 'active': True, 'operations': [
            {'name': 'to the back buffer', 'colorTargets': ['VORLANE_BACK_BUFFER'],
             'depthTarget': 'VORLANE_DEPTH_BUFFER', 'passes': draws}]}]}]})


def node(name, position, entities, scale=1.0):
    return {'name': name, 'position': [float(v) for v in position], 'orientation': [0.0, 0.0, 0.0, 1.0],
            'scale': [float(scale)] * 3,
            'entities': [{'mesh': mesh, 'material': material} for mesh, material in entities]}


def write_project():
    nodes = [
        node('sky', (0, 0, 0), [('sky', 'sky')]),
        node('ground', (0, 0, 0), [('ground', 'ground')]),
        node('rim', (0, 0, 0), [('rim', 'plinth')]),
        node('water', (0, 0.15, 0), [('pool', 'water')], POOL),
        node('stone', (0, 2.15, 0), [('stone', 'stone')]),
        node('left plinth', (-4.1, 0, -0.6), [('plinth', 'plinth')]),
        node('fur', (-4.1, 1.66, -0.6), [('skin', 'fur skin'), ('fur', 'fur')]),
        node('right plinth', (4.1, 0, -0.6), [('plinth', 'plinth')]),
        node('crystal', (4.1, 1.72, -0.6), [('crystal', 'crystal'), ('core', 'glow')]),
    ]
    write_json(ROOT / 'materials.vls', {
        'declarations': [f'materials.{kind}' for kind in ('vlbu', 'vlme', 'vlpr', 'vlsh', 'vlma', 'vlca', 'vlco')],
        'compositor': 'materials', 'camera': 'visitor', 'scene': {'nodes': nodes}})


def main():
    write_declarations(write_meshes())
    write_project()


if __name__ == '__main__':
    main()
