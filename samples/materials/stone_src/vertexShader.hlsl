// Corners of the patches: the domain stage places them.
struct Input {
    float3 position : POSITION;
    float4x4 worldMat : WORLD_MATRIX;
};

struct Corner {
    float3 direction : DIRECTION;  // from the middle, unit
    float3 centre : CENTRE;
};

Corner main(Input input) {
    Corner corner;
    corner.direction = normalize(input.position);
    corner.centre = mul(input.worldMat, float4(0.0, 0.0, 0.0, 1.0)).xyz;
    return corner;
}
