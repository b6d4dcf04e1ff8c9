#include "editors/KindTest.h"
#include "editors/shader_program/IncludedFileView.h"
#include "editors/shader_program/ProgramFiles.h"
#include "editors/shader_program/ShaderProgramMessages.h"

#include <vlWinUi/CheckBox.h>
#include <vlWinUi/Clipboard.h>
#include <vlWinUi/CodeEdit.h>
#include <vlWinUi/Notificator.h>
#include <vlWinUi/TabWindow.h>

#include <chrono>
#include <thread>

namespace vlEditor {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using vlGraphics::PROGRAM_TYPE;
using vlGraphics::SHADER_TYPE;
using vlWinUi::ComponentManager;

constexpr std::array<const char*, 4> typeChecks{
        "_PIPELINE_CHECK", "_GEOMETRY_CHECK", "_COMPUTE_CHECK", "_RAYTRACING_CHECK"};

/** A window of shader programs whose compilations are told as in the editor, and whose files are
 *  followed. */
class ShaderProgramEditor : public KindTest {
protected:
    ShaderProgramEditor() {
        programs().setCompiledCallback(
                [](vlGraphics::Program& program) { tellProgramCompiled(program); });
        ProgramFiles::getInstance();
        create("p");
        compile();
    }
    ~ShaderProgramEditor() override {
        ProgramFiles::destroyInstance();
        programs().setCompiledCallback({});
    }

