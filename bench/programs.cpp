// A thousand programs compiled through the engine on all threads, against the same stages through
// nothing but the HLSL compiler on as many threads: parsed, linked and made optimised SPIR-V. Then
// from the folder where compiled programs are kept, and one program that is edited.
#include "Report.h"
#include "hlsl_programs.h"
#include "programs/ProgramCompiler.h"
#include "vulkan/ProgramGpu.h"

#include <vlGraphics/Program.h>

#include <fmt/format.h>
#include <glslang/Public/ShaderLang.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace bench {
namespace {

using namespace vlGraphics;

[[noreturn]] void stop(const std::string& text) {
    fmt::print(stderr, "programs: {}\n", text);
    std::exit(1);
}

double bareMs(const std::vector<ProgramSourcesHolder>& all) {
    const double start = nowMs();
    std::atomic<std::size_t> next = 0;
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < std::max(std::thread::hardware_concurrency(), 1U); ++i)
        threads.emplace_back([&] {
            for (std::size_t at = next++; at < all.size(); at = next++)
                compileBare(all[at]);
        });
    for (std::thread& thread : threads)
        thread.join();
    return nowMs() - start;
}

tl::expected<std::unique_ptr<Program::Gpu>, ProgramDiagnostic>
withoutDevice(const CompiledProgram&) {
    return std::unique_ptr<Program::Gpu>();
}

/** The engine's compiler without a device behind it. */
class Engine {
public:
    explicit Engine(vlMemory::StringView folder)
        : compiler_(0, ProgramCompiler::compileKeptIn(folder), withoutDevice) {}

    double compileMs(const std::vector<ProgramSourcesHolder>& all) {
        std::vector<Program*> programs;
        for (std::size_t i = 0; i < all.size(); ++i) {
            programs.push_back(programs_.createOrRetrieve(fmt::format("p{}", i)));
            programs.back()->setFromMemory(all[i]);
        }
        const double start = nowMs();
        for (Program* program : programs)
            if (!program->load()) stop("a program does not start to compile");
        programs_.waitForAll();
        const double took = nowMs() - start;
        for (const Program* program : programs)
            if (!program->getLastCompilationResult().isSuccess())
                stop(program->getLastCompilationResult().getErrorMessage());
        return took;
    }

private:
    ProgramManager programs_;
    ProgramCompiler compiler_;
};

void compareAll(const std::vector<ProgramSourcesHolder>& all, int rounds) {
    Samples ours;
    Samples bare;
    Samples oursCpu;
    Samples bareCpu;
    for (int round = 0; round < rounds; ++round) {
        double cpu = processCpuMs();
        ours.add(Engine("").compileMs(all));
        oursCpu.add(processCpuMs() - cpu);
        cpu = processCpuMs();
        bare.add(bareMs(all));
        bareCpu.add(processCpuMs() - cpu);
    }
    summarise(fmt::format("{} programs compiled, ms", all.size()),
              withSpread(ours),
              withSpread(bare),
              pairedRatios(ours, bare),
              "1.3");
    summarise("processor time of it, ms",
              withSpread(oursCpu),
              withSpread(bareCpu),
              pairedRatios(oursCpu, bareCpu));
}

void compareKept(const std::vector<ProgramSourcesHolder>& all, int rounds) {
    namespace fs = std::filesystem;
    const fs::path folder =
            fs::temp_directory_path() / fmt::format("vl_bench_programs_{}", ::getpid());
    Samples kept;
    Samples compiled;
    for (int round = 0; round < rounds; ++round) {
        fs::remove_all(folder);
        compiled.add(Engine(folder.string()).compileMs(all));
        kept.add(Engine(folder.string()).compileMs(all));
    }
    fs::remove_all(folder);
    summarise(fmt::format("{} programs again (compiled anew), ms", all.size()),
              withSpread(kept),
              withSpread(compiled),
              pairedRatios(kept, compiled),
              "0.1");
}

void compareEdit(int rounds) {
    Engine engine("");
    Samples ours;
    Samples bare;
    Samples oursCpu;
    Samples bareCpu;
    constexpr int edits = 20;
    for (int round = 0; round < rounds * edits; ++round) {
        const auto one = makeSources(1, 5000 + round);
        double cpu = processCpuMs();
        ours.add(engine.compileMs(one));
        oursCpu.add(processCpuMs() - cpu);
        cpu = processCpuMs();
        const double start = nowMs();
        compileBare(one.front());
        bare.add(nowMs() - start);
        bareCpu.add(processCpuMs() - cpu);
    }
    summarise("one program edited, ms",
              withSpread(ours),
              withSpread(bare),
              pairedRatios(ours, bare),
              "1.5");
    summarise("processor time of it, ms",
              withSpread(oursCpu),
              withSpread(bareCpu),
              pairedRatios(oursCpu, bareCpu));
}

} // namespace
} // namespace bench

int main(int argc, char** argv) {
    const int rounds = argc > 1 ? std::max(std::atoi(argv[1]), 1) : 5;
    const int count = argc > 2 ? std::max(std::atoi(argv[2]), 1) : 1000;
    glslang::InitializeProcess();
    const auto all = bench::makeSources(count, 0);
    bench::bareMs(bench::makeSources(4, 9000)); // the compiler's own tables
    bench::compareAll(all, rounds);
    bench::compareKept(all, rounds);
    bench::compareEdit(rounds);
    glslang::FinalizeProcess();
    return 0;
}
