// Keys, focus and modal loops of the dialogs, with real keys.

#include "desktop_support.h"

#include "support/MemoryLimit.h"
#include "win32/Win32Environment.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <optional>

namespace kalvrooms::Gui {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Dialogs : public ProgramOnDesktop {
  protected:
    void SetUp() override {
        ProgramOnDesktop::SetUp();
        main_.GetCurrentRoom()->StoryCode(L"EG");
        desktop_.System().MessageBoxCall = [this](HWND owner, const wchar_t* text,
                                                  const wchar_t* title, UINT style) {
            messages_.emplace_back(text);
            return MessageBoxW(owner, text, title, style);
        };
    }
    // Keeps the keys that a form sees from acting.
    void RecordKeys() {
        Top().KeyUp = [this](int key) { keys_.push_back(key); };
    }
    // A form without the program's code behind it, for what that code never does.
    Form& Bare() {
        bare_ = desktop_.CreateForm(L"frmRoom");
        return *bare_;
    }
    template <typename Kind>
    Kind& Control(const wchar_t* name) {
        return Top().Named<Kind>(name);
    }

    std::unique_ptr<Form> bare_;
    std::vector<int> keys_;
    std::vector<std::wstring> messages_;
};

const auto always = [] { return true; };
const auto message = [] { return SystemDialog() && GetForegroundWindow() == SystemDialog(); };

// Goes through the controls of a form, its buttons aside, and presses both keys on each.
void pressKeysEverywhere(ModalSteps& user, Win32Form& form, std::vector<int>& keys) {
    for (const ControlEntry& entry : form.Entry().controls) {
        if (entry.kind == ControlKind::Label || entry.kind == ControlKind::Frame ||
            entry.kind == ControlKind::Button)
            continue;
        Win32Control& control = *form.ControlById(entry.id);
        user.When("focus", always, [&control] { control.SetFocus(); })
            .When(
                "focused", [&control] { return Focused() == control.Window(); },
                [&keys] {
                    keys.clear();
                    pressKey(VK_RETURN);
                })
            .When("pressed", InputIsDone,
                  [&keys] {
                      EXPECT_THAT(keys, IsEmpty());
                      releaseKey(VK_RETURN);
                  })
            .When(
                "released", [&keys] { return !keys.empty(); }, [] { typeKey(VK_ESCAPE); })
            .When(
                "escaped", [&keys] { return keys.size() > 1; },
                [&keys] { EXPECT_THAT(keys, ElementsAre(KeyEnter, KeyEscape)); });
    }
}

TEST_F(Dialogs, EnterAndEscapeCountOnReleaseWhicheverControlHasTheFocus) {
    int clicks = 0;
    const auto steps = [&](ModalSteps& user) {
        user.When("shown", always, [&] {
            RecordKeys();
            for (const ControlEntry& entry : Top().Entry().controls)
                if (entry.kind == ControlKind::Button)
                    Control<Button>(std::wstring(entry.name).c_str()).Click = [&] { ++clicks; };
            pressKeysEverywhere(user, Top(), keys_);
            user.When("end", InputIsDone, [this] { CloseDialog(); });
        });
    };
    OpenUntilItCloses<frmRoom>(steps);
    OpenUntilItCloses<frmGeometry>(steps);
    OpenUntilItCloses<frmReport>(steps);
    EXPECT_EQ(clicks, 0);
}

TEST_F(Dialogs, EnterPressesTheButtonThatHasTheFocusAndNothingElse) {
    for (const wchar_t* name : {L"cmdGeometry", L"cmdCancel", L"cmdOk"}) {
        int clicks = 0;
        Open<frmRoom>([&, name](ModalSteps& user) {
            user.When("focus", always,
                      [&, name] {
                          RecordKeys();
                          Control<Button>(name).Click = [&clicks] { ++clicks; };
                          Control<Button>(name).SetFocus();
                      })
                .When(
                    "focused", [this, name] { return HasFocus(name); },
                    [] {
                        // Held down, it presses once.
                        pressKey(VK_RETURN);
                        pressKey(VK_RETURN);
                    })
                .When(
                    "pressed", [&clicks] { return clicks > 0 && InputIsDone(); },
                    [] { releaseKey(VK_RETURN); })
                .When("released", InputIsDone, [] { typeKey(VK_F1); })
                .When(
                    "after it", [this] { return !keys_.empty(); }, [] {});
        });
        EXPECT_EQ(clicks, 1);
        EXPECT_THAT(keys_, ElementsAre(KeyF1));
        keys_.clear();
    }
}

TEST_F(Dialogs, TheReportOpensOnItsDefaultButtonAndEscapeClosesIt) {
    OpenUntilItCloses<frmReport>([this](ModalSteps& user) {
        user.When(
            "focused", [this] { return HasFocus(L"cmdOk"); },
            [this] {
                const HWND button = WindowOf(Top(), L"cmdOk");
                EXPECT_TRUE(SendMessageW(button, WM_GETDLGCODE, 0, 0) & DLGC_DEFPUSHBUTTON);
                typeKey(VK_ESCAPE);
            });
    });
}

TEST_F(Dialogs, ARefusedDistanceShowsItsTabAndItsField) {
    Open<frmPlace>([this](ModalSteps& user) {
        user.When("ok", always,
                  [this] {
                      Control<TextField>(L"txtDy").Text(L"0");
                      Control<TabStrip>(L"SSTab1").Tab(1);
                      Control<Button>(L"cmdOk").Click();
                  })
            .When("message", message, [] { typeKey(VK_RETURN); })
            .When(
                "field", [this] { return !SystemDialog() && HasFocus(L"txtDy"); },
                [this] { EXPECT_EQ(Control<TabStrip>(L"SSTab1").Tab(), 0); });
    });
}

TEST_F(Dialogs, SpacePressesTheButtonThatHasTheFocus) {
    OpenUntilItCloses<frmRoom>([this](ModalSteps& user) {
        user.When("focus", always, [this] { Control<Button>(L"cmdCancel").SetFocus(); })
            .When(
                "focused", [this] { return HasFocus(L"cmdCancel"); }, [] { typeKey(VK_SPACE); });
    });
}

TEST_F(Dialogs, TheEnterThatClosesAMessageDoesNotCount) {
    main_.GetCurrentRoom()->StoryCode(L"");
    Open<frmRoom>([this](ModalSteps& user) {
        user.When("enter", always, [] { typeKey(VK_RETURN); })
            .When("message", message,
                  [] {
                      // Held down, it repeats into the dialog behind.
                      pressKey(VK_RETURN);
                      pressKey(VK_RETURN);
                      pressKey(VK_RETURN);
                  })
            .When(
                "closed", [this] { return !SystemDialog() && HasFocus(L"txtStoryCode"); },
                [] { releaseKey(VK_RETURN); })
            .When("quiet", InputIsDone,
                  [this] {
                      EXPECT_EQ(messages_.size(), 1U);
                      typeKey(VK_RETURN);
                  })
            .When("counts", message, [] { typeKey(VK_RETURN); })
            .When(
                "closed", [] { return !SystemDialog(); }, [] {});
    });
    EXPECT_EQ(messages_.size(), 2U);
}

TEST_F(Dialogs, AReleaseWithoutItsPressDoesNotCount) {
    form_->Shortcuts.clear();
    pressKey(VK_RETURN);
    ASSERT_TRUE(PumpUntil(desktop_, InputIsDone));
    Open<frmRoom>([this](ModalSteps& user) {
        user.When("release", always, [] { releaseKey(VK_RETURN); })
            .When("quiet", InputIsDone, [this] { EXPECT_TRUE(DialogIsActive()); });
    });
}

TEST_F(Dialogs, ARepeatedKeyCountsOnceWhenItIsReleased) {
    std::vector<DWORD_PTR> contexts;
    desktop_.System().HelpCall = [&](HWND, const char*, UINT, DWORD_PTR context) {
        contexts.push_back(context);
    };
    helpFile_ = Win32Environment().ExecutableFolder() + L"\\desktop_tests.exe";
    Open<frmGeometry>([&](ModalSteps& user) {
        user.When("hold", always,
                  [] {
                      for (int repeat = 0; repeat < 5; ++repeat)
                          pressKey(VK_F1);
                  })
            .When("held", InputIsDone,
                  [&] {
                      EXPECT_THAT(contexts, IsEmpty());
                      releaseKey(VK_F1);
                  })
            .When(
                "released", [&] { return !contexts.empty(); }, [] {});
    });
    EXPECT_THAT(contexts, ElementsAre(7U));
}

TEST_F(Dialogs, AnOpenListShowsAllItsItemsAndGetsEnterAndEscapeToClose) {
    HWND list = nullptr;
    const auto open = [&] { return SendMessageW(list, CB_GETDROPPEDSTATE, 0, 0) != 0; };
    Open<frmRoom>([&](ModalSteps& user) {
        user.When("focus", always,
                  [&] {
                      RecordKeys();
                      list = WindowOf(Top(), L"cboAreaType");
                      Control<DropDown>(L"cboAreaType").Text(L"ein fremder Wert");
                      Control<DropDown>(L"cboAreaType").SetFocus();
                  })
            .When(
                "focused", [this] { return HasFocus(L"cboAreaType"); }, [] { typeKey(VK_F4); })
            .When("open", open,
                  [&] {
                      COMBOBOXINFO info{};
                      info.cbSize = sizeof info;
                      GetComboBoxInfo(list, &info);
                      RECT area{};
                      GetClientRect(info.hwndList, &area);
                      const LRESULT height = SendMessageW(list, CB_GETITEMHEIGHT, 0, 0);
                      EXPECT_EQ(SendMessageW(list, CB_GETCOUNT, 0, 0), 5);
                      EXPECT_EQ(area.bottom / height, 5);
                      pressKey(VK_RETURN);
                  })
            .When(
                "closed", [open] { return !open(); },
                [] {
                    releaseKey(VK_RETURN);
                    typeKey(VK_F4);
                })
            .When("open again", open, [] { typeKey(VK_ESCAPE); })
            .When(
                "closed again", [open] { return !open(); }, [] { typeKey(VK_F1); })
            .When(
                "after it", [this] { return std::count(keys_.begin(), keys_.end(), KeyF1) > 0; },
                [] {});
    });
    // F4 opened the list; what closed it did nothing else.
    EXPECT_THAT(keys_, ElementsAre(VK_F4, VK_F4, KeyF1));
}

TEST_F(Dialogs, EnteringAFieldSelectsAndLeavingItTells) {
    std::vector<std::wstring> left;
    const auto selection = [this](const wchar_t* name) {
        return SendMessageW(WindowOf(Top(), name), EM_GETSEL, 0, 0);
    };
    Open<frmRoom>([&](ModalSteps& user) {
        user.When(
                "first", [&] { return selection(L"txtStoryCode") == MAKELONG(0, 2); },
                [&] {
                    Control<TextField>(L"txtName").Text(L"Klassenzimmer 1");
                    for (const wchar_t* name : {L"txtStoryCode", L"txtName"})
                        Control<TextField>(name).LostFocus = [&, name] { left.push_back(name); };
                    typeKey(VK_TAB);
                })
            .When(
                "next", [&] { return selection(L"txtName") == MAKELONG(0, 15); },
                [this] {
                    // Another window in between is no leaving.
                    desktop_.ShowMessage({L"dazwischen", L""});
                })
            .When("message", message, [] { typeKey(VK_RETURN); })
            .When(
                "back", [this] { return !SystemDialog() && HasFocus(L"txtName"); },
                [&] {
                    EXPECT_THAT(left, ElementsAre(L"txtStoryCode"));
                    ClickMiddle(WindowOf(Top(), L"txtArea"));
                })
            .When(
                "clicked", [&] { return left.size() == 2 && HasFocus(L"txtArea"); },
                [&] { EXPECT_EQ(HIWORD(selection(L"txtArea")), 6); });
    });
    EXPECT_THAT(left, ElementsAre(L"txtStoryCode", L"txtName"));
}

TEST_F(Dialogs, AFieldIsLeftBeforeTheAccessKeyOfAButtonCounts) {
    std::vector<std::wstring> events;
    Open<frmRoom>([&](ModalSteps& user) {
        user.When("access key", always,
                  [&] {
                      Control<TextField>(L"txtStoryCode").LostFocus = [&] {
                          events.emplace_back(L"left");
                      };
                      Control<Button>(L"cmdOk").Text(L" &OK");
                      Control<Button>(L"cmdOk").Click = [&] { events.emplace_back(L"click"); };
                      pressKey(VK_MENU);
                      typeKey('O');
                      releaseKey(VK_MENU);
                  })
            .When(
                "clicked", [&] { return events.size() == 2; }, [] {});
    });
    EXPECT_THAT(events, ElementsAre(L"left", L"click"));
}

TEST_F(Dialogs, AnErrorWhileLeavingAFieldIsShownAndHarmless) {
    Open<frmRoom>([&](ModalSteps& user) {
        user.When("tab", always,
                  [&] {
                      RecordKeys();
                      Control<TextField>(L"txtStoryCode").LostFocus = [] {
                          throw RuntimeError(RuntimeError::TypeMismatch);
                      };
                      typeKey(VK_TAB);
                  })
            .When("message", message, [] { typeKey(VK_RETURN); })
            .When(
                "back", [this] { return !SystemDialog() && HasFocus(L"txtName"); },
                [this] { EXPECT_TRUE(Top().Enabled()); })
            .When("quiet", InputIsDone, [] {});
    });
    EXPECT_THAT(messages_, ElementsAre(L"Laufzeitfehler 13:\rTypen unverträglich"));
    EXPECT_THAT(keys_, testing::Not(testing::Contains(KeyEnter)));
}

TEST_F(Dialogs, WithoutAnyMemoryThatIsShownAndTheProgramGoesOn) {
    std::optional<MemoryLimit> limit;
    Open<frmRoom>([&](ModalSteps& user) {
        user.When("tab", always,
                  [&] {
                      Control<TextField>(L"txtStoryCode").LostFocus = [&] {
                          limit.emplace(0);
                          std::vector<char>(10'000'000).at(0) = 'x';
                      };
                      typeKey(VK_TAB);
                  })
            .When("message", message,
                  [&] {
                      limit.reset();
                      typeKey(VK_RETURN);
                  })
            .When(
                "back", [this] { return !SystemDialog() && HasFocus(L"txtName"); },
                [this] { EXPECT_TRUE(Top().Enabled()); });
    });
    EXPECT_THAT(messages_, ElementsAre(L"Laufzeitfehler 7:\rDer Speicher reicht nicht aus"));
}

TEST_F(Dialogs, AFieldMayUnloadItsFormWhenItIsLeft) {
    OpenUntilItCloses<frmRoom>([this](ModalSteps& user) {
        user.When("tab", always, [this] {
            Control<TextField>(L"txtStoryCode").LostFocus = [this] { CloseDialog(); };
            typeKey(VK_TAB);
        });
    });
}

TEST_F(Dialogs, ARejectedCharacterDoesNotReachTheField) {
    Open<frmRoom>([this](ModalSteps& user) {
        user.When("focus", always, [this] { Control<TextField>(L"txtQuantity").SetFocus(); })
            .When(
                "focused", [this] { return HasFocus(L"txtQuantity"); },
                [] {
                    for (const char key : std::string("1X2Y3"))
                        typeKey(static_cast<WORD>(key));
                })
            .When(
                "typed", [this] { return Control<TextField>(L"txtQuantity").Text() == L"123"; },
                [] {});
    });
}

TEST_F(Dialogs, ArrowsChooseTheNextOption) {
    std::vector<std::wstring> clicks;
    Open<frmGeometry>([&](ModalSteps& user) {
        user.When("focus", always,
                  [&] {
                      for (const wchar_t* name :
                           {L"optXDirection", L"optYDirection", L"optRatio", L"optExcelFile"})
                          Control<OptionButton>(name).Click = [&, name] { clicks.push_back(name); };
                      Control<OptionButton>(L"optRatio").SetFocus();
                  })
            .When(
                "focused", [this] { return HasFocus(L"optRatio"); }, [] { typeKey(VK_DOWN); })
            .When(
                "down", [this] { return HasFocus(L"optExcelFile"); }, [] { typeKey(VK_DOWN); })
            .When(
                "around", [this] { return HasFocus(L"optXDirection"); }, [] { typeKey(VK_UP); })
            .When(
                "up", [this] { return HasFocus(L"optExcelFile"); },
                [this] { ClickMiddle(WindowOf(Top(), L"optYDirection")); })
            .When(
                "clicked", [&] { return clicks.size() == 4; },
                [this] {
                    EXPECT_TRUE(Control<OptionButton>(L"optYDirection").Value());
                    for (const wchar_t* other : {L"optXDirection", L"optRatio", L"optExcelFile"})
                        EXPECT_FALSE(Control<OptionButton>(other).Value());
                    // Set by the program, it counts like a click.
                    Control<OptionButton>(L"optRatio").Value(true);
                });
    });
    EXPECT_THAT(clicks, ElementsAre(L"optExcelFile", L"optXDirection", L"optExcelFile",
                                    L"optYDirection", L"optRatio"));
}

TEST_F(Dialogs, TabKeysSwitchTheTabs) {
    const auto tab = [this] { return Control<TabStrip>(L"SSTab1").Tab(); };
    Open<frmPlace>([&](ModalSteps& user) {
        user.When("ctrl+tab", always,
                  [this] {
                      auto& tabs = Control<TabStrip>(L"SSTab1");
                      EXPECT_EQ(tabs.TabCaption(0), main_.GetText(47));
                      EXPECT_EQ(tabs.TabCaption(1), main_.GetText(53));
                      EXPECT_THROW(tabs.Tab(2), RuntimeError);
                      EXPECT_TRUE(IsWindowVisible(WindowOf(Top(), L"optBlock")));
                      EXPECT_FALSE(IsWindowVisible(WindowOf(Top(), L"chkUpdate")));
                      pressKey(VK_CONTROL);
                      typeKey(VK_TAB);
                      releaseKey(VK_CONTROL);
                  })
            .When(
                "second", [&] { return tab() == 1; },
                [this] {
                    EXPECT_FALSE(IsWindowVisible(WindowOf(Top(), L"optBlock")));
                    EXPECT_TRUE(IsWindowVisible(WindowOf(Top(), L"chkUpdate")));
                    // By mouse back to the first.
                    const HWND strip = WindowOf(Top(), L"SSTab1");
                    RECT place{};
                    SendMessageW(strip, TCM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&place));
                    Click(strip, {(place.left + place.right) / 2, (place.top + place.bottom) / 2});
                })
            .When(
                "first", [&] { return tab() == 0; },
                [this] { EXPECT_TRUE(IsWindowVisible(WindowOf(Top(), L"optBlock"))); });
    });
}

