"""Shapes of the gallery: each function returns a Mesh in metres, +Y up, +Z forward, left-handed, front
faces clockwise (which makes cross(b - a, c - a) point outwards)."""

import numpy as np

TAU = 2 * np.pi


class Mesh:
    def __init__(self, positions, normals, texcoords, triangles, occlusion=None):
        self.positions = np.asarray(positions, np.float32)
        self.normals = np.asarray(normals, np.float32)
        self.texcoords = np.asarray(texcoords, np.float32)
        self.triangles = np.asarray(triangles, np.uint32)
        count = len(self.positions)
        self.occlusion = np.ones(count, np.float32) if occlusion is None else \
            np.asarray(occlusion, np.float32)
        self._face_outwards()

    def _face_outwards(self):
        a, b, c = (self.positions[self.triangles[:, k]] for k in range(3))
        face = np.cross(b - a, c - a)
        lean = np.einsum('ij,ij->i', face, self.normals[self.triangles].sum(axis=1))
        self.triangles[lean < 0] = self.triangles[lean < 0][:, ::-1]
        self.triangles = self.triangles[np.linalg.norm(face, axis=1) > 1e-12]

    def inside_out(self):
        self.normals = -self.normals
        self.triangles = self.triangles[:, ::-1]
        return self

    def moved(self, offset):
        self.positions = self.positions + np.asarray(offset, np.float32)
        return self

    def tangents(self):
        """Lengyel's method: along +u, handedness in w."""
        count = len(self.positions)
        along_u, along_v = np.zeros((count, 3)), np.zeros((count, 3))
        i = self.triangles
        p, t = self.positions.astype(float), self.texcoords.astype(float)
        edge1, edge2 = p[i[:, 1]] - p[i[:, 0]], p[i[:, 2]] - p[i[:, 0]]
        d1, d2 = t[i[:, 1]] - t[i[:, 0]], t[i[:, 2]] - t[i[:, 0]]
        area = d1[:, 0] * d2[:, 1] - d2[:, 0] * d1[:, 1]
        scale = np.where(np.abs(area) < 1e-12, 0, 1 / np.where(area == 0, 1, area))[:, None]
        u_dir = (edge1 * d2[:, 1:] - edge2 * d1[:, 1:]) * scale
        v_dir = (edge2 * d1[:, :1] - edge1 * d2[:, :1]) * scale
        for k in range(3):
            np.add.at(along_u, i[:, k], u_dir)
            np.add.at(along_v, i[:, k], v_dir)
        n = self.normals.astype(float)
        flat = along_u - n * np.einsum('ij,ij->i', n, along_u)[:, None]
        length = np.linalg.norm(flat, axis=1, keepdims=True)
        spare = np.cross(n, np.where(np.abs(n[:, 1:2]) < 0.9, [[0, 1, 0]], [[1, 0, 0]]))
        flat = np.where(length > 1e-8, flat / np.maximum(length, 1e-8), spare)
        hand = np.where(np.einsum('ij,ij->i', np.cross(n, flat), along_v) < 0, -1.0, 1.0)
        return np.concatenate([flat, hand[:, None]], axis=1).astype(np.float32)


def joined(meshes):
    start, triangles = 0, []
    for mesh in meshes:
        triangles.append(mesh.triangles + start)
        start += len(mesh.positions)
    whole = Mesh.__new__(Mesh)
    whole.positions = np.concatenate([m.positions for m in meshes])
    whole.normals = np.concatenate([m.normals for m in meshes])
    whole.texcoords = np.concatenate([m.texcoords for m in meshes])
    whole.occlusion = np.concatenate([m.occlusion for m in meshes])
    whole.triangles = np.concatenate(triangles)
    return whole


