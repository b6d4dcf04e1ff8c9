// Vertices of what stands still: the ground, the plinths, the rim, the sky.
#include "pass.hlsli"

struct Input {
    float3 position : POSITION;
    float3 normal : NORMAL;
    float4x4 worldMat : WORLD_MATRIX;
};

struct Output {
    float4 position : SV_POSITION;
    float3 place : PLACE;
    float3 normal : NORMAL;
};

Output main(Input input) {
    Output output;
    float4 world = mul(input.worldMat, float4(input.position, 1.0));
    output.place = world.xyz;
    output.position = mul(projMat, mul(viewMat, world));
    output.normal = mul(input.worldMat, float4(input.normal, 0.0)).xyz;
    return output;
}
