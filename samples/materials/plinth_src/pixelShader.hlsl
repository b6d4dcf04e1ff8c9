#include "../shared/pass.hlsli"
#include "../shared/light.hlsli"

struct Input {
    float4 position : SV_POSITION;
    float3 place : PLACE;
    float3 normal : NORMAL;
};

float4 main(Input input) : SV_TARGET {
    float3 normal = normalize(input.normal);
    float vein = sin(input.place.x * 3.1 + input.place.y * 7.0 + sin(input.place.z * 4.0) * 1.5);
    float3 color = lerp(float3(0.47, 0.42, 0.38), float3(0.34, 0.29, 0.27), smoothstep(0.85, 1.0, vein));
    // Near the ground less of the sky is left.
    float open = openness(input.place, normal) * (0.55 + 0.45 * saturate(input.place.y * 1.6 + normal.y));
    float3 result = lit(color, 0.45, input.place, normal, cameraPosition.xyz, sunlight(input.place), open);
    return shown(hazed(result, input.place, cameraPosition.xyz));
}
