#include "app/JobStatus.h"

#include "core/WorkerPool.h"

#include <vlWinUi/Button.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/ProgressBar.h>
#include <vlWinUi/Static.h>

namespace vlEditor {
namespace {

using vlWinUi::ComponentManager;

constexpr unsigned labelWidth = 260;
constexpr unsigned barWidth = 140;
constexpr unsigned cancelWidth = 64;

void show(const std::vector<WorkerPool::JobState>& jobs) {
    auto* label = ComponentManager::get<vlWinUi::Static>(JobStatus::labelName);
    auto* bar = ComponentManager::get<vlWinUi::ProgressBar>(JobStatus::barName);
    auto* cancel = ComponentManager::get<vlWinUi::Button>(JobStatus::cancelName);
    if (label == nullptr || bar == nullptr || cancel == nullptr) return;
    if (!jobs.empty()) {
        const WorkerPool::JobState& job = jobs.front();
        const std::size_t waiting = jobs.size() - 1;
        // In front: the end of a long label is cut.
        label->setText((waiting == 0 ? "" : "(+" + std::to_string(waiting) + ") ") + job.label);
        bar->setShare(job.share);
        bar->setText(job.label);
        cancel->setEnabled(!job.cancelled, "It is being cancelled.");
        cancel->setButtonClickCallback([id = job.id] { WorkerPool::getInstance().cancel(id); });
    }
    for (vlWinUi::Component* part : std::initializer_list<vlWinUi::Component*>{label, bar, cancel})
        part->setVisible(!jobs.empty());
}

} // namespace

void JobStatus::create(vlWinUi::Window& window) {
    auto& label = *ComponentManager::createOrRetrieve<vlWinUi::Static>(labelName);
    auto& bar = *ComponentManager::createOrRetrieve<vlWinUi::ProgressBar>(barName);
    auto& cancel = *ComponentManager::createOrRetrieve<vlWinUi::Button>(cancelName);
    label.setAlignment(vlWinUi::Static::Alignment::Right);
    cancel.setText("Cancel");
    cancel.setToolTip("Ends this job without a result");
    window.addStatusComponent(label, labelWidth);
    window.addStatusComponent(bar, barWidth);
    window.addStatusComponent(cancel, cancelWidth);
    show({});
    WorkerPool::getInstance().setJobsCallback([] { show(WorkerPool::getInstance().getJobs()); });
}

} // namespace vlEditor
