#pragma once
#include <vlScripts/CompilationResult.h>

#include <memory>
#include <string>
#include <string_view>

namespace vlScripts {

/** A script's text that is known to be free of syntax errors, under the name that its errors bear.
 *  Never changes, so it goes over threads as std::shared_ptr<const CompiledScript>, and two
 *  snapshots taken one after the other both run as they were. */
class CompiledScript final {
public:
    /// Null, with the reason in the result, when the text is no script. Any thread.
    static std::shared_ptr<const CompiledScript>
    compile(std::string_view name, std::string_view text, CompilationResult& result);

    const std::string& getName() const { return name_; }
    const std::string& getText() const { return text_; }

private:
    CompiledScript(std::string_view name, std::string_view text) : name_(name), text_(text) {}
    std::string name_;
    std::string text_;
};

} // namespace vlScripts
