// Tiles of two stones, with brass between them, that run in rings round the pool.
#include "../shared/pass.hlsli"
#include "../shared/light.hlsli"

struct Input {
    float4 position : SV_POSITION;
    float3 place : PLACE;
    float3 normal : NORMAL;
};

float4 main(Input input) : SV_TARGET {
    float distance_ = length(input.place.xz);
    float ring = distance_ / 0.9;
    float count = floor(6.2831853 * (floor(ring) + 0.5));
    float turn = (atan2(input.place.z, input.place.x) / 6.2831853 + 0.5) * count + frac(floor(ring) * 0.5);
    float2 within = frac(float2(turn, ring));
    float2 cell = floor(float2(turn, ring));
    // A pixel's size in tiles: far away the joints melt into their mean.
    float pixel = max(length(ddx(input.place.xz)), length(ddy(input.place.xz))) / 0.9;
    float fine = saturate(1.2 - pixel * 2.5);
    float2 edge = min(within, 1.0 - within);
    float joint = 1.0 - smoothstep(0.012, 0.012 + 0.012 + pixel, min(edge.x, edge.y));
    float shade = hash(cell);
    float3 color = lerp(float3(0.125, 0.12, 0.13), float3(0.30, 0.265, 0.235), step(0.62, shade));
    color *= 0.82 + 0.36 * frac(shade * 17.3);
    float grain = hash(floor(input.place.xz * 60.0)) - 0.5;
    color *= 1.0 + grain * 0.10 * fine;
    color = lerp(float3(0.19, 0.175, 0.165), color, fine);
    color = lerp(color, float3(0.42, 0.27, 0.10), joint * fine * 0.85);
    float gloss = lerp(0.30, 0.55, frac(shade * 5.7)) * (0.4 + 0.6 * fine) + joint * fine * 0.25;

    float3 normal = normalize(float3(grain * 0.03 * fine, 1.0, (frac(shade * 31.0) - 0.5) * 0.02 * fine));
    // The exhibits' shadows do not reach far.
    float shadow = 1.0;
    float open = 1.0;
    if (distance_ < 14.0) {
        shadow = sunlight(input.place);
        open = openness(input.place, normal);
    }
    float3 result = lit(color, gloss, input.place, normal, cameraPosition.xyz, shadow, open);
    return shown(hazed(result, input.place, cameraPosition.xyz));
}
