#include "programs/ProgramCompiler.h"

#include "programs/HlslCompiler.h"
#include "vulkan/ProgramGpu.h"

#include <vlGraphics/ChangeCount.h>
#include <vlTasks/LambdaTask.h>

#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <thread>
#include <utility>

namespace vlGraphics {

namespace {

/// Never 0, and never given twice in a process: a ticket also tells programs of one name apart.
std::uint64_t nextTicket() {
    static std::uint64_t last = 0;
    return ++last;
}

std::uint64_t nextBuild() {
    static std::uint64_t last = 0;
    return ++last;
}

std::size_t threadCountFor(std::uint32_t threads) {
    return threads != 0 ? threads : std::max(std::thread::hardware_concurrency(), 1U);
}

/// Without what the compilation does not look at, so that requests which differ only there are
/// equal.
CompileRequest requestOf(const Program& program) {
    CompileRequest request{program.getType(), {}, program.getActivateCrossCompilerDefines()};
    for (const SHADER_TYPE stage : stagesOf(request.type)) {
        const ProgramSourcesHolder& sources = program.getMemory();
        request.sources.setMemory(stage, sources.getMemory(stage));
        for (const DefineMacro& macro : sources.getDefineMacros(stage))
            request.sources.addDefineMacro(stage, macro.name, macro.value);
    }
    return request;
}

} // namespace

/** One compilation, and later its result. */
struct ProgramCompiler::Job {
    const CompileRequest* request = nullptr;       ///< the key in the table
    std::vector<Client> clients;                   ///< who waits for it; none once it is done
    std::shared_ptr<const CompileOutcome> outcome; ///< null until it is done
    std::uint64_t lastUse = 0;
};

ProgramCompiler::ProgramCompiler(std::uint32_t threads)
    : ProgramCompiler(
              threads,
              [](const CompileRequest& request) { return compileHlsl(request); },
              makeProgramGpu) {
}

ProgramCompiler::ProgramCompiler(std::uint32_t threads, Compile compile, MakeGpu makeGpu)
    : compile_(std::move(compile)), makeGpu_(std::move(makeGpu)), pool_(threadCountFor(threads)) {
}

ProgramCompiler::~ProgramCompiler() {
    const std::lock_guard guard(lock_);
    for (const auto& [request, job] : jobs_)
        job->clients.clear();
}

vlCommon::Result<> ProgramCompiler::start(Program& program) {
    ProgramManager* manager = ProgramManager::getInstance();
    if (manager == nullptr || manager->get(program.getName()) != &program)
        return vlCommon::fail("a program outside the program manager cannot be compiled");
    cancel(program);
    program.ticket_ = nextTicket();
    const Client client{manager->handleOf(&program), program.ticket_};

    const std::lock_guard guard(lock_);
    const auto [place, isNew] = jobs_.try_emplace(requestOf(program));
    if (isNew) {
        place->second = std::make_shared<Job>();
        place->second->request = &place->first;
    }
    const std::shared_ptr<Job>& job = place->second;
    job->lastUse = ++uses_;
    if (job->outcome) {
        finished_.push_back({client, job->outcome});
        ChangeCount::bump();
        return {};
    }
    job->clients.push_back(client);
    if (isNew) pool_.addTask(vlTasks::makeTask([this, job] { run(job); }));
    return {};
}

void ProgramCompiler::cancel(Program& program) {
    if (program.ticket_ == program.finished_) return;
    leave(program.ticket_);
    program.finished_ = program.ticket_;
}

void ProgramCompiler::leave(std::uint64_t ticket) {
    const auto isTicket = [&](const Client& client) { return client.ticket == ticket; };
    const std::lock_guard guard(lock_);
    for (const auto& [request, job] : jobs_)
        if (std::erase_if(job->clients, isTicket) > 0) return;
    std::erase_if(finished_, [&](const Finished& entry) { return isTicket(entry.client); });
}

void ProgramCompiler::run(const std::shared_ptr<Job>& job) {
    {
        const std::lock_guard guard(lock_);
        if (job->clients.empty()) {
            jobs_.erase(jobs_.find(*job->request));
            changed_.notify_all();
            return;
        }
    }
    // The key stays where it is until the job has its outcome.
    auto outcome = std::make_shared<const CompileOutcome>(compileGuarded(*job->request));
    const std::lock_guard guard(lock_);
    for (const Client& client : std::exchange(job->clients, {}))
        finished_.push_back({client, outcome});
    job->outcome = std::move(outcome);
    forgetOldest();
    ChangeCount::bump();
    changed_.notify_all();
}

CompileOutcome ProgramCompiler::compileGuarded(const CompileRequest& request) const {
    try {
        return compile_(request);
    } catch (const std::exception& error) {
        return tl::unexpected(ProgramCompilationResult(
                SHADER_TYPE::VERTEX, fmt::format("1: it cannot be compiled: {}", error.what())));
    }
}

void ProgramCompiler::forgetOldest() {
    while (jobs_.size() > maxRemembered) {
        auto oldest = jobs_.end();
        for (auto job = jobs_.begin(); job != jobs_.end(); ++job) {
            if (!job->second->outcome) continue;
            if (oldest == jobs_.end() || job->second->lastUse < oldest->second->lastUse)
                oldest = job;
        }
        if (oldest == jobs_.end()) return;
        jobs_.erase(oldest);
    }
}

void ProgramCompiler::adoptFinished() {
    std::vector<Finished> finished;
    {
        const std::lock_guard guard(lock_);
        finished.swap(finished_);
    }
    for (const Finished& entry : finished)
        adopt(entry);
}

void ProgramCompiler::adopt(const Finished& finished) {
    ProgramManager* manager = ProgramManager::getInstance();
    Program* program = manager == nullptr ? nullptr : manager->resolve(finished.client.program);
    if (program == nullptr || program->ticket_ != finished.client.ticket) return;
    program->finished_ = program->ticket_;
    ChangeCount::bump();
    const CompileOutcome& outcome = *finished.outcome;
    if (!outcome) return fail(*program, outcome.error());
    auto gpu = makeGpu_(*outcome);
    if (!gpu) return fail(*program, {SHADER_TYPE::VERTEX, "1: " + gpu.error().message});
    program->gpu_ = std::move(*gpu);
    program->reflection_ = outcome->reflection;
    program->result_ = {};
    program->build_ = nextBuild();
    program->markChanged();
    manager->tellCompiled(*program);
}

void ProgramCompiler::fail(Program& program, const ProgramCompilationResult& result) {
    program.result_ = result;
    ProgramManager::getInstance()->tellCompiled(program);
}

void ProgramCompiler::waitForAll() {
    {
        std::unique_lock guard(lock_);
        changed_.wait(guard, [this] {
            return std::all_of(jobs_.begin(), jobs_.end(), [](const auto& entry) {
                return entry.second->outcome != nullptr;
            });
        });
    }
    adoptFinished();
}

bool ProgramCompiler::isAnyCompiling() const {
    const std::lock_guard guard(lock_);
    return !finished_.empty() || std::any_of(jobs_.begin(), jobs_.end(), [](const auto& entry) {
        return !entry.second->clients.empty();
    });
}

std::size_t ProgramCompiler::rememberedCount() const {
    const std::lock_guard guard(lock_);
    return jobs_.size();
}

} // namespace vlGraphics
