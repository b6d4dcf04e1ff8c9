vlConstantBufferDecl(PassBuffer, 0)
{
    vlFloat4x4 viewMat;
    vlFloat4x4 projMat;
};

#ifdef VL_HLSL
vlFloat4 main(in vlFloat4 vPos : POSITION, in vlFloat4x4 worldMat : WORLD_MATRIX) : SV_POSITION
{
    return vlMul(projMat, vlMul(viewMat, vlMul(worldMat, vPos)));
}
#else
void main()
{
    gl_Position = vlMul(projMat, vlMul(viewMat, vlMul(worldMat, vPos)));
}
#endif
