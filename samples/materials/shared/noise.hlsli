// Smooth noise of three dimensions, -1 to 1.
float lattice(float3 cell) {
    return frac(sin(dot(cell, float3(127.1, 311.7, 74.7))) * 43758.5453) * 2.0 - 1.0;
}

float noise(float3 p) {
    float3 cell = floor(p);
    float3 t = frac(p);
    t = t * t * (3.0 - 2.0 * t);
    float4 low = float4(lattice(cell), lattice(cell + float3(1, 0, 0)), lattice(cell + float3(0, 1, 0)),
                        lattice(cell + float3(1, 1, 0)));
    float4 high = float4(lattice(cell + float3(0, 0, 1)), lattice(cell + float3(1, 0, 1)),
                         lattice(cell + float3(0, 1, 1)), lattice(cell + float3(1, 1, 1)));
    float4 between = lerp(low, high, t.z);
    return lerp(lerp(between.x, between.y, t.x), lerp(between.z, between.w, t.x), t.y);
}
