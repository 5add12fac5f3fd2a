#include "headless/HeadlessDesktop.h"

#include <stdexcept>

#include <gmock/gmock.h>

#include "support/UserLocaleForTest.h"

namespace kalvrooms {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class HeadlessDesktopTest : public testing::Test {
  protected:
    HeadlessForm& create(const std::wstring& name) {
        forms_.push_back(desktop.CreateForm(name));
        return dynamic_cast<HeadlessForm&>(*forms_.back());
    }
    HeadlessForm& shown(const std::wstring& name = L"frmMain") {
        HeadlessForm& form = create(name);
        form.Show();
        return form;
    }

    HeadlessDesktop desktop;

  private:
    std::vector<std::unique_ptr<Gui::Form>> forms_;
};

} // namespace

TEST_F(HeadlessDesktopTest, RefusesANameOfAnotherKind) {
    HeadlessForm& form = create(L"frmRoom");
    form.Named<Gui::TextField>(L"txtName");
    EXPECT_THROW(form.Named<Gui::Label>(L"txtName"), std::logic_error);
    EXPECT_THROW(form.List(L"txtName"), std::logic_error);
    EXPECT_THROW(form.ControlNamed(L"txtNone"), std::logic_error);
    EXPECT_THROW(form.Field(L"txtNone"), std::logic_error);
    EXPECT_EQ(desktop.ProgrammingErrors().size(), 4u);
}

TEST_F(HeadlessDesktopTest, UnloadsByForceWhatAScriptLeavesOpen) {
    int unloads = 0;
    for (int i = 0; i < 2; ++i) {
        HeadlessForm& form = create(L"frmRoom");
        form.OnUnload = [&] { ++unloads; };
        form.MayUnload = [] { return false; };
        if (i == 0)
            desktop.OnModal(L"frmRoom", [](HeadlessForm& modal) { modal.Unload(); });
        form.ShowModal();
        EXPECT_FALSE(form.Loaded());
    }
    EXPECT_EQ(unloads, 2);
    EXPECT_THAT(desktop.ForcedUnloads(), ElementsAre(L"frmRoom", L"frmRoom"));
}

TEST_F(HeadlessDesktopTest, KeepsTheErrorOfAScriptThatAnEventSwallows) {
    HeadlessForm& main = shown();
    main.Named<Gui::Button>(L"cmdOk").Click = [&] { create(L"frmRoom").ShowModal(); };
    desktop.OnModal(L"frmRoom", [](HeadlessForm& modal) { modal.Field(L"txtNone"); });
    EXPECT_TRUE(main.Click(L"cmdOk"));
    EXPECT_THAT(desktop.ProgrammingErrors(),
                ElementsAre(L"nobody asked for a control named frmRoom.txtNone",
                            L"an error left the script of frmRoom"));
    EXPECT_FALSE(desktop.IsLoaded(L"frmRoom"));
}

TEST_F(HeadlessDesktopTest, ForgetsPressesWhenAnotherWindowComesToTheFront) {
    HeadlessForm& form = shown();
    int releases = 0;
    form.KeyUp = [&](int) { ++releases; };
    const std::vector<std::function<void()>> windows = {
        [&] {
            desktop.ShowMessage({L"Text", L"Titel"});
        },
        [&] {
            Gui::FileDialog dialog;
            EXPECT_EQ(errorOf([&] { desktop.ShowOpen(dialog); }), RuntimeError::DialogCancelled);
        },
        [&] {
            Gui::Colour colour = 0;
            desktop.ShowColour(colour);
        },
        [&] {
            desktop.OnModal(L"frmRoom", [](HeadlessForm& modal) { modal.Unload(); });
            create(L"frmRoom").ShowModal();
        },
        [&] { form.PopupMenu(form.Menu(L"mnuRecord")); },
    };
    for (const auto& open : windows) {
        form.KeyDown(Gui::KeyEnter);
        open();
        EXPECT_FALSE(form.ReleaseKey(Gui::KeyEnter));
    }
    EXPECT_EQ(releases, 0);
}

TEST_F(HeadlessDesktopTest, RefusesAnAnswerThatTheBoxDoesNotOffer) {
    desktop.AnswerNext(Gui::Answer::Yes);
    EXPECT_THROW(desktop.ShowMessage({L"eins", L"T"}), std::logic_error);
    desktop.AnswerNext(Gui::Answer::Ok);
    EXPECT_THROW(desktop.ShowMessage({L"zwei", L"T", Gui::Message::Buttons::YesNo}),
                 std::logic_error);
}

TEST_F(HeadlessDesktopTest, ClosesWhatTheRunLeavesOpen) {
    HeadlessForm& form = shown();
    int unloads = 0;
    form.OnUnload = [&] { ++unloads; };
    desktop.Run();
    EXPECT_EQ(unloads, 1);
    EXPECT_THAT(desktop.ForcedUnloads(), IsEmpty());

    HeadlessForm& stubborn = shown(L"frmOther");
    stubborn.MayUnload = [] { return false; };
    desktop.Run();
    EXPECT_FALSE(stubborn.Loaded());
    EXPECT_THAT(desktop.ForcedUnloads(), ElementsAre(L"frmOther"));
}

} // namespace kalvrooms
