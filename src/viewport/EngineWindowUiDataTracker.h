#pragma once
#include <vlCommon/SingletonClass.h>
#include <vlMemory/String.h>

#include <map>
#include <string>
#include <vector>

namespace vlEditor {

/** Hears of viewports that can be drawn from now on. UI thread only. */
class EngineWindowUiListener {
public:
    virtual void windowFinalized(const std::string& surface) = 0;

protected:
    EngineWindowUiListener() = default;
    EngineWindowUiListener(const EngineWindowUiListener&) = default;
    EngineWindowUiListener& operator=(const EngineWindowUiListener&) = default;
    ~EngineWindowUiListener() = default;
};

/** The UI's copy of the viewports that the engine has, by surface name. UI thread only. */
class EngineWindowUiDataTracker final : public vlCommon::SingletonClass<EngineWindowUiDataTracker> {
public:
    struct Record {
        std::string surface;
        std::string compositor; ///< that it is seen through
    };

    void add(const Record& record);
    /// A window that is not known is passed over, here and below.
    void setCompositor(vlMemory::StringView surface, vlMemory::StringView compositor);
    void erase(vlMemory::StringView surface);
    /// Null when there is none.
    const Record* find(vlMemory::StringView surface) const;
    const std::map<std::string, Record, std::less<>>& all() const { return records_; }

    /// Not owned.
    void addListener(EngineWindowUiListener& listener) { listeners_.push_back(&listener); }
    void removeListener(EngineWindowUiListener& listener) { std::erase(listeners_, &listener); }

private:
    std::map<std::string, Record, std::less<>> records_;
    std::vector<EngineWindowUiListener*> listeners_;
};

} // namespace vlEditor
