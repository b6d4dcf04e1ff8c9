#include "code/CodeRules.h"

#include <algorithm>

namespace vlWinUi {
namespace {

/// What a line is begun in.
enum Inside { Nothing, BlockComment, LineComment, Directive };

constexpr QStringView KEYWORDS[] = {u"break",         u"case",         u"cbuffer",
                                    u"centroid",      u"const",        u"continue",
                                    u"default",       u"discard",      u"do",
                                    u"else",          u"export",       u"extern",
                                    u"false",         u"for",          u"globallycoherent",
                                    u"groupshared",   u"if",           u"in",
                                    u"inline",        u"inout",        u"interface",
                                    u"linear",        u"namespace",    u"nointerpolation",
                                    u"noperspective", u"out",          u"packoffset",
                                    u"precise",       u"register",     u"return",
                                    u"row_major",     u"column_major", u"sample",
                                    u"shared",        u"static",       u"struct",
                                    u"switch",        u"tbuffer",      u"true",
                                    u"typedef",       u"uniform",      u"unorm",
                                    u"snorm",         u"volatile",     u"while"};

/// Those that take no size behind them.
constexpr QStringView TYPES[] = {u"AppendStructuredBuffer",
                                 u"Buffer",
                                 u"ByteAddressBuffer",
                                 u"ConsumeStructuredBuffer",
                                 u"ConstantBuffer",
                                 u"InputPatch",
                                 u"LineStream",
                                 u"OutputPatch",
                                 u"PointStream",
                                 u"RWBuffer",
                                 u"RWByteAddressBuffer",
                                 u"RWStructuredBuffer",
                                 u"RWTexture1D",
                                 u"RWTexture1DArray",
                                 u"RWTexture2D",
                                 u"RWTexture2DArray",
                                 u"RWTexture3D",
                                 u"RaytracingAccelerationStructure",
                                 u"SamplerComparisonState",
                                 u"SamplerState",
                                 u"StructuredBuffer",
                                 u"Texture1D",
                                 u"Texture1DArray",
                                 u"Texture2D",
                                 u"Texture2DArray",
                                 u"Texture2DMS",
                                 u"Texture2DMSArray",
                                 u"Texture3D",
                                 u"TextureCube",
                                 u"TextureCubeArray",
                                 u"TriangleStream",
                                 u"matrix",
                                 u"string",
                                 u"vector",
                                 u"void"};

constexpr QStringView SCALARS[] = {
        u"bool",       u"double",   u"dword",      u"float",    u"float16_t", u"float32_t",
        u"float64_t",  u"half",     u"int",        u"int16_t",  u"int32_t",   u"int64_t",
        u"min10float", u"min12int", u"min16float", u"min16int", u"min16uint", u"uint",
        u"uint16_t",   u"uint32_t", u"uint64_t"};

/// Functions.
constexpr QStringView INTRINSICS[] = {u"abs",
                                      u"acos",
                                      u"all",
                                      u"any",
                                      u"asdouble",
                                      u"asfloat",
                                      u"asin",
                                      u"asint",
                                      u"asuint",
                                      u"atan",
                                      u"atan2",
                                      u"ceil",
                                      u"clamp",
                                      u"clip",
                                      u"cos",
                                      u"cosh",
                                      u"countbits",
                                      u"cross",
                                      u"ddx",
                                      u"ddx_coarse",
                                      u"ddx_fine",
                                      u"ddy",
                                      u"ddy_coarse",
                                      u"ddy_fine",
                                      u"degrees",
                                      u"determinant",
                                      u"distance",
                                      u"dot",
                                      u"exp",
                                      u"exp2",
                                      u"f16tof32",
                                      u"f32tof16",
                                      u"faceforward",
                                      u"firstbithigh",
                                      u"firstbitlow",
                                      u"floor",
                                      u"fma",
                                      u"fmod",
                                      u"frac",
                                      u"frexp",
                                      u"fwidth",
                                      u"isfinite",
                                      u"isinf",
                                      u"isnan",
                                      u"ldexp",
                                      u"length",
                                      u"lerp",
                                      u"lit",
                                      u"log",
                                      u"log10",
                                      u"log2",
                                      u"mad",
                                      u"max",
                                      u"min",
                                      u"modf",
                                      u"mul",
                                      u"normalize",
                                      u"pow",
                                      u"radians",
                                      u"rcp",
                                      u"reflect",
                                      u"refract",
                                      u"reversebits",
                                      u"round",
                                      u"rsqrt",
                                      u"saturate",
                                      u"sign",
                                      u"sin",
                                      u"sincos",
                                      u"sinh",
                                      u"smoothstep",
                                      u"sqrt",
                                      u"step",
                                      u"tan",
                                      u"tanh",
                                      u"transpose",
                                      u"trunc",
                                      u"AllMemoryBarrier",
                                      u"AllMemoryBarrierWithGroupSync",
                                      u"DeviceMemoryBarrier",
                                      u"DeviceMemoryBarrierWithGroupSync",
                                      u"GroupMemoryBarrier",
                                      u"GroupMemoryBarrierWithGroupSync",
                                      u"InterlockedAdd",
                                      u"InterlockedAnd",
                                      u"InterlockedCompareExchange",
                                      u"InterlockedCompareStore",
                                      u"InterlockedExchange",
                                      u"InterlockedMax",
                                      u"InterlockedMin",
                                      u"InterlockedOr",
                                      u"InterlockedXor"};

/// What is written in brackets before a function, and behind a number sign.
constexpr QStringView ATTRIBUTES[] = {u"branch",
                                      u"domain",
                                      u"earlydepthstencil",
                                      u"flatten",
                                      u"loop",
                                      u"maxvertexcount",
                                      u"numthreads",
                                      u"outputcontrolpoints",
                                      u"outputtopology",
                                      u"partitioning",
                                      u"patchconstantfunc",
                                      u"unroll",
                                      u"define",
                                      u"elif",
                                      u"endif",
                                      u"ifdef",
                                      u"ifndef",
                                      u"include",
                                      u"undef"};

/// The meanings of what goes in and out of a stage.
constexpr QStringView SEMANTICS[] = {u"POSITION",
                                     u"NORMAL",
                                     u"TEXCOORD",
                                     u"COLOR",
                                     u"TANGENT",
                                     u"BINORMAL",
                                     u"WORLD_MATRIX",
                                     u"PICKINGID",
                                     u"SV_ClipDistance",
                                     u"SV_Coverage",
                                     u"SV_CullDistance",
                                     u"SV_Depth",
                                     u"SV_DispatchThreadID",
                                     u"SV_DomainLocation",
                                     u"SV_GroupID",
                                     u"SV_GroupIndex",
                                     u"SV_GroupThreadID",
                                     u"SV_GSInstanceID",
                                     u"SV_InsideTessFactor",
                                     u"SV_InstanceID",
                                     u"SV_IsFrontFace",
                                     u"SV_OutputControlPointID",
                                     u"SV_Position",
                                     u"SV_PrimitiveID",
                                     u"SV_RenderTargetArrayIndex",
                                     u"SV_SampleIndex",
                                     u"SV_Target",
                                     u"SV_TessFactor",
                                     u"SV_VertexID",
                                     u"SV_ViewportArrayIndex"};

/// Of textures, buffers and streams.
constexpr QStringView METHODS[] = {u"Append",
                                   u"CalculateLevelOfDetail",
                                   u"Consume",
                                   u"DecrementCounter",
                                   u"Gather",
                                   u"GatherAlpha",
                                   u"GatherBlue",
                                   u"GatherCmp",
                                   u"GatherGreen",
                                   u"GatherRed",
                                   u"GetDimensions",
                                   u"GetSamplePosition",
                                   u"IncrementCounter",
                                   u"InterlockedAdd",
                                   u"Load",
                                   u"Load2",
                                   u"Load3",
                                   u"Load4",
                                   u"RestartStrip",
                                   u"Sample",
                                   u"SampleBias",
                                   u"SampleCmp",
                                   u"SampleCmpLevelZero",
                                   u"SampleGrad",
                                   u"SampleLevel",
                                   u"Store",
                                   u"Store2",
                                   u"Store3",
                                   u"Store4"};

/// "float", "float3", "float4x4".
bool isScalarOrVector(QStringView word) {
    const auto isSize = [](QStringView size) {
        const auto isOne = [&](qsizetype at) { return size[at] >= u'1' && size[at] <= u'4'; };
        if (size.isEmpty()) return true;
        if (size.size() == 1) return isOne(0);
        return size.size() == 3 && isOne(0) && size[1] == u'x' && isOne(2);
    };
    return std::ranges::any_of(SCALARS, [&](QStringView scalar) {
        return word.startsWith(scalar) && isSize(word.mid(scalar.size()));
    });
}

/// The vectors and matrices that shaders mostly use.
std::vector<QString> sizedTypes() {
    std::vector<QString> types;
    for (const QStringView scalar : {u"bool", u"float", u"half", u"int", u"uint"})
        for (int size = 2; size <= 4; ++size)
            types.push_back(scalar.toString() + QString::number(size));
    for (const QStringView matrix :
         {u"float2x2", u"float3x3", u"float3x4", u"float4x3", u"float4x4"})
        types.push_back(matrix.toString());
    return types;
}

class Scanner {
public:
    Scanner(QStringView line, std::vector<Token>& tokens) : line_(line), tokens_(tokens) {}

