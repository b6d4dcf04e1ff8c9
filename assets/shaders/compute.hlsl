// The values of a cube of arraySize elements a side.
static const uint arraySize = 4;

struct Element
{
    float value;
};

RWStructuredBuffer<Element> data : register(u0);

// One thread for each of the elements sets it.
[numthreads(8, 8, 8)]
void main(uint3 id : SV_DispatchThreadID)
{
    uint index = id.x + id.y * arraySize + id.z * arraySize * arraySize;
    data[index].value = 0.0;
}
