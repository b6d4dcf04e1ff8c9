#include "app/Configuration.h"

#include <vlExport/JsonExporter.h>
#include <vlResources/FileWriter.h>
#include <vlResources/ResourceManager.h>

#include <iostream>

namespace vlEditor {
namespace {

constexpr vlMemory::StringView folderMember = "resourceFolder";

} // namespace

void Configuration::load() {
    auto& resources = vlResources::ResourceManager::getInstance();
    const vlMemory::Buffer file = resources.loadFileIntoMemory(fileName);
    if (file.empty()) return;
    if (const auto folder = resourceFolderFrom(file.text())) resources.setWorkingPath(*folder);
}

void Configuration::save() {
    vlExport::Node tree = vlExport::Node::object();
    tree.add(folderMember, vlResources::ResourceManager::getInstance().getWorkingPath());
    const auto written = vlResources::FileWriter::writeFileWhole(
            fileName, vlExport::JsonExporter::exportTreeIntoString(tree));
    if (!written) std::cerr << "vlEditor: " << written.error().message << '\n';
}

std::optional<std::string> Configuration::resourceFolderFrom(vlMemory::StringView text) {
    const auto tree = vlExport::JsonExporter::importIntoTree(text, fileName);
    if (!tree) return std::nullopt;
    const vlExport::Node* folder = tree->find(folderMember);
    if (folder == nullptr || !folder->isString()) return std::nullopt;
    return *folder->asString();
}

} // namespace vlEditor
