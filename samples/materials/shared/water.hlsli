// The surface of the pool: a square of cells, each with its height and its speed upwards.
static const int side = 128;

struct Cell {
    float height;  // metres, from the level at rest
    float speed;   // metres a step
    float begun;   // 0 until it has its first height
    float unused;
};

int cellAt(int2 p) {
    p = clamp(p, 0, side - 1);
    return p.y * side + p.x;
}

// -1 to 1 across the pool.
float2 placeOf(int2 p) {
    return (float2(p) + 0.5) / side * 2.0 - 1.0;
}
