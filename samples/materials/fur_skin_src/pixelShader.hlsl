// What shows between the hairs.
#include "../shared/pass.hlsli"
#include "../shared/light.hlsli"

struct Input {
    float4 position : SV_POSITION;
    float3 place : PLACE;
    float3 normal : NORMAL;
};

float4 main(Input input) : SV_TARGET {
    float sun = saturate(dot(normalize(input.normal), sunDirection));
    return shown(float3(0.040, 0.012, 0.007) * (0.5 + sunColor * sun));
}
