#include "app/JobStatus.h"
#include "core/EditorLogger.h"
#include "core/MessageOrchestrator.h"
#include "core/WorkerPool.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/Button.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/ProgressBar.h>
#include <vlWinUi/Static.h>
#include <vlWinUi/System.h>

#include <gtest/gtest.h>

#include <future>
#include <thread>

namespace vlEditor {
namespace {

using vlWinUi::ComponentManager;

TEST(JobStatus, ShowsTheJobThatRunsAndCancelsIt) {
    vlCommon::ThreadBorder::claimUi();
    vlWinUi::SystemOptions options;
    options.headless = true;
    ASSERT_TRUE(vlWinUi::System::initialize(options));
    auto& window = *ComponentManager::createOrRetrieve<vlWinUi::Window>("WINDOW");
    JobStatus::create(window);
    window.load();
    auto* label = ComponentManager::get<vlWinUi::Static>(JobStatus::labelName);
    auto* bar = ComponentManager::get<vlWinUi::ProgressBar>(JobStatus::barName);
    auto* cancel = ComponentManager::get<vlWinUi::Button>(JobStatus::cancelName);
    ASSERT_TRUE(label != nullptr && bar != nullptr && cancel != nullptr);
    EXPECT_FALSE(bar->isVisible());

    WorkerPool& pool = WorkerPool::getInstance();
    std::promise<void> reported;
    pool.addJob("Generating mesh 'rock'", [&](JobProgress& progress) {
        progress.report(0.25);
        reported.set_value();
        while (!progress.isCancelled())
            std::this_thread::yield();
    });
    pool.addJob("Next", [](JobProgress&) {});
    reported.get_future().wait();
    MessageOrchestrator::getInstance().drainUi();
    EXPECT_EQ(label->getText(), "(+1) Generating mesh 'rock'");
    EXPECT_EQ(bar->getShare(), 0.25);
    EXPECT_TRUE(cancel->isVisible());

    cancel->click();
    while (pool.pendingCount() > 0)
        std::this_thread::yield();
    MessageOrchestrator::getInstance().drainUi();
    EXPECT_FALSE(label->isVisible());
    EXPECT_FALSE(cancel->isVisible());

    WorkerPool::destroyInstance();
    EditorLogger::destroyInstance();
    MessageOrchestrator::getInstance().discard();
    vlWinUi::System::kill();
}

} // namespace
} // namespace vlEditor
