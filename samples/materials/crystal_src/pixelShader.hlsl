#include "../shared/pass.hlsli"
#include "../shared/light.hlsli"

struct Input {
    float4 position : SV_POSITION;
    float3 place : PLACE;
    float3 normal : NORMAL;
    float4 glow : GLOW;
};

float4 main(Input input) : SV_TARGET {
    float3 normal = normalize(input.normal);
    float3 view = normalize(cameraPosition.xyz - input.place);
    float facing = saturate(dot(normal, view));
    float edge = 0.06 + 0.94 * pow(1.0 - facing, 4.0);
    // Thin-film colours wander with the angle.
    float3 film = 0.5 + 0.5 * cos(6.2831853 * (facing * 0.9 + float3(0.02, 0.35, 0.62)) + input.glow.x * 1.5);
    float3 body = lerp(float3(0.03, 0.13, 0.20), film * float3(0.30, 0.55, 0.75), 0.45);
    float3 halfway = normalize(view + sunDirection);
    float sun = saturate(dot(normal, sunDirection));
    float3 result = body * (sunColor * (sun * 0.30 + 0.04) + skylight(normal) * 0.6);
    result += skyColor(reflect(-view, normal)) * edge * 0.9;
    result += sunColor * pow(saturate(dot(normal, halfway)), 140.0) * 1.6;
    // The core shines into the splinters' points.
    result += float3(0.25, 0.95, 1.25) * pow(input.glow.w, 1.6) * 1.7;
    return shown(hazed(result, input.place, cameraPosition.xyz));
}
