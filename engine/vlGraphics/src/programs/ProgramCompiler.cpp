#include "programs/ProgramCompiler.h"

#include "programs/HlslCompiler.h"
#include "programs/ProgramCache.h"
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

/// What the program's settings and the device ask for.
CompileRequest requestOf(const Program& program) {
    CompileRequest request = makeRequest(program.getType(),
                                         program.getMemory(),
                                         program.getActivateCrossCompilerDefines(),
                                         program.getIncludeFolder());
    request.boundLoops = program.getBoundLoops();
    request.writingStages = writingStages();
    request.mostPasses = mostLoopPasses();
    return request;
}

} // namespace

std::vector<vlMemory::String> Program::findIncludedFiles() const {
    const CompileRequest request = requestOf(*this);
    IncludeFiles files(request.workingPath, request.folder, request.filePrefix);
    readIncludes(request, files);
    return files.names();
}

/** One compilation, and later its result. */
struct ProgramCompiler::Job {
    const CompileRequest* request = nullptr; ///< the key in the table
    std::vector<Client> clients;             ///< who waits for it; none once it is done
    /// Who came while it was running and may see other files than it does: they wait for the next.
    std::vector<Client> lateClients;
    std::shared_ptr<const CompileReport> report; ///< the last one; null before
    bool isPending = false;                      ///< waits for a thread or runs
    bool isRunning = false;
    std::uint64_t lastUse = 0;
};

ProgramCompiler::ProgramCompiler(std::uint32_t threads, vlMemory::StringView folder)
    : ProgramCompiler(threads, compileKeptIn(folder), makeProgramGpu) {
}

ProgramCompiler::ProgramCompiler(std::uint32_t threads, Compile compile, MakeGpu makeGpu)
    : compile_(std::move(compile)), makeGpu_(std::move(makeGpu)), pool_(threadCountFor(threads)) {
}

ProgramCompiler::~ProgramCompiler() {
    const std::lock_guard guard(lock_);
    for (const auto& [request, job] : jobs_) {
        job->clients.clear();
        job->lateClients.clear();
    }
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
    const bool mayInclude = job->request->mayInclude();
    // What other files have a part in is looked at anew, and not on this thread.
    if (job->report && !mayInclude) {
        finished_.push_back({client, job->report});
        ChangeCount::bump();
        return {};
    }
    if (job->isRunning && mayInclude)
        job->lateClients.push_back(client);
    else
        job->clients.push_back(client);
    if (!job->isPending) queue(job);
    return {};
}

ProgramCompiler::Compile ProgramCompiler::compileKeptIn(vlMemory::StringView folder) {
    if (folder.empty()) return [](const CompileRequest& request) { return compileHlsl(request); };
    const auto cache = std::make_shared<ProgramCache>(folder);
    return [cache](const CompileRequest& request) {
        if (auto kept = cache->find(request)) return *std::move(kept);
        CompileReport report = compileHlsl(request);
        cache->keep(request, report);
        return report;
    };
}

void ProgramCompiler::queue(const std::shared_ptr<Job>& job) {
    job->isPending = true;
    pool_.addTask(vlTasks::makeTask([this, job] { run(job); }));
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
        if (std::erase_if(job->clients, isTicket) + std::erase_if(job->lateClients, isTicket) > 0)
            return;
    std::erase_if(finished_, [&](const Finished& entry) { return isTicket(entry.client); });
}

void ProgramCompiler::run(const std::shared_ptr<Job>& job) {
    {
        const std::lock_guard guard(lock_);
        if (job->clients.empty()) {
            job->isPending = false;
            if (!job->report) jobs_.erase(jobs_.find(*job->request));
            changed_.notify_all();
            return;
        }
        job->isRunning = true;
    }
    // The key stays where it is while the job is pending.
    auto report = reportFor(*job);
    const std::lock_guard guard(lock_);
    for (const Client& client : std::exchange(job->clients, {}))
        finished_.push_back({client, report});
    if (report->isLasting)
        job->report = std::move(report);
    else
        job->report.reset();
    job->isRunning = false;
    job->isPending = false;
    job->clients.swap(job->lateClients);
    if (!job->clients.empty()) queue(job);
    forgetOldest();
    ChangeCount::bump();
    changed_.notify_all();
}

