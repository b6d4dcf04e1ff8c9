#pragma once
#include "editors/shader_program/ProgramFiles.h"

#include <vlWinUi/CodeEdit.h>

#include <memory>

namespace vlEditor {

/** What a window of shader programs has beside the list: the type, one stage at a time with its
 *  source and macros, and what compiling says. Lives as long as the window's bindings. UI thread
 *  only. */
class ShaderProgramWindow final : public std::enable_shared_from_this<ShaderProgramWindow> {
public:
    static void bind(Bindings<ShaderProgramKind>& bindings);

    explicit ShaderProgramWindow(Bindings<ShaderProgramKind>& bindings);

private:
    /// What is shown of a program beside its type and its texts.
    struct Report {
        std::string name;
        PerStage<bool> hasSource{};
        PerStage<StageFile> files;
        bool isCompiling = false;
        bool isUsable = false;
        std::string log;
        std::vector<ShaderProgramDiagnostic> diagnostics;
        std::vector<std::uint32_t> stageLines; ///< of each, in the stage's own source
        std::vector<ShaderProgramResource> resources;
        PerStage<ShaderProgramMacroList> macros;
        friend bool operator==(const Report&, const Report&) = default;
    };

    static Report reportOf(const ShaderProgramRecord& record);
    void bindTypes();
    void bindStages();
    void bindButtons();
    void show(const Report* report);
    void showStage(std::uint32_t stage);
    void showTabs();
    void showOutcome();
    void showProblems();
    void showMarks();
    void showFile();
    void askForType(std::uint32_t type, vlWinUi::Component& anchor);
    void openFile();
    void reloadFile();
    void showIncluded();
    void jumpTo(std::size_t problem);
    void openIncluded(std::size_t problem);
    template <class Widget> Widget& widget(std::string_view suffix) const;

    Bindings<ShaderProgramKind>& bindings_;
    std::uint32_t stage_ = 0;
    Report report_;                          ///< empty while not exactly one program is selected
    PerStage<vlWinUi::CodeViewState> views_; ///< where a person was in each source
    std::function<void(std::size_t)> showSource_;
    std::function<void(std::size_t)> showMacros_;
};

} // namespace vlEditor
