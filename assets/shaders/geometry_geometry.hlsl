struct GeometryInput
{
    float4 modelPos : POSITION;
};

struct GeometryOutput
{
    float4 modelPos : SV_POSITION;
};

// One point for each one that comes in, where it is.
[maxvertexcount(1)]
void main(point GeometryInput input[1], inout PointStream<GeometryOutput> stream)
{
    GeometryOutput vertex;
    vertex.modelPos = input[0].modelPos;
    stream.Append(vertex);
    stream.RestartStrip();
}
