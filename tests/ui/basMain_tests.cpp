#include "program/basMain.h"

#include "ui/MainWindow.h"

namespace kalvrooms::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

const std::wstring kvdPrompt =
    L" KVD-Dateien können mit dem Quartino nicht bearbeitet werden. Bitte "
    L"schließen Sie alle KVD-Dateien.";

class StartUp : public MainWindow {};

TEST_F(StartUp, ShowsTheMainWindowWhenTheHostAnswers) {
    bool ran = false;
    desktop().OnRun([&] {
        ran = true;
        EXPECT_TRUE(desktop().IsLoaded(L"frmMain"));
        form().Close();
    });
    RunProgram(platform_.Bundle(), host_, spreadsheets_);
    EXPECT_TRUE(ran);
    EXPECT_THAT(prompts(), IsEmpty());
    EXPECT_EQ(host_.LiveObjects(), 0);
}

TEST_F(StartUp, EndsAfterTheMessageWhenTheHostCannotBeReachedTwice) {
    host_.session.state.CreationError(L"nobody there");
    desktop().OnRun([&] { ADD_FAILURE() << "nothing to run"; });
    RunProgram(platform_.Bundle(), host_, spreadsheets_);
    EXPECT_THAT(prompts(), ElementsAre(kvdPrompt));
    EXPECT_EQ(desktop().Messages()[0].Title, L" Quartino");
    EXPECT_EQ(desktop().Messages()[0].Symbol, Gui::Message::Icon::None);
    EXPECT_EQ(host_.counts["CreateHostApplication"], 2);
    EXPECT_FALSE(desktop().IsLoaded(L"frmMain"));
}

TEST_F(StartUp, ShowsTheMainWindowWhenTheHostAnswersAfterTheMessage) {
    host_.session.state.CreationError(L"KVD open");
    desktop().AnswerNext([&](const Gui::Message&) {
        host_.session.state.CreationError(L"");
        return Gui::Answer::Ok;
    });
    bool ran = false;
    desktop().OnRun([&] {
        ran = true;
        form().Close();
    });
    RunProgram(platform_.Bundle(), host_, spreadsheets_);
    EXPECT_TRUE(ran);
    EXPECT_THAT(prompts(), ElementsAre(kvdPrompt));
}

TEST_F(StartUp, BlankTextsOfALanguageAreReplacedByLiterals) {
    platform_.environment.Folder = folder_.path().wstring();
    platform_.libraries.Put(folder_.path().wstring() + L"\\zorvinta_eng.dll",
                            {{101, L"  "}, {176, L" "}});
    host_.session.state.CreationError(L"nobody there");
    frmMain main(platform_.Bundle(), host_, spreadsheets_);
    main.SetLang(L"eng");
    EXPECT_FALSE(ProbeHostServer(host_, desktop(), main));
    ASSERT_THAT(prompts(), SizeIs(1));
    EXPECT_EQ(prompts()[0], kvdPrompt.substr(1));
    EXPECT_EQ(desktop().Messages()[0].Title, L"Quartino");
}

TEST_F(StartUp, TheProbeKeepsNoObject) {
    EXPECT_TRUE(CanCreateHostServer(host_));
    EXPECT_EQ(host_.LiveObjects(), 0);
}

} // namespace
} // namespace kalvrooms::testing
