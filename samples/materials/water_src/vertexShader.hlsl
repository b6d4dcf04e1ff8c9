// The pool's surface takes its heights from the cells that the compute passes move.
#include "../shared/pass.hlsli"
#include "../shared/water.hlsli"

StructuredBuffer<Cell> water : register(t0);

struct Input {
    float3 position : POSITION;  // -1 to 1 across the pool
    float4x4 worldMat : WORLD_MATRIX;
};

struct Output {
    float4 position : SV_POSITION;
    float3 place : PLACE;
    float2 slope : SLOPE;  // rise for each metre along x and z
};

Output main(Input input) {
    int2 p = int2((input.position.xz * 0.5 + 0.5) * side);
    float4 world = mul(input.worldMat, float4(input.position, 1.0));
    world.y += water[cellAt(p)].height;
    float metres = input.worldMat[0][0] * 2.0 / side;
    Output output;
    output.slope = float2(water[cellAt(p + int2(1, 0))].height - water[cellAt(p - int2(1, 0))].height,
                          water[cellAt(p + int2(0, 1))].height - water[cellAt(p - int2(0, 1))].height) /
                   (2.0 * metres);
    output.place = world.xyz;
    output.position = mul(projMat, mul(viewMat, world));
    return output;
}
