struct VertexInput
{
    float4 position : POSITION;
};

struct VertexOutput
{
    float4 modelPos : POSITION;
};

// Simple copie
VertexOutput main(VertexInput from)
{
    VertexOutput model;
    model.modelPos = from.position;
    return model;
}
