#define TEX_WIDTH 640
#define TEX_HEIGHT 480

struct Payload
{
    float4 color;
};

RaytracingAccelerationStructure scene : register(t0, space0);
RWStructuredBuffer<float4> output : register(u0);

// One ray for each pixel, straight ahead.
[shader("raygeneration")]
void raygen()
{
    uint2 dispatchIndex = DispatchRaysIndex().xy;
    float2 dimensions = float2(DispatchRaysDimensions().xy);
    RayDesc ray;
    ray.Origin = float3(float2(dispatchIndex) - dimensions * 0.5, 0.0);
    ray.Direction = float3(0.0, 0.0, 1.0);
    ray.TMin = 0.001;
    ray.TMax = 10000.0;
    Payload payload = { float4(1.0, 1.0, 1.0, 1.0) };
    TraceRay(scene, RAY_FLAG_CULL_BACK_FACING_TRIANGLES, 0xFF, 0, 1, 0, ray, payload);
    output[dispatchIndex.y * TEX_WIDTH + dispatchIndex.x] = payload.color;
}

[shader("miss")]
void miss(inout Payload payload)
{
    payload.color = float4(0.0, 0.0, 0.0, 1.0);
}
