#include "programs/InterfaceMapper.h"

#include "programs/BindingModel.h"

#include <fmt/format.h>
#include <glslang/Public/ShaderLang.h>
// Needs the one above.
#include <glslang/MachineIndependent/iomapper.h>
#include <glslang/MachineIndependent/localintermediate.h>

#include <algorithm>
#include <bitset>
#include <charconv>
#include <map>
#include <optional>
#include <set>
#include <utility>

namespace vlGraphics {

namespace {

using glslang::TQualifier;
using glslang::TType;
using glslang::TVarEntryInfo;

constexpr std::uint32_t locationCount = 32;
constexpr std::uint32_t targetCount = 8;

struct FixedLocation {
    vlMemory::StringView semantic;
    std::uint32_t location;
};
constexpr FixedLocation fixedLocations[] = {{"POSITION", 0},
                                            {"NORMAL", 1},
                                            {"TEXCOORD", 2},
                                            {"COLOR", 3},
                                            {"TANGENT", 4},
                                            {"BINORMAL", 5},
                                            {"WORLD_MATRIX", 8},
                                            {"PICKINGID", 12}};

/** Places semantics in the locations of one interface. */
class LocationTable {
public:
    /// A semantic seen again takes the larger of the sizes.
    void note(const std::string& semantic, std::uint32_t count) {
        const auto found = std::find_if(entries_.begin(), entries_.end(), [&](const auto& entry) {
            return entry.semantic == semantic;
        });
        if (found == entries_.end()) {
            entries_.push_back({semantic, locationCount, count});
        } else {
            found->locationCount = std::max(found->locationCount, count);
        }
    }

    /// False where another is there, or it lies past the last.
    bool noteAt(const std::string& semantic, std::uint32_t location, std::uint32_t count) {
        if (!isFree(location, count)) return false;
        take(entries_.emplace_back(PlacedSemantic{semantic, locationCount, count}), location);
        return true;
    }

    void placeAll(bool usesFixed) {
        for (PlacedSemantic& entry : entries_)
            if (usesFixed) placeFixed(entry);
        for (PlacedSemantic& entry : entries_)
            if (entry.location == locationCount) placeLowest(entry);
    }

    /// Nothing where the locations did not suffice.
    std::optional<std::uint32_t> find(const std::string& semantic) const {
        for (const PlacedSemantic& entry : entries_)
            if (entry.semantic == semantic && entry.location < locationCount) return entry.location;
        return std::nullopt;
    }

    const std::vector<PlacedSemantic>& entries() const { return entries_; }

private:
    void placeFixed(PlacedSemantic& entry) {
        for (const FixedLocation& fixed : fixedLocations)
            if (fixed.semantic == entry.semantic && isFree(fixed.location, entry.locationCount))
                take(entry, fixed.location);
    }
    void placeLowest(PlacedSemantic& entry) {
        for (std::uint32_t location = 0; location < locationCount; ++location)
            if (isFree(location, entry.locationCount)) return take(entry, location);
    }
    bool isFree(std::uint32_t location, std::uint32_t count) const {
        if (location + count > locationCount) return false;
        for (std::uint32_t index = 0; index < count; ++index)
            if (taken_[location + index]) return false;
        return true;
    }
    void take(PlacedSemantic& entry, std::uint32_t location) {
        for (std::uint32_t index = 0; index < entry.locationCount; ++index)
            taken_.set(location + index);
        entry.location = location;
    }

    std::vector<PlacedSemantic> entries_;
    std::bitset<locationCount> taken_;
};

/** Visited twice by the mapper: once to gather what there is in all stages, then to answer. */
class Resolver final : public glslang::TIoMapResolver {
public:
    void visit(SHADER_TYPE stage, bool answers) {
        stage_ = stage;
        answers_ = answers;
    }
    void placeAll() {
        vertexInputs_.placeAll(true);
        varyings_.placeAll(false);
        targets_.placeAll(false);
    }
    const std::optional<ProgramDiagnostic>& failure() const { return failure_; }
    MappedInterfaces take() {
        mapped_.vertexInputs = vertexInputs_.entries();
        mapped_.varyings = varyings_.entries();
        return std::move(mapped_);
    }

    bool validateBinding(EShLanguage, TVarEntryInfo&) override { return true; }
    bool validateInOut(EShLanguage, TVarEntryInfo&) override { return true; }

