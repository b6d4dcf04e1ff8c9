// On the left the pattern from -1 to 2 along both axes, larger than it is; on the right a floor of
// it that recedes, so that it gets smaller and slanted.
#ifdef COMPARED
SamplerComparisonState how : register(s0);
#else
SamplerState how : register(s0);
#endif
Texture2D colors : register(t0);
cbuffer Picture : register(b0) {
    float4 size; // of the picture, pixels: two squares side by side
};

static const float FARTHEST = 16; // times the nearest

float4 main(float4 at : SV_Position) : SV_Target {
    float side = size.y;
    float2 upright = at.xy / side * 3 - 1;
    float2 lying = float2((at.x - side) / side, min(at.y / side, 1));
    float away = 1 / lerp(1 / FARTHEST, 1, lying.y);
    // The whole pattern lies nearest, with half of one on either side.
    float2 receding = float2((lying.x - 0.5) * away * 2 + 0.5, 1 - (away - 1) * 1.5);
    float2 place = at.x < side ? upright : receding;
#ifdef COMPARED
    return float4(colors.SampleCmp(how, place, 0.5).xxx, 1);
#else
    return colors.Sample(how, place);
#endif
}
