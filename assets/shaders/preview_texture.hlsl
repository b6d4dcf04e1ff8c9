// The texture, made smaller: each pixel is the mean of the texels that it covers, of at most eight
// by eight of them.
Texture2D colors : register(t0);
cbuffer Picture : register(b0) {
    float4 size; // of the picture, pixels
};

float4 main(float4 at : SV_Position) : SV_Target {
    uint width, height;
    colors.GetDimensions(width, height);
    float2 texels = float2(width, height);
    float2 covered = texels / size.xy;
    float2 begin = min(floor(at.xy), size.xy - 1) * covered;
    int2 count = int2(clamp(ceil(covered), 1, 8));
    float4 sum = 0;
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x) {
            float2 within = (float2(x, y) + 0.5) / float2(count);
            int2 texel = int2(min(begin + within * covered, texels - 1));
            if (x < count.x && y < count.y)
                sum += colors.Load(int3(texel, 0));
        }
    return sum / float(count.x * count.y);
}
