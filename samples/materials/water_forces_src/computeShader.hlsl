// Neighbours pull at each cell; now and then a drop falls.
#include "../shared/water.hlsli"

cbuffer Water : register(b0) {
    float4 time;  // x: seconds
};

RWStructuredBuffer<Cell> water : register(u0);

[numthreads(8, 8, 1)]
void main(uint3 id : SV_DispatchThreadID) {
    int2 p = int2(id.xy);
    int at = cellAt(p);
    float around = water[cellAt(p + int2(1, 0))].height + water[cellAt(p - int2(1, 0))].height +
                   water[cellAt(p + int2(0, 1))].height + water[cellAt(p - int2(0, 1))].height;
    float speed = (water[at].speed + (around * 0.25 - water[at].height) * 0.55) * 0.9965;
    float drop = floor(time.x * 1.4);
    float2 target = frac(sin(drop * float2(12.9898, 78.233)) * 43758.5453) * 1.3 - 0.65;
    float2 way = placeOf(p) - target;
    if (frac(time.x * 1.4) < 0.12) speed -= exp(-dot(way, way) * 900.0) * 0.008;
    water[at].speed = speed;
}
