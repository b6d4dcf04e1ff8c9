// Light of an evening, and how the exhibits stand in it. Shared by everything in the scene.
static const float3 sunDirection = float3(-0.6222, 0.4617, -0.6323);
static const float3 sunColor = float3(4.6, 3.1, 1.9);

// Centre and radius of what throws shadows: the stone, the fur, the crystal.
static const float4 exhibits[3] = {float4(0.0, 2.15, 0.0, 1.22), float4(-4.1, 1.66, -0.6, 0.98),
                                   float4(4.1, 1.72, -0.6, 0.95)};
static const float3 exhibitColors[3] = {float3(0.50, 0.42, 0.34), float3(0.34, 0.15, 0.08),
                                        float3(0.20, 0.42, 0.55)};

float hash(float2 p) {
    return frac(sin(dot(p, float2(127.1, 311.7))) * 43758.5453);
}

// The sky in a direction (unit).
float3 skyColor(float3 direction) {
    float up = saturate(direction.y);
    float toSun = saturate(dot(direction, sunDirection));
    float aside = saturate(dot(normalize(direction.xz + 1e-5), normalize(sunDirection.xz)) * 0.5 + 0.5);
    float3 horizon = lerp(float3(0.30, 0.20, 0.34), float3(1.15, 0.50, 0.20), aside * aside * aside);
    float3 color = lerp(horizon, float3(0.030, 0.075, 0.24), 1.0 - exp(-up * 7.5));
    color = lerp(color, horizon * 0.45, saturate(-direction.y * 6.0));
    return color + float3(1.0, 0.62, 0.30) * (pow(toSun, 10.0) * 0.35 + pow(toSun, 220.0) * 2.5);
}

// 1 in the sun, 0 behind an exhibit.
float sunlight(float3 place) {
    float light = 1.0;
    for (int i = 0; i < 3; ++i) {
        float3 from = place - exhibits[i].xyz;
        float along = dot(from, sunDirection);
        float across = along * along - dot(from, from) + exhibits[i].w * exhibits[i].w;
        float off = sqrt(max(0.0, exhibits[i].w * exhibits[i].w - across)) - exhibits[i].w;
        float way = -along - sqrt(max(across, 0.0));
        if (way > 0.0) light *= smoothstep(0.0, 1.0, 7.0 * off / way);
    }
    return light;
}

// Of the sky's light, what the exhibits leave for a place that faces the normal.
float openness(float3 place, float3 normal) {
    float open = 1.0;
    for (int i = 0; i < 3; ++i) {
        float3 towards = exhibits[i].xyz - place;
        float square = dot(towards, towards);
        float facing = saturate(dot(normal, towards) * rsqrt(square));
        open *= 1.0 - facing * min(exhibits[i].w * exhibits[i].w / square, 1.0);
    }
    return open;
}

// What the whole sky, and the ground below it, send to a surface.
float3 skylight(float3 normal) {
    float3 round_ = lerp(float3(0.20, 0.13, 0.13), float3(0.17, 0.16, 0.34), normal.y * 0.5 + 0.5);
    return round_ + float3(0.28, 0.13, 0.05) * saturate(dot(normal, sunDirection) * 0.6 + 0.4);
}

// A rough surface in the evening's light.
float3 lit(float3 color, float gloss, float3 place, float3 normal, float3 eye, float shadow, float open) {
    float3 view = normalize(eye - place);
    float3 halfway = normalize(view + sunDirection);
    float sun = saturate(dot(normal, sunDirection)) * shadow;
    float3 sky = skylight(normal);
    float power = exp2(gloss * 9.0 + 1.0);
    float shine = pow(saturate(dot(normal, halfway)), power) * (power + 8.0) / 60.0 * gloss * sun;
    float edge = pow(1.0 - saturate(dot(normal, view)), 5.0);
    float3 mirrored = skyColor(reflect(-view, normal)) * (0.04 + 0.5 * edge) * gloss * open;
    return color * (sunColor * sun * 0.32 + sky * open * 0.75) + sunColor * shine + mirrored;
}

float3 hazed(float3 color, float3 place, float3 eye) {
    float3 way = place - eye;
    float far = 1.0 - exp(-max(length(way) - 16.0, 0.0) * 0.018);
    return lerp(color, skyColor(normalize(float3(way.x, abs(way.y) * 0.1, way.z))), far);
}

// Narkowicz' fit of the ACES curve.
float4 shown(float3 color) {
    return float4(saturate((color * (2.51 * color + 0.03)) / (color * (2.43 * color + 0.59) + 0.14)), 1.0);
}
