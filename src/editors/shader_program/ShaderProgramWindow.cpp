#include "editors/shader_program/ShaderProgramWindow.h"

#include "editors/shader_program/IncludeLines.h"
#include "editors/shader_program/IncludedFileView.h"

#include <vlGraphics/StructToString.h>
#include <vlResources/ResourceManager.h>
#include <vlWinUi/Button.h>
#include <vlWinUi/CheckBox.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/FileExplorer.h>
#include <vlWinUi/ListBox.h>
#include <vlWinUi/MultiLineEdit.h>
#include <vlWinUi/Notificator.h>
#include <vlWinUi/Static.h>
#include <vlWinUi/TabWindow.h>

#include <fmt/format.h>

#include <algorithm>

namespace vlEditor {
namespace {

using vlWinUi::Button;
using vlWinUi::CheckBox;
using vlWinUi::CodeEdit;
using vlWinUi::ComponentManager;
using vlWinUi::Emphasis;
using vlWinUi::ListBox;
using vlWinUi::TabWindow;
using Names = Bindings<ShaderProgramKind>::Names;

/// By the engine's PROGRAM_TYPE, from 1 on.
constexpr std::array<std::string_view, 4> typeChecks{
        "_PIPELINE_CHECK", "_GEOMETRY_CHECK", "_COMPUTE_CHECK", "_RAYTRACING_CHECK"};

vlWinUi::FileExplorer& sourceExplorer() {
    constexpr const char* name = "EDITOR_SHADER_PROGRAM_FROM_FILE_EXPLO";
    const bool isNew = ComponentManager::get(name) == nullptr;
    auto& files = *ComponentManager::createOrRetrieve<vlWinUi::FileExplorer>(name);
    if (!isNew) return files;
    files.setText("Open a stage's source");
    files.setMode(vlWinUi::FileExplorer::Mode::Open);
    files.addFilter("HLSL", "hlsl");
    files.setFollowSelfDir(true);
    files.setCurrentDir(vlResources::ResourceManager::getInstance().getWorkingPathAbsolute());
    return files;
}

std::string logOf(const ShaderProgramRecord& record) {
    if (record.failed) {
        return fmt::format("Shader compilation error at stage {} : \n{}",
                           vlGraphics::StructToString::getShaderTypeString(record.failedStage),
                           record.failure);
    }
    return record.isUsable ? "Compilation went fine." : "";
}

/// The end of a long path: what is wrong there is to be seen beside it.
std::string shortened(const std::string& path) {
    constexpr std::size_t longest = 32;
    if (path.size() <= longest) return path;
    const std::size_t name = path.rfind('/');
    const std::size_t folder =
            name == 0 || name == std::string::npos ? name : path.rfind('/', name - 1);
    return folder == std::string::npos ? path : "..." + path.substr(folder);
}

std::string placeOf(const ShaderProgramDiagnostic& problem) {
    const std::string stage(stageLabel(problem.stage));
    return problem.file.empty()
                   ? fmt::format("{}, line {}", stage, problem.line)
                   : fmt::format("{}, {}:{}", stage, shortened(problem.file), problem.line);
}

/// Where a problem is to be seen in its stage's own source: one in an included file at the line
/// that includes it.
std::uint32_t stageLineOf(const ShaderProgramDiagnostic& problem,
                          const ShaderProgramRecord& record) {
    return problem.file.empty() ? problem.line
                                : lineLeadingTo(problem.file, record.sources.at(problem.stage));
}

/// "b0  PassBuffer  128 bytes"
std::string lineOf(const ShaderProgramResource& resource) {
    std::string line = fmt::format("{}{}", resource.letter, resource.slot);
    if (resource.space != 0) line += fmt::format(", space{}", resource.space);
    line += "  " + resource.name;
    if (resource.byteSize != 0) line += fmt::format("  ({} bytes)", resource.byteSize);
    return line;
}

bool includes(const std::string& program, const std::string& file) {
    const auto* record = ShaderProgramUiDataTracker::getInstance().get(program);
    return record != nullptr &&
           std::ranges::find(record->includedFiles, file) != record->includedFiles.end();
}

std::string quoted(const Names& names) {
    return fmt::format("'{}'", fmt::join(names, "', '"));
}

} // namespace

template <class Widget> Widget& ShaderProgramWindow::widget(std::string_view suffix) const {
    return *ComponentManager::createOrRetrieve<Widget>(bindings_.getBase() + std::string(suffix));
}

void ShaderProgramWindow::bind(Bindings<ShaderProgramKind>& bindings) {
    const auto window = std::make_shared<ShaderProgramWindow>(bindings);
    bindings.keep(window);
    window->bindTypes();
    window->bindStages();
    window->bindButtons();
    window->show(nullptr);
}

ShaderProgramWindow::ShaderProgramWindow(Bindings<ShaderProgramKind>& bindings)
    : bindings_(bindings) {
}

ShaderProgramWindow::Report ShaderProgramWindow::reportOf(const ShaderProgramRecord& record) {
    Report report;
    report.name = record.name;
    for (std::uint32_t stage = 0; stage < programStageCount; ++stage) {
        report.hasSource[stage] = !record.sources[stage].empty();
        const StageFile* file = ProgramFiles::hasInstance()
                                        ? ProgramFiles::getInstance().find(record.name, stage)
                                        : nullptr;
        // Its text is no matter here.
        if (file != nullptr) report.files[stage] = {file->path, {}, file->isAhead};
    }
    report.isCompiling = record.isCompiling;
    report.isUsable = record.isUsable;
    report.log = logOf(record);
    report.diagnostics = record.diagnostics;
    for (const ShaderProgramDiagnostic& each : record.diagnostics)
        report.stageLines.push_back(stageLineOf(each, record));
    report.resources = record.resources;
    report.macros = record.macros;
    return report;
}

void ShaderProgramWindow::bindTypes() {
    const auto self = weak_from_this();
    for (std::uint32_t i = 0; i < typeChecks.size(); ++i) {
        auto& box = widget<CheckBox>(typeChecks[i]);
        box.setCheckCallback([self, &box, type = i + 1](bool) {
            // It is what it says once the engine says so.
            box.setChecked(false);
            if (const auto window = self.lock()) window->askForType(type, box);
        });
    }
    bindings_.row<std::uint32_t>([](const ShaderProgramRecord& record) { return record.type; },
                                 [self](const std::uint32_t* type, bool isMixed) {
                                     const auto window = self.lock();
                                     if (!window) return;
                                     for (std::uint32_t i = 0; i < typeChecks.size(); ++i) {
                                         const bool isIt =
                                                 type != nullptr && !isMixed && *type == i + 1;
                                         auto& box = window->widget<CheckBox>(typeChecks[i]);
                                         box.setChecked(isIt);
                                         box.setEnabled(!isIt, "The program is of this type.");
                                     }
                                 });
}

void ShaderProgramWindow::askForType(std::uint32_t type, vlWinUi::Component& anchor) {
    const Names names = bindings_.selectedNames();
    if (names.empty()) return;
    const std::string question =
            fmt::format("Changing {} to another shader program type. This will reset its "
                        "sources.\nAre you sure ?",
                        quoted(names));
    vlWinUi::Notificator::confirm(question, anchor, [names, type] {
        const History::Scope gesture;
        for (const std::string& name : names) {
            const auto* record = ShaderProgramUiDataTracker::getInstance().get(name);
            if (record != nullptr && record->type != type)
                postByUser(ChangeShaderProgramTypeMessage(name, {type}));
        }
    });
}

void ShaderProgramWindow::bindStages() {
    const auto self = weak_from_this();
    std::vector<ShaderProgramSource> sources;
    std::vector<ShaderProgramMacros> macros;
    for (std::uint32_t stage = 0; stage < programStageCount; ++stage) {
        sources.push_back({{}, stage});
        macros.push_back({{}, stage});
    }
    showSource_ = bindings_.code("_SOURCES_EDIT", sources);
    showMacros_ = bindings_.code("_MACROS_EDIT", macros);
    auto& tabs = widget<TabWindow>("_STAGES_TABS");
    tabs.setPagesShown(false);
    tabs.setTabSwitchCallback([self](std::size_t, std::size_t to) {
        if (const auto window = self.lock()) window->showStage(static_cast<std::uint32_t>(to));
        return true;
    });
    bindings_.row<Report>(reportOf, [self](const Report* report, bool isMixed) {
        if (const auto window = self.lock()) window->show(isMixed ? nullptr : report);
    });
}

void ShaderProgramWindow::bindButtons() {
    const auto self = weak_from_this();
    auto& log = widget<vlWinUi::MultiLineEdit>("_LOG_EDIT");
    log.setReadOnly(true);
    log.setWrapping(true);
    bindings_.button("_COMPILE", [](const Names& names) {
        for (const std::string& name : names)
            postByUser(CompileShaderProgramSourcesMessage(name, {}));
    });
    bindings_.button("_SOURCES_FETCH", [self](const Names&) {
        if (const auto window = self.lock()) window->openFile();
    });
    bindings_.button("_FILE_RELOAD", [self](const Names&) {
        if (const auto window = self.lock()) window->reloadFile();
    });
    widget<vlWinUi::Static>("_FILE_LABEL").setPath(true);
    auto& problems = widget<ListBox>("_PROBLEMS_LIST");
    problems.setPlaceHolder("No problems");
    // The arrow keys lead from problem to problem.
    problems.setSelectionCallback([self](std::optional<std::size_t> problem) {
        const auto window = self.lock();
        if (window && problem) window->jumpTo(*problem);
    });
    problems.setActivationCallback([self](std::size_t problem) {
        const auto window = self.lock();
        if (!window) return;
        window->jumpTo(problem);
        window->widget<CodeEdit>("_SOURCES_EDIT").focusWindow();
        window->openIncluded(problem);
    });
    widget<ListBox>("_RESOURCES_LIST").setPlaceHolder("None that is used");
}

void ShaderProgramWindow::openFile() {
    const Names names = bindings_.selectedNames();
    sourceExplorer().open([names, stage = stage_](const std::string& path) {
        const History::Scope gesture;
        for (const std::string& name : names) {
            // It may have gone while the file was being chosen; loading would make it anew.
            if (ShaderProgramUiDataTracker::getInstance().get(name) != nullptr)
                postByUser(LoadShaderProgramSourcesMessage(name, {stage, path}));
        }
    });
}

void ShaderProgramWindow::reloadFile() {
    const std::string path = report_.files[stage_].path;
    if (path.empty()) return;
    const History::Scope gesture;
    for (const std::string& name : bindings_.selectedNames())
        postByUser(LoadShaderProgramSourcesMessage(name, {stage_, path}));
}

void ShaderProgramWindow::show(const Report* report) {
    // In another program a person has been nowhere yet.
    if (report == nullptr || report->name != report_.name) views_ = {};
    report_ = report != nullptr ? *report : Report();
    showTabs();
    showOutcome();
    showProblems();
    showMarks();
    showIncluded();
    showFile();
    std::vector<vlWinUi::ListEntry> lines;
    for (const ShaderProgramResource& resource : report_.resources)
        lines.push_back({lineOf(resource), {}});
    widget<ListBox>("_RESOURCES_LIST").setEntries(std::move(lines));
}

void ShaderProgramWindow::showStage(std::uint32_t stage) {
    auto& edit = widget<CodeEdit>("_SOURCES_EDIT");
    views_[stage_] = edit.getViewState();
    stage_ = stage;
    showSource_(stage);
    showMacros_(stage);
    edit.setViewState(views_[stage]);
    showMarks();
    showFile();
}

void ShaderProgramWindow::showTabs() {
    auto& tabs = widget<TabWindow>("_STAGES_TABS");
    PerStage<std::size_t> problems{};
    for (const ShaderProgramDiagnostic& problem : report_.diagnostics)
        ++problems.at(problem.stage);
    for (std::uint32_t stage = 0; stage < programStageCount; ++stage) {
        const bool isWrong = problems[stage] != 0;
        tabs.setTabMark(stage,
                        isWrong || report_.hasSource[stage],
                        isWrong ? Emphasis::Error : Emphasis::None);
        tabs.setTabToolTip(stage,
                           isWrong                    ? "The stage does not compile."
                           : report_.hasSource[stage] ? "The stage has a source."
                                                      : "The stage is empty.");
    }
}

void ShaderProgramWindow::showOutcome() {
    widget<vlWinUi::MultiLineEdit>("_LOG_EDIT").setText(report_.log);
    const std::size_t count = report_.diagnostics.size();
    std::string status;
    if (report_.isCompiling)
        status = "Compiling...";
    else if (count != 0)
        status = count == 1 ? "1 problem" : fmt::format("{} problems", count);
    else if (report_.isUsable)
        status = "Compiled";
    auto& label = widget<vlWinUi::Static>("_STATUS_LABEL");
    label.setText(status);
    label.setToolTip(count != 0 && report_.isUsable
                             ? "What was compiled last without a problem is drawn with until then."
                             : "");
}

void ShaderProgramWindow::showProblems() {
    std::vector<vlWinUi::ListEntry> lines;
    for (const ShaderProgramDiagnostic& problem : report_.diagnostics)
        lines.push_back({placeOf(problem) + ": " + problem.text, {}, Emphasis::Error});
    widget<ListBox>("_PROBLEMS_LIST").setEntries(std::move(lines));
}

/// What the source of the stage is marked with, and what it may name.
void ShaderProgramWindow::showMarks() {
    std::vector<vlWinUi::CodeProblem> marks;
    for (std::size_t i = 0; i < report_.diagnostics.size(); ++i) {
        const ShaderProgramDiagnostic& problem = report_.diagnostics[i];
        if (problem.stage != stage_ || report_.stageLines[i] == 0) continue;
        std::string message = problem.text;
        if (!problem.file.empty())
            message = fmt::format("{}:{}: {}", problem.file, problem.line, message);
        marks.push_back({.line = report_.stageLines[i], .message = std::move(message)});
    }
    std::vector<std::string> words;
    for (const ShaderProgramResource& resource : report_.resources) {
        words.push_back(resource.name);
        words.insert(words.end(), resource.memberNames.begin(), resource.memberNames.end());
    }
    for (const ShaderProgramMacro& macro : report_.macros[stage_])
        words.push_back(macro.name);
    auto& edit = widget<CodeEdit>("_SOURCES_EDIT");
    edit.setProblems(std::move(marks));
    edit.setCompletions(std::move(words));
}

/// What is wrong with the included file that is open to be read.
void ShaderProgramWindow::showIncluded() {
    const std::string path = IncludedFileView::getPath();
    if (path.empty() || !includes(report_.name, path)) return;
    std::vector<vlWinUi::CodeProblem> marks;
    for (const ShaderProgramDiagnostic& problem : report_.diagnostics)
        if (problem.file == path) marks.push_back({.line = problem.line, .message = problem.text});
    IncludedFileView::update(std::move(marks));
}

void ShaderProgramWindow::showFile() {
    const StageFile& file = report_.files[stage_];
    const std::string ahead = file.isAhead ? " has changed on disk, too" : "";
    auto& label = widget<vlWinUi::Static>("_FILE_LABEL");
    label.setText(file.path + ahead);
    const auto& files = vlResources::ResourceManager::getInstance();
    label.setToolTip(file.path.empty() ? "" : files.getAbsoluteFromWorkingDir(file.path) + ahead);
    widget<Button>("_FILE_RELOAD")
            .setEnabled(!file.path.empty(), "This source was not read from a file.");
}

void ShaderProgramWindow::jumpTo(std::size_t problem) {
    if (problem >= report_.diagnostics.size()) return;
    const std::uint32_t stage = report_.diagnostics[problem].stage;
    const std::uint32_t line = report_.stageLines[problem];
    widget<TabWindow>("_STAGES_TABS").select(stage);
    showStage(stage);
    widget<ListBox>("_PROBLEMS_LIST").select(problem);
    if (line != 0) widget<CodeEdit>("_SOURCES_EDIT").goToLine(line);
}

/// One in an included file is to be read there.
void ShaderProgramWindow::openIncluded(std::size_t problem) {
    if (problem >= report_.diagnostics.size()) return;
    const ShaderProgramDiagnostic place = report_.diagnostics[problem];
    if (place.file.empty()) return;
    IncludedFileView::open(place.file, place.line, widget<ListBox>("_PROBLEMS_LIST"));
    showIncluded();
}

} // namespace vlEditor
