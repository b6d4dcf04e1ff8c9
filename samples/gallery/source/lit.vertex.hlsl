// Vertices of everything solid in the gallery.
cbuffer PassBuffer : register(b0) {
    float4x4 viewMat;
    float4x4 projMat;
    float4 cameraPosition;
};

struct Input {
    float4 position : POSITION;
    float3 normal : NORMAL;
    float2 texcoord : TEXCOORD;
    float4 tangent : TANGENT;
    float4 occlusion : COLOR;
    float4x4 worldMat : WORLD_MATRIX;
};

struct Output {
    float4 position : SV_POSITION;
    float3 world : WORLD_POSITION;
    float3 normal : NORMAL;
    float4 tangent : TANGENT;
    float3 texcoord : TEXCOORD;  // z: ambient light that reaches the vertex
};

Output main(Input input) {
    Output output;
    float4 world = mul(input.worldMat, float4(input.position.xyz, 1.0));
    output.world = world.xyz;
    output.position = mul(projMat, mul(viewMat, world));
    output.normal = mul(input.worldMat, float4(input.normal, 0.0)).xyz;
    output.tangent = float4(mul(input.worldMat, float4(input.tangent.xyz, 0.0)).xyz, input.tangent.w);
    output.texcoord = float3(input.texcoord, input.occlusion.x);
    return output;
}