    void notifyBinding(EShLanguage, TVarEntryInfo& entry) override {
        if (!answers_) noteResource(entry);
    }
    void notifyInOut(EShLanguage language, TVarEntryInfo& entry) override {
        if (!answers_) noteVarying(language, entry);
    }

    int resolveBinding(EShLanguage, TVarEntryInfo& entry) override {
        return entry.newBinding = answers_ ? bindingFor(entry) : -1;
    }
    int resolveSet(EShLanguage, TVarEntryInfo& entry) override {
        return entry.newSet = answers_ ? static_cast<int>(spaceOf(entry)) : -1;
    }
    int resolveInOutLocation(EShLanguage language, TVarEntryInfo& entry) override {
        return entry.newLocation = answers_ ? locationFor(language, entry) : -1;
    }
    int resolveUniformLocation(EShLanguage, TVarEntryInfo& entry) override {
        return entry.newLocation = -1;
    }
    int resolveInOutComponent(EShLanguage, TVarEntryInfo& entry) override {
        return entry.newComponent = -1;
    }
    int resolveInOutIndex(EShLanguage, TVarEntryInfo& entry) override {
        return entry.newIndex = -1;
    }

    void beginNotifications(EShLanguage) override {}
    void endNotifications(EShLanguage) override {}
    void beginResolve(EShLanguage) override {}
    void endResolve(EShLanguage) override {}
    void beginCollect(EShLanguage) override {}
    void endCollect(EShLanguage) override {}
    void reserverStorageSlot(TVarEntryInfo&, TInfoSink&) override {}
    void reserverResourceSlot(TVarEntryInfo&, TInfoSink&) override {}
    void addStage(EShLanguage, glslang::TIntermediate&) override {}

private:
    using Address = std::pair<std::uint32_t, std::uint32_t>; ///< space, binding

    static std::uint32_t lineOf(const TVarEntryInfo& entry) {
        return static_cast<std::uint32_t>(std::max(entry.symbol->getLoc().line, 1));
    }
    static std::string fileOf(const TVarEntryInfo& entry) {
        return entry.symbol->getLoc().getFilenameStr();
    }
    void fail(const TVarEntryInfo& entry, const std::string& text) {
        if (!failure_) failure_ = {stage_, fileOf(entry), lineOf(entry), text};
    }

    static vlMemory::StringView nameOf(const TVarEntryInfo& entry) {
        // A constant buffer's variable has no name of its own.
        const TType& type = entry.symbol->getType();
        if (type.getBasicType() == glslang::EbtBlock &&
            glslang::IsAnonymous(entry.symbol->getName()))
            return {type.getTypeName().data(), type.getTypeName().size()};
        return {entry.symbol->getName().data(), entry.symbol->getName().size()};
    }
    static std::uint32_t spaceOf(const TVarEntryInfo& entry) {
        const TQualifier& qualifier = entry.symbol->getQualifier();
        return qualifier.hasSet() ? qualifier.layoutSet : 0;
    }
    static RESOURCE_CLASS classOf(const TType& type) {
        if (type.getQualifier().storage == glslang::EvqBuffer)
            return type.getQualifier().isReadOnly() ? RESOURCE_CLASS::TEXTURE : RESOURCE_CLASS::UAV;
        if (type.getBasicType() != glslang::EbtSampler) return RESOURCE_CLASS::CONSTANT_BUFFER;
        if (type.getSampler().isPureSampler()) return RESOURCE_CLASS::SAMPLER;
        return type.getSampler().isImage() ? RESOURCE_CLASS::UAV : RESOURCE_CLASS::TEXTURE;
    }

    /// The compiler gives an array without a count one that says nothing.
    static bool isUnbounded(const TType& type) {
        return type.isUnsizedArray() || type.isImplicitlySizedArray();
    }
    /// Registers that a resource takes: one an element. 0 where nobody knows.
    static std::uint32_t registersOf(const TType& type) {
        if (!type.isArray()) return 1;
        if (isUnbounded(type)) return 0;
        return static_cast<std::uint32_t>(std::max(type.getCumulativeArraySize(), 0));
    }
    static bool hasNoBinding(const TType& type) { return type.getQualifier().isPushConstant(); }

