// Each root becomes a blade that bends under its weight and in the wind, and faces the camera.
#include "../shared/pass.hlsli"

cbuffer Fur : register(b1) {
    float4 shape;  // length and width in metres, bend, strength of the wind
};

struct Hair {
    float3 root : ROOT;
    float3 normal : NORMAL;
    float2 kind : KIND;
};

struct Output {
    float4 position : SV_POSITION;
    float3 place : PLACE;
    float3 tangent : TANGENT;
    float3 out_ : OUTWARDS;
    float2 kind : KIND;  // how far along the hair, and the hair's own number
};

[maxvertexcount(7)]
void main(point Hair hairs[1], inout TriangleStream<Output> stream) {
    const int segments = 3;
    Hair hair = hairs[0];
    float length_ = shape.x * hair.kind.x;
    float3 swirl = normalize(cross(hair.normal, float3(0.15, 1.0, 0.1)) + 1e-4);
    float gust = sin(time.x * 1.7 + hair.root.x * 2.5 + hair.root.y * 1.3) * 0.6 +
                 sin(time.x * 3.9 + hair.kind.y * 6.28) * 0.25;
    float3 bend = float3(0.0, -shape.z, 0.0) + swirl * (0.55 + 0.35 * sin(hair.kind.y * 40.0)) +
                  float3(shape.w * gust, 0.0, shape.w * gust * 0.4);
    float3 place = hair.root;
    float3 direction = hair.normal;
    Output o;
    o.out_ = hair.normal;
    for (int i = 0; i <= segments; ++i) {
        float along = float(i) / segments;
        float3 side = normalize(cross(direction, cameraPosition.xyz - place)) * shape.y * (1.0 - along);
        o.tangent = direction;
        o.kind = float2(along, hair.kind.y);
        o.place = place - side;
        o.position = mul(projMat, mul(viewMat, float4(o.place, 1.0)));
        stream.Append(o);
        if (i < segments) {
            o.place = place + side;
            o.position = mul(projMat, mul(viewMat, float4(o.place, 1.0)));
            stream.Append(o);
        }
        place += direction * (length_ / segments);
        direction = normalize(direction + bend * (0.5 / segments) * (0.6 + along));
    }
    stream.RestartStrip();
}
