#include "programs/StageVaryings.h"

#include "programs/StageNames.h"

#include <fmt/format.h>

#include <algorithm>

namespace vlGraphics {

namespace {

std::string semanticAt(const MappedInterfaces& interfaces, std::uint32_t location) {
    for (const PlacedSemantic& placed : interfaces.varyings)
        if (placed.location <= location && location < placed.location + placed.locationCount)
            return placed.semantic;
    return "?";
}

/// A vector may be read in part.
bool fits(const Varying& output, const Varying& input) {
    return output.base == input.base && output.size >= input.size &&
           output.columns == input.columns && output.elements >= input.elements;
}

/// Before the compute stage there is none.
std::string faultOf(const Varying& input, const StageVaryings* stageBefore) {
    if (stageBefore == nullptr) return "is read, but nothing feeds the compute stage";
    const StageVaryings& before = *stageBefore;
    const auto output =
            std::find_if(before.outputs.begin(), before.outputs.end(), [&](const Varying& one) {
                return one.location == input.location && one.isPatch == input.isPatch;
            });
    if (output == before.outputs.end())
        return fmt::format("is read, but the {} stage does not write it", stageName(before.stage));
    if (fits(*output, input)) return {};
    return fmt::format("is read as {}, but the {} stage writes {}",
                       input.text,
                       stageName(before.stage),
                       output->text);
}

} // namespace

std::optional<ProgramDiagnostic> findMismatch(const std::vector<StageVaryings>& stages,
                                              const MappedInterfaces& interfaces) {
    for (std::size_t i = 0; i < stages.size(); ++i) {
        for (const Varying& input : stages[i].inputs) {
            const std::string fault = faultOf(input, i == 0 ? nullptr : &stages[i - 1]);
            if (fault.empty()) continue;
            ProgramDiagnostic found;
            found.stage = stages[i].stage;
            const std::string semantic = semanticAt(interfaces, input.location);
            for (const MappedInput& place : interfaces.inputs) {
                if (place.stage != found.stage || place.semantic != semantic) continue;
                found.file = place.file;
                found.line = place.line;
            }
            // What has no semantic goes by its name.
            const std::size_t nameBegin = semantic.starts_with('@') ? 1 : 0;
            found.text = fmt::format("'{}' {}", semantic.substr(nameBegin), fault);
            return found;
        }
    }
    return std::nullopt;
}

} // namespace vlGraphics
