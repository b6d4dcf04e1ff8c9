#include "MtlFile.h"

#include "TextScan.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>

namespace vlKestrion {

namespace {

using vlMemory::StringView;

constexpr std::size_t mostWarnings = 100; ///< of one file

constexpr std::array<StringView, 11> oneWordOptions{"-blendu",
                                                    "-blendv",
                                                    "-boost",
                                                    "-bm",
                                                    "-cc",
                                                    "-clamp",
                                                    "-colorspace",
                                                    "-imfchan",
                                                    "-texres",
                                                    "-type",
                                                    "-usemtl"};

/// What is left of a texture statement once its options are taken off: a file name that may have
/// blanks in it.
StringView textureName(StringView text) {
    while (true) {
        StringView rest = text;
        const StringView option = takeWord(rest);
        if (option == "-o" || option == "-s" || option == "-t" || option == "-mm") {
            const std::size_t most = option == "-mm" ? 2 : 3;
            text = rest;
            for (std::size_t number = 0; number < most; ++number) {
                if (!toFloat(takeWord(rest))) break;
                text = rest;
            }
        } else if (std::find(oneWordOptions.begin(), oneWordOptions.end(), option) !=
                   oneWordOptions.end()) {
            takeWord(rest);
            text = rest;
        } else {
            return trimmed(text);
        }
    }
}

class MtlParser {
public:
    MtlParser(StringView text,
              StringView name,
              std::vector<MtlMaterial>& materials,
              std::vector<vlMemory::String>& warnings)
        : lines_(text), name_(name), materials_(materials), warnings_(warnings),
          first_(materials.size()) {}

    void run() {
        StringView line;
        while (lines_.next(line)) {
            StringView rest = line;
            const StringView word = takeWord(rest);
            if (word == "newmtl") {
                materials_.emplace_back().name = trimmed(rest);
            } else if (materials_.size() > first_) {
                statement(word, rest, materials_.back());
            }
        }
    }

private:
    void statement(StringView word, StringView rest, MtlMaterial& material) {
        if (word == "Kd") return color(word, rest, material.diffuse);
        if (word == "Ks") return color(word, rest, material.specular);
        if (word == "Ke") return color(word, rest, material.emission);
        if (word == "Ns") return number(word, rest, material.exponent, 1000);
        if (word == "Pr") return number(word, rest, material.roughness, 1);
        if (word == "Pm") return number(word, rest, material.metalness, 1);
        if (word == "d") {
            StringView after = rest;
            return number(word, takeWord(after) == "-halo" ? after : rest, material.opacity, 1);
        }
        if (word == "Tr") {
            float transparency = 1 - material.opacity;
            number(word, rest, transparency, 1);
            material.opacity = 1 - transparency;
            return;
        }
        if (word == "map_Kd") material.diffuseMap = textureName(rest);
        if (word == "norm" || word == "map_norm" || word == "map_Norm")
            material.normalMap = textureName(rest);
        if (word == "map_d") material.opacityMap = textureName(rest);
        if (word == "map_bump" || word == "map_Bump" || word == "bump" || word == "map_BUMP")
            material.bumpMap = textureName(rest);
    }

    void number(StringView word, StringView rest, float& value, float highest) {
        const std::optional<float> read = toFloat(takeWord(rest));
        if (!read || !std::isfinite(*read)) return warn(word);
        value = std::clamp(*read, 0.0F, highest);
    }

    /// One number stands for all three.
    void color(StringView word, StringView rest, Float3& value) {
        std::array<float, 3> values{};
        for (std::size_t channel = 0; channel < 3; ++channel) {
            const StringView text = takeWord(rest);
            if (text.empty() && channel == 1) values[1] = values[2] = values[0];
            if (text.empty() && channel == 1) break;
            const std::optional<float> read = toFloat(text);
            if (!read || !std::isfinite(*read)) return warn(word);
            values[channel] = std::clamp(*read, 0.0F, 1000.0F);
        }
        value = {values[0], values[1], values[2]};
    }

    void warn(StringView word) {
        if (warningCount_ == mostWarnings)
            warnings_.push_back(fmt::format("{}: there is more that is wrong", name_));
        if (warningCount_++ >= mostWarnings) return;
        warnings_.push_back(
                fmt::format("{}:{}: '{}' has no proper numbers", name_, lines_.lineNumber(), word));
    }

    LineScan lines_;
    StringView name_;
    std::vector<MtlMaterial>& materials_;
    std::vector<vlMemory::String>& warnings_;
    std::size_t first_;
    std::size_t warningCount_ = 0;
};

} // namespace

void parseMtl(StringView text,
              StringView name,
              std::vector<MtlMaterial>& materials,
              std::vector<vlMemory::String>& warnings) {
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    MtlParser(text, name, materials, warnings).run();
}

} // namespace vlKestrion
