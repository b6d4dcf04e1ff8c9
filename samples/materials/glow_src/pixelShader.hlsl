#include "../shared/pass.hlsli"
#include "../shared/light.hlsli"

struct Input {
    float4 position : SV_POSITION;
    float3 place : PLACE;
    float3 normal : NORMAL;
};

float4 main(Input input) : SV_TARGET {
    float facing = saturate(dot(normalize(input.normal), normalize(cameraPosition.xyz - input.place)));
    return shown(float3(0.55, 1.6, 1.9) * (0.5 + 1.3 * facing) * (1.0 + 0.15 * sin(time.x * 2.0)));
}