/// The last one where it still holds.
std::shared_ptr<const CompileReport> ProgramCompiler::reportFor(const Job& job) const {
    if (job.report && areUnchanged(job.request->workingPath, job.report->probes)) return job.report;
    return std::make_shared<const CompileReport>(compileGuarded(*job.request));
}

CompileReport ProgramCompiler::compileGuarded(const CompileRequest& request) const {
    try {
        return compile_(request);
    } catch (const std::exception& error) {
        return CompileOutcome(tl::unexpected(ProgramCompilationResult(
                SHADER_TYPE::VERTEX, fmt::format("1: it cannot be compiled: {}", error.what()))));
    }
}

void ProgramCompiler::forgetOldest() {
    while (jobs_.size() > maxRemembered) {
        auto oldest = jobs_.end();
        for (auto job = jobs_.begin(); job != jobs_.end(); ++job) {
            if (job->second->isPending) continue;
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
    const CompileOutcome& outcome = finished.report->outcome;
    program->includedFiles_ = finished.report->includedFiles;
    if (!outcome) return fail(*program, outcome.error());
    const ProgramReflection& reflection = outcome->reflection;
    if (!reflection.obstacle.empty())
        return fail(*program,
                    ProgramCompilationResult({{reflection.obstacleStage,
                                               reflection.obstacleFile,
                                               reflection.obstacleLine,
                                               reflection.obstacle}}));
    auto gpu = makeGpu_(*outcome);
    if (!gpu) return fail(*program, ProgramCompilationResult({std::move(gpu.error())}));
    // What has not drawn yet may be no better than what comes now.
    if (program->isTried_) {
        program->triedGpu_ = std::move(program->gpu_);
        program->triedReflection_ = std::move(program->reflection_);
    }
    program->gpu_ = std::move(*gpu);
    program->reflection_ = outcome->reflection;
    program->isTried_ = false;
    if (outcome->tellingStages == 0) keep(*program);
    program->result_ = {};
    program->build_ = nextBuild();
    program->markChanged();
    manager->tellCompiled(*program);
}

void ProgramCompiler::keep(Program& program) {
    program.isTried_ = true;
    program.triedGpu_.reset();
    program.triedReflection_ = {};
}

void ProgramCompiler::takeBack(Program& program, const ProgramCompilationResult& why) {
    program.gpu_ = std::move(program.triedGpu_);
    program.reflection_ = std::exchange(program.triedReflection_, {});
    program.isTried_ = true;
    program.build_ = nextBuild();
    program.markChanged();
    fail(program, why);
}

void ProgramCompiler::fail(Program& program, const ProgramCompilationResult& result) {
    program.result_ = result;
    ProgramManager::getInstance()->tellCompiled(program);
}

void ProgramCompiler::waitForAll() {
    {
        std::unique_lock guard(lock_);
        changed_.wait(guard, [this] {
            return std::none_of(jobs_.begin(), jobs_.end(), [](const auto& entry) {
                return entry.second->isPending;
            });
        });
    }
    adoptFinished();
}

bool ProgramCompiler::isAnyCompiling() const {
    const std::lock_guard guard(lock_);
    return !finished_.empty() || std::any_of(jobs_.begin(), jobs_.end(), [](const auto& entry) {
        return !entry.second->clients.empty() || !entry.second->lateClients.empty();
    });
}

std::size_t ProgramCompiler::rememberedCount() const {
    const std::lock_guard guard(lock_);
    return jobs_.size();
}

} // namespace vlGraphics