    int run(int state) {
        const bool goesOn = line_.endsWith(u'\\');
        if (state == LineComment) {
            add(0, line_.size(), TokenKind::Comment);
            return goesOn ? LineComment : Nothing;
        }
        inDirective_ = state == Directive || line_.trimmed().startsWith(u'#');
        int next = state == BlockComment ? finishComment(0, 0) : Nothing;
        while (next == Nothing && at_ < line_.size())
            next = inDirective_ ? scanDirective() : scanOne();
        if (next == Nothing && inDirective_ && goesOn) next = Directive;
        return next;
    }

private:
    void add(qsizetype begin, qsizetype end, TokenKind kind) {
        if (end > begin) tokens_.push_back({begin, end - begin, kind});
        at_ = end;
    }
    int finishComment(qsizetype begin, qsizetype inner) {
        const qsizetype found = line_.indexOf(u"*/", inner);
        add(begin, found < 0 ? line_.size() : found + 2, TokenKind::Comment);
        return found < 0 ? BlockComment : Nothing;
    }
    /// Nothing where no comment begins; else what is given back is in `next`.
    bool scanComment(int& next) {
        const QStringView rest = line_.mid(at_);
        if (rest.startsWith(u"//")) {
            add(at_, line_.size(), TokenKind::Comment);
            next = line_.endsWith(u'\\') ? LineComment : Nothing;
            return true;
        }
        if (!rest.startsWith(u"/*")) return false;
        next = finishComment(at_, at_ + 2);
        return true;
    }
    /// All but its comments in one colour.
    int scanDirective() {
        int next = Nothing;
        if (scanComment(next)) return next;
        const auto positive = [this](qsizetype found) { return found < 0 ? line_.size() : found; };
        const qsizetype end =
                std::min(positive(line_.indexOf(u"//", at_)), positive(line_.indexOf(u"/*", at_)));
        add(at_, end, TokenKind::Preprocessor);
        return Nothing;
    }
    int scanOne() {
        const qsizetype begin = at_;
        const QChar c = line_[begin];
        int next = Nothing;
        if (scanComment(next)) return next;
        if (c == u'"' || c == u'\'') {
            add(begin, endOfQuoted(line_, begin + 1, c), TokenKind::String);
        } else if (beginsWord(c)) {
            at_ = endOfWord(line_, begin);
            const QStringView word = line_.mid(begin, at_ - begin);
            const bool member = begin > 0 && line_[begin - 1] == u'.';
            if (std::ranges::find(KEYWORDS, word) != std::end(KEYWORDS))
                add(begin, at_, TokenKind::Keyword);
            else if (!member &&
                     (std::ranges::find(TYPES, word) != std::end(TYPES) || isScalarOrVector(word)))
                add(begin, at_, TokenKind::Type);
        } else if (isDigit(c) ||
                   (c == u'.' && begin + 1 < line_.size() && isDigit(line_[begin + 1]))) {
            add(begin, endOfNumber(line_, begin), TokenKind::Number);
        } else {
            ++at_;
        }
        return Nothing;
    }

    QStringView line_;
    std::vector<Token>& tokens_;
    qsizetype at_ = 0;
    bool inDirective_ = false;
};

} // namespace

const CodeRules& hlslRules() {
    static const std::vector<QString> sized = sizedTypes();
    static const std::vector<QStringView> words = [] {
        std::vector<QStringView> all(sized.begin(), sized.end());
        for (const std::span<const QStringView> list : {std::span<const QStringView>(KEYWORDS),
                                                        std::span<const QStringView>(TYPES),
                                                        std::span<const QStringView>(SCALARS),
                                                        std::span<const QStringView>(INTRINSICS),
                                                        std::span<const QStringView>(ATTRIBUTES),
                                                        std::span<const QStringView>(SEMANTICS)})
            all.insert(all.end(), list.begin(), list.end());
        return all;
    }();
    static const CodeRules rules{.lineComment = QStringLiteral("//"),
                                 .scan =
                                         [](QStringView line, int state, std::vector<Token>& to) {
                                             return Scanner(line, to).run(state);
                                         },
                                 .words = words,
                                 .members = METHODS,
                                 .memberMarks = QStringLiteral(".")};
    return rules;
}

} // namespace vlWinUi