def surface(point, columns, rows, u_range=(0, TAU), v_range=(0, 1), texture=(1, 1), occlude=None):
    """A grid over point(u, v) -> (..., 3), with normals from its derivatives. The direction of the
    normal is away from the centre of the cross-section that u runs around."""
    u, v = np.meshgrid(np.linspace(*u_range, columns + 1), np.linspace(*v_range, rows + 1))
    step_u, step_v = (u_range[1] - u_range[0]) * 1e-4, (v_range[1] - v_range[0]) * 1e-4
    p = point(u, v)
    normal = np.cross(point(u, v + step_v) - point(u, v - step_v),
                      point(u + step_u, v) - point(u - step_u, v))
    normal /= np.maximum(np.linalg.norm(normal, axis=-1, keepdims=True), 1e-12)
    ring = p[:, :-1].mean(axis=1, keepdims=True)
    outward = np.einsum('ijk,ijk->ij', normal, p - ring)
    if np.median(outward) < 0:
        normal = -normal
    texcoords = np.stack([(u - u_range[0]) / (u_range[1] - u_range[0]) * texture[0],
                          (v - v_range[0]) / (v_range[1] - v_range[0]) * texture[1]], axis=-1)
    row = np.arange(rows)[:, None] * (columns + 1) + np.arange(columns)[None, :]
    quads = np.stack([row, row + 1, row + columns + 1, row + columns + 2], axis=-1).reshape(-1, 4)
    triangles = np.concatenate([quads[:, [0, 2, 1]], quads[:, [1, 2, 3]]])
    occlusion = None if occlude is None else occlude(u, v).ravel()
    return Mesh(p.reshape(-1, 3), normal.reshape(-1, 3), texcoords.reshape(-1, 2), triangles, occlusion)


def box(width, height, depth, bevel=0.0, texel=1.0):
    """Standing on y = 0, edges cut at 45 degrees; texture coordinates in metres times texel."""
    half = np.array([width / 2, height / 2, depth / 2])
    parts = []

    def quad(corners, normal, across, up):
        corners = np.asarray(corners, float)
        texcoords = np.stack([corners @ across, corners @ up], axis=1) * texel
        parts.append(Mesh(corners, np.repeat([normal], 4, axis=0), texcoords,
                          [[0, 1, 2], [0, 2, 3]]))

    axes = np.eye(3)
    for axis in range(3):
        for side in (-1, 1):
            normal, s, t = axes[axis] * side, axes[(axis + 1) % 3], axes[(axis + 2) % 3]
            hs, ht = half[(axis + 1) % 3] - bevel, half[(axis + 2) % 3] - bevel
            centre = normal * half[axis]
            quad([centre - s * hs - t * ht, centre + s * hs - t * ht, centre + s * hs + t * ht,
                  centre - s * hs + t * ht], normal, s, t)
    if bevel > 0:
        for axis in range(3):
            a, b, along = axes[(axis + 1) % 3], axes[(axis + 2) % 3], axes[axis]
            ha, hb, length = half[(axis + 1) % 3], half[(axis + 2) % 3], half[axis] - bevel
            for sa in (-1, 1):
                for sb in (-1, 1):
                    normal = (a * sa + b * sb) / np.sqrt(2)
                    near = a * sa * ha + b * sb * (hb - bevel)
                    far = a * sa * (ha - bevel) + b * sb * hb
                    quad([near - along * length, near + along * length, far + along * length,
                          far - along * length], normal, along, (b * sb - a * sa) / np.sqrt(2))
        for sx in (-1, 1):
            for sy in (-1, 1):
                for sz in (-1, 1):
                    s = np.array([sx, sy, sz])
                    corners = [(half - bevel * (1 - np.eye(3)[k])) * s for k in range(3)]
                    parts.append(Mesh(corners, np.repeat([s / np.sqrt(3)], 3, axis=0),
                                      np.asarray(corners)[:, :2] * texel, [[0, 1, 2]]))
    return joined(parts).moved([0, half[1], 0])


def turned(profile, segments, texture=(1, 1), flute=None, sides=None, smooth=None):
    """A profile of (radius, height) points turned around Y. flute(angle, height) scales the radius;
    sides gives a polygonal section instead of a circle; smooth=False makes every profile edge sharp."""
    profile = np.asarray(profile, float)
    parts = []
    lengths = np.concatenate([[0], np.cumsum(np.linalg.norm(np.diff(profile, axis=0), axis=1))])
    runs = [profile] if smooth is not False else [profile[k:k + 2] for k in range(len(profile) - 1)]
    starts = [0] if smooth is not False else list(range(len(profile) - 1))
    for run, start in zip(runs, starts):
        at = np.linspace(0, 1, len(run))

        def point(u, v, run=run, at=at):
            radius, height = np.interp(v, at, run[:, 0]), np.interp(v, at, run[:, 1])
            if v.min() < 0 or v.max() > 1:  # derivatives at the ends go on straight
                first, last = (run[1] - run[0]) / (at[1] - at[0]), (run[-1] - run[-2]) / (at[-1] - at[-2])
                radius = np.where(v < 0, run[0, 0] + first[0] * v,
                                  np.where(v > 1, run[-1, 0] + last[0] * (v - 1), radius))
                height = np.where(v < 0, run[0, 1] + first[1] * v,
                                  np.where(v > 1, run[-1, 1] + last[1] * (v - 1), height))
            if flute is not None:
                radius = radius * flute(u, height)
            if sides is not None:
                radius = radius / np.cos((u + TAU / sides / 2) % (TAU / sides) - TAU / sides / 2)
            return np.stack([radius * np.cos(u), height, radius * np.sin(u)], axis=-1)

        part = surface(point, segments, len(run) - 1, texture=(texture[0], 1))
        span = lengths[start + len(run) - 1] - lengths[start]
        rows = np.repeat(lengths[start:start + len(run)] if span > 0 else [0] * len(run), segments + 1)
        part.texcoords[:, 1] = rows * texture[1]
        parts.append(part)
    return joined(parts)


