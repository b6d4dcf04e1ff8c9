// Each edge is divided as its distance asks for: both patches at an edge come to the same number.
#include "../shared/pass.hlsli"

struct Corner {
    float3 direction : DIRECTION;
    float3 centre : CENTRE;
};

struct Factors {
    float edges[3] : SV_TessFactor;
    float inside : SV_InsideTessFactor;
};

float factorAt(Corner a, Corner b) {
    float3 middle = (a.direction + b.direction) * 0.5 + a.centre;
    return clamp(60.0 / max(distance(middle, cameraPosition.xyz), 0.1), 2.0, 32.0);
}

Factors factorsOf(InputPatch<Corner, 3> patch) {
    Factors factors;
    factors.edges[0] = factorAt(patch[1], patch[2]);
    factors.edges[1] = factorAt(patch[2], patch[0]);
    factors.edges[2] = factorAt(patch[0], patch[1]);
    factors.inside = (factors.edges[0] + factors.edges[1] + factors.edges[2]) / 3.0;
    return factors;
}

[domain("tri")]
[partitioning("fractional_odd")]
[outputtopology("triangle_cw")]
[outputcontrolpoints(3)]
[patchconstantfunc("factorsOf")]
Corner main(InputPatch<Corner, 3> patch, uint corner : SV_OutputControlPointID) {
    Corner output;
    output.direction = patch[corner].direction;
    output.centre = patch[corner].centre;
    return output;
}
