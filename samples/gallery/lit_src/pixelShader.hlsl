// One sun, a sky and a bounce from the ground, on a rough or polished surface with a normal picture.
// Specular: GGX distribution with Schlick's Fresnel term and Karis' visibility approximation.
cbuffer PassBuffer : register(b0) {
    float4x4 viewMat;
    float4x4 projMat;
    float4 cameraPosition;
};

cbuffer MaterialBuffer : register(b1) {
    float4 tint;      // rgb: factor of the albedo, a: metalness
    float4 surface;   // x: texture repeats, y: factor of the roughness, z: strength of the normals, w: glow
    float4 lightmap;  // xy: factor, zw: offset from world x and z to the shadow picture
};

Texture2D albedoTex : register(t0);
Texture2D normalTex : register(t1);
Texture2D shadowTex : register(t2);
SamplerState repeatSampler : register(s0);
SamplerState clampSampler : register(s1);

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
    float2 at = input.texcoord.xy * surface.x;
#ifdef GROUND
    at = input.world.xz * surface.x;
#endif
    float4 bump = normalTex.Sample(repeatSampler, at);
    float3 albedo = albedoTex.Sample(repeatSampler, at).rgb * tint.rgb;

    float3 normal = normalize(input.normal);
    float3 tangent = normalize(input.tangent.xyz - normal * dot(normal, input.tangent.xyz));
    float3 bitangent = cross(normal, tangent) * input.tangent.w;
    float2 lean = (bump.xy * 2.0 - 1.0) * surface.z;
    normal = normalize(normal + tangent * lean.x - bitangent * lean.y);

    float3 view = normalize(cameraPosition.xyz - input.world);
    float roughness = clamp(bump.a * surface.y, 0.04, 1.0);
    float ambient = input.texcoord.z;
    float sunlight = saturate(ambient * 1.6 - 0.2);

#ifdef GROUND
    float2 shade = shadowTex.Sample(clampSampler, input.world.xz * lightmap.xy + lightmap.zw).rg;
    sunlight *= shade.x;
    ambient *= shade.y;
#endif

    float nv = saturate(dot(normal, view)) + 1e-4;
    float nl = saturate(dot(normal, sunDirection));
    float3 halfway = normalize(view + sunDirection);
    float nh = saturate(dot(normal, halfway));
    float3 base = lerp(float3(0.04, 0.04, 0.04), albedo, tint.a);
    float3 fresnel = base + (1.0 - base) * pow(1.0 - saturate(dot(view, halfway)), 5.0);
    float a2 = roughness * roughness * roughness * roughness;
    float d = nh * nh * (a2 - 1.0) + 1.0;
    float k = (roughness + 1.0) * (roughness + 1.0) / 8.0;
    float specular = a2 / (4.0 * d * d * (nv * (1.0 - k) + k) * (nl * (1.0 - k) + k) + 1e-5);
    float3 diffuse = albedo * (1.0 - tint.a);
    float3 color = (diffuse / 3.14159265 * (1.0 - fresnel) + fresnel * min(specular / 3.14159265, 24.0)) *
                   sunColor * nl * sunlight;

    float up = normal.y * 0.5 + 0.5;
    float3 around = lerp(float3(0.30, 0.26, 0.21), float3(0.50, 0.62, 0.82), up) * 0.62;
    color += diffuse * around * ambient;

    float3 mirrored = reflect(-view, normal);
    float3 edge = base + (max(float3(1, 1, 1) * (1.0 - roughness), base) - base) * pow(saturate(1.0 - nv), 5.0);
    float3 sky = lerp(skyColor(mirrored, roughness), around * 1.2, roughness * roughness);
    float hidden = saturate(mirrored.y * 2.0 + 1.1);
    color += edge * sky * ambient * ambient * lerp(0.35, 1.0, hidden);
    color += tint.rgb * surface.w;

    return float4(tonemapped(hazed(color, input.world, cameraPosition.xyz)), 1.0);
}
