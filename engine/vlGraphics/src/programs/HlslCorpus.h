#pragma once
#include <vlGraphics/Enumerations.h>
#include <vlMemory/String.h>

namespace vlGraphics {

/** A source for tests: what the language has, one or two things each. Everything that a source
 *  declares it also uses. */
struct CorpusSource {
    SHADER_TYPE stage = SHADER_TYPE::PIXEL;
    vlMemory::StringView text;
    /// Register, name, shape and what else there is to tell of each resource; nothing where the
    /// source is refused.
    vlMemory::StringView resources;
    bool isRefused = false;
};

constexpr SHADER_TYPE onPixel = SHADER_TYPE::PIXEL;
constexpr SHADER_TYPE onVertex = SHADER_TYPE::VERTEX;
constexpr SHADER_TYPE onGroup = SHADER_TYPE::COMPUTE;

inline constexpr CorpusSource corpus[] = {
        // Textures of every shape.
        {onPixel,
         R"(Texture1D a : register(t0); Texture1DArray b : register(t1); SamplerState s : register(s3);
            float4 main() : SV_TARGET { return a.Sample(s, 0.5) + b.Sample(s, float2(0.5, 1)); })",
         "t0.0 a 1D; t1.0 b 1DArray; s3.0 s Sampler; "},
        {onPixel,
         R"(Texture2D a : register(t0); Texture2DArray<float4> b : register(t1, space2);
            SamplerState s : register(s0);
            float4 main() : SV_TARGET {
                return a.SampleLevel(s, float2(0, 0), 2) + b.SampleBias(s, float3(0, 0, 1), 1); })",
         "t0.0 a 2D; s0.0 s Sampler; t1.2 b 2DArray; "},
        {onPixel,
         R"(Texture3D<float4> a : register(t4); TextureCube b : register(t5);
            TextureCubeArray c : register(t6); SamplerState s : register(s0);
            float4 main() : SV_TARGET {
                return a.Sample(s, float3(0, 0, 0)) + b.Sample(s, float3(0, 0, 1)) +
                       c.SampleGrad(s, float4(0, 0, 1, 2), float3(0, 0, 0), float3(0, 0, 0)); })",
         "t4.0 a 3D; t5.0 b Cube; t6.0 c CubeArray; s0.0 s Sampler; "},
        {onPixel,
         R"(Texture2DMS<float4> a : register(t0); Texture2DMSArray<float4> b : register(t1);
            float4 main(float4 p : SV_POSITION, uint i : SV_SampleIndex) : SV_TARGET {
                return a.Load(int2(p.xy), i) + b.Load(int3(p.xy, 1), 0); })",
         "t0.0 a 2DMS; t1.0 b 2DMSArray; "},
        {onPixel,
         R"(Texture2D<uint4> a : register(t0); Texture2D<int2> b : register(t1);
            Texture3D<float> c : register(t2);
            float4 main() : SV_TARGET {
                return float4(a.Load(int3(0, 0, 0))) + float4(b.Load(int3(1, 1, 0)), 0, 0) +
                       c.Load(int4(0, 0, 0, 0)); })",
         "t0.0 a 2D f3; t1.0 b 2D f4; t2.0 c 3D; "},
        {onPixel,
         R"(Texture2D a : register(t0); SamplerState s : register(s0);
            float4 main(float4 p : SV_POSITION) : SV_TARGET {
                uint w, h, levels; a.GetDimensions(0, w, h, levels);
                return a.Gather(s, p.xy / float2(w, h)) + a.GatherRed(s, p.xy, int2(1, 1)) +
                       a.CalculateLevelOfDetail(s, p.xy) + a[uint2(1, 1)]; })",
         "t0.0 a 2D; s0.0 s Sampler; "},
        {onPixel,
         R"(Texture2D a : register(t0); SamplerComparisonState s : register(s1);
            float4 main(float4 p : SV_POSITION) : SV_TARGET {
                return a.SampleCmp(s, p.xy, p.z) + a.SampleCmpLevelZero(s, p.yx, 0.5); })",
         "t0.0 a 2D depth; s1.0 s Sampler compares; "},
        {onPixel,
         R"(Texture2D a : register(t0); SamplerComparisonState s : register(s1);
            SamplerState plain : register(s0);
            float4 main(float4 p : SV_POSITION) : SV_TARGET {
                return a.SampleCmp(s, p.xy, p.z) + a.Sample(plain, p.xy); })",
         "t0.0 a 2D depth; s0.0 plain Sampler; s1.0 s Sampler compares; "},
        {onPixel,
         R"(Texture2D a : register(t1); SamplerComparisonState s : register(s1);
            float lit(Texture2D map, SamplerComparisonState how, float3 at) {
                return map.SampleCmp(how, at.xy, at.z); }
            float4 main(float4 p : SV_POSITION) : SV_TARGET { return lit(a, s, p.xyz); })",
         "t1.0 a 2D depth; s1.0 s Sampler compares; "},
        {onPixel,
         R"(Texture2D a[3] : register(t2); SamplerState s[2] : register(s0); Texture2D b : register(t5);
            float4 main() : SV_TARGET {
                return a[2].Sample(s[1], float2(0, 0)) + a[0].Sample(s[0], float2(0, 0)) +
                       b.Sample(s[0], float2(1, 1)); })",
         "t2.0 a[3] 2D; t5.0 b 2D; s0.0 s[2] Sampler; "},
        {onPixel,
         R"(cbuffer C : register(b0) { uint which; }; Texture2D a[2][2] : register(t0);
            float4 main() : SV_TARGET { return a[which][1].Load(int3(0, 0, 0)); })",
         "b0.0 C Constant 16 which uint 0 4,; t0.0 a[4] Other; "
         "'a': an array of arrays cannot be bound"},
        {onPixel,
         R"(Texture2D many[] : register(t0); SamplerState s : register(s0);
            float4 main(uint i : INDEX) : SV_TARGET { return many[i].Sample(s, float2(0, 0)); })",
         "t0.0 many[0] Other; s0.0 s Sampler; 'many': an array without a count cannot be bound"},
        {onPixel,
         R"([[vk::input_attachment_index(0)]] SubpassInput a : register(t0);
            float4 main() : SV_TARGET { return a.SubpassLoad(); })",
         "t0.0 a Other; 'a': a subpass input cannot be bound"},
        {onPixel,
         R"([[vk::input_attachment_index(0)]] SubpassInput a : register(t0);
            float4 main() : SV_TARGET { return 1; })",
         "a subpass input cannot be bound"},
        {onPixel,
         R"(Texture2D a : register(t0); Texture2D b : register(t0); SamplerState s : register(s0);
            float4 main() : SV_TARGET {
                return a.Sample(s, float2(0, 0)) + b.Sample(s, float2(1, 1)); })",
         "t0.0 a 2D; s0.0 s Sampler; "},

        // Buffers.
        {onPixel,
         R"(Buffer<float4> a : register(t0); Buffer<uint> b : register(t1); Buffer<int2> c : register(t2);
            float4 main() : SV_TARGET {
                return a[1] + a.Load(2) + float4(b[0].xxxx) + float4(c[3], 0, 0); })",
         "t0.0 a Texel; t1.0 b Texel f3; t2.0 c Texel f4; "},
        {onGroup,
         R"(RWBuffer<float> a : register(u0); RWBuffer<uint2> b : register(u1, space1);
            [numthreads(4, 1, 1)] void main(uint i : SV_DispatchThreadID) {
                a[i] += 1; b[i] = uint2(i, i); })",
         "u0.0 a Texel f41!; u1.1 b Texel f17!; "},
        {onGroup,
         R"(struct Item { float3 at; uint id; float4x4 m; float w[2]; };
            StructuredBuffer<Item> a : register(t0); RWStructuredBuffer<Item> b : register(u0);
            [numthreads(1, 1, 1)] void main(uint3 i : SV_GroupID) {
                Item one = a[i.x]; one.id += 1; b[i.x] = one; })",
         "t0.0 a Structured /96 at float3 0 12,id uint 12 4,m float4x4 16 64,w float[2] 80 8,; "
         "u0.0 b Structured /96 at float3 0 12,id uint 12 4,m float4x4 16 64,w float[2] 80 8,; "},
        {onGroup,
         R"(StructuredBuffer<float3> a : register(t0); RWStructuredBuffer<uint> b : register(u0);
            [numthreads(1, 1, 1)] void main() {
                uint count, stride; a.GetDimensions(count, stride);
                InterlockedAdd(b[0], count + stride + uint(a[1].y)); })",
         "t0.0 a Structured /16; u0.0 b Structured /4; "},
        {onGroup,
         R"(ByteAddressBuffer a : register(t0); RWByteAddressBuffer b : register(u0);
            [numthreads(1, 1, 1)] void main() {
                b.Store4(16, a.Load4(0)); uint old; b.InterlockedMax(0, a.Load(4), old);
                b.Store(4, old); })",
         "t0.0 a Bytes /4; u0.0 b Bytes /4; "},
        {onGroup,
         R"(AppendStructuredBuffer<float4> a : register(u2); ConsumeStructuredBuffer<float4> b : register(u0);
            [numthreads(1, 1, 1)] void main() { a.Append(b.Consume() * 2); })",
         "u0.0 b Structured /16; u1.0 a@count Structured counter 16 @count uint 0 4,; "
         "u2.0 a Structured /16; u3.0 b@count Structured counter 16 @count uint 0 4,; "},
        {onGroup,
         R"(RWStructuredBuffer<uint> a : register(u0);
            [numthreads(1, 1, 1)] void main() { a[a.IncrementCounter()] = 1; a.DecrementCounter(); })",
         "u0.0 a Structured /4; u1.0 a@count Structured counter 16 @count uint 0 4,; "},
        {onGroup,
         R"(RWTexture1D<float4> a : register(u0); RWTexture2D<float> b : register(u1);
            RWTexture3D<uint> c : register(u2); RWTexture2DArray<int4> d : register(u3);
            [numthreads(1, 1, 1)] void main(uint3 i : SV_DispatchThreadID) {
                a[i.x] = 1; b[i.xy] *= 2; c[i] = i.x; d[i] = int4(1, 2, 3, 4); })",
         "u0.0 a 1D f2!; u1.0 b 2D f41!; u2.0 c 3D f42!; u3.0 d 2DArray f4!; "},
        {onGroup,
         R"([[spv::format_rgba8]] RWTexture2D<float4> a : register(u0);
            [numthreads(1, 1, 1)] void main(uint3 i : SV_DispatchThreadID) { a[i.xy] = 1; })",
         "u0.0 a 2D f28!; "},

        // Constants.
        {onPixel,
         R"(cbuffer A : register(b0) { float4x4 m; row_major float3x4 n; column_major float2x2 o;
                                       float2 p : packoffset(c12); float q[3]; bool r; int3 s; };
            float4 main() : SV_TARGET {
                return mul(m, float4(p, q[2], r)) + mul(n, s.xyzz).xyzz + mul(o, p).xyxy; })",
         "b0.0 A Constant 272 m float4x4 0 64,n float3x4 64 48,o float2x2 112 32,p float2 192 8,"
         "q float[3] 208 48,r uint 256 4,s int3 260 12,; "},
        {onPixel,
         R"(struct Light { float3 at; float power; }; cbuffer A : register(b1) { Light lights[4]; uint n; };
            float4 main() : SV_TARGET {
                float4 sum = 0;
                for (uint i = 0; i < n; ++i) sum += lights[i].power * lights[i].at.xyzz;
                return sum; })",
         "b1.0 A Constant 80 lights Light[4] 0 64,n uint 64 4,; "},
        {onPixel,
         R"(float4 tint; float scale = 2; float4 main() : SV_TARGET { return tint * scale; })",
         "b0.0 $Global Constant 32 tint float4 0 16,scale float 16 4,; "},
        {onPixel,
         R"(struct P { float4 a; float b; }; ConstantBuffer<P> one : register(b2, space1);
            float4 main() : SV_TARGET { return one.a * one.b; })",
         "b2.1 one Constant 32 a float4 0 16,b float 16 4,; "},
        {onPixel,
         R"(tbuffer A : register(t3) { float4 a; float b; };
            float4 main() : SV_TARGET { return a * b; })",
         "t3.0 A Structured 32 a float4 0 16,b float 16 4,; "},
        {onPixel,
         R"(cbuffer Empty : register(b3) {}; static const float4 table[2] = {{1, 2, 3, 4}, {5, 6, 7, 8}};
            static float run = 1; float4 main(uint i : INDEX) : SV_TARGET { run += 1; return table[i] * run; })",
         ""},
        {onPixel,
         R"([[vk::push_constant]] cbuffer Pushed { float4 a; };
            [[vk::constant_id(3)]] const int wanted = 2;
            float4 main() : SV_TARGET { return a * wanted; })",
         "'Pushed': push constants cannot be set"},

        // Functions, types and control.
        {onPixel,
         R"(struct S { float a; float twice() { return a * 2; } };
            namespace N { float half_(float a) { return a / 2; } }
            float4 other() : SV_TARGET { return 1; }
            float4 main() : SV_TARGET { S s; s.a = 2; return s.twice() + N::half_(2) + other(); })",
         ""},
        {onPixel,
         R"(void f(in float a, out float b, inout float c) { b = a; c += a; }
            float f(float2 a) { return a.x; } float f(float3 a) { return a.z; }
            float4 main(float4 p : SV_POSITION) : SV_TARGET {
                float b, c = 1; f(p.x, b, c); return float4(b, c, f(p.xy), f(p.xyz)); })",
         ""},
        {onPixel,
         R"(float4 main(float4 p : SV_POSITION, bool front : SV_IsFrontFace, uint id : SV_PrimitiveID,
                        out float depth : SV_Depth, out float4 second : SV_TARGET1) : SV_TARGET0 {
                if (!front) discard; clip(p.x - 1); depth = p.z * 0.5; second = id;
                return ddx(p) + ddy_fine(p) + fwidth(p); })",
         ""},
        {onPixel,
         R"(typedef float4 Color; #define TWICE(x) ((x) * 2)
            Color main(float4 p : SV_POSITION) : SV_TARGET { return TWICE(p); })",
         {},
         true},
        {onPixel,
         R"(#define TWICE(x) ((x) * 2)
            #if defined(TWICE) && !defined(OTHER)
            typedef vector<float, 4> Color;
            #else
            #error never
            #endif
            Color main(float4 p : SV_POSITION) : SV_TARGET {
                matrix<float, 2, 2> m = {1, 2, 3, 4}; return TWICE(p) * m._11 + m[1].xyxy; })",
         ""},
        {onPixel,
         R"(float4 main(float4 p : SV_POSITION) : SV_TARGET {
                float sum = 0; int i = 0;
                [unroll] for (int k = 0; k < 4; ++k) sum += p[k];
                [loop] while (i < 10) { if (i == 5) break; ++i; if (i == 2) continue; sum += i; }
                do { sum -= 1; } while (sum > 100);
                [branch] switch (i) { case 0: case 1: sum = 1; break; default: sum = 2; }
                return [flatten] sum > 1 ? 1 : 0; })",
         {},
         true},
        {onPixel,
         R"(float4 main(float4 p : SV_POSITION) : SV_TARGET {
                float sum = 0; int i = 0;
                [unroll] for (int k = 0; k < 4; ++k) sum += p[k];
                [loop] while (i < 10) { if (i == 5) break; ++i; if (i == 2) continue; sum += i; }
                do { sum -= 1; } while (sum > 100);
                [branch] switch (i) { case 0: case 1: sum = 1; break; default: sum = 2; }
                return sum > 1 ? asfloat(asuint(p) & 0xFFFFu) : saturate(lerp(p, p.wzyx, 0.5)); })",
         ""},
        {onPixel,
         R"(float4 main(nointerpolation uint4 a : A, linear centroid float2 b : B, noperspective float c : C)
                : SV_TARGET { return float4(a) + b.xyxy + c; })",
         ""},
        {onPixel,
         "half4 main(min16float a : A) : SV_TARGET { half b = a; return b + half(1.5h); }",
         {}},
        {onPixel,
         "float4 main() : COLOR0 { return firstbithigh(3u) + countbits(7u) + reversebits(1u); }",
         ""},
        {onVertex,
         R"(struct V { float4 p : SV_POSITION; float clip : SV_ClipDistance0; float2 uv[2] : TEXCOORD3; };
            V main(float3 p : POSITION, uint v : SV_VertexID, uint i : SV_InstanceID) {
                V o; o.p = float4(p, 1); o.clip = p.x; o.uv[0] = v; o.uv[1] = i; return o; })",
         ""},
        {onGroup,
         R"(groupshared float4 shared_[64]; groupshared uint total;
            RWStructuredBuffer<float4> a : register(u0);
            [numthreads(8, 8, 1)] void main(uint3 id : SV_DispatchThreadID, uint3 g : SV_GroupID,
                                            uint3 t : SV_GroupThreadID, uint i : SV_GroupIndex) {
                shared_[i] = float4(t, g.x); InterlockedAdd(total, 1);
                GroupMemoryBarrierWithGroupSync();
                a[id.x] = shared_[63 - i] + total; AllMemoryBarrier(); })",
         "u0.0 a Structured /16; "},
        {onGroup,
         R"(globallycoherent RWStructuredBuffer<double> a : register(u0);
            [numthreads(1, 1, 1)] void main() { a[0] = a[1] * 2.0L; DeviceMemoryBarrier(); })",
         "u0.0 a Structured /8; "},
        {onGroup,
         R"(RWTexture2D<uint> a : register(u0); RWStructuredBuffer<uint> b : register(u1);
            [numthreads(1, 1, 1)] void main() {
                uint old; InterlockedCompareExchange(b[0], 1, 2, old);
                InterlockedOr(a[uint2(0, 0)], 4, old); b[1] = old; })",
         "u0.0 a 2D f42!; u1.0 b Structured /4; "},
        {onGroup,
         R"(RWTexture2D<float3> a : register(u0); RWBuffer<int3> b : register(u1);
            [numthreads(1, 1, 1)] void main(uint3 i : SV_DispatchThreadID) {
                a[i.xy] = float3(1, 2, 3); b[i.x] = int3(i); })",
         "u0.0 a 2D f2!; u1.0 b Texel f4!; "},

        // What is refused.
        {onPixel,
         "float f(float a) { return f(a - 1); } float4 main() : SV_TARGET { return f(1); }",
         {},
         true},
        {onPixel,
         "class C { float a; }; float4 main() : SV_TARGET { C c; c.a = 1; return c.a; }",
         ""},
        {onPixel, "float4 main() : SV_TARGET { float3 a = float2(1, 2).xyz; return 1; }", {}, true},
        {onPixel, "float4 main() : SV_TARGET { return undeclared; }", {}, true},
        {onPixel, "float4 main() : SV_TARGET { return 1 }", {}, true},
        {onPixel, "float4 main() : SV_TARGET { return float4(1, 2); }", {}, true},
        {onPixel,
         "#define float4 float3\nfloat4 main() : SV_TARGET { return float4(1, 2, 3); }",
         ""},
        {onPixel, "#define return break\nfloat4 main() : SV_TARGET { return 1; }", {}, true},
        {onPixel, "#define main other\nfloat4 main() : SV_TARGET { return 1; }", {}, true},
        {onPixel, "#if 1\nfloat4 main() : SV_TARGET { return 1; }", {}, true},
        {onPixel, "#error stop here\nfloat4 main() : SV_TARGET { return 1; }", {}, true},
        {onPixel, "float4 main() : SV_TARGET { /* never closed", {}, true},
        {onGroup,
         "[numthreads(0, 1, 1)] void main() {}",
         "a group of 0 x 1 x 1 threads, where 1 to 1024 are possible"},
        {onGroup,
         "[numthreads(4096, 1, 1)] void main() {}",
         "a group of 4096 x 1 x 1 threads, where 1 to 1024 are possible"},
        {onGroup, "interface I { float f(); }; [numthreads(1, 1, 1)] void main() {}", {}, true},
};

} // namespace vlGraphics
