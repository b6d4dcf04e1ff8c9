// Gives each cell its first height: rings as if a few drops had fallen a while ago.
#include "../shared/water.hlsli"

RWStructuredBuffer<Cell> water : register(u0);

float ringsOf(float2 p, float2 drop, float radius) {
    float d = length(p - drop) - radius;
    return cos(d * 42.0) * exp(-d * d * 90.0) * 0.034;
}

[numthreads(8, 8, 1)]
void main(uint3 id : SV_DispatchThreadID) {
    int at = cellAt(int2(id.xy));
    if (water[at].begun > 0.0) return;
    float2 p = placeOf(int2(id.xy));
    Cell cell;
    cell.height = ringsOf(p, float2(0.35, -0.45), 0.33) + ringsOf(p, float2(-0.40, -0.30), 0.22) * 1.2 +
                  ringsOf(p, float2(0.05, 0.40), 0.45) + ringsOf(p, float2(-0.05, -0.70), 0.12);
    cell.speed = 0.0;
    cell.begun = 1.0;
    cell.unused = 0.0;
    water[at] = cell;
}
