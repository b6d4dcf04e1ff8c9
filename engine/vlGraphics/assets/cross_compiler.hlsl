// The portable spelling: a source that uses these names and tests VL_HLSL where languages differ can
// be kept for more than one shading language. Put before a source unless the program turns it off.
#define VL_HLSL 1

#define vlBool bool
#define vlInt int
#define vlInt2 int2
#define vlInt3 int3
#define vlInt4 int4
#define vlUint uint
#define vlUint2 uint2
#define vlUint3 uint3
#define vlUint4 uint4
#define vlFloat float
#define vlFloat2 float2
#define vlFloat3 float3
#define vlFloat4 float4
#define vlFloat2x2 float2x2
#define vlFloat3x3 float3x3
#define vlFloat4x4 float4x4

// Vectors are columns: vlMul(matrix, vector).
#define vlMul(a, b) mul(a, b)
#define vlLerp(a, b, amount) lerp(a, b, amount)
#define vlFrac(a) frac(a)
#define vlSaturate(a) saturate(a)

// Each declares a resource at a register of space 0, or of the space given:
//     vlConstantBufferDecl(PassBuffer, 0) { vlFloat4x4 viewMat; vlFloat4x4 projMat; };
//     vlTexture2D(colors, 0);
//     vlSampler(smooth, 0);
//     vlStructuredBuffer(vlFloat4, points, 1);
//     vlRWStructuredBuffer(vlFloat, results, 0);
#define vlRegister_(letter, slot) register(letter##slot)
#define vlRegister(letter, slot) vlRegister_(letter, slot)
#define vlRegisterSpace_(letter, slot, number) register(letter##slot, space##number)
#define vlRegisterSpace(letter, slot, number) vlRegisterSpace_(letter, slot, number)
#define vlConstantBufferDecl(name, slot) cbuffer name : vlRegister(b, slot)
#define vlConstantBufferSpaceDecl(name, slot, number) cbuffer name : vlRegisterSpace(b, slot, number)
#define vlTexture2D(name, slot) Texture2D name : vlRegister(t, slot)
#define vlTexture2DSpace(name, slot, number) Texture2D name : vlRegisterSpace(t, slot, number)
#define vlSampler(name, slot) SamplerState name : vlRegister(s, slot)
#define vlSamplerSpace(name, slot, number) SamplerState name : vlRegisterSpace(s, slot, number)
#define vlStructuredBuffer(type, name, slot) StructuredBuffer<type> name : vlRegister(t, slot)
#define vlRWStructuredBuffer(type, name, slot) RWStructuredBuffer<type> name : vlRegister(u, slot)

#define vlSample(source, how, uv) source.Sample(how, uv)
#define vlSampleLevel(source, how, uv, level) source.SampleLevel(how, uv, level)
#define vlTextureLoad(source, pixel, level) source.Load(vlInt3(pixel, level))