def column(height=5.2, radius=0.42, flutes=20):
    def arc(y0, y1, r, bulge, steps=6):
        t = np.linspace(0, np.pi, steps)
        return [(r + bulge * np.sin(a), y0 + (y1 - y0) * (1 - np.cos(a)) / 2) for a in t]

    base = arc(0.18, 0.34, radius * 1.22, 0.07) + [(radius * 1.2, 0.36), (radius * 1.14, 0.40)] + \
        arc(0.41, 0.52, radius * 1.1, 0.05) + [(radius * 1.06, 0.54), (radius, 0.62)]
    shaft = [(radius * (1 - 0.16 * t ** 1.6), 0.62 + (height - 1.42) * t) for t in np.linspace(0, 1, 7)]
    top = radius * 0.84
    capital = [(top, height - 0.78)] + arc(height - 0.76, height - 0.70, top, 0.035, 5) + \
        [(top, height - 0.68), (top, height - 0.58)] + \
        [(top + 0.26 * (1 - np.cos(a)), height - 0.58 + 0.34 * np.sin(a)) for a in np.linspace(0, np.pi / 2, 7)]

    def grooves(angle, y):
        inside = np.clip((y - 0.66) / 0.14, 0, 1) * np.clip((height - 0.84 - y) / 0.14, 0, 1)
        return 1 - 0.075 * inside * np.abs(np.sin(angle * flutes / 2)) ** 0.8

    round_part = turned(base + shaft[1:] + capital, flutes * 4, texture=(4, 0.5), flute=grooves)
    depth = 1 - (np.hypot(round_part.positions[:, 0], round_part.positions[:, 2]) /
                 np.maximum(np.hypot(*_profile_radius(round_part)), 1e-6))
    y = round_part.positions[:, 1]
    round_part.occlusion = (1 - 4.5 * np.clip(depth, 0, 0.09)) * (0.72 + 0.28 * np.clip((y - 0.15) / 0.8, 0, 1)) * \
        (0.7 + 0.3 * np.clip((height - 0.3 - y) / 0.5, 0, 1))
    plinth = box(1.16, 0.18, 1.16, 0.02, 0.5)
    abacus = box(1.24, 0.24, 1.24, 0.03, 0.5).moved([0, height - 0.24, 0])
    return joined([plinth, round_part, abacus])


def _profile_radius(mesh):
    """The largest radius at each vertex' height: what a groove is deep against."""
    y = np.round(mesh.positions[:, 1], 4)
    radius = np.hypot(mesh.positions[:, 0], mesh.positions[:, 2])
    levels, where = np.unique(y, return_inverse=True)
    largest = np.zeros(len(levels))
    np.maximum.at(largest, where, radius)
    return largest[where], np.zeros(len(y))


def entablature(length, texel=0.5):
    lower = box(length, 0.34, 0.98, 0.015, texel)
    upper = box(length, 0.30, 1.08, 0.015, texel).moved([0, 0.34, 0])
    lip = box(length, 0.16, 1.34, 0.03, texel).moved([0, 0.64, 0])
    teeth = [box(0.16, 0.12, 0.12, 0.01, texel).moved([x, 0.52, z])
             for x in np.arange(-length / 2 + 0.2, length / 2 - 0.1, 0.36) for z in (-0.58, 0.58)]
    return joined([lower, upper, lip] + teeth)


