#include "../shared/pass.hlsli"
#include "../shared/light.hlsli"

struct Input {
    float4 position : SV_POSITION;
    float3 place : PLACE;
    float2 slope : SLOPE;
};

// What the water mirrors: the sky, or an exhibit in its light.
float3 mirrored(float3 place, float3 direction) {
    float3 color = skyColor(direction);
    for (int i = 0; i < 3; ++i) {
        float3 from = place - exhibits[i].xyz;
        float along = dot(from, direction);
        float across = along * along - dot(from, from) + exhibits[i].w * exhibits[i].w * 0.92;
        if (across <= 0.0 || along >= 0.0) continue;
        float3 normal = normalize(from + direction * (-along - sqrt(across)));
        float3 seen = exhibitColors[i] * (sunColor * saturate(dot(normal, sunDirection)) * 0.4 + 0.22);
        color = lerp(color, seen, smoothstep(0.0, 0.10, across));
    }
    return color;
}

float4 main(Input input) : SV_TARGET {
    float3 normal = normalize(float3(-input.slope.x, 1.0, -input.slope.y));
    float3 view = normalize(cameraPosition.xyz - input.place);
    float facing = saturate(dot(normal, view));
    float edge = 0.03 + 0.97 * pow(1.0 - facing, 5.0);
    float3 bounce = reflect(-view, normal);
    bounce.y = abs(bounce.y);
    float shadow = sunlight(input.place);
    float3 deep = lerp(float3(0.006, 0.045, 0.060), float3(0.020, 0.16, 0.17), saturate(dot(input.slope, input.slope) * 14.0));
    float3 result = lerp(deep * (0.6 + 0.9 * shadow), mirrored(input.place, bounce), saturate(edge * 1.5));
    result += sunColor * pow(saturate(dot(bounce, sunDirection)), 260.0) * 3.0 * shadow;
    return shown(hazed(result, input.place, cameraPosition.xyz));
}
