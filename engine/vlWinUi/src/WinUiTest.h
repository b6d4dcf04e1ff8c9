#pragma once
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/LogManager.h>
#include <vlWinUi/System.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vlWinUi::test {

/** A widget library of its own for each test, drawn in memory, with what it logs. */
class WinUiTest : public testing::Test, private vlLog::Logger {
protected:
    void SetUp() override;
    void TearDown() override;

    template <class T> T& make(const std::string& name) {
        T* made = ComponentManager::createOrRetrieve<T>(name);
        EXPECT_NE(made, nullptr);
        return *made;
    }

    std::vector<std::string> lines;

private:
    void log(vlMemory::StringView text) override { lines.emplace_back(text); }
};

/// A left click as the window system tells it, in the widget's own pixels.
void click(Component& component, int x, int y);
void press(Component& component, int qtKey);

} // namespace vlWinUi::test