def pedestal(height=1.0):
    h = height
    profile = [(0.52, 0), (0.52, 0.14), (0.47, 0.17), (0.44, 0.22), (0.40, 0.26), (0.40, h - 0.26),
               (0.44, h - 0.20), (0.49, h - 0.16), (0.49, h - 0.04), (0.47, h)]
    mesh = turned(profile, 4, texture=(3, 0.8), sides=4, smooth=False)
    mesh = _faceted(mesh)
    mesh.occlusion = 0.65 + 0.35 * np.clip(mesh.positions[:, 1] / 0.5, 0, 1)
    return joined([mesh, box(0.66, 0.03, 0.66, 0.01).moved([0, h - 0.01, 0])])


def _faceted(mesh):
    i = mesh.triangles
    a, b, c = (mesh.positions[i[:, k]] for k in range(3))
    normal = np.cross(b - a, c - a)
    normal /= np.maximum(np.linalg.norm(normal, axis=1, keepdims=True), 1e-12)
    flat = Mesh.__new__(Mesh)
    flat.positions = mesh.positions[i].reshape(-1, 3)
    flat.normals = np.repeat(normal, 3, axis=0).astype(np.float32)
    flat.texcoords = mesh.texcoords[i].reshape(-1, 2)
    flat.occlusion = mesh.occlusion[i].reshape(-1)
    flat.triangles = np.arange(len(flat.positions), dtype=np.uint32).reshape(-1, 3)
    return flat


def knot(p=2, q=3, radius=0.62, tube=0.17, columns=16, rows=180):
    def centre(v):
        a = v * TAU
        r = radius * (1 + 0.42 * np.cos(q * a))
        return np.stack([r * np.cos(p * a), 0.42 * np.sin(q * a) + 0 * a, r * np.sin(p * a)], axis=-1)

    def point(u, v):
        c, e = centre(v), 1e-3
        t = centre(v + e) - centre(v - e)
        t /= np.linalg.norm(t, axis=-1, keepdims=True)
        n = centre(v + e) + centre(v - e) - 2 * c
        b = np.cross(t, n)
        b /= np.linalg.norm(b, axis=-1, keepdims=True)
        n = np.cross(b, t)
        return c + tube * (np.cos(u)[..., None] * n + np.sin(u)[..., None] * b)

    return surface(point, columns, rows, texture=(1, 10)).moved([0, 0.95, 0])


def vase(columns=72, rows=40):
    heights = np.array([0, 0.04, 0.2, 0.45, 0.75, 1.0, 1.18, 1.28, 1.36])
    radii = np.array([0.24, 0.26, 0.38, 0.47, 0.40, 0.24, 0.17, 0.20, 0.27])

    def point(u, v):
        y = v * heights[-1]
        k = np.clip(np.searchsorted(heights, y, side='right') - 1, 0, len(heights) - 2)
        t = np.clip((y - heights[k]) / (heights[k + 1] - heights[k]), 0, 1)
        slope = np.gradient(radii, heights)
        d = heights[k + 1] - heights[k]
        r = (2 * t ** 3 - 3 * t ** 2 + 1) * radii[k] + (t ** 3 - 2 * t ** 2 + t) * d * slope[k] + \
            (-2 * t ** 3 + 3 * t ** 2) * radii[k + 1] + (t ** 3 - t ** 2) * d * slope[k + 1]
        ribs = 1 + 0.035 * np.cos(12 * (u + 1.9 * v)) * np.clip(v * 8, 0, 1) * np.clip((1 - v) * 6, 0, 1)
        return np.stack([r * ribs * np.cos(u), y, r * ribs * np.sin(u)], axis=-1)

    outside = surface(point, columns, rows, texture=(3, 2))
    inside = surface(lambda u, v: point(u, 1 - 0.35 * v) * [0.93, 1, 0.93], columns // 2, 10,
                     texture=(3, 1)).inside_out()
    inside.occlusion = np.clip(1 - (1.36 - inside.positions[:, 1]) * 2.2, 0.15, 1)
    return joined([outside, inside])


def shell(columns=28, rows=170):
    def point(u, v):
        a = v * 3.1 * TAU
        grow = np.exp(0.118 * a)
        size = 0.052 * grow
        ribs = 1 + 0.05 * np.cos(a * 9)
        r = 0.062 * grow + size * ribs * np.cos(u)
        return np.stack([r * np.cos(a), size * ribs * np.sin(u) * 1.15 - 0.16 * grow * 0.36, r * np.sin(a)], axis=-1)

    mesh = surface(point, columns, rows, texture=(2, 14))
    mesh.positions = mesh.positions @ np.array([[1, 0, 0], [0, 0, 1], [0, -1, 0]], np.float32)
    mesh.normals = mesh.normals @ np.array([[1, 0, 0], [0, 0, 1], [0, -1, 0]], np.float32)
    mesh = Mesh(mesh.positions, mesh.normals, mesh.texcoords, mesh.triangles)
    return mesh.moved([0, -mesh.positions[:, 1].min(), 0])