    static vlGraphics::ProgramManager& programs() {
        return *vlGraphics::ProgramManager::getInstance();
    }
    static void compile() {
        // One that ends may bring to light that a file has changed meanwhile.
        settle();
        do {
            programs().waitForAll();
            settle();
        } while (programs().isAnyCompiling());
        expectInStep();
    }
    static const ShaderProgramRecord& record(const std::string& name = "p") {
        static const ShaderProgramRecord none;
        const auto* held = ShaderProgramUiDataTracker::getInstance().get(name);
        EXPECT_NE(held, nullptr) << name;
        return held == nullptr ? none : *held;
    }
    static const std::string& source(SHADER_TYPE stage) {
        return record().sources.at(static_cast<std::size_t>(stage));
    }
    std::string shownIn(const std::string& suffix) const {
        return ComponentManager::get(base() + suffix)->getText();
    }
    void choose(std::uint32_t type, bool accept = true) const {
        click(base() + typeChecks.at(type - 1));
        use([&](auto done) { vlWinUi::Automation::confirm(accept, done); });
        compile();
    }
    void stage(const std::string& label) const { click(base() + "_STAGES_TABS", label); }
    void write(const std::string& label, const std::string& text) const {
        stage(label);
        type(base() + "_SOURCES_EDIT", text);
        PendingEdit::flushAll();
        compile();
    }
    void openFile(const std::string& file) const {
        click(base() + "_SOURCES_FETCH");
        use([&](auto done) { vlWinUi::Automation::choose(path(file), done); });
        compile();
    }
    void save(const std::string& file) const {
        kind().commands().save("p", path(file));
        settle();
    }
    /// As another program does: of another size, whatever the clock's steps are.
    void writeElsewhere(const std::string& file, const std::string& text) const {
        KindTest::write(file, text);
    }
    template <class Condition> static bool eventually(Condition condition) {
        for (int i = 0; i < 500; ++i) {
            compile();
            if (condition()) return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return false;
    }
};

TEST_P(ShaderProgramEditor, EachTypeBeginsWithSourcesOfItsOwn) {
    using Sizes = std::vector<std::size_t>;
    const auto sizes = [] {
        Sizes all;
        for (const std::string& text : record().sources)
            all.push_back(text.size());
        return all;
    };
    EXPECT_EQ(record().type, 1U);
    EXPECT_EQ(sizes(), (Sizes{373, 0, 0, 0, 199, 0, 0}));
    EXPECT_FALSE(record().failed) << record().failure;
    EXPECT_TRUE(record().isUsable);
    EXPECT_EQ(shownIn("_LOG_EDIT"), "Compilation went fine.");
    type(base() + "_MACROS_EDIT", "A 1");
    choose(2);
    EXPECT_EQ(lines().back(), "[Editor] Shader program type changed : p");
    EXPECT_EQ(sizes(), (Sizes{249, 0, 0, 404, 0, 0, 0}));
    EXPECT_THAT(record().macros[0], IsEmpty());
    EXPECT_FALSE(record().failed) << record().failure;
    choose(3);
    EXPECT_EQ(sizes(), (Sizes{0, 0, 0, 0, 0, 394, 0}));
    EXPECT_FALSE(record().failed) << record().failure;
    choose(4);
    EXPECT_EQ(sizes(), (Sizes{0, 0, 0, 0, 0, 0, 893}));
    EXPECT_TRUE(record().failed);
    EXPECT_THAT(shownIn("_LOG_EDIT"),
                testing::StartsWith("Shader compilation error at stage RAYTRACING : \n1: "));
    undo();
    EXPECT_EQ(record().type, 3U);
}

TEST_P(ShaderProgramEditor, TheTypeBoxesAreOneChoiceThatIsAskedFor) {
    const auto states = [this] {
        std::string text;
        for (const char* suffix : typeChecks) {
            const auto& box = *ComponentManager::get<vlWinUi::CheckBox>(base() + suffix);
            text += box.isChecked() ? "x" : "-";
            text += box.isEnabled() ? " " : "! ";
        }
        return text;
    };
    EXPECT_EQ(states(), "x! - - - ");
    click(base() + "_COMPUTE_CHECK");
    EXPECT_EQ(vlWinUi::Notificator::getText(),
              "Changing 'p' to another shader program type. This will reset its sources.\n"
              "Are you sure ?");
    use([](auto done) { vlWinUi::Automation::confirm(false, done); });
    EXPECT_EQ(states(), "x! - - - ");
    EXPECT_EQ(record().type, 1U);
    choose(3);
    EXPECT_EQ(states(), "- - x! - ");
    erase("p");
    EXPECT_EQ(states(), "- - - - ");
    EXPECT_EQ(shownIn("_SOURCES_EDIT") + shownIn("_MACROS_EDIT") + shownIn("_LOG_EDIT"), "");
    click(base() + "_COMPUTE_CHECK");
    EXPECT_FALSE(vlWinUi::Notificator::isOpen());
    EXPECT_EQ(states(), "- - - - ");
}

TEST_P(ShaderProgramEditor, EachStageHasItsTextAndItsProblems) {
    const std::string pixel = source(SHADER_TYPE::PIXEL);
    write("Vertex", "float4 main() : SV_POSITION\n{\n    return nothing;\n}\n");
    EXPECT_TRUE(record().failed);
    EXPECT_TRUE(record().isUsable) << "the last good one is drawn with";
    EXPECT_EQ(source(SHADER_TYPE::PIXEL), pixel);
    EXPECT_THAT(shownIn("_LOG_EDIT"),
                testing::StartsWith("Shader compilation error at stage VERTEX : \n3: "));
    const auto problems = items(base() + "_PROBLEMS_LIST");
    ASSERT_FALSE(problems.empty());
    EXPECT_THAT(problems.front(), HasSubstr("Vertex, line 3: "));
    EXPECT_THAT(lines(), testing::Not(testing::Contains(HasSubstr("nothing"))));

    stage("Pixel");
    EXPECT_EQ(shownIn("_SOURCES_EDIT"), pixel);
    click(base() + "_PROBLEMS_LIST", problems.front());
    EXPECT_EQ(ComponentManager::get<vlWinUi::TabWindow>(base() + "_STAGES_TABS")->getSelected(),
              0U);
    EXPECT_EQ(ComponentManager::get<vlWinUi::CodeEdit>(base() + "_SOURCES_EDIT")->getLine(), 3U);
    undo();
    compile();
    EXPECT_FALSE(record().failed);
    EXPECT_THAT(items(base() + "_PROBLEMS_LIST"), IsEmpty());
}

TEST_P(ShaderProgramEditor, MacrosAreDefinedBeforeTheSourceOfTheirStage) {
    stage("Pixel");
    type(base() + "_MACROS_EDIT", "COLOUR float4(1, 0, 0, 1)\nFLAG");
    write("Pixel", "float4 main() : SV_TARGET\n{\n#ifdef FLAG\n    return COLOUR;\n#endif\n}\n");
    EXPECT_FALSE(record().failed) << record().failure;
    const ShaderProgramMacroList wanted{{"COLOUR", "float4(1, 0, 0, 1)"}, {"FLAG", ""}};
    EXPECT_EQ(record().macros[4], wanted);
    EXPECT_THAT(record().macros[0], IsEmpty());
    stage("Vertex");
    EXPECT_EQ(shownIn("_MACROS_EDIT"), "");
    stage("Pixel");
    EXPECT_EQ(shownIn("_MACROS_EDIT"), codeText(wanted));
    type(base() + "_MACROS_EDIT", "1 is no name");
    PendingEdit::flushAll();
    compile();
    EXPECT_THAT(record().failure, HasSubstr("macro '1'"));
}

TEST_P(ShaderProgramEditor, AMessageMayCarryAllSources) {
    ShaderProgramRecord wanted = record();
    wanted.sources[4] = "float4 main() : SV_TARGET { return GREY; }";
    wanted.macros[4] = {{"GREY", "0.5"}};
    const auto post = [&](std::vector<std::string> sources) {
        postToGraphics(CompileShaderProgramSourcesMessage(
                "p", {std::move(sources), {wanted.macros.begin(), wanted.macros.end()}}));
        compile();
    };
    post({wanted.sources.begin(), wanted.sources.end()});
    EXPECT_EQ(record(), wanted);
    EXPECT_FALSE(record().failed) << record().failure;
    post({"too", "few"});
    EXPECT_EQ(record(), wanted);
    EXPECT_EQ(lines().back(), "[Editor] shader program 'p': it has 7 stages");
    postToGraphics(CompileShaderProgramSourcesMessage("gone", {}));
    compile();
    EXPECT_EQ(lines().back(), "[Editor] There is no shader program 'gone'.");
    EXPECT_EQ(programs().get("gone"), nullptr);
}

TEST_P(ShaderProgramEditor, AStageIsReadFromAFileAndFollowsIt) {
    const std::string before = source(SHADER_TYPE::PIXEL);
    const std::string red = "float4 main() : SV_TARGET { return float4(1, 0, 0, 1); }";
    writeElsewhere("red.hlsl", "\xEF\xBB\xBF" + red);
    writeElsewhere("empty.hlsl", "");
    writeElsewhere("broken.hlsl", "float4\n\xFF");
    stage("Pixel");
    openFile("empty.hlsl");
    EXPECT_EQ(lines().back(), "[Editor] Error while loading hlsl file : " + path("empty.hlsl"));
    postToGraphics(LoadShaderProgramSourcesMessage("p", {4, "missing.hlsl"}));
    compile();
    EXPECT_EQ(lines().back(), "[Editor] Error while loading hlsl file : missing.hlsl");
    openFile("broken.hlsl");
    EXPECT_THAT(lines().back(), HasSubstr("broken.hlsl, line 2 is not valid UTF-8"));
    EXPECT_EQ(source(SHADER_TYPE::PIXEL), before);
    EXPECT_EQ(shownIn("_FILE_LABEL"), "");

    openFile("red.hlsl");
    EXPECT_EQ(source(SHADER_TYPE::PIXEL), red);
    EXPECT_EQ(shownIn("_FILE_LABEL"), "red.hlsl");
    const std::string green = "float4 main() : SV_TARGET { return float4(0, 0.5, 0, 1); }";
    writeElsewhere("red.hlsl", green);
    EXPECT_TRUE(eventually([&] { return source(SHADER_TYPE::PIXEL) == green; }));
    writeElsewhere("red.hlsl", "float4\n\xFF");
    EXPECT_TRUE(eventually(
            [&] { return lines().back().find("line 2 is not valid") != std::string::npos; }));
    EXPECT_EQ(source(SHADER_TYPE::PIXEL), green);
    undo();
    EXPECT_EQ(source(SHADER_TYPE::PIXEL), red);

    // What a person has changed meanwhile is not lost.
    writeElsewhere("red.hlsl", "// Changed elsewhere.\n" + green);
    EXPECT_TRUE(eventually([&] { return ProgramFiles::getInstance().find("p", 4)->isAhead; }));
    EXPECT_EQ(source(SHADER_TYPE::PIXEL), red);
    EXPECT_THAT(lines().back(), HasSubstr("'red.hlsl' changed on disk, and so did the text here"));
    EXPECT_EQ(shownIn("_FILE_LABEL"), "red.hlsl has changed on disk, too");
    click(base() + "_FILE_RELOAD");
    EXPECT_EQ(source(SHADER_TYPE::PIXEL), "// Changed elsewhere.\n" + green);
    EXPECT_EQ(shownIn("_FILE_LABEL"), "red.hlsl");
}

TEST_P(ShaderProgramEditor, SavingPutsTheSourcesIntoAFolderBesideTheDeclaration) {
    std::filesystem::create_directory(path("here"));
    save("here/file.vlpr");
    EXPECT_THAT(
            lines(),
            testing::IsSupersetOf({"[Save] Saving Shader program file : " + path("here/file.vlpr"),
                                   std::string("[Editor] Done.")}));
    EXPECT_EQ(text("here/p_src/vertexShader.hlsl"), source(SHADER_TYPE::VERTEX));
    EXPECT_EQ(text("here/p_src/pixelShader.hlsl"), source(SHADER_TYPE::PIXEL));
    EXPECT_FALSE(std::filesystem::exists(path("here/p_src/hullShader.hlsl")));
    EXPECT_EQ(record().folder, "here/p_src");

    // Its files are followed, too, until it is edited here, and again once it is saved.
    const std::string vertex = source(SHADER_TYPE::VERTEX);
    writeElsewhere("here/p_src/vertexShader.hlsl", "// More.\n" + vertex);
    EXPECT_TRUE(eventually([&] { return source(SHADER_TYPE::VERTEX) == "// More.\n" + vertex; }));
    EXPECT_EQ(record().folder, "");
    save("here/file");
    EXPECT_EQ(record().folder, "here/p_src");
    kind().commands().copy("p");
    settle();
    kind().commands().paste("p", vlWinUi::Clipboard::getText());
    compile();
    EXPECT_EQ(source(SHADER_TYPE::VERTEX), "// More.\n" + vertex);
}

TEST_P(ShaderProgramEditor, WhatIsTypedIncludesWhatLiesBesideTheSavedSources) {
    save("p.vlpr");
    kind().commands().duplicate("p");
    settle();
    EXPECT_EQ(record("p_2").folder, "") << "its files are those of another one";
    writeElsewhere("p_src/grey.hlsl", "#define GREY 0.5\n");
    const std::string text = "#include \"grey.hlsl\"\nfloat4 main() : SV_TARGET { return GREY; }";
    write("Pixel", text);
    EXPECT_EQ(record().folder, "");
    EXPECT_FALSE(record().failed) << record().failure;
    EXPECT_THAT(record().includedFiles, ElementsAre("p_src/grey.hlsl"));
    erase("p");
    undo();
    postToGraphics(ShaderProgramSourceMessage("p_2", {text, 4}));
    compile();
    for (const char* name : {"p", "p_2"})
        EXPECT_FALSE(record(name).failed) << name << ": " << record(name).failure;
}

TEST_P(ShaderProgramEditor, AProblemInAnIncludedFileIsShownWhereItIsIncluded) {
    save("p.vlpr");
    writeElsewhere("p_src/grey.hlsl", "// Grey.\nfloat grey() { return nothing; }\n");
    write("Pixel",
          "// Includes.\n#include \"grey.hlsl\"\nfloat4 main() : SV_TARGET { return grey(); }");
    const std::string list = base() + "_PROBLEMS_LIST";
    ASSERT_FALSE(items(list).empty());
    EXPECT_THAT(items(list).front(), testing::StartsWith("Pixel, p_src/grey.hlsl:2: "));
    stage("Vertex");
    click(list, items(list).front());
    const auto* edit = ComponentManager::get<vlWinUi::CodeEdit>(base() + "_SOURCES_EDIT");
    EXPECT_EQ(edit->getLine(), 2U);
    EXPECT_THAT(edit->getText(), testing::StartsWith("// Includes."));
    EXPECT_EQ(IncludedFileView::getPath(), "");

    key(list, 13);
    EXPECT_EQ(IncludedFileView::getPath(), "p_src/grey.hlsl");
    const std::string shown = "EDITOR_SHADER_PROGRAM_INCLUDED_FILE_EDIT";
    const auto* file = ComponentManager::get<vlWinUi::CodeEdit>(shown);
    EXPECT_EQ(file->getText(), text("p_src/grey.hlsl"));
    EXPECT_EQ(file->getLine(), 2U);
    // It follows the file.
    writeElsewhere("p_src/grey.hlsl", "float grey() { return 0.5; }\n");
    EXPECT_TRUE(eventually([] { return !record().failed; }));
    EXPECT_EQ(file->getText(), text("p_src/grey.hlsl"));
    key(shown, 27);
    EXPECT_EQ(IncludedFileView::getPath(), "");
}

TEST_P(ShaderProgramEditor, ALongPathLeavesRoomForWhatIsWrong) {
    std::filesystem::create_directories(path("a_long_way/to_another_place"));
    save("a_long_way/to_another_place/p.vlpr");
    writeElsewhere("a_long_way/to_another_place/p_src/grey.hlsl", "nonsense\n");
    write("Pixel", "#include \"grey.hlsl\"\nfloat4 main() : SV_TARGET { return 1; }");
    ASSERT_FALSE(items(base() + "_PROBLEMS_LIST").empty());
    EXPECT_THAT(items(base() + "_PROBLEMS_LIST").front(),
                testing::StartsWith("Pixel, .../p_src/grey.hlsl:"));
    EXPECT_THAT(shownIn("_LOG_EDIT"), HasSubstr("a_long_way/to_another_place/p_src/grey.hlsl:"));
}

TEST_P(ShaderProgramEditor, ARenamedProgramIsSavedIntoAFolderOfItsNewName) {
    save("p.vlpr");
    std::filesystem::create_directory(path("p_src/lib"));
    writeElsewhere("p_src/lib/grey.hlsl", "#include \"half.hlsl\"\n#define GREY HALF\n");
    writeElsewhere("p_src/lib/half.hlsl", "#define HALF 0.5\n");
    write("Pixel", "#include \"lib/grey.hlsl\"\nfloat4 main() : SV_TARGET { return GREY; }");
    save("p.vlpr");
    const std::string old = text("p_src/pixelShader.hlsl");
    rename("p", "q");
    kind().commands().save("q", path("q.vlpr"));
    compile();
    EXPECT_EQ(record("q").folder, "q_src");
    EXPECT_FALSE(record("q").failed) << record("q").failure;
    EXPECT_THAT(record("q").includedFiles,
                ElementsAre("q_src/lib/grey.hlsl", "q_src/lib/half.hlsl"));
    stage("Vertex");
    EXPECT_EQ(shownIn("_FILE_LABEL"), "q_src/vertexShader.hlsl");
    EXPECT_EQ(ComponentManager::get(base() + "_FILE_LABEL")->getToolTip(),
              path("q_src/vertexShader.hlsl"));
    EXPECT_EQ(text("p_src/pixelShader.hlsl"), old) << "nobody asked for that to go";
    EXPECT_THAT(text("q.vlpr"), testing::Not(HasSubstr("p_src")));

    // From its file it is what it was, and what stands in the new folder is its own.
    writeElsewhere("q_src/lib/half.hlsl", "#define HALF 0.25 // Mine.\n");
    kind().commands().save("q", path("q.vlpr"));
    kind().commands().load(path("q.vlpr"));
    compile();
    EXPECT_FALSE(record("q").failed) << record("q").failure;
    EXPECT_EQ(text("q_src/lib/half.hlsl"), "#define HALF 0.25 // Mine.\n");
}

TEST_P(ShaderProgramEditor, ANewProgramDoesNotReplaceTheSourcesOfARenamedOne) {
    save("p.vlpr");
    const std::string old = text("p_src/vertexShader.hlsl");
    rename("p", "q");
    create("p");
    postToGraphics(ShaderProgramSourceMessage("p", {"// New.", 0}));
    compile();
    save("p.vlpr");
    EXPECT_THAT(lines(), testing::Contains(HasSubstr("the sources of 'q' are in 'p_src'")));
    EXPECT_EQ(lines().back(), "[Editor] Error.");
    EXPECT_EQ(text("p_src/vertexShader.hlsl"), old);
    EXPECT_EQ(record().folder, "");
    kind().commands().save("q", path("q.vlpr"));
    compile();
    save("p.vlpr");
    EXPECT_EQ(text("p_src/vertexShader.hlsl"), "// New.");
    EXPECT_EQ(text("q_src/vertexShader.hlsl"), old);
}

TEST_P(ShaderProgramEditor, AnOpenedFileIncludesWhatLiesBesideIt) {
    std::filesystem::create_directory(path("there"));
    writeElsewhere("there/grey.hlsl", "#define GREY 0.5\n");
    writeElsewhere("there/flat.hlsl",
                   "#include \"grey.hlsl\"\nfloat4 main() : SV_TARGET { return GREY; }");
    stage("Pixel");
    openFile("there/flat.hlsl");
    EXPECT_EQ(shownIn("_FILE_LABEL"), "there/flat.hlsl");
    EXPECT_FALSE(record().failed) << record().failure;
    EXPECT_THAT(record().includedFiles, ElementsAre("there/grey.hlsl"));
    save("p.vlpr");
    compile();
    EXPECT_FALSE(record().failed) << record().failure;
    EXPECT_THAT(record().includedFiles, ElementsAre("p_src/grey.hlsl"));
    undo();
    EXPECT_THAT(source(SHADER_TYPE::PIXEL), testing::Not(HasSubstr("#include")));
}

TEST_P(ShaderProgramEditor, AFileThatChangesBeforeItIsWatchedIsReadAgain) {
    writeElsewhere("red.hlsl", "float4 main() : SV_TARGET { return float4(1, 0, 0, 1); }");
    postToGraphics(LoadShaderProgramSourcesMessage("p", {4, path("red.hlsl")}));
    MessageOrchestrator::getInstance().drainGraphics();
    const std::string green = "float4 main() : SV_TARGET { return float4(0, 0.5, 0, 1); }";
    writeElsewhere("red.hlsl", green);
    EXPECT_TRUE(eventually([&] { return source(SHADER_TYPE::PIXEL) == green; }));

    // One that comes back to what it was has not changed.
    write("Pixel", "// Mine.\n" + green);
    writeElsewhere("red.hlsl", "// Other.\n" + green);
    EXPECT_TRUE(eventually([&] { return ProgramFiles::getInstance().find("p", 4)->isAhead; }));
    writeElsewhere("red.hlsl", green);
    EXPECT_TRUE(eventually([&] { return !ProgramFiles::getInstance().find("p", 4)->isAhead; }));
    EXPECT_EQ(source(SHADER_TYPE::PIXEL), "// Mine.\n" + green);
}

TEST_P(ShaderProgramEditor, WhatIsTypedBeforeAFileIsWatchedIsNotLostToIt) {
    save("p.vlpr");
    ProgramFiles::destroyInstance();
    stage("Pixel");
    const std::string mine = "// Mine.\n" + source(SHADER_TYPE::PIXEL);
    writeElsewhere("p_src/pixelShader.hlsl", "// Other, and longer.\n" + mine);
    type(base() + "_SOURCES_EDIT", mine);
    ProgramFiles::getInstance();
    compile();
    PendingEdit::flushAll();
    compile();
    EXPECT_EQ(source(SHADER_TYPE::PIXEL), mine);
    EXPECT_TRUE(ProgramFiles::getInstance().find("p", 4)->isAhead);
    EXPECT_EQ(shownIn("_FILE_LABEL"), "p_src/pixelShader.hlsl has changed on disk, too");
}

TEST_P(ShaderProgramEditor, ARayTracingSourceIsSavedAndLoaded) {
    choose(4);
    const std::string rays = source(SHADER_TYPE::RAYTRACING);
    save("rays.vlpr");
    EXPECT_FALSE(std::filesystem::exists(path("p_src")));
    write("Compute", "// A note.");
    save("rays.vlpr");
    EXPECT_EQ(text("p_src/raytraceShader.hlsl"), "// A note.");
    write("Raytracing", "// Nothing.");
    kind().commands().load(path("rays.vlpr"));
    compile();
    EXPECT_EQ(source(SHADER_TYPE::RAYTRACING), rays);
    EXPECT_EQ(source(SHADER_TYPE::COMPUTE), "// A note.");
}

TEST_P(ShaderProgramEditor, WhatCannotBeSavedLeavesNoFilesAndNoChange) {
    std::filesystem::create_directories(path("p.vlpr/in_the_way"));
    save("p.vlpr");
    EXPECT_EQ(lines().back(), "[Editor] Error.");
    EXPECT_FALSE(std::filesystem::exists(path("p_src")));
    EXPECT_EQ(record().folder, "");
    rename("p", "a/b");
    kind().commands().save("a/b", path("x.vlpr"));
    settle();
    EXPECT_THAT(lines(), testing::Contains(HasSubstr("no folder for its sources")));
}

TEST_P(ShaderProgramEditor, ADeclarationWhoseSourceIsNoTextIsLeftOut) {
    writeElsewhere("bad.hlsl", "float4\xFF");
    writeElsewhere("bad.vlpr",
                   R"({"formatVersion": 1, "programs": [{"name": "bad", "stages": [
                       {"stage": "VERTEX", "file": "bad.hlsl"}]}]})");
    kind().commands().load(path("bad.vlpr"));
    settle();
    EXPECT_THAT(lines().back(), HasSubstr("'bad.hlsl': the text is not valid UTF-8"));
    EXPECT_THAT(kind().names(), ElementsAre("p"));
}

