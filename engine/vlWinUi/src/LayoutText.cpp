#include "LayoutText.h"

#include <algorithm>
#include <cmath>

namespace vlWinUi {

LayoutText::~LayoutText() {
    if (faults_ > MOST_FAULTS)
        logLine("{}: {} more faults are not listed", name_, faults_ - MOST_FAULTS);
}

void LayoutText::report(const std::string& line) {
    if (++faults_ <= MOST_FAULTS) logLine("{}", line);
}

bool LayoutText::takePart(const vlExport::Node& part) {
    if (++parts_ <= MOST_PARTS) return true;
    if (parts_ == MOST_PARTS + 1)
        fault(part,
              "more than {} components, tabs, layouts and placements: the rest is left out",
              MOST_PARTS);
    return false;
}

void LayoutText::checkMembers(const vlExport::Node& object,
                              std::initializer_list<vlMemory::StringView> known) {
    for (const vlExport::Member& member : object.members())
        if (std::ranges::find(known, member.name) == known.end())
            fault(member.value, "unknown member '{}'", shown(member.name));
}

std::span<const vlExport::Node> LayoutText::elements(const vlExport::Node& object,
                                                     vlMemory::StringView member) {
    const vlExport::Node* found = object.find(member);
    if (found == nullptr) return {};
    if (!found->isArray()) fault(*found, "'{}' expected an array", member);
    return found->elements();
}

bool LayoutText::readWhole(const vlExport::Node& object,
                           vlMemory::StringView member,
                           unsigned& value,
                           unsigned least,
                           unsigned most) {
    double number = 0;
    if (!read(object, member, number, static_cast<double>(least), static_cast<double>(most)))
        return false;
    value = static_cast<unsigned>(std::lround(number));
    return true;
}

} // namespace vlWinUi
