#include "../shared/pass.hlsli"
#include "../shared/light.hlsli"

struct Input {
    float4 position : SV_POSITION;
    float3 place : PLACE;
    float3 tangent : TANGENT;
    float3 out_ : OUTWARDS;
    float2 kind : KIND;
};

float4 main(Input input) : SV_TARGET {
    float3 tangent = normalize(input.tangent);
    float3 view = normalize(cameraPosition.xyz - input.place);
    float along = input.kind.x;
    float3 roots = float3(0.075, 0.022, 0.012);
    float3 tips = lerp(float3(0.85, 0.34, 0.10), float3(0.95, 0.62, 0.25), input.kind.y);
    float3 color = lerp(roots, tips, along * along * 0.8 + along * 0.2);
    // Light on a thread: what counts is the angle to it, and which side of the ball it grows on.
    float across = sqrt(saturate(1.0 - pow(dot(tangent, sunDirection), 2.0)));
    float side = smoothstep(-0.30, 0.85, dot(normalize(input.out_), sunDirection));
    float shine = pow(saturate(sqrt(saturate(1.0 - pow(dot(tangent, normalize(view + sunDirection)), 2.0)))), 48.0);
    float3 result = color * (sunColor * across * side * 0.36 + skylight(normalize(input.out_)) *
                             (0.25 + 0.6 * along));
    result += sunColor * float3(0.6, 0.45, 0.3) * shine * side * along * 0.30;
    // The sun behind it shines through the ends.
    result += tips * sunColor * pow(saturate(dot(-view, sunDirection)), 4.0) * along * 0.25;
    return shown(hazed(result, input.place, cameraPosition.xyz));
}
