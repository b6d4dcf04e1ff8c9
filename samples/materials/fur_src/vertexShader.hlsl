// A root of a hair: the geometry stage makes the hair.
struct Root {
    float3 position : POSITION;
    float3 normal : NORMAL;
    float2 kind : KIND;  // its length, 0..1, and a number of its own, 0..1
    float4x4 worldMat : WORLD_MATRIX;
};

struct Hair {
    float3 root : ROOT;
    float3 normal : NORMAL;
    float2 kind : KIND;
};

Hair main(Root input) {
    Hair hair;
    hair.root = mul(input.worldMat, float4(input.position, 1.0)).xyz;
    hair.normal = mul(input.worldMat, float4(input.normal, 0.0)).xyz;
    hair.kind = input.kind;
    return hair;
}
