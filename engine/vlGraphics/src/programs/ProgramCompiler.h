#pragma once
#include "programs/CompileRequest.h"

#include <vlCommon/Result.h>
#include <vlCommon/SingletonClass.h>
#include <vlGraphics/Handle.h>
#include <vlGraphics/Program.h>
#include <vlMemory/String.h>
#include <vlTasks/ThreadPool.h>

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

namespace vlGraphics {

/** Compiles programs on threads of its own. Equal requests share one compilation and its result,
 * also later ones while the result is remembered and the files that it included are as they were.
 * Made and ended with the engine; ending waits for
 * the compilations that run and forgets the others.
 *
 *  Every method belongs to the thread that owns the engine. Programs are known by handle and
 * ticket, never by address: one that is erased, unloaded or compiled anew in the meantime gets
 * nothing. */
class ProgramCompiler final : public vlCommon::MaybeSingletonClass<ProgramCompiler> {
public:
    using Compile = std::function<CompileReport(const CompileRequest&)>;
    using MakeGpu = std::function<tl::expected<std::unique_ptr<Program::Gpu>, ProgramDiagnostic>(
            const CompiledProgram&)>;

    /// Results that are remembered at most; the one unused for longest goes first.
    static constexpr std::size_t maxRemembered = 256;

    /// 0 threads take the processor's count. Results are kept in the folder from run to run; an
    /// empty one keeps none.
    ProgramCompiler(std::uint32_t threads, vlMemory::StringView folder);
    /// The engine's own compiling, with results kept in the folder.
    static Compile compileKeptIn(vlMemory::StringView folder);
    /// With other steps than the engine's, for tests.
    ProgramCompiler(std::uint32_t threads, Compile compile, MakeGpu makeGpu);
    ~ProgramCompiler();

    /// Compiles what the program's settings say now; an earlier compilation of it no longer counts.
    vlCommon::Result<> start(Program& program);
    /// Whatever is under way for the program no longer counts.
    void cancel(Program& program);

    /// The result in use draws without being stopped: the one before it is no longer needed.
    void keep(Program& program);
    /// The device had to leave loops of the result in use: the last one known to draw without comes
    /// back, and where there is none the program is not drawn with until it is compiled anew.
    void takeBack(Program& program, const ProgramCompilationResult& why);

    /// Brings finished results into their programs, in the order in which they finished.
    void adoptFinished();
    /// Returns once no compilation is under way and all are adopted.
    void waitForAll();
    bool isAnyCompiling() const;
    std::size_t rememberedCount() const;

private:
    struct Client {
        Handle<Program> program;
        std::uint64_t ticket = 0;
    };
    struct Job;
    struct Finished {
        Client client;
        std::shared_ptr<const CompileReport> report;
    };
    using Jobs = std::unordered_map<CompileRequest, std::shared_ptr<Job>, CompileRequestHash>;

    void run(const std::shared_ptr<Job>& job);
    void queue(const std::shared_ptr<Job>& job);
    std::shared_ptr<const CompileReport> reportFor(const Job& job) const;
    CompileReport compileGuarded(const CompileRequest& request) const;
    void leave(std::uint64_t ticket);
    void forgetOldest();
    void adopt(const Finished& finished);
    void fail(Program& program, const ProgramCompilationResult& result);

    Compile compile_;
    MakeGpu makeGpu_;
    mutable std::mutex lock_; ///< guards all down to the pool
    std::condition_variable changed_;
    Jobs jobs_;
    std::vector<Finished> finished_;
    std::uint64_t uses_ = 0;
    vlTasks::ThreadPool pool_; ///< last: its threads use the above
};

} // namespace vlGraphics
