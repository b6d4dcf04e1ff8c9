#pragma once
#include <vlCommon/SingletonClass.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace vlEditor {

/** What the UI knows of the script that runs in each turn of the graphics thread. UI thread only.
 */
class RenderingScriptName final : public vlCommon::SingletonClass<RenderingScriptName> {
public:
    using Listener = std::function<void(const std::string& name)>;
    /** Whoever listens holds it; its end ends the listening. */
    using Hold = std::shared_ptr<const Listener>;

    /// Empty for none.
    const std::string& get() const { return name_; }
    void set(const std::string& name);

    /// The listener is called at once, and with each change.
    [[nodiscard]] Hold listen(Listener listener);

private:
    std::string name_;
    std::vector<std::weak_ptr<const Listener>> listeners_;
};

} // namespace vlEditor
