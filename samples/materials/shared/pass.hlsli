cbuffer PassBuffer : register(b0) {
    float4x4 viewMat;
    float4x4 projMat;
    float4 cameraPosition;
    float4 time;  // x: seconds
};
