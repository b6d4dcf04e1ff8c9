#include "../shared/pass.hlsli"
#include "../shared/light.hlsli"

struct Input {
    float4 position : SV_POSITION;
    float3 place : PLACE;
    float3 normal : NORMAL;
    float3 own : OWN;
    float2 height : HEIGHT;
};

float4 main(Input input) : SV_TARGET {
    float3 normal = normalize(input.normal);
    float height = input.height.x;
    float3 color = lerp(float3(0.045, 0.05, 0.075), float3(0.24, 0.19, 0.17), smoothstep(0.15, 0.50, height));
    color = lerp(color, float3(0.62, 0.55, 0.47), smoothstep(0.48, 0.80, height));
    // Gold where the slopes are steep halfway up.
    float layers = sin(height * 70.0 + sin(input.own.x * 9.0) * 0.8);
    float gold = smoothstep(0.55, 0.95, layers) * smoothstep(0.30, 0.42, height) * smoothstep(0.72, 0.58, height);
    color = lerp(color, float3(0.95, 0.58, 0.16), gold);
    float hollow = 0.45 + 0.55 * smoothstep(0.10, 0.55, height);
    float3 result = lit(color, lerp(0.22, 0.62, gold), input.place, normal, cameraPosition.xyz, hollow,
                        hollow * (0.75 + 0.25 * normal.y));
    // Light that the water throws up from below.
    result += color * float3(0.05, 0.20, 0.22) * saturate(-normal.y) * 1.1;
    return shown(hazed(result, input.place, cameraPosition.xyz));
}
