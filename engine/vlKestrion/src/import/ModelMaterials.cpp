#include "ModelMaterials.h"

#include "TextScan.h"

#include <vlResources/ResourceManager.h>

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace vlKestrion {

namespace {

using vlMemory::String;
using vlMemory::StringView;

constexpr std::size_t maxLibrarySize = std::size_t{1} << 26U; ///< bytes
constexpr std::size_t mostLibraryNames = 1000;                ///< that are looked for on the disk

class MaterialFinder {
public:
    MaterialFinder(const ModelFolder& folder, StringView modelName, std::vector<String>& warnings)
        : folder_(folder), modelName_(modelName), warnings_(warnings) {}

    ModelMaterials run(const ObjFile& file) {
        for (const String& line : file.libraries)
            readLibraries(line);
        for (std::size_t place = 0; place < known_.size(); ++place)
            byName_.try_emplace(known_[place].name, place);

        ModelMaterials result;
        NameSet names;
        std::vector<bool> used(file.materials.size());
        for (const ObjRun& run : file.runs)
            used[run.material] = true;
        for (std::size_t number = 0; number < file.materials.size(); ++number) {
            ModelMaterial& material = result.materials.emplace_back();
            const String& name = file.materials[number];
            if (!used[number]) continue;
            material.name = names.unique(cleanName(name, "default"));
            const auto known = byName_.find(name);
            if (known != byName_.end()) {
                material.look = known_[known->second];
                // Nobody wants to see nothing: some exporters turn the scale round.
                if (material.look.opacity == 0) material.look.opacity = 1;
                findTextures(material, result.textures);
            } else if (!name.empty()) {
                warnings_.push_back(fmt::format("{}: material '{}' not found", modelName_, name));
            }
        }
        return result;
    }

private:
    /// A library's name may have blanks in it, and several may stand in one line.
    void readLibraries(StringView line) {
        if (line.empty() || libraryNames_ >= mostLibraryNames || readLibrary(line)) return;
        StringView rest = line;
        bool any = false;
        for (StringView word = takeWord(rest); !word.empty() && libraryNames_ < mostLibraryNames;
             word = takeWord(rest))
            any = readLibrary(word) || any;
        if (!any)
            warnings_.push_back(
                    fmt::format("{}: material library '{}' not found", modelName_, line));
    }

    bool readLibrary(StringView reference) {
        if (++libraryNames_ > mostLibraryNames) return false;
        const auto path = folder_.find(reference);
        if (!path) return false;
        if (!read_.insert(*path).second) return true;
        const auto file =
                vlResources::ResourceManager::getInstance().readFile(*path, maxLibrarySize);
        if (file) {
            parseMtl(file->text(), lastPathPart(*path), known_, warnings_);
        } else {
            warnings_.push_back(file.error().message);
        }
        return true;
    }

    void findTextures(ModelMaterial& material, std::vector<ModelTexture>& textures) {
        const MtlMaterial& look = material.look;
        material.diffuseTexture = find(material, look.diffuseMap, TextureUse::color, textures);
        material.normalTexture = find(material, look.normalMap, TextureUse::normals, textures);
        if (material.normalTexture == ModelMaterial::noTexture)
            material.normalTexture = find(material, look.bumpMap, TextureUse::bump, textures);
        if (!look.opacityMap.empty() &&
            lastPathPart(look.opacityMap) != lastPathPart(look.diffuseMap))
            warnings_.push_back(fmt::format("{}: material '{}': opacity texture '{}' is left out",
                                            modelName_,
                                            material.name,
                                            look.opacityMap));
    }

    std::size_t find(const ModelMaterial& material,
                     const String& reference,
                     TextureUse use,
                     std::vector<ModelTexture>& textures) {
        if (reference.empty()) return ModelMaterial::noTexture;
        const auto path = folder_.find(reference);
        if (!path) {
            warnings_.push_back(fmt::format("{}: material '{}': texture '{}' not found",
                                            modelName_,
                                            material.name,
                                            reference));
            return ModelMaterial::noTexture;
        }
        const auto [place, isNew] = textures_.try_emplace({*path, use}, textures.size());
        if (isNew) {
            ModelTexture& texture = textures.emplace_back();
            texture.path = *path;
            texture.use = use;
        }
        return place->second;
    }

    const ModelFolder& folder_;
    StringView modelName_;
    std::vector<String>& warnings_;
    std::vector<MtlMaterial> known_;
    std::unordered_map<String, std::size_t> byName_; ///< the first of each name
    std::unordered_set<String> read_;
    std::size_t libraryNames_ = 0;
    std::map<std::pair<String, TextureUse>, std::size_t> textures_;
};

} // namespace

void ModelMaterials::dropFaulty(std::vector<String>& warnings) {
    for (ModelMaterial& material : materials) {
        for (std::size_t* index : {&material.diffuseTexture, &material.normalTexture}) {
            if (*index == ModelMaterial::noTexture || textures[*index].fault.empty()) continue;
            warnings.push_back(fmt::format("material '{}' goes without a texture: {}",
                                           material.name,
                                           textures[*index].fault));
            *index = ModelMaterial::noTexture;
        }
        // Exporters write black where the texture says it all.
        if (material.diffuseTexture != ModelMaterial::noTexture &&
            material.look.diffuse == Float3{})
            material.look.diffuse = {1, 1, 1};
    }
}

ModelMaterials findMaterials(const ObjFile& file,
                             const ModelFolder& folder,
                             StringView modelName,
                             std::vector<String>& warnings) {
    return MaterialFinder(folder, modelName, warnings).run(file);
}

} // namespace vlKestrion