TEST_P(ShaderProgramEditor, ItStandsOutInTheListWhileItDoesNotCompile) {
    const auto& list = *ComponentManager::get<vlWinUi::ListBox>(base() + "_LIST");
    write("Pixel", "nonsense");
    EXPECT_EQ(list.getEntry(0).emphasis, vlWinUi::Emphasis::Error);
    rename("p", "q");
    EXPECT_EQ(list.getEntry(0).emphasis, vlWinUi::Emphasis::Error);
    const auto second = open();
    EXPECT_EQ(ComponentManager::get<vlWinUi::ListBox>(second->getRootName() + "_LIST")
                      ->getEntry(0)
                      .emphasis,
              vlWinUi::Emphasis::Error);
    undo();
    undo();
    compile();
    EXPECT_EQ(list.getEntry(0).emphasis, vlWinUi::Emphasis::None);
}

TEST_P(ShaderProgramEditor, StrangeTextsAreTakenAndRefusedInOneLine) {
    stage("Pixel");
    std::string megabytes;
    while (megabytes.size() < 3 << 20)
        megabytes += "// Nothing that would be a shader stands in this line.\n";
    for (const std::string& odd :
         {std::string(), std::string("void helper() {}"), std::string(20000, '('), megabytes}) {
        postToGraphics(ShaderProgramSourceMessage("p", {odd, 4}));
        compile();
        EXPECT_EQ(source(SHADER_TYPE::PIXEL), odd);
        EXPECT_TRUE(record().failed) << odd.substr(0, 20);
        EXPECT_EQ(record().failure.find('\n'), std::string::npos);
    }
    postToGraphics(ShaderProgramSourceMessage("p", {"text", 7}));
    compile();
    EXPECT_EQ(lines().back(), "[Editor] shader program 'p': there is no stage 7");
}

INSTANTIATE_TEST_SUITE_P(ShaderProgram,
                         ShaderProgramEditor,
                         testing::Values(&shaderProgramKind()),
                         [](const auto&) { return std::string("ShaderProgram"); });

} // namespace
} // namespace vlEditor
