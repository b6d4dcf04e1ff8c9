#include "../shared/pass.hlsli"
#include "../shared/light.hlsli"

struct Input {
    float4 position : SV_POSITION;
    float3 place : PLACE;
};

float4 main(Input input) : SV_TARGET {
    float3 direction = normalize(input.place - cameraPosition.xyz);
    float3 color = skyColor(direction);
    // Thin bands of cloud, low over the horizon.
    float2 p = direction.xz / (direction.y + 0.22);
    float band = sin(p.y * 2.3 + sin(p.x * 1.1) * 1.4) + sin(p.y * 5.1 + p.x * 0.9 + sin(p.x * 2.7) * 0.8) * 0.5;
    float cover = smoothstep(0.35, 1.3, band) * smoothstep(0.015, 0.12, direction.y) * exp(-direction.y * 5.0);
    float toSun = saturate(dot(direction, sunDirection) * 0.5 + 0.5);
    color = lerp(color, lerp(float3(0.40, 0.27, 0.36), float3(1.5, 0.72, 0.36), toSun * toSun), cover * 0.55);
    return shown(color);
}
