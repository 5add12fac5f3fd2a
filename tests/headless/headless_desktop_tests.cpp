#include "headless/HeadlessDesktop.h"

#include <stdexcept>

#include <gmock/gmock.h>

#include "model/UserLocaleForTest.h"
#include "support/MemoryLimit.h"

namespace kalvrooms {
namespace {

using Names = std::vector<std::wstring>;
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

// ------------------------------------------------------------------------- forms and controls

TEST_F(HeadlessDesktopTest, MakesAControlOnFirstRequestAndFindsItAgain) {
    HeadlessForm& form = create(L"frmRoom");
    Gui::TextField& field = form.Named<Gui::TextField>(L"txtName");
    field.Text(L"Büro");
    EXPECT_EQ(&form.Named<Gui::TextField>(L"txtName"), &field);
    EXPECT_EQ(form.Field(L"txtName").Text(), L"Büro");
    EXPECT_EQ(form.ControlNamed(L"txtName").Name(), L"txtName");
}

TEST_F(HeadlessDesktopTest, RefusesANameOfAnotherKind) {
    HeadlessForm& form = create(L"frmRoom");
    form.Named<Gui::TextField>(L"txtName");
    EXPECT_THROW(form.Named<Gui::Label>(L"txtName"), std::logic_error);
    EXPECT_THROW(form.List(L"txtName"), std::logic_error);
    EXPECT_THROW(form.ControlNamed(L"txtNone"), std::logic_error);
    EXPECT_THROW(form.Field(L"txtNone"), std::logic_error);
    EXPECT_EQ(desktop.ProgrammingErrors().size(), 4u);
}

TEST_F(HeadlessDesktopTest, KeepsTheProperties) {
    HeadlessForm& form = create(L"frmRoom");
    Gui::Label& label = form.Named<Gui::Label>(L"lblTop");
    label.Left(1);
    label.Top(2);
    label.Width(3);
    label.Height(4.5f);
    label.ForeColour(5);
    label.BackColour(6);
    label.Enabled(false);
    label.Visible(false);
    EXPECT_EQ(label.Left(), 1);
    EXPECT_EQ(label.Top(), 2);
    EXPECT_EQ(label.Width(), 3);
    EXPECT_EQ(label.Height(), 4.5f);
    EXPECT_EQ(label.ForeColour(), 5);
    EXPECT_EQ(label.BackColour(), 6);
    EXPECT_FALSE(label.Enabled());
    EXPECT_FALSE(label.Visible());
    EXPECT_THAT(form.Journal(),
                ElementsAre(L"lblTop.Left=1", L"lblTop.Top=2", L"lblTop.Width=3",
                            L"lblTop.Height=4", L"lblTop.ForeColour=5", L"lblTop.BackColour=6",
                            L"lblTop.Enabled=False", L"lblTop.Visible=False"));
}

TEST_F(HeadlessDesktopTest, LaysOutAFormBeforeTheProgramGetsIt) {
    desktop.Design(L"frmReport",
                   [](HeadlessForm& form) { form.Named<Gui::Label>(L"lblTop").Top(300); });
    HeadlessForm& form = create(L"frmReport");
    EXPECT_EQ(form.Named<Gui::Label>(L"lblTop").Top(), 300);
    EXPECT_THAT(form.Journal(), IsEmpty());
    EXPECT_EQ(create(L"frmRoom").Named<Gui::Label>(L"lblTop").Top(), 0);
}

TEST_F(HeadlessDesktopTest, IsNotShownBeforeItIsAskedTo) {
    HeadlessForm& form = create(L"frmMain");
    EXPECT_TRUE(form.Loaded());
    EXPECT_FALSE(form.Visible());
    EXPECT_FALSE(form.PressKey(Gui::KeyF1));
    form.Show();
    EXPECT_TRUE(form.PressKey(Gui::KeyF1));
}

TEST_F(HeadlessDesktopTest, FindsALoadedFormByName) {
    HeadlessForm& form = shown();
    EXPECT_TRUE(desktop.IsLoaded(L"frmMain"));
    EXPECT_EQ(&desktop.FormNamed(L"frmMain"), &form);
    form.Unload();
    EXPECT_FALSE(desktop.IsLoaded(L"frmMain"));
    EXPECT_THROW(desktop.FormNamed(L"frmMain"), std::logic_error);
}

TEST_F(HeadlessDesktopTest, SelectsOneOptionOfTheForm) {
    HeadlessForm& form = shown();
    int clicks = 0;
    form.Named<Gui::OptionButton>(L"optA").Click = [&] { ++clicks; };
    form.Named<Gui::OptionButton>(L"optB").Click = [&] { clicks += 10; };
    form.Named<Gui::OptionButton>(L"optA").Value(true);
    EXPECT_EQ(clicks, 1);
    form.Click(L"optB");
    EXPECT_EQ(clicks, 11);
    EXPECT_FALSE(form.Option(L"optA").Value());
    EXPECT_TRUE(form.Option(L"optB").Value());
    form.Named<Gui::OptionButton>(L"optB").Value(false);
    EXPECT_EQ(clicks, 11);
}

TEST_F(HeadlessDesktopTest, RunsResizeWheneverTheFormsSizeChanges) {
    HeadlessForm& form = shown();
    std::vector<Gui::Twips> widths;
    form.Resize = [&] { widths.push_back(form.Width()); };
    form.Width(5000);
    form.Height(4000);
    form.DragTo(6000, 3000);
    EXPECT_THAT(widths, ElementsAre(5000, 5000, 6000));
    EXPECT_EQ(form.Height(), 3000);
}

// ------------------------------------------------------------------------- focus and typing

TEST_F(HeadlessDesktopTest, TellsFieldsOfTheFocusInOrder) {
    HeadlessForm& form = shown();
    Names events;
    for (const wchar_t* name : {L"txtA", L"txtB"}) {
        const std::wstring field = name;
        form.Named<Gui::TextField>(field).GotFocus = [&events, field] {
            events.push_back(L"got " + field);
        };
        form.Named<Gui::TextField>(field).LostFocus = [&events, field] {
            events.push_back(L"lost " + field);
        };
    }
    form.Named<Gui::Button>(L"cmdOk").Click = [&] { events.push_back(L"click"); };
    form.Focus(L"txtA");
    form.Focus(L"txtA");
    form.Focus(L"txtB");
    form.Click(L"cmdOk");
    form.Named<Gui::TextField>(L"txtA").SetFocus();
    form.LeaveField();
    EXPECT_THAT(events, ElementsAre(L"got txtA", L"lost txtA", L"got txtB", L"lost txtB", L"click",
                                    L"got txtA", L"lost txtA"));
    EXPECT_EQ(form.Focused(), L"");
}

TEST_F(HeadlessDesktopTest, LetsNoFocusOntoWhatIsDisabledOrHidden) {
    HeadlessForm& form = shown();
    form.Named<Gui::TextField>(L"txtA").Enabled(false);
    form.Named<Gui::TextField>(L"txtB").Visible(false);
    EXPECT_FALSE(form.Focus(L"txtA"));
    EXPECT_FALSE(form.Type(L"txtB", L"x"));
    form.Named<Gui::TextField>(L"txtA").SetFocus();
    EXPECT_EQ(form.Focused(), L"");
    EXPECT_EQ(form.Field(L"txtB").Text(), L"");
}

TEST_F(HeadlessDesktopTest, TypesAtTheSelection) {
    HeadlessForm& form = shown();
    Gui::TextField& field = form.Named<Gui::TextField>(L"txtA");
    field.Text(L"abc");
    form.Type(L"txtA", L"x");
    EXPECT_EQ(field.Text(), L"xabc");
    field.Select(1, 2);
    form.Type(L"txtA", L"YZ");
    EXPECT_EQ(field.Text(), L"xYZc");
    form.Type(L"txtA", L"\b\b");
    EXPECT_EQ(field.Text(), L"xc");
    field.Select(0, 99);
    EXPECT_EQ(form.Field(L"txtA").SelectionLength(), 2);
    form.Type(L"txtA", L"\b");
    EXPECT_EQ(field.Text(), L"");
    form.Type(L"txtA", L"\b\x03");
    EXPECT_EQ(field.Text(), L"");
    field.Select(-5, -5);
    EXPECT_EQ(form.Field(L"txtA").SelectionStart(), 0);
}

TEST_F(HeadlessDesktopTest, AsksTheFilterForTypedKeysOnly) {
    HeadlessForm& form = shown();
    Gui::TextField& field = form.Named<Gui::TextField>(L"txtA");
    field.KeyPress = [](std::int16_t& key) {
        if (key == L'x')
            key = 0;
        if (key == L'y')
            key = L'z';
    };
    form.Type(L"txtA", L"axby");
    EXPECT_EQ(field.Text(), L"abz");
    form.Paste(L"txtA", L"xx");
    EXPECT_EQ(field.Text(), L"abzxx");
}

TEST_F(HeadlessDesktopTest, LosesTheSelectionWithANewText) {
    HeadlessForm& form = shown();
    Gui::TextField& field = form.Named<Gui::TextField>(L"txtA");
    field.Text(L"abc");
    field.Select(0, 3);
    field.Text(L"neu");
    EXPECT_EQ(form.Field(L"txtA").SelectionLength(), 0);
}

TEST_F(HeadlessDesktopTest, MovesTheFocusEvenWhenLeavingFails) {
    HeadlessForm& form = shown();
    long reported = 0;
    desktop.RuntimeErrorHandler = [&](const RuntimeError& error) { reported = error.number(); };
    form.Named<Gui::TextField>(L"txtA").LostFocus = [] {
        throw RuntimeError(RuntimeError::TypeMismatch);
    };
    form.Named<Gui::TextField>(L"txtB");
    form.Focus(L"txtA");
    EXPECT_TRUE(form.Focus(L"txtB"));
    EXPECT_EQ(reported, RuntimeError::TypeMismatch);
    EXPECT_EQ(form.Focused(), L"txtB");
}

// ------------------------------------------------------------------------- the other controls

TEST_F(HeadlessDesktopTest, ClicksOnlyWhatIsEnabled) {
    HeadlessForm& form = shown();
    int clicks = 0;
    form.Named<Gui::Button>(L"cmdOk").Click = [&] { ++clicks; };
    EXPECT_TRUE(form.Click(L"cmdOk"));
    form.Named<Gui::Button>(L"cmdOk").Enabled(false);
    EXPECT_FALSE(form.Click(L"cmdOk"));
    EXPECT_EQ(clicks, 1);
    form.Enabled(false);
    form.Named<Gui::Button>(L"cmdOk").Enabled(true);
    EXPECT_FALSE(form.Click(L"cmdOk"));
    EXPECT_FALSE(form.Close());
    EXPECT_EQ(clicks, 1);
}

TEST_F(HeadlessDesktopTest, TurnsCheckBoxesOver) {
    HeadlessForm& form = shown();
    form.Named<Gui::CheckBox>(L"chkA");
    form.Click(L"chkA");
    EXPECT_TRUE(form.Check(L"chkA").Value());
    form.Click(L"chkA");
    EXPECT_FALSE(form.Check(L"chkA").Value());
    form.Named<Gui::Label>(L"lblA");
    EXPECT_THROW(form.Click(L"lblA"), std::logic_error);
}

TEST_F(HeadlessDesktopTest, ShowsATextInADropDownThatIsNotInItsList) {
    HeadlessForm& form = shown();
    Gui::DropDown& list = form.Named<Gui::DropDown>(L"cboA");
    list.AddItem(L"a");
    list.AddItem(L"b");
    list.Text(L"z");
    EXPECT_EQ(list.Text(), L"z");
    EXPECT_EQ(list.ItemCount(), 2);
    form.Choose(L"cboA", 1);
    EXPECT_EQ(list.Text(), L"b");
    EXPECT_THROW(form.Choose(L"cboA", 2), std::out_of_range);
}

TEST_F(HeadlessDesktopTest, KeepsTabsAndTheirCaptions) {
    HeadlessForm& form = shown();
    Gui::TabStrip& tabs = form.Named<Gui::TabStrip>(L"SSTab1");
    EXPECT_EQ(tabs.Tab(), 0);
    tabs.TabCaption(1, L"Zwei");
    EXPECT_EQ(tabs.TabCaption(1), L"Zwei");
    EXPECT_EQ(tabs.TabCaption(0), L"");
    EXPECT_TRUE(form.SelectTab(L"SSTab1", 1));
    EXPECT_EQ(tabs.Tab(), 1);
}

TEST_F(HeadlessDesktopTest, ReportsClicksOnTheTable) {
    HeadlessForm& form = shown();
    Gui::Grid& grid = form.Named<Gui::Grid>(L"grdRooms");
    Names events;
    grid.MouseUp = [&](Gui::MouseButton button, int row, int column) {
        events.push_back((button == Gui::MouseButton::Right ? L"right " : L"left ") +
                         std::to_wstring(row) + L" " + std::to_wstring(column));
    };
    grid.DoubleClick = [&] { events.push_back(L"double"); };
    form.ClickCell(L"grdRooms", Gui::MouseButton::Left, 0, 3);
    form.ClickCell(L"grdRooms", Gui::MouseButton::Right, 2, 1);
    form.DoubleClickCell(L"grdRooms", 5, 0);
    EXPECT_THAT(events, ElementsAre(L"left 0 3", L"right 2 1", L"left 5 0", L"double"));
}

TEST_F(HeadlessDesktopTest, KeepsTheShapeOfTheTable) {
    HeadlessForm& form = shown();
    Gui::Grid& grid = form.Named<Gui::Grid>(L"grdRooms");
    grid.Cells().Resize(2, 2);
    grid.Row(1);
    grid.Col(1);
    grid.ColWidth(1, 1500);
    grid.Bars(Gui::ScrollBars::Both);
    EXPECT_EQ(grid.Row(), 1);
    EXPECT_EQ(grid.Col(), 1);
    EXPECT_EQ(grid.ColWidth(0), 0);
    EXPECT_EQ(grid.ColWidth(1), 1500);
    EXPECT_EQ(form.Table(L"grdRooms").Bars(), Gui::ScrollBars::Both);
    grid.Redraw(false);
    EXPECT_FALSE(form.Table(L"grdRooms").Redrawing());
    grid.Redraw(true);
    EXPECT_EQ(form.Table(L"grdRooms").Redraws(), 1);
}

TEST_F(HeadlessDesktopTest, ChoosesMenuItemsByName) {
    HeadlessForm& form = shown();
    Names chosen;
    Gui::MenuItem& menu = form.Menu(L"mnuFile");
    menu.Caption(L" &Datei");
    menu.AddItem(L"mnuNew").Click = [&] { chosen.push_back(L"mnuNew"); };
    menu.AddSeparator(L"mnuSep1");
    EXPECT_EQ(&form.Menu(L"mnuFile"), &menu);
    EXPECT_EQ(form.MenuNamed(L"mnuFile").Caption(), L" &Datei");
    EXPECT_TRUE(form.ChooseMenu(L"mnuNew"));
    EXPECT_FALSE(form.ChooseMenu(L"mnuSep1"));
    EXPECT_FALSE(form.ChooseMenu(L"mnuFile"));
    EXPECT_THROW(form.ChooseMenu(L"mnuNone"), std::logic_error);
    EXPECT_THROW(menu.AddItem(L"mnuNew"), std::logic_error);
    form.Enabled(false);
    EXPECT_FALSE(form.ChooseMenu(L"mnuNew"));
    EXPECT_THAT(chosen, ElementsAre(L"mnuNew"));
}

TEST_F(HeadlessDesktopTest, OpensAMenuAtTheMouse) {
    HeadlessForm& form = shown();
    int chosen = 0;
    Gui::MenuItem& menu = form.Menu(L"mnuRecord");
    menu.AddItem(L"mnuAddRoom").Click = [&] { ++chosen; };
    desktop.OnPopup([](HeadlessForm& over, HeadlessMenuItem& opened) {
        EXPECT_EQ(opened.Items().size(), 1u);
        over.ChooseMenu(L"mnuAddRoom");
    });
    form.PopupMenu(menu);
    form.PopupMenu(menu);
    EXPECT_THAT(desktop.Popups(), ElementsAre(L"mnuRecord", L"mnuRecord"));
    EXPECT_EQ(chosen, 1);
}

// ------------------------------------------------------------------------- modal forms

TEST_F(HeadlessDesktopTest, ShowsAModalFormUntilItsScriptUnloadsIt) {
    HeadlessForm& main = shown();
    main.Named<Gui::Button>(L"cmdOk");
    HeadlessForm& form = create(L"frmRoom");
    Names events;
    form.MayUnload = [&] {
        events.push_back(L"may");
        return true;
    };
    form.OnUnload = [&] { events.push_back(L"unload"); };
    desktop.OnModal(L"frmRoom", [&](HeadlessForm& modal) {
        EXPECT_TRUE(modal.Visible());
        EXPECT_EQ(modal.OwnerName(), L"frmMain");
        EXPECT_FALSE(main.Click(L"cmdOk"));
        EXPECT_TRUE(modal.Close());
        EXPECT_FALSE(modal.Close());
        events.push_back(L"script");
    });
    form.ShowModal();
    EXPECT_THAT(events, ElementsAre(L"may", L"unload", L"script"));
    EXPECT_FALSE(form.Loaded());
    EXPECT_FALSE(form.Visible());
    EXPECT_TRUE(main.Click(L"cmdOk"));
    EXPECT_THAT(desktop.ForcedUnloads(), IsEmpty());
    EXPECT_THAT(desktop.ModalForms(), ElementsAre(L"frmRoom"));
    EXPECT_THROW(form.ShowModal(), std::logic_error);
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

TEST_F(HeadlessDesktopTest, UsesScriptsOfAFormInTheirOrder) {
    Names used;
    for (const wchar_t* name : {L"first", L"second"})
        desktop.OnModal(L"frmRoom", [&used, name](HeadlessForm& modal) {
            used.push_back(name);
            modal.Unload();
        });
    EXPECT_EQ(desktop.UnusedScripts(), 2u);
    create(L"frmRoom").ShowModal();
    create(L"frmRoom").ShowModal();
    EXPECT_THAT(used, ElementsAre(L"first", L"second"));
    EXPECT_EQ(desktop.UnusedScripts(), 0u);
}

TEST_F(HeadlessDesktopTest, StacksModalForms) {
    HeadlessForm& room = create(L"frmRoom");
    room.Named<Gui::Button>(L"cmdOk");
    HeadlessForm& geometry = create(L"frmGeometry");
    desktop.OnModal(L"frmGeometry", [&](HeadlessForm& modal) {
        EXPECT_EQ(modal.OwnerName(), L"frmRoom");
        EXPECT_FALSE(room.Click(L"cmdOk"));
        modal.Unload();
    });
    desktop.OnModal(L"frmRoom", [&](HeadlessForm& modal) {
        geometry.ShowModal();
        EXPECT_TRUE(modal.Click(L"cmdOk"));
        modal.Unload();
    });
    room.ShowModal();
    EXPECT_THAT(desktop.ForcedUnloads(), IsEmpty());
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

TEST_F(HeadlessDesktopTest, PutsClosingOffWhileTheFormSaysSo) {
    HeadlessForm& form = shown();
    bool may = false;
    int unloads = 0;
    form.MayUnload = [&] { return may; };
    form.OnUnload = [&] {
        ++unloads;
        form.Unload();
    };
    form.Close();
    EXPECT_TRUE(form.Loaded());
    EXPECT_EQ(unloads, 0);
    may = true;
    form.Close();
    EXPECT_FALSE(form.Loaded());
    EXPECT_EQ(unloads, 1);
}

// ------------------------------------------------------------------------- keys

TEST_F(HeadlessDesktopTest, CountsAReleaseOnlyAfterThePress) {
    HeadlessForm& form = shown();
    std::vector<int> keys;
    form.KeyUp = [&](int key) { keys.push_back(key); };
    EXPECT_FALSE(form.ReleaseKey(Gui::KeyEnter));
    EXPECT_TRUE(form.KeyDown(Gui::KeyEnter));
    EXPECT_FALSE(form.ReleaseKey(Gui::KeyEscape));
    EXPECT_THAT(keys, IsEmpty());
    EXPECT_TRUE(form.ReleaseKey(Gui::KeyEnter));
    EXPECT_FALSE(form.ReleaseKey(Gui::KeyEnter));
    form.PressKey(Gui::KeyF1);
    EXPECT_THAT(keys, ElementsAre(Gui::KeyEnter, Gui::KeyF1));
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

// ------------------------------------------------------------------------- dialogs

TEST_F(HeadlessDesktopTest, AnswersMessageBoxesByTheScript) {
    desktop.AnswerNext(Gui::Answer::Yes);
    desktop.AnswerNext([](const Gui::Message& message) {
        EXPECT_EQ(message.Prompt, L"zwei");
        return Gui::Answer::No;
    });
    using Buttons = Gui::Message::Buttons;
    EXPECT_EQ(desktop.ShowMessage({L"eins", L"T", Buttons::YesNo}), Gui::Answer::Yes);
    EXPECT_EQ(desktop.ShowMessage({L"zwei", L"T", Buttons::YesNo}), Gui::Answer::No);
    EXPECT_EQ(desktop.ShowMessage({L"drei", L"T", Buttons::YesNo}), Gui::Answer::No);
    EXPECT_EQ(desktop.ShowMessage({L"vier", L"T"}), Gui::Answer::Ok);
    ASSERT_EQ(desktop.Messages().size(), 4u);
    EXPECT_EQ(desktop.Messages()[3].Prompt, L"vier");
}

TEST_F(HeadlessDesktopTest, RefusesAnAnswerThatTheBoxDoesNotOffer) {
    desktop.AnswerNext(Gui::Answer::Yes);
    EXPECT_THROW(desktop.ShowMessage({L"eins", L"T"}), std::logic_error);
    desktop.AnswerNext(Gui::Answer::Ok);
    EXPECT_THROW(desktop.ShowMessage({L"zwei", L"T", Gui::Message::Buttons::YesNo}),
                 std::logic_error);
}

TEST_F(HeadlessDesktopTest, ChoosesFilesByTheScript) {
    desktop.ChooseFile(L"C:\\Projekt\\liste.txt", 2);
    desktop.ChooseFile(L"liste.xls");
    Gui::FileDialog dialog;
    dialog.FileName = L"C:\\*.xls";
    dialog.Flags = 6;
    desktop.ShowSave(dialog);
    EXPECT_EQ(dialog.FileName, L"C:\\Projekt\\liste.txt");
    EXPECT_EQ(dialog.FileTitle, L"liste.txt");
    EXPECT_EQ(dialog.FilterIndex, 2);
    dialog.FilterIndex = 0;
    desktop.ShowOpen(dialog);
    EXPECT_EQ(dialog.FileTitle, L"liste.xls");
    EXPECT_EQ(dialog.FilterIndex, 1);
    EXPECT_EQ(errorOf([&] { desktop.ShowOpen(dialog); }), RuntimeError::DialogCancelled);
    desktop.CancelFileDialog();
    EXPECT_EQ(errorOf([&] { desktop.ShowSave(dialog); }), RuntimeError::DialogCancelled);
    ASSERT_EQ(desktop.FileDialogs().size(), 4u);
    EXPECT_TRUE(desktop.FileDialogs()[0].Save);
    EXPECT_FALSE(desktop.FileDialogs()[1].Save);
    EXPECT_EQ(desktop.FileDialogs()[0].Asked.FileName, L"C:\\*.xls");
    EXPECT_EQ(desktop.FileDialogs()[0].Asked.Flags, 6u);
}

TEST_F(HeadlessDesktopTest, LeavesTheColourWhenItsDialogIsCancelled) {
    desktop.ChooseColour(255);
    desktop.CancelColourDialog();
    Gui::Colour colour = 7;
    desktop.ShowColour(colour);
    EXPECT_EQ(colour, 255);
    desktop.ShowColour(colour);
    EXPECT_EQ(colour, 255);
    desktop.ShowColour(colour);
    EXPECT_THAT(desktop.ColourDialogs(), ElementsAre(7, 255, 255));
}

TEST_F(HeadlessDesktopTest, KeepsThePointersHistoryAndTheHelpCalls) {
    HeadlessForm& form = shown();
    desktop.MousePointer(Gui::HourglassPointer);
    desktop.MousePointer(Gui::DefaultPointer);
    EXPECT_EQ(desktop.MousePointer(), Gui::DefaultPointer);
    EXPECT_THAT(desktop.PointerHistory(), ElementsAre(11, 0));
    desktop.OpenHelp(form, L"hilfe.chm", 20);
    ASSERT_EQ(desktop.HelpCalls().size(), 1u);
    EXPECT_EQ(desktop.HelpCalls()[0].Owner, L"frmMain");
    EXPECT_EQ(desktop.HelpCalls()[0].Context, 20u);
}

// ------------------------------------------------------------------------- running

TEST_F(HeadlessDesktopTest, RunsUntilNoFormIsLoaded) {
    int runs = 0;
    desktop.OnRun([&] { ++runs; });
    desktop.Run();
    EXPECT_EQ(runs, 0);

    HeadlessForm& form = shown();
    desktop.OnRun([&] {
        ++runs;
        desktop.FormNamed(L"frmMain").Close();
    });
    desktop.Run();
    EXPECT_EQ(runs, 1);
    EXPECT_FALSE(form.Loaded());
    EXPECT_THAT(desktop.ForcedUnloads(), IsEmpty());
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

// ------------------------------------------------------------------------- dispatching

TEST_F(HeadlessDesktopTest, EndsTheEventAndNotTheProgramOnAnError) {
    std::vector<long> reported;
    desktop.RuntimeErrorHandler = [&](const RuntimeError& error) {
        reported.push_back(error.number());
    };
    desktop.Dispatch([] { throw RuntimeError(RuntimeError::Overflow); });
    desktop.Dispatch([] { throw std::bad_alloc(); });
    desktop.Dispatch([] { throw std::runtime_error("anything"); });
    desktop.Dispatch(nullptr);
    EXPECT_THAT(reported, ElementsAre(RuntimeError::Overflow, RuntimeError::OutOfMemory,
                                      RuntimeError::InvalidProcedureCall));
    desktop.RuntimeErrorHandler = [](const RuntimeError&) { throw std::runtime_error("again"); };
    desktop.Dispatch([] { throw RuntimeError(RuntimeError::Overflow); });
    desktop.RuntimeErrorHandler = nullptr;
    desktop.Dispatch([] { throw RuntimeError(RuntimeError::Overflow); });
}

TEST_F(HeadlessDesktopTest, WithoutAnyMemoryTheErrorIsToldWithWhatWasSetAside) {
    std::vector<long> reported;
    reported.reserve(4);
    std::size_t length = 0;
    desktop.RuntimeErrorHandler = [&](const RuntimeError& error) {
        // What a message takes.
        const std::wstring text(100'000, L'x');
        length = text.size();
        reported.push_back(error.number());
    };
    const std::function<void()> runsOut = [] { std::vector<char>(1000).at(999) = 'x'; };
    const std::function<void()> invalid = [] { throw std::runtime_error("anything"); };
    desktop.Dispatch([] {});
    {
        const MemoryLimit limit(200);
        desktop.Dispatch(runsOut);
    }
    EXPECT_THAT(reported, ElementsAre(RuntimeError::OutOfMemory));
    EXPECT_EQ(length, 100'000u);
    // Any other error that cannot be told is told as that one. And the next event has a reserve
    // again.
    desktop.Dispatch([] {});
    {
        const MemoryLimit limit(200);
        desktop.Dispatch(invalid);
        // Without anything left nothing is told, and the program goes on.
        desktop.RuntimeErrorHandler = [](const RuntimeError&) { throw std::bad_alloc(); };
        desktop.Dispatch(runsOut);
    }
    EXPECT_THAT(reported, ElementsAre(RuntimeError::OutOfMemory, RuntimeError::OutOfMemory));
}

} // namespace kalvrooms
