#include "MaterialFile.h"

#include <vlExport/NodeReader.h>
#include <vlGraphics/ResourceManager.h>

#include <fmt/format.h>

#include <algorithm>

namespace vlKestrion {

std::vector<MaterialDecl> readMaterials(const vlExport::Node& tree,
                                        vlMemory::StringView name,
                                        std::vector<vlMemory::String>& errors) {
    std::vector<MaterialDecl> materials;
    const vlExport::Node* list = tree.find("materials");
    if (list == nullptr) return materials;
    vlExport::NodeReader file(tree, name);
    file.formatVersion(materialFormatVersion);
    if (auto read = file.finish(); !read) {
        errors.push_back(read.error().message);
        return materials;
    }
    if (!list->isArray()) {
        errors.push_back(fmt::format("{}:{}: 'materials' expected an array", name, list->line()));
        return materials;
    }
    for (const vlExport::Node& element : list->elements()) {
        if (!element.isObject()) {
            errors.push_back(
                    fmt::format("{}:{}: a material expected an object", name, element.line()));
            continue;
        }
        MaterialDecl decl;
        decl.line = element.line();
        vlExport::NodeReader reader(element, name);
        reader.required("name", decl.name);
        reader.optional("shader", decl.shader);
        reader.optional("transparent", decl.transparent);
        reader.check(vlGraphics::isValidResourceName(decl.name), "name", "is no resource name");
        if (auto read = reader.finish(); !read) {
            errors.push_back(read.error().message);
            continue;
        }
        for (const vlMemory::String& line : reader.unknownMembers())
            if (line.find("unknown member 'EDITOR_") == vlMemory::String::npos)
                errors.push_back(line);
        materials.push_back(std::move(decl));
    }
    return materials;
}

bool declaresMore(const vlExport::Node& tree) {
    const auto members = tree.members();
    return std::any_of(members.begin(), members.end(), [](const vlExport::Member& member) {
        return member.name != "formatVersion";
    });
}

} // namespace vlKestrion
