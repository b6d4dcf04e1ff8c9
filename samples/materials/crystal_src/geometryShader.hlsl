// Each facet breaks off as a splinter: three corners outside and a point towards the middle. The
// crystal breathes: its splinters leave their places and come back.
#include "../shared/pass.hlsli"
#include "../shared/light.hlsli"

struct Corner {
    float3 place : PLACE;
    float3 centre : CENTRE;
};

struct Output {
    float4 position : SV_POSITION;
    float3 place : PLACE;
    float3 normal : NORMAL;
    float4 glow : GLOW;  // direction outwards, and how deep inside
};

void face(inout TriangleStream<Output> stream, float3 a, float3 b, float3 c, float3 depths, float3 out_) {
    float3 corners[3] = {a, b, c};
    float deep[3] = {depths.x, depths.y, depths.z};
    Output o;
    o.normal = normalize(cross(b - a, c - a));
    for (int i = 0; i < 3; ++i) {
        o.place = corners[i];
        o.position = mul(projMat, mul(viewMat, float4(corners[i], 1.0)));
        o.glow = float4(out_, deep[i]);
        stream.Append(o);
    }
    stream.RestartStrip();
}

[maxvertexcount(12)]
void main(triangle Corner p[3], inout TriangleStream<Output> stream) {
    float3 middle = (p[0].place + p[1].place + p[2].place) / 3.0;
    float3 out_ = normalize(middle - p[0].centre);
    float own = hash(floor(out_.xy * 37.0) + floor(out_.z * 53.0));
    float breath = 0.5 + 0.5 * sin(time.x * 0.9 + own * 2.4 + out_.y * 1.6);
    float3 away = out_ * (0.05 + 0.24 * breath * (0.35 + own));
    // A turn round the way out, and a little less than its place's size.
    float angle = (own - 0.5) * 1.1 * breath;
    float3 corners[3];
    for (int i = 0; i < 3; ++i) {
        float3 from = (p[i].place - middle) * 0.93;
        from = from * cos(angle) + cross(out_, from) * sin(angle) + out_ * dot(out_, from) * (1.0 - cos(angle));
        corners[i] = middle + from + away;
    }
    float3 tip = p[0].centre + out_ * (0.16 + 0.12 * own) + away;
    face(stream, corners[0], corners[1], corners[2], float3(0, 0, 0), out_);
    face(stream, corners[1], corners[0], tip, float3(0, 0, 1), out_);
    face(stream, corners[2], corners[1], tip, float3(0, 0, 1), out_);
    face(stream, corners[0], corners[2], tip, float3(0, 0, 1), out_);
}
