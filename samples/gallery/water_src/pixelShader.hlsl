// The pool: the sky in a surface that two layers of ripples lean.
cbuffer PassBuffer : register(b0) {
    float4x4 viewMat;
    float4x4 projMat;
    float4 cameraPosition;
};

cbuffer MaterialBuffer : register(b1) {
    float4 tint;
    float4 surface;
    float4 clock;  // x: seconds
};

Texture2D rippleTex : register(t0);
SamplerState repeatSampler : register(s0);

// Light of a late afternoon, shared by everything in the gallery.
static const float3 sunDirection = float3(-0.5883, 0.5720, -0.5717);
static const float3 sunColor = float3(4.7, 3.9, 2.9);

float cloudNoise(float2 p) {
    float2 cell = floor(p);
    float2 t = frac(p);
    t = t * t * (3.0 - 2.0 * t);
    float4 n = frac(sin(float4(dot(cell, float2(127.1, 311.7)), dot(cell + float2(1, 0), float2(127.1, 311.7)),
                               dot(cell + float2(0, 1), float2(127.1, 311.7)),
                               dot(cell + float2(1, 1), float2(127.1, 311.7)))) * 43758.5453);
    return lerp(lerp(n.x, n.y, t.x), lerp(n.z, n.w, t.x), t.y);
}

// The sky in a direction (unit); blur 0 shows clouds and the sun's disc, 1 none of them.
float3 skyColor(float3 direction, float blur) {
    float up = saturate(direction.y);
    float3 color = lerp(float3(0.86, 0.82, 0.74), float3(0.13, 0.31, 0.66), pow(up, 0.48));
    color = lerp(color, float3(0.36, 0.32, 0.27), saturate(-direction.y * 5.0));
    float toSun = saturate(dot(direction, sunDirection));
    color += float3(1.0, 0.75, 0.45) * (pow(toSun, 6.0) * 0.22 + pow(toSun, 48.0) * 0.35 * (1.0 - blur));
    if (blur < 0.2) {
        float2 p = direction.xz / (direction.y + 0.18) * 1.7;
        float cloud = cloudNoise(p) * 0.5 + cloudNoise(p * 2.1 + 3.0) * 0.27 + cloudNoise(p * 4.3 + 7.0) * 0.15 +
                      cloudNoise(p * 8.9 + 1.0) * 0.08;
        float cover = smoothstep(0.50, 0.82, cloud) * smoothstep(0.02, 0.22, direction.y);
        color = lerp(color, float3(1.15, 1.06, 0.96), cover * 0.75);
        color += sunColor * 3.0 * smoothstep(0.9993, 0.9997, toSun);
    }
    return color;
}

float3 hazed(float3 color, float3 world, float3 eye) {
    float far = 1.0 - exp(-max(length(world - eye) - 12.0, 0.0) * 0.0062);
    return lerp(color, float3(0.72, 0.71, 0.68), far);
}

// Narkowicz' fit of the ACES curve.
float3 tonemapped(float3 color) {
    color *= 0.82;
    return saturate((color * (2.51 * color + 0.03)) / (color * (2.43 * color + 0.59) + 0.14));
}

struct Input {
    float4 position : SV_POSITION;
    float3 world : WORLD_POSITION;
    float3 normal : NORMAL;
    float4 tangent : TANGENT;
    float3 texcoord : TEXCOORD;
};

float4 main(Input input) : SV_TARGET {
    float2 drift = float2(0.02, 0.015) * clock.x;  // whole repeats in the clock's 600 s
    float2 first = rippleTex.Sample(repeatSampler, input.world.xz * 0.23 + drift).xy * 2.0 - 1.0;
    float2 second = rippleTex.Sample(repeatSampler, input.world.zx * 0.41 - drift.yx * 2.0).xy * 2.0 - 1.0;
    float2 lean = (first + second) * surface.z;
    float3 normal = normalize(float3(lean.x, 1.0, lean.y));
    float3 view = normalize(cameraPosition.xyz - input.world);
    float nv = saturate(dot(normal, view));
    float fresnel = 0.02 + 0.98 * pow(saturate(1.0 - nv), 5.0);
    float3 mirrored = reflect(-view, normal);
    mirrored.y = abs(mirrored.y);
    float shore = saturate((length(input.world.xz) - 3.2) / 1.4);
    float3 deep = lerp(tint.rgb, tint.rgb * 2.2 + float3(0.02, 0.05, 0.04), shore);
    float glint = pow(saturate(dot(mirrored, sunDirection)), 900.0);
    float3 color = deep * (1.0 - fresnel) + skyColor(mirrored, 0.05) * fresnel + sunColor * glint * 4.0;
    return float4(tonemapped(hazed(color, input.world, cameraPosition.xyz)), 1.0);
}
