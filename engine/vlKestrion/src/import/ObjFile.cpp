#include "ObjFile.h"

#include "ObjChunk.h"
#include "Parallel.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <string>
#include <unordered_map>

namespace vlKestrion {

namespace {

constexpr std::size_t smallestChunk = std::size_t{1} << 16U; ///< bytes

/// Pieces that end with a line that nothing continues.
std::vector<vlMemory::StringView> splitText(vlMemory::StringView text, std::size_t threads) {
    const std::size_t pieces = std::clamp<std::size_t>(text.size() / smallestChunk, 1, threads);
    std::vector<vlMemory::StringView> parts;
    std::size_t from = 0;
    for (std::size_t piece = 1; piece < pieces; ++piece) {
        std::size_t to = text.find('\n', std::max(from, text.size() * piece / pieces));
        while (to != vlMemory::StringView::npos && to > 0 &&
               (text[to - 1] == '\\' || (to > 1 && text[to - 1] == '\r' && text[to - 2] == '\\')))
            to = text.find('\n', to + 1);
        if (to == vlMemory::StringView::npos) break;
        parts.push_back(text.substr(from, to + 1 - from));
        from = to + 1;
    }
    parts.push_back(text.substr(from));
    return parts;
}

/// Gives each name a number, in the order of first use; the empty one is 0.
class Names {
public:
    explicit Names(std::vector<vlMemory::String>& names) : names_(names) { number({}); }

    std::uint32_t number(vlMemory::StringView name) {
        const auto [place, isNew] =
                known_.try_emplace(std::string(name), static_cast<std::uint32_t>(names_.size()));
        if (isNew) names_.emplace_back(name);
        return place->second;
    }

private:
    std::vector<vlMemory::String>& names_;
    std::unordered_map<std::string, std::uint32_t> known_;
};

/// Puts the chunks' triangles one behind the other and says which belong to what.
void join(std::vector<ObjChunk>& chunks, ObjFile& file) {
    Names objects(file.objects);
    Names materials(file.materials);
    ObjRun run;
    const auto endRun = [&](std::uint32_t triangle) {
        run.triangleCount = triangle - run.firstTriangle;
        if (run.triangleCount > 0) file.runs.push_back(run);
        run.firstTriangle = triangle;
    };
    for (ObjChunk& chunk : chunks) {
        const std::uint32_t before = file.triangleCount();
        for (const ObjEvent& event : chunk.events) {
            endRun(before + event.triangle);
            if (event.kind == ObjEvent::Kind::object) run.object = objects.number(event.text);
            if (event.kind == ObjEvent::Kind::material) run.material = materials.number(event.text);
            if (event.kind != ObjEvent::Kind::smoothing) continue;
            run.smoothing = event.number;
            file.hasSmoothingGroups = true;
        }
        for (const vlMemory::StringView library : chunk.libraries)
            file.libraries.emplace_back(library);
        if (file.corners.empty()) {
            file.corners = std::move(chunk.corners);
        } else {
            file.corners.insert(file.corners.end(), chunk.corners.begin(), chunk.corners.end());
        }
        chunk = {};
    }
    endRun(file.triangleCount());
}

void warnOf(const std::vector<ObjChunk>& chunks, const vlMemory::String& name, ObjFile& file) {
    for (std::size_t kind = 0; kind < objFaultCount; ++kind) {
        std::uint64_t count = 0;
        std::uint64_t line = 0;
        for (const ObjChunk& chunk : chunks) {
            const ObjFault& fault = chunk.faults[kind];
            if (line == 0) line = fault.firstLine;
            count += fault.count;
        }
        if (count == 0) continue;
        const vlMemory::String place = line > 0 ? fmt::format("{}:{}", name, line) : name;
        const vlMemory::StringView what = objFaultText(static_cast<ObjFaultKind>(kind));
        file.warnings.push_back(fmt::format("{}: {} {}", place, count, what));
    }
}

vlCommon::Result<> checkText(vlMemory::StringView text, vlMemory::StringView name) {
    const auto fails = [&](vlMemory::StringView why) {
        return vlCommon::fail(fmt::format("{}: {}", name, why));
    };
    if (text.empty()) return fails("the file is empty");
    if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF"))
        return fails("the text is UTF-16; only UTF-8 is read");
    if (std::memchr(text.data(), 0, std::min<std::size_t>(text.size(), 4096)) != nullptr)
        return fails("this is binary data, not a Wavefront OBJ text");
    return {};
}

} // namespace

vlCommon::Result<ObjFile>
parseObj(vlMemory::StringView text, vlMemory::StringView name, std::size_t threads) {
    if (auto good = checkText(text, name); !good) return tl::unexpected(good.error());
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);

    const std::vector<vlMemory::StringView> parts = splitText(text, threads);
    std::vector<ObjChunk> chunks(parts.size());
    inParallel(parts.size(), threads, [&](std::size_t piece, std::size_t) {
        chunks[piece].text = parts[piece];
        chunks[piece].own = countStatements(parts[piece]);
    });
    ObjCounts total;
    for (ObjChunk& chunk : chunks) {
        chunk.before = total;
        total += chunk.own;
    }
    ObjFile file;
    file.positions.resize(total.positions);
    file.texcoords.resize(total.texcoords);
    file.normals.resize(total.normals);
    inParallel(chunks.size(), threads, [&](std::size_t piece, std::size_t) {
        parseChunk(chunks[piece], total, file);
    });
    inParallel(chunks.size(), threads, [&](std::size_t piece, std::size_t) {
        cutIntoTriangles(chunks[piece], file.positions);
    });
    warnOf(chunks, vlMemory::String(name), file);
    join(chunks, file);
    if (!file.corners.empty()) return file;
    vlMemory::String why;
    if (!file.warnings.empty()) why = fmt::format(" ({})", file.warnings.front());
    return vlCommon::fail(fmt::format("{}: there is no triangle in this file{}", name, why));
}

} // namespace vlKestrion