    void noteResource(const TVarEntryInfo& entry) {
        using namespace BindingModel;
        const TType& type = entry.symbol->getType();
        if (hasNoBinding(type)) return;
        const RESOURCE_CLASS resourceClass = classOf(type);
        if (spaceOf(entry) >= spaceCount) {
            fail(entry,
                 fmt::format("'{}': space{} is past space{}",
                             nameOf(entry),
                             spaceOf(entry),
                             spaceCount - 1));
        }
        if (!type.getQualifier().hasBinding()) return;
        const std::uint32_t slot = type.getQualifier().layoutBinding;
        // Of an array without a count only the first is known to be taken.
        const std::uint64_t last = std::uint64_t{slot} + std::max(registersOf(type), 1U) - 1;
        if (last >= registersPerClass) {
            const char letter = letterOf(resourceClass);
            fail(entry,
                 fmt::format("'{}': register {}{} is past {}{}",
                             nameOf(entry),
                             letter,
                             last,
                             letter,
                             registersPerClass - 1));
            return;
        }
        for (std::uint32_t one = slot; one <= last; ++one)
            taken_.emplace(spaceOf(entry), bindingOf(resourceClass, one));
    }

    int bindingFor(const TVarEntryInfo& entry) {
        const TType& type = entry.symbol->getType();
        if (hasNoBinding(type)) return -1;
        const RESOURCE_CLASS resourceClass = classOf(type);
        int binding = -1;
        if (type.getQualifier().hasBinding())
            binding = static_cast<int>(
                    BindingModel::bindingOf(resourceClass, type.getQualifier().layoutBinding));
        else if (entry.live)
            binding = freeBindingFor(entry, resourceClass);
        if (binding >= 0) noteMapped(entry, static_cast<std::uint32_t>(binding));
        return binding;
    }

    int freeBindingFor(const TVarEntryInfo& entry, RESOURCE_CLASS resourceClass) {
        using namespace BindingModel;
        const std::uint32_t space = spaceOf(entry);
        const std::string key =
                fmt::format("{}{} {}", letterOf(resourceClass), space, nameOf(entry));
        const auto known = unregistered_.find(key);
        if (known != unregistered_.end()) return known->second;
        const std::uint32_t count = std::max(registersOf(entry.symbol->getType()), 1U);
        std::uint32_t free = 0;
        for (std::uint32_t slot = 0; slot < registersPerClass; ++slot) {
            free = taken_.contains({space, bindingOf(resourceClass, slot)}) ? 0 : free + 1;
            if (free < count) continue;
            const std::uint32_t first = bindingOf(resourceClass, slot + 1 - count);
            for (std::uint32_t one = 0; one < count; ++one)
                taken_.emplace(space, first + one);
            return unregistered_[key] = static_cast<int>(first);
        }
        fail(entry, fmt::format("'{}': no register is free for it", nameOf(entry)));
        return -1;
    }

    void noteMapped(const TVarEntryInfo& entry, std::uint32_t binding) {
        const TType& type = entry.symbol->getType();
        const glslang::TBuiltInVariable declared = type.getQualifier().declaredBuiltIn;
        const bool isByteAddress = declared == glslang::EbvByteAddressBuffer ||
                                   declared == glslang::EbvRWByteAddressBuffer;
        const bool isComparison = type.getBasicType() == glslang::EbtSampler &&
                                  type.getSampler().isPureSampler() && type.getSampler().isShadow();
        mapped_.resources.push_back({stage_,
                                     spaceOf(entry),
                                     binding,
                                     fileOf(entry),
                                     lineOf(entry),
                                     isUnbounded(type),
                                     isByteAddress,
                                     isComparison});
    }

    static std::string semanticOf(const TVarEntryInfo& entry) {
        const char* semantic = entry.symbol->getQualifier().semanticName;
        // What has none can only meet its like.
        if (semantic == nullptr) return fmt::format("@{}", nameOf(entry));
        std::string normalised = normalisedSemantic(semantic);
        if (normalised == "SV_POSITION") return "POSITION";
        return withElement(normalised, nameOf(entry));
    }
    /// The elements of an array are variables of their own, "uv[1]" and so on, which all have the
    /// array's semantic; each has the next number.
    static std::string withElement(const std::string& semantic, vlMemory::StringView name) {
        const std::size_t bracket = name.find('[');
        if (bracket == vlMemory::StringView::npos) return semantic;
        const vlMemory::StringView element = name.substr(bracket);
        std::uint32_t index = 0;
        const auto read =
                std::from_chars(element.data() + 1, element.data() + element.size(), index);
        if (read.ptr + 1 != element.data() + element.size())
            return fmt::format("{}{}", semantic, element);
        const std::size_t digits = semantic.find_last_not_of("0123456789") + 1;
        std::uint32_t first = 0;
        std::from_chars(semantic.data() + digits, semantic.data() + semantic.size(), first);
        return normalisedSemantic(fmt::format("{}{}", semantic.substr(0, digits), first + index));
    }
    static bool isVertexInput(EShLanguage language, const TVarEntryInfo& entry) {
        return language == EShLangVertex && entry.symbol->getQualifier().isPipeInput();
    }
    static bool isPixelOutput(EShLanguage language, const TVarEntryInfo& entry) {
        return language == EShLangFragment && entry.symbol->getQualifier().isPipeOutput();
    }

