// Lit surface, pixel stage: one sun, a soft fill light and a sky, on a GGX surface. Colours are linear.
//
//   USE_DIFFUSE_MAP   texture t0 multiplies the diffuse colour
//   USE_NORMAL_MAP    texture t1 bends the normal; green points up in the picture
//   USE_ALPHA_TEST    where the diffuse map's alpha is below one half there is no surface

cbuffer PassBuffer : register(b0) {
    float4x4 viewMat;
    float4x4 projMat;
    float4 cameraPosition;
    float4 materialDiffuse;  // rgb, opacity
    float4 materialSpecular; // reflectance at a right angle, roughness
    float4 materialEmission; // rgb
};

#ifdef USE_DIFFUSE_MAP
Texture2D diffuseMap : register(t0);
#endif
#ifdef USE_NORMAL_MAP
Texture2D normalMap : register(t1);
#endif
#if defined(USE_DIFFUSE_MAP) || defined(USE_NORMAL_MAP)
SamplerState surfaceSampler : register(s0);
#endif

struct PixelInput {
    float4 clipPosition : SV_POSITION;
    float3 position : POSITION;
    float3 normal : NORMAL;
#if defined(USE_DIFFUSE_MAP) || defined(USE_NORMAL_MAP)
    float2 texcoord : TEXCOORD;
#endif
#ifdef USE_NORMAL_MAP
    float4 tangent : TANGENT;
#endif
};

static const float3 sunDirection = float3(0.4043, 0.7412, -0.5361);
static const float3 sunColor = float3(0.92, 0.88, 0.80);
static const float3 fillDirection = float3(-0.8018, 0.2673, -0.5345);
static const float3 fillColor = float3(0.14, 0.16, 0.20);
static const float3 skyColor = float3(0.28, 0.32, 0.38);
static const float3 groundColor = float3(0.13, 0.12, 0.11);

float3 skyAt(float3 direction) {
    return lerp(groundColor, skyColor, direction.y * 0.5 + 0.5);
}

// Light of one direction, diffuse and reflected.
float3 lightFrom(float3 direction, float3 color, float3 normal, float3 view, float3 diffuse,
                 float3 reflectance, float roughness) {
    float cosine = dot(normal, direction);
    if (cosine <= 0.0) {
        return float3(0.0, 0.0, 0.0);
    }
    float3 middle = normalize(direction + view);
    float alpha = roughness * roughness;
    float alpha2 = alpha * alpha;
    float toMiddle = saturate(dot(normal, middle));
    float toView = max(dot(normal, view), 1e-3);
    float spread = toMiddle * toMiddle * (alpha2 - 1.0) + 1.0;
    float k = alpha * 0.5;
    float visibility = 0.25 / ((cosine * (1.0 - k) + k) * (toView * (1.0 - k) + k));
    float3 fresnel = reflectance + (1.0 - reflectance) * pow(1.0 - saturate(dot(view, middle)), 5.0);
    float3 reflected = fresnel * (alpha2 / (spread * spread) * visibility);
    return (diffuse * (1.0 - fresnel) + reflected) * color * cosine;
}

// What a sky of one colour gives a surface seen at this angle.
float3 reflectedSky(float3 reflectance, float roughness, float toView) {
    float4 r = roughness * float4(-1.0, -0.0275, -0.572, 0.022) + float4(1.0, 0.0425, 1.04, -0.04);
    float a = min(r.x * r.x, exp2(-9.28 * toView)) * r.x + r.y;
    float2 scale = float2(-1.04, 1.04) * a + r.zw;
    return reflectance * scale.x + scale.y;
}

float3 surfaceNormal(PixelInput input) {
    float3 normal = normalize(input.normal);
#ifdef USE_NORMAL_MAP
    float3 bend = normalMap.Sample(surfaceSampler, input.texcoord).xyz * 2.0 - 1.0;
    float3 along = input.tangent.xyz - normal * dot(normal, input.tangent.xyz);
    along *= rsqrt(max(dot(along, along), 1e-12));
    // V grows downwards in the picture, green upwards.
    float3 down = cross(normal, along) * input.tangent.w;
    normal = normalize(along * bend.x - down * bend.y + normal * max(bend.z, 1e-3));
#endif
    return normal;
}

float4 main(PixelInput input, bool front : SV_IsFrontFace) : SV_TARGET {
    float4 surface = materialDiffuse;
#ifdef USE_DIFFUSE_MAP
    float4 texel = diffuseMap.Sample(surfaceSampler, input.texcoord);
    surface.rgb *= texel.rgb;
#ifdef USE_ALPHA_TEST
    if (texel.a < 0.5) {
        discard;
    }
#else
    surface.a *= texel.a;
#endif
#endif
    // Models are seen from both sides: many have faces that turn the wrong way.
    float3 normal = surfaceNormal(input) * (front ? 1.0 : -1.0);
    float3 view = normalize(cameraPosition.xyz - input.position);
    float3 reflectance = materialSpecular.rgb;
    float roughness = clamp(materialSpecular.a, 0.05, 1.0);
    float toView = saturate(dot(normal, view));

    float3 color = materialEmission.rgb;
    color += lightFrom(sunDirection, sunColor, normal, view, surface.rgb, reflectance, roughness);
    color += lightFrom(fillDirection, fillColor, normal, view, surface.rgb, reflectance, roughness);
    color += surface.rgb * skyAt(normal);
    color += skyAt(reflect(-view, normal)) * reflectedSky(reflectance, roughness, toView);
    return float4(color, surface.a);
}
