// Parses and triangulates an OBJ with tinyobjloader, and does nothing with it: what an importer
// built on that library would take before its own work begins.
#include <tiny_obj_loader.h>

#include <cstdio>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: floor_tinyobj MODEL.obj\n");
        return 2;
    }
    tinyobj::ObjReaderConfig configuration;
    configuration.triangulate = true;
    tinyobj::ObjReader reader;
    if (!reader.ParseFromFile(argv[1], configuration)) {
        std::fprintf(stderr, "%s\n", reader.Error().c_str());
        return 1;
    }
    std::size_t triangles = 0;
    for (const tinyobj::shape_t& shape : reader.GetShapes())
        triangles += shape.mesh.num_face_vertices.size();
    std::printf("%zu triangles\n", triangles);
}
