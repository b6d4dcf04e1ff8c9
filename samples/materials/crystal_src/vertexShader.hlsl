struct Input {
    float3 position : POSITION;
    float4x4 worldMat : WORLD_MATRIX;
};

struct Corner {
    float3 place : PLACE;
    float3 centre : CENTRE;  // of the whole crystal
};

Corner main(Input input) {
    Corner corner;
    corner.place = mul(input.worldMat, float4(input.position, 1.0)).xyz;
    corner.centre = mul(input.worldMat, float4(0.0, 0.0, 0.0, 1.0)).xyz;
    return corner;
}
