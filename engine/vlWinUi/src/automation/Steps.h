#pragma once
#include "automation/Target.h"

#include <vlWinUi/Automation.h>

#include <memory>
#include <vector>

namespace vlWinUi {

/** What a person does one after the other, each in a turn of its own of the event loop. The turn
 *  after a step is asked for before the step runs, so that a step which runs a loop of its own does
 *  not hold up what follows. The first failure ends them all. UI thread only. */
class Steps : public std::enable_shared_from_this<Steps> {
public:
    using Step = std::function<vlCommon::Result<>()>;

    static void run(std::vector<Step> steps, Automation::Done done);

    Steps(std::vector<Step> steps, Automation::Done done);

private:
    void ask(std::size_t index);
    void turn(std::size_t index);
    void finish(vlCommon::Result<> result);

    std::vector<Step> steps_;
    Automation::Done done_; ///< empty once called
};

} // namespace vlWinUi