def ball(radius=0.5, columns=64, rows=40, displace=None, texture=(4, 2)):
    def point(u, v):
        a = (v - 0.5) * np.pi * 0.998
        d = np.stack([np.cos(a) * np.cos(u), np.sin(a), np.cos(a) * np.sin(u)], axis=-1)
        r = radius if displace is None else radius * displace(d)[..., None]
        return d * r

    mesh = surface(point, columns, rows, texture=texture)
    return mesh


def flower(rows=72, columns=112):
    def radius(d):
        angle, up = np.arctan2(d[..., 2], d[..., 0]), d[..., 1]
        return 0.62 + 0.30 * np.cos(5 * angle + 2.6 * up) * (1 - up ** 2) ** 1.5 + 0.16 * np.cos(6 * np.arcsin(np.clip(up, -1, 1)))

    mesh = ball(0.78, columns, rows, radius, (4, 2))
    lengths = np.linalg.norm(mesh.positions, axis=1)
    mesh.occlusion = np.clip(0.35 + 0.9 * (lengths / lengths.max()) ** 1.4, 0, 1)
    return mesh.moved([0, -mesh.positions[:, 1].min() - 0.02, 0])


def rock(noise, columns=88, rows=56):
    def radius(d):
        return 0.75 + 0.35 * noise(d * 1.4) + 0.16 * noise(d * 3.7 + 5) + 0.05 * np.abs(noise(d * 11 + 9))

    mesh = ball(0.72, columns, rows, radius, (5, 2.5))
    return mesh.moved([0, -mesh.positions[:, 1].min() - 0.05, 0])


def topiary(noise):
    def radius(d):
        return 0.93 + 0.10 * noise(d * 9) + 0.08 * np.abs(noise(d * 23 + 3))

    leaves = ball(0.62, 60, 40, radius, (5, 3))
    lengths = np.linalg.norm(leaves.positions, axis=1)
    leaves.occlusion = np.clip((lengths / 0.62 - 0.86) * 5 + 0.35, 0.25, 1) * \
        (0.55 + 0.45 * np.clip(leaves.positions[:, 1] / 0.6 + 0.8, 0, 1))
    return leaves.moved([0, 1.18, 0])


def planter():
    profile = [(0.30, 0), (0.30, 0.05), (0.28, 0.08), (0.40, 0.62), (0.45, 0.64), (0.46, 0.72),
               (0.44, 0.74), (0.39, 0.74), (0.37, 0.62), (0.0001, 0.60)]
    mesh = turned(profile, 40, texture=(3, 1.5), smooth=False)
    inside = (mesh.positions[:, 1] < 0.63) & (np.hypot(mesh.positions[:, 0], mesh.positions[:, 2]) < 0.375) & \
        (mesh.positions[:, 1] > 0.595)
    mesh.occlusion[:] = 0.7 + 0.3 * np.clip(mesh.positions[:, 1] / 0.4, 0, 1)
    mesh.occlusion[inside] = 0.2
    return mesh


def lantern_post():
    profile = [(0.16, 0), (0.16, 0.06), (0.11, 0.09), (0.07, 0.13), (0.055, 0.2), (0.05, 0.62), (0.08, 0.66),
               (0.13, 0.70), (0.14, 0.72), (0.12, 0.74)]
    return turned(profile, 20, texture=(2, 2))


def ring(inner, outer, height, segments=160):
    profile = [(outer, 0), (outer, height - 0.05), (outer - 0.05, height), (inner + 0.05, height),
               (inner, height - 0.05), (inner, -0.3)]
    mesh = turned(profile, segments, texture=(40, 0.6), smooth=False)
    mesh.occlusion = np.clip(0.6 + 0.4 * (mesh.positions[:, 1] + 0.02) / height, 0.35, 1)
    return mesh


def disc(radius, segments=96):
    angle = np.linspace(0, TAU, segments, endpoint=False)
    positions = np.concatenate([[[0, 0, 0]], np.stack([np.cos(angle), 0 * angle, np.sin(angle)], axis=1) * radius])
    triangles = [[0, 1 + k, 1 + (k + 1) % segments] for k in range(segments)]
    return Mesh(positions, np.repeat([[0, 1, 0]], segments + 1, axis=0), positions[:, [0, 2]] / 4, triangles)
