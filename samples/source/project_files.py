"""Files of a project as the engine reads them: declarations and mesh data. Needs nothing but Python."""

import json
import math
import struct


def compact(value, depth=0):
    """The engine's JSON form: two spaces, lists of numbers or texts on one line."""
    pad = '  ' * (depth + 1)
    if isinstance(value, dict) and value:
        rows = [f'{pad}{json.dumps(k)}: {compact(v, depth + 1)}' for k, v in value.items()]
        return '{\n' + ',\n'.join(rows) + '\n' + '  ' * depth + '}'
    if isinstance(value, list) and any(isinstance(v, (dict, list)) for v in value):
        rows = [pad + compact(v, depth + 1) for v in value]
        return '[\n' + ',\n'.join(rows) + '\n' + '  ' * depth + ']'
    if isinstance(value, list):
        return '[' + ', '.join(compact(v) for v in value) + ']'
    if isinstance(value, float):
        return shortest(value)
    return json.dumps(value)


def shortest(value):
    """The shortest text that reads back as the same 32-bit float."""
    if value == int(value) and abs(value) < 1e15:
        return str(int(value)) + '.0'
    as_float = lambda number: struct.unpack('<f', struct.pack('<f', number))[0]
    for digits in range(1, 10):
        text = f'{value:.{digits}g}'
        if as_float(float(text)) == as_float(value):
            return f'{value:.{digits - 1}e}' if abs(as_float(value)) < 1e-4 else repr(float(text))
    return repr(value)


def write_json(path, tree):
    path.write_text(compact({'formatVersion': 1, **tree}) + '\n', encoding='utf-8')


POINTS, TRIANGLES = 1, 4  # topologies


def mesh_file(attributes, stride, count, vertices, indices, centre, radius, low, high, topology=TRIANGLES):
    """The engine's mesh data: a header of 80 bytes, 72 for each attribute, vertices, indices (both bytes)."""
    head = 80 + 72 * len(attributes)
    start = (head + 15) // 16 * 16
    size = start + len(vertices) + len(indices)
    data = struct.pack('<4s7I', b'VLMB', 1, topology, len(attributes), stride, count, len(indices) // 4, 0)
    data += struct.pack('<4f3f3fQ', *centre, radius, *low, *high, size)
    for semantic, code, offset in attributes:
        data += struct.pack('<64s2I', semantic.encode(), code, offset)
    return data.ljust(start, b'\0') + vertices + indices


def vector(*values):
    """A slot of a constant buffer."""
    return {'type': 'VECTOR', 'value': [float(v) for v in values]}


def camera(name, eye, target, degrees):
    d = [b - a for a, b in zip(eye, target)]
    length = math.sqrt(sum(v * v for v in d))
    d = [v / length for v in d]
    yaw, pitch = math.atan2(d[0], d[2]) / 2, -math.asin(d[1]) / 2
    orientation = [math.cos(yaw) * math.sin(pitch), math.sin(yaw) * math.cos(pitch),
                   -math.sin(yaw) * math.sin(pitch), math.cos(yaw) * math.cos(pitch)]
    return {'name': name, 'position': eye, 'orientation': [round(v, 7) for v in orientation], 'orthographic': False,
            'fieldOfView': round(math.radians(degrees), 6), 'nearDistance': 0.1, 'farDistance': 1000.0,
            'orthographicHeight': 10.0}
