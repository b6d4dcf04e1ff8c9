// Over the whole target.
float4 main(float3 place : POSITION) : SV_Position {
    return float4(place, 1);
}
