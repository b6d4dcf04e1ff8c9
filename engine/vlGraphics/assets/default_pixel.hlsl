// Of the default shaders: grey, the normal, the texture, or the lit texture, by what the mesh gives.
vlConstantBufferDecl(PassBuffer, 0)
{
    vlFloat4x4 viewMat;
    vlFloat4x4 projMat;
    vlFloat4 cameraPos;
};

#ifdef HAS_UV
vlTexture2D(colors, 0);
vlSampler(colorSampler, 0);
#endif

struct Input
{
    vlFloat4 pixel : SV_POSITION;
    vlFloat3 world : WORLD_POSITION;
#ifdef HAS_NORMAL
    vlFloat3 normal : NORMAL;
#endif
#ifdef HAS_UV
    vlFloat2 uv : TEXCOORD;
#endif
};

vlFloat3 unit(vlFloat3 v)
{
    return v * rsqrt(max(dot(v, v), 1e-20));
}

#if defined(HAS_NORMAL) && defined(HAS_UV)
vlFloat3 lightAt(vlFloat3 normal)
{
    const vlFloat3 sky = vlFloat3(0.42, 0.46, 0.52);
    const vlFloat3 ground = vlFloat3(0.16, 0.15, 0.14);
    const vlFloat3 sun = vlFloat3(0.72, 0.69, 0.62);
    const vlFloat3 towardsSun = vlFloat3(0.390360, 0.780720, -0.487950);
    vlFloat3 ambient = vlLerp(ground, sky, normal.y * 0.5 + 0.5);
    return ambient + sun * vlSaturate(dot(normal, towardsSun));
}
#endif

vlFloat4 main(Input input) : SV_TARGET
{
#if defined(HAS_NORMAL) && defined(HAS_UV)
    vlFloat4 color = vlSample(colors, colorSampler, input.uv);
    return vlFloat4(color.rgb * lightAt(unit(input.normal)), color.a);
#elif defined(HAS_UV)
    return vlSample(colors, colorSampler, input.uv);
#elif defined(HAS_NORMAL)
    // The picture's values are the normal's: the target encodes what is written here.
    return vlFloat4(pow(unit(input.normal) * 0.5 + 0.5, 2.2), 1.0);
#else
    // Without normals the slope of the surface itself tells how much it faces the camera.
    vlFloat3 normal = unit(cross(ddx(input.world), ddy(input.world)));
    vlFloat facing = abs(dot(normal, unit(cameraPos.xyz - input.world)));
    vlFloat grey = vlLerp(0.16, 0.42, facing);
    return vlFloat4(grey, grey, grey, 1.0);
#endif
}