TEST_F(Dialogs, TheOwnerWaitsAndGetsTheFocusBack) {
    LookAt<frmRoom>([this](Win32Form& room) {
        EXPECT_FALSE(form_->Enabled());
        EXPECT_EQ(GetWindow(room.Window(), GW_OWNER), form_->Window());
    });
    EXPECT_TRUE(form_->Enabled());
    EXPECT_TRUE(PumpUntil(desktop_, [this] { return Focused() == list_; }));
}

TEST_F(Dialogs, AnOwnerThatWasDisabledStaysDisabled) {
    form_->Enabled(false);
    LookAt<frmReport>([](Win32Form&) {});
    EXPECT_FALSE(form_->Enabled());
}

TEST_F(Dialogs, TheCloseButtonUnloadsThroughTheSamePath) {
    int unloaded = 0;
    OpenUntilItCloses<frmRoom>([&](ModalSteps& user) {
        user.When("close", always, [&] {
            Top().OnUnload = [&] { ++unloaded; };
            PostMessageW(Top().Window(), WM_SYSCOMMAND, SC_CLOSE, 0);
        });
    });
    EXPECT_EQ(unloaded, 1);
}

TEST_F(Dialogs, AFormMayEndInItsOwnEvent) {
    // What the closure holds must live as long as the closure runs.
    const auto witness = std::make_shared<int>(1);
    std::weak_ptr<int> watched = witness;
    bool stillThere = false;
    Form& form = Bare();
    form.Named<Button>(L"cmdOk").Click = [this, held = witness, &watched, &stillThere] {
        bare_.reset();
        stillThere = !watched.expired() && *held == 1;
    };
    ModalSteps user;
    user.When(
        "dialog", [this] { return DialogIsActive(); },
        [this] { ClickMiddle(WindowOf(Top(), L"cmdOk")); });
    form.ShowModal();
    EXPECT_TRUE(stillThere);
    EXPECT_TRUE(form_->Enabled());
    EXPECT_TRUE(PumpUntil(desktop_, [this] { return Focused() == list_; }));
}

TEST_F(Dialogs, ADialogGoesWithItsOwner) {
    Form& form = Bare();
    ModalSteps user;
    user.When(
        "dialog", [this] { return DialogIsActive(); },
        [this] { SendMessageW(form_->Window(), WM_ENDSESSION, TRUE, 0); });
    form.ShowModal();
    desktop_.Run();
    EXPECT_EQ(form_->Window(), nullptr);
    form.Text(L"gone");
    EXPECT_EQ(form.Named<TextField>(L"txtName").Text(), L"");
}

} // namespace
} // namespace kalvrooms::Gui
