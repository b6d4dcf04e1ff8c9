#include "../shared/water.hlsli"

RWStructuredBuffer<Cell> water : register(u0);

[numthreads(8, 8, 1)]
void main(uint3 id : SV_DispatchThreadID) {
    int at = cellAt(int2(id.xy));
    water[at].height += water[at].speed;
}