    static std::uint32_t locationsOf(EShLanguage language, const TVarEntryInfo& entry) {
        const TType& type = entry.symbol->getType();
        // The outermost array of what is per vertex of a primitive is not part of the interface.
        if (type.isArray() && type.getQualifier().isArrayedIo(language)) {
            const TType element(type, 0);
            return static_cast<std::uint32_t>(
                    glslang::TIntermediate::computeTypeLocationSize(element, language));
        }
        return static_cast<std::uint32_t>(
                glslang::TIntermediate::computeTypeLocationSize(type, language));
    }

    /// A struct without members has nothing to place.
    static bool isPlaced(const TVarEntryInfo& entry) {
        const TType& type = entry.symbol->getType();
        return !type.isBuiltIn() && !(type.isStruct() && type.getStruct()->empty());
    }

    void noteVarying(EShLanguage language, const TVarEntryInfo& entry) {
        if (!isPlaced(entry)) return;
        const std::string semantic = semanticOf(entry);
        if (isPixelOutput(language, entry)) return noteTarget(entry);
        if (!isVertexInput(language, entry)) {
            varyings_.note(semantic, locationsOf(language, entry));
            if (entry.symbol->getQualifier().isPipeInput())
                mapped_.inputs.push_back({stage_, semantic, fileOf(entry), lineOf(entry)});
            return;
        }
        if (!vertexInputsSeen_.insert(semantic).second)
            fail(entry, fmt::format("'{}': the semantic is on two inputs", semantic));
        vertexInputs_.note(semantic, locationsOf(language, entry));
    }

    void noteTarget(const TVarEntryInfo& entry) {
        const std::string name(nameOf(entry));
        const std::uint32_t count = locationsOf(EShLangFragment, entry);
        const auto first = declaredTarget(entry);
        if (!first) return targets_.note(name, count);
        std::uint32_t target = *first;
        // The elements of an array all say the first one's.
        if (name.ends_with(']')) {
            std::uint32_t& made = madeOfArrays_[{name.substr(0, name.rfind('[')), target}];
            target += std::exchange(made, made + count);
        }
        if (target >= targetCount || count > targetCount - target)
            return fail(entry,
                        fmt::format("SV_TARGET{} is past SV_TARGET{}", target, targetCount - 1));
        if (targets_.noteAt(name, target, count)) return;
        // Without a semantic the compiler counts on and does not see what is there.
        if (entry.symbol->getQualifier().semanticName == nullptr)
            targets_.note(name, count);
        else
            fail(entry, fmt::format("SV_TARGET{}: another output has that target", target));
    }
    /// Older texts write COLOR instead of SV_TARGET, which the compiler does not know.
    static std::optional<std::uint32_t> declaredTarget(const TVarEntryInfo& entry) {
        const TQualifier& qualifier = entry.symbol->getQualifier();
        if (qualifier.hasLocation()) return qualifier.layoutLocation;
        if (qualifier.semanticName == nullptr) return std::nullopt;
        const std::string semantic = normalisedSemantic(qualifier.semanticName);
        constexpr vlMemory::StringView color = "COLOR";
        if (!semantic.starts_with(color)) return std::nullopt;
        std::uint32_t target = 0;
        const char* const end = semantic.data() + semantic.size();
        const auto read = std::from_chars(semantic.data() + color.size(), end, target);
        if (read.ptr != end) return std::nullopt;
        return read.ec == std::errc::result_out_of_range ? targetCount : target;
    }

