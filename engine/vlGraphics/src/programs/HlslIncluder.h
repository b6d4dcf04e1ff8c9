#pragma once
#include "programs/IncludeFiles.h"

#include <glslang/Public/ShaderLang.h>

#include <deque>
#include <string>

namespace vlGraphics {

/** Hands the compiler the files of one stage. In the compiler's messages a file is called '@' and
 *  the number of its order in IncludeFiles. */
class HlslIncluder final : public glslang::TShader::Includer {
public:
    explicit HlslIncluder(IncludeFiles& files) : walk_(files) {}

    IncludeResult* includeLocal(const char* name, const char* includer, std::size_t depth) override;
    IncludeResult*
    includeSystem(const char* name, const char* includer, std::size_t depth) override;
    void releaseInclude(IncludeResult* result) override;

    /// Why the first file that could not be included could not be; empty where there is none.
    const std::string& failure() const { return failure_; }

private:
    IncludeResult* include(const char* name, bool isLocal);

    IncludeWalk walk_;
    std::deque<IncludeResult> results_; ///< the compiler keeps pointers into it
    std::string failure_;
};

} // namespace vlGraphics
