#include "programs/IncludeFiles.h"

#include "programs/HlslText.h"
#include "programs/SourceLines.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <string_view>

namespace vlGraphics {

namespace {

using vlMemory::String;
using vlMemory::StringView;

constexpr StringView byteOrderMark = "\xEF\xBB\xBF";

String joined(StringView folder, StringView name) {
    return (std::filesystem::path(folder) / name).lexically_normal().generic_string();
}

String folderOf(StringView path) {
    const std::size_t slash = path.rfind('/');
    return String(slash == StringView::npos ? StringView() : path.substr(0, slash));
}

bool saysOnce(StringView text) {
    constexpr StringView once = "#pragma once";
    for (std::size_t at = text.find(once); at != StringView::npos; at = text.find(once, at + 1)) {
        const std::size_t lineBegin = at == 0 ? 0 : text.rfind('\n', at - 1) + 1;
        if (HlslText::isBlank(text.substr(lineBegin, at - lineBegin))) return true;
    }
    return false;
}

StringView textOf(const vlMemory::Buffer& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

} // namespace

IncludeFiles::IncludeFiles(StringView workingPath, StringView folder, StringView prefix)
    : workingPath_(workingPath), folder_(folder), prefix_(prefix) {
    files_.setWorkingPath(workingPath);
}

tl::expected<const IncludeFiles::File*, std::string>
IncludeFiles::find(StringView name, bool isLocal, const File* includer) {
    if (name.empty()) return tl::unexpected(std::string("the name of the file is empty"));
    if (workingPath_.empty())
        return tl::unexpected(std::string("there is no folder to read files from"));
    if (name.front() == '/')
        return tl::unexpected(fmt::format("'{}' is not relative to the working directory", name));
    std::vector<String> places;
    if (isLocal)
        places.push_back(joined(includer != nullptr ? folderOf(includer->path) : folder_, name));
    const String common = joined({}, name);
    if (places.empty() || places.front() != common) places.push_back(common);
    std::string fault;
    std::vector<String> missed;
    for (const String& place : places) {
        if (place == ".." || place.starts_with("../")) {
            fault = "it lies outside the working directory";
            continue;
        }
        const File* file = read(place);
        if (file->exists && file->fault.empty()) return file;
        fault = file->fault;
        missed.push_back(place);
        if (file->exists) break;
    }
    missed_.insert(missed.begin(), missed.end());
    return tl::unexpected(fmt::format("'{}': {}", name, fault));
}

const IncludeFiles::File* IncludeFiles::read(const String& path) {
    const auto [place, isNew] = known_.try_emplace(path);
    File& file = place->second;
    if (!isNew) return &file;
    file.path = path;
    std::optional<Digest>& content = contents_[path];
    const auto inside = files_.resolveInside(workingPath_, path);
    if (!inside) {
        file.exists = true;
        file.fault = "it lies outside the working directory";
        return &file;
    }
    std::error_code error;
    if (!std::filesystem::exists(*inside, error)) {
        file.fault = "there is no such file";
        return &file;
    }
    file.exists = true;
    const auto bytes = files_.readFile(*inside, maxFileBytes);
    if (!bytes) {
        const std::string& text = bytes.error().message;
        const std::size_t why = text.rfind(": ");
        file.fault = "it cannot be read: " + text.substr(why == std::string::npos ? 0 : why + 2);
        return &file;
    }
    StringView text = textOf(*bytes);
    content = digestOf(text);
    if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
    if (const auto fault = HlslText::findFault(text)) {
        file.fault = "in its line " + *fault;
        return &file;
    }
    file.text = text;
    file.isOnce = saysOnce(file.text);
    file.guard = includeGuardOf(file.text);
    file.index = order_.size();
    order_.push_back(&file);
    return &file;
}

std::vector<IncludeProbe> IncludeFiles::probes() const {
    std::vector<IncludeProbe> all;
    for (const auto& [path, content] : contents_)
        all.push_back({path, content});
    return all;
}

std::vector<String> IncludeFiles::names() const {
    std::set<String> all;
    for (const String& path : missed_)
        all.insert(prefix_ + path);
    for (const File* file : order_)
        all.insert(nameOf(*file));
    return {all.begin(), all.end()};
}

bool areUnchanged(StringView workingPath, const std::vector<IncludeProbe>& probes) {
    vlResources::ResourceManager files;
    files.setWorkingPath(workingPath);
    return std::all_of(probes.begin(), probes.end(), [&](const IncludeProbe& probe) {
        const auto inside = files.resolveInside(workingPath, probe.path);
        const auto bytes = inside ? files.readFile(*inside, IncludeFiles::maxFileBytes)
                                  : tl::unexpected(inside.error());
        const auto content = bytes ? std::optional(digestOf(textOf(*bytes))) : std::nullopt;
        return content == probe.content;
    });
}

tl::expected<const IncludeFiles::File*, std::string> IncludeWalk::enter(StringView name,
                                                                        bool isLocal) {
    auto found = files_.find(name, isLocal, current());
    if (!found) return found;
    const IncludeFiles::File* file = *found;
    if (entered_.size() <= file->index) entered_.resize(file->index + 1);
    if (file->isOnce && entered_[file->index]) return nullptr;
    // A guard ends the circle.
    if (file->guard.empty() && std::find(open_.begin(), open_.end(), file) != open_.end())
        return tl::unexpected(fmt::format("'{}' includes itself", name));
    if (open_.size() == maxDepth)
        return tl::unexpected(
                fmt::format("'{}': files include each other more than {} deep", name, maxDepth));
    if (++fileCount_ > maxFiles)
        return tl::unexpected(fmt::format("'{}': more than {} files", name, maxFiles));
    byteCount_ += file->text.size();
    if (byteCount_ > maxBytes)
        return tl::unexpected(
                fmt::format("'{}': the files have more than {} bytes together", name, maxBytes));
    entered_[file->index] = true;
    open_.push_back(file);
    return file;
}

void IncludeWalk::leave() {
    if (!open_.empty()) open_.pop_back();
}

} // namespace vlGraphics