    int locationFor(EShLanguage language, const TVarEntryInfo& entry) {
        if (!isPlaced(entry)) return -1;
        if (isPixelOutput(language, entry)) return targetFor(entry);
        const std::string semantic = semanticOf(entry);
        const LocationTable& table = isVertexInput(language, entry) ? vertexInputs_ : varyings_;
        const auto location = table.find(semantic);
        if (location) return static_cast<int>(*location);
        fail(entry,
             fmt::format("'{}': more than {} vectors between stages", semantic, locationCount));
        return -1;
    }
    int targetFor(const TVarEntryInfo& entry) {
        const auto target = targets_.find(std::string(nameOf(entry)));
        if (target && *target < targetCount) return static_cast<int>(*target);
        fail(entry, fmt::format("more than {} targets are written", targetCount));
        return -1;
    }

    SHADER_TYPE stage_ = SHADER_TYPE::VERTEX;
    bool answers_ = false;
    std::set<Address> taken_;
    std::map<std::string, int> unregistered_;
    LocationTable vertexInputs_;
    std::set<std::string> vertexInputsSeen_;
    LocationTable varyings_;
    LocationTable targets_; ///< of the pixel stage, by name
    /// Locations of elements, by the array and its target.
    std::map<std::pair<std::string, std::uint32_t>, std::uint32_t> madeOfArrays_;
    MappedInterfaces mapped_;
    std::optional<ProgramDiagnostic> failure_;
};

/** Gives the bindings that a stage's textures got to their doubles. A texture that is sampled both
 *  with and without comparison becomes two variables of one name, of which only one is mapped. */
class DoubleBinder final : public glslang::TIntermTraverser {
public:
    void visitSymbol(glslang::TIntermSymbol* symbol) override {
        if (symbol->getBasicType() != glslang::EbtSampler) return;
        if (collects_)
            collect(*symbol);
        else
            bind(*symbol);
    }
    void run(TIntermNode* root) {
        for (const bool collects : {true, false}) {
            collects_ = collects;
            root->traverse(this);
        }
    }

private:
    /// What is mapped lies beyond the constant buffers' range.
    static bool isMapped(const glslang::TIntermSymbol& symbol) {
        return symbol.getQualifier().hasBinding() &&
               symbol.getQualifier().layoutBinding >= BindingModel::registersPerClass;
    }
    void collect(const glslang::TIntermSymbol& symbol) {
        if (isMapped(symbol)) mapped_[symbol.getName().c_str()] = symbol.getQualifier();
    }
    void bind(glslang::TIntermSymbol& symbol) const {
        if (isMapped(symbol)) return;
        const auto twin = mapped_.find(symbol.getName().c_str());
        if (twin == mapped_.end()) return;
        TQualifier& qualifier = symbol.getWritableType().getQualifier();
        qualifier.layoutBinding = twin->second.layoutBinding;
        qualifier.layoutSet = twin->second.layoutSet;
    }

    bool collects_ = true;
    std::map<std::string, TQualifier> mapped_;
};

} // namespace

std::string normalisedSemantic(vlMemory::StringView semantic) {
    std::string name(semantic);
    std::transform(name.begin(), name.end(), name.begin(), [](char c) {
        return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    });
    const std::size_t last = name.find_last_not_of("0123456789");
    if (last == std::string::npos || last + 1 == name.size()) return name;
    const std::size_t significant = name.find_first_not_of('0', last + 1);
    const std::string index =
            significant == std::string::npos ? std::string() : name.substr(significant);
    return name.substr(0, last + 1) + index;
}

std::optional<ProgramDiagnostic> mapInterfaces(const std::vector<LinkedStage>& stages,
                                               MappedInterfaces& into) {
    Resolver resolver;
    for (const bool answers : {false, true}) {
        for (const LinkedStage& linked : stages) {
            resolver.visit(linked.stage, answers);
            if (!linked.program->mapIO(&resolver) && !resolver.failure())
                return ProgramDiagnostic{
                        linked.stage, {}, 1, "the stage's inputs and outputs could not be mapped"};
            if (resolver.failure()) return resolver.failure();
        }
        if (!answers) resolver.placeAll();
    }
    for (const LinkedStage& linked : stages) {
        const glslang::TIntermediate* tree = linked.program->getIntermediate(linked.language);
        if (tree != nullptr) DoubleBinder().run(tree->getTreeRoot());
    }
    into = resolver.take();
    return std::nullopt;
}

} // namespace vlGraphics
