// The same grey for every surface.
#ifdef VL_HLSL
vlFloat4 main() : SV_TARGET
{
    return vlFloat4(0.5, 0.5, 0.5, 1.0);
}
#else
void main()
{
    OUT_COLOR = vlFloat4(0.5, 0.5, 0.5, 1.0);
}
#endif
