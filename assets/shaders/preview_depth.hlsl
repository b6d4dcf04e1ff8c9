// Heights for comparison samplers to compare with: the pattern's brightness.
Texture2D colors : register(t0);

float main(float4 at : SV_Position) : SV_Depth {
    float3 color = colors.Load(int3(at.xy, 0)).rgb;
    return dot(color, 1.0 / 3);
}
