// Of the default shaders. HAS_NORMAL and HAS_UV say what the mesh gives.
vlConstantBufferDecl(PassBuffer, 0)
{
    vlFloat4x4 viewMat;
    vlFloat4x4 projMat;
    vlFloat4 cameraPos;
};

struct Input
{
    vlFloat4 position : POSITION;
#ifdef HAS_NORMAL
    vlFloat3 normal : NORMAL;
#endif
#ifdef HAS_UV
    vlFloat2 uv : TEXCOORD;
#endif
    vlFloat4x4 worldMat : WORLD_MATRIX;
};

struct Output
{
    vlFloat4 clip : SV_POSITION;
    vlFloat3 world : WORLD_POSITION;
#ifdef HAS_NORMAL
    vlFloat3 normal : NORMAL;
#endif
#ifdef HAS_UV
    vlFloat2 uv : TEXCOORD;
#endif
};

// Stays perpendicular to the surface under any scale: the cofactors are the inverse's transpose but
// for a factor, whose sign counts where the matrix mirrors.
vlFloat3 turnNormal(vlFloat3x3 m, vlFloat3 normal)
{
    vlFloat3 x = cross(m[1], m[2]);
    vlFloat3 y = cross(m[2], m[0]);
    vlFloat3 z = cross(m[0], m[1]);
    vlFloat3 turned = vlFloat3(dot(x, normal), dot(y, normal), dot(z, normal));
    return dot(m[0], x) < 0.0 ? -turned : turned;
}

Output main(Input input)
{
    Output output;
    vlFloat4 world = vlMul(input.worldMat, input.position);
    output.clip = vlMul(projMat, vlMul(viewMat, world));
    output.world = world.xyz;
#ifdef HAS_NORMAL
    output.normal = turnNormal((vlFloat3x3)input.worldMat, input.normal);
#endif
#ifdef HAS_UV
    output.uv = input.uv;
#endif
    return output;
}
