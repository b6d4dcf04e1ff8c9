// A stone that floats and turns: ridges and hollows out of noise, and the normal from its slope.
#include "../shared/pass.hlsli"
#include "../shared/noise.hlsli"

struct Corner {
    float3 direction : DIRECTION;
    float3 centre : CENTRE;
};

struct Factors {
    float edges[3] : SV_TessFactor;
    float inside : SV_InsideTessFactor;
};

struct Output {
    float4 position : SV_POSITION;
    float3 place : PLACE;
    float3 normal : NORMAL;
    float3 own : OWN;      // direction on the stone itself
    float2 height : HEIGHT;  // 0 in the hollows, 1 on the ridges; and the steepness
};

float heightOf(float3 p) {
    float broad = noise(p * 1.7 + 3.0);
    float ridge = 1.0 - abs(noise(p * 2.6 + float3(broad, 0.0, 5.0) * 0.7));
    float fine = 1.0 - abs(noise(p * 6.3 + 9.0));
    return saturate(0.30 + broad * 0.28 + ridge * ridge * 0.38 + fine * fine * 0.13 - 0.06);
}

[domain("tri")]
Output main(Factors factors, float3 at : SV_DomainLocation, const OutputPatch<Corner, 3> patch) {
    float3 p = normalize(patch[0].direction * at.x + patch[1].direction * at.y + patch[2].direction * at.z);
    const float radius = 0.88;
    const float relief = 0.42;
    float height = heightOf(p);
    float3 aside = normalize(cross(p, abs(p.y) < 0.9 ? float3(0, 1, 0) : float3(1, 0, 0)));
    float3 along = cross(aside, p);
    const float step_ = 0.012;
    float2 slope = float2(heightOf(normalize(p + aside * step_)) - height,
                          heightOf(normalize(p + along * step_)) - height) / step_;
    float far = radius + relief * height;
    float3 normal = normalize(p * far - (aside * slope.x + along * slope.y) * relief);

    float angle = time.x * 0.12 + 0.7;
    float2 turn = float2(cos(angle), sin(angle));
    float3x3 spin = float3x3(turn.x, 0, turn.y, 0, 1, 0, -turn.y, 0, turn.x);
    Output output;
    output.own = p;
    output.height = float2(height, saturate(length(slope) * 0.35));
    output.normal = mul(spin, normal);
    output.place = patch[0].centre + mul(spin, p * far) + float3(0.0, sin(time.x * 0.8) * 0.05, 0.0);
    output.position = mul(projMat, mul(viewMat, float4(output.place, 1.0)));
    return output;
}
