"""Tileable pictures of the gallery's materials. Albedo is sRGB; a normal picture holds the normal in
rgb (green up) and the roughness in alpha."""

import numpy as np


def value_noise(size, cells, rng):
    grid = rng.random((cells, cells))
    t = np.arange(size) / size * cells
    i, f = t.astype(int), t % 1
    f = f * f * (3 - 2 * f)
    a, b = i % cells, (i + 1) % cells
    rows = grid[a] * (1 - f)[:, None] + grid[b] * f[:, None]
    return rows[:, a] * (1 - f) + rows[:, b] * f


def fractal(size, cells, octaves, rng, gain=0.5):
    total, weight, sum_ = np.zeros((size, size)), 1.0, 0.0
    for _ in range(octaves):
        if cells > size:
            break
        total += weight * value_noise(size, cells, rng)
        sum_ += weight
        weight *= gain
        cells *= 2
    return total / sum_


def worley(size, cells, rng):
    """Distances to the nearest and the second nearest of jittered points, in cells."""
    points = rng.random((cells, cells, 2))
    t = (np.arange(size) + 0.5) / size * cells
    y, x = np.meshgrid(t, t, indexing='ij')
    near, second = np.full((size, size), 9.0), np.full((size, size), 9.0)
    for dy in (-1, 0, 1):
        for dx in (-1, 0, 1):
            cy, cx = np.floor(y).astype(int) + dy, np.floor(x).astype(int) + dx
            p = points[cy % cells, cx % cells]
            d = np.hypot(cy + p[..., 0] - y, cx + p[..., 1] - x)
            second = np.minimum(second, np.maximum(near, d))
            near = np.minimum(near, d)
    return near, second


def mix(a, b, t):
    t = np.clip(t, 0, 1)[..., None]
    return np.asarray(a) * (1 - t) + np.asarray(b) * t


def normal_picture(height, strength, roughness):
    dx = (np.roll(height, -1, 1) - np.roll(height, 1, 1)) * strength
    dy = (np.roll(height, -1, 0) - np.roll(height, 1, 0)) * strength
    n = np.stack([-dx, dy, np.ones_like(dx)], axis=-1)
    n /= np.linalg.norm(n, axis=-1, keepdims=True)
    alpha = np.broadcast_to(np.asarray(roughness, float), height.shape)
    return np.concatenate([n * 0.5 + 0.5, alpha[..., None]], axis=-1)


def travertine(size, rng):
    warp = fractal(size, 4, 4, rng) * 0.6
    y = np.arange(size)[:, None] / size + np.zeros((1, size))
    strata = 0.5 + 0.5 * np.sin((y * 7 + warp) * 2 * np.pi)
    grain = fractal(size, 32, 4, rng)
    holes = np.clip((fractal(size, 40, 3, rng) * (0.7 + 0.3 * strata) - 0.62) * 9, 0, 1)
    color = mix([0.80, 0.73, 0.61], [0.90, 0.86, 0.77], strata * 0.6 + grain * 0.5)
    color = mix(color, [0.45, 0.37, 0.28], holes * 0.7)
    return color, normal_picture(grain * 0.5 + strata * 0.25 - holes * 1.2, 2.2, 0.62 + 0.25 * holes)


def slab(size, rng, dark, light):
    near, second = worley(size, 40, rng)
    speck = fractal(size, 64, 3, rng)
    cloud = fractal(size, 3, 5, rng)
    color = mix(dark, light, cloud * 0.9 + (speck - 0.5) * 0.9)
    color = mix(color, np.asarray(light) * 1.15, np.clip((0.16 - near) * 6, 0, 0.5))
    scratches = np.clip(np.abs(fractal(size, 10, 5, rng, 0.6) - 0.5) * 26, 0, 1)
    color = color * (0.86 + 0.14 * scratches)[..., None]
    return color, normal_picture(speck * 0.5 + cloud * 0.8 + scratches * 0.25, 2.0, 0.42 + 0.3 * speck)


def marble(size, rng):
    warp = fractal(size, 3, 6, rng, 0.58)
    veins = np.abs(fractal(size, 4, 6, rng, 0.6) - 0.5 + (warp - 0.5) * 0.5)
    line = np.exp(-veins * 34)
    color = mix([0.90, 0.89, 0.87], [0.42, 0.44, 0.48], line * 0.75)
    color = mix(color, [0.80, 0.76, 0.68], np.clip(warp * 1.4 - 0.55, 0, 1) * 0.45)
    return color, normal_picture(-line * 0.2 + fractal(size, 64, 2, rng) * 0.08, 1.2, 0.16 + 0.1 * line)


def bronze(size, rng):
    hammered, _ = worley(size, 18, rng)
    patina = np.clip(fractal(size, 5, 6, rng, 0.6) * 2.6 - 1.15, 0, 1)
    color = mix([0.71, 0.47, 0.26], [0.52, 0.33, 0.18], fractal(size, 8, 4, rng))
    color = mix(color, [0.20, 0.42, 0.36], patina * 0.8)
    return color, normal_picture(np.clip(hammered, 0, 0.55) * 1.2 + patina * 0.2, 2.4, 0.26 + 0.5 * patina)


def glaze(size, rng):
    near, second = worley(size, 14, rng)
    crack = np.exp(-(second - near) * 30)
    flow = fractal(size, 4, 5, rng)
    color = mix([0.02, 0.10, 0.32], [0.06, 0.42, 0.58], flow * 1.5 - 0.25)
    color = mix(color, [0.03, 0.05, 0.10], crack * 0.6)
    return color, normal_picture(-crack * 0.4 + flow * 0.15, 1.0, 0.10 + 0.25 * crack)


def basalt(size, rng):
    near, second = worley(size, 12, rng)
    rough = fractal(size, 12, 6, rng, 0.65)
    color = mix([0.10, 0.095, 0.09], [0.30, 0.27, 0.24], rough)
    color = mix(color, [0.48, 0.32, 0.16], np.clip(fractal(size, 5, 5, rng) * 3 - 1.9, 0, 1) * 0.6)
    return color, normal_picture(rough * 2.2 + near * 0.6, 2.6, 0.82 - 0.2 * rough)


def leaves(size, rng):
    near, second = worley(size, 26, rng)
    edge = np.clip((second - near) * 5, 0, 1)
    tone = fractal(size, 26, 3, rng)
    color = mix([0.045, 0.10, 0.02], [0.20, 0.34, 0.07], edge * 0.5 + tone * 0.7 - 0.1)
    return color, normal_picture((1 - near) * 1.6 * edge, 3.0, 0.62)


def terracotta(size, rng):
    grain = fractal(size, 48, 3, rng)
    cloud = fractal(size, 4, 5, rng)
    color = mix([0.46, 0.20, 0.11], [0.68, 0.35, 0.21], cloud * 0.8 + grain * 0.35)
    chalk = np.clip(fractal(size, 6, 5, rng) * 3.2 - 2.0, 0, 1)
    color = mix(color, [0.78, 0.70, 0.62], chalk * 0.5)
    return color, normal_picture(grain * 0.8 + cloud * 0.4, 1.8, 0.78)


def ripples(size, rng):
    height = fractal(size, 6, 4, rng, 0.55)
    return None, normal_picture(height, 3.0, 0.04)
