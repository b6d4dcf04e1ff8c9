// Lit surface, vertex stage. The pixel stage beside it says what the macros mean.

cbuffer PassBuffer : register(b0) {
    float4x4 viewMat;
    float4x4 projMat;
    float4 cameraPosition;
    float4 materialDiffuse;
    float4 materialSpecular;
    float4 materialEmission;
};

struct VertexInput {
    float3 position : POSITION;
    float3 normal : NORMAL;
#if defined(USE_DIFFUSE_MAP) || defined(USE_NORMAL_MAP)
    float2 texcoord : TEXCOORD;
#endif
#ifdef USE_NORMAL_MAP
    float4 tangent : TANGENT;
#endif
    float4x4 worldMat : WORLD_MATRIX;
};

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

PixelInput main(VertexInput input) {
    float4 world = mul(input.worldMat, float4(input.position, 1.0));
    float3x3 turn = (float3x3)input.worldMat;

    // Cofactors keep normals upright under any scale; the sign keeps them outward when it mirrors.
    float3 x = cross(turn[1], turn[2]);
    float3 y = cross(turn[2], turn[0]);
    float3 z = cross(turn[0], turn[1]);
    float mirrored = dot(turn[0], x) < 0.0 ? -1.0 : 1.0;

    PixelInput output;
    output.clipPosition = mul(projMat, mul(viewMat, world));
    output.position = world.xyz;
    output.normal =
        mirrored * float3(dot(x, input.normal), dot(y, input.normal), dot(z, input.normal));
#if defined(USE_DIFFUSE_MAP) || defined(USE_NORMAL_MAP)
    output.texcoord = input.texcoord;
#endif
#ifdef USE_NORMAL_MAP
    output.tangent = float4(mul(turn, input.tangent.xyz), mirrored * input.tangent.w);
#endif
    return output;
}
