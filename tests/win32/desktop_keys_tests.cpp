// Keys, focus and modal loops of the dialogs, with real keys.

#include "desktop_support.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace kalvrooms::Gui {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

bool inputIsDone() {
    return !(GetQueueStatus(QS_INPUT | QS_POSTMESSAGE) >> 16);
}

// A dialog over a main window, as the program opens it.
class Dialogs : public testing::Test {
  protected:
    void SetUp() override {
        main_ = desktop_.CreateForm(L"frmMain");
        main_->Text(L"main");
        main_->Show();
        ASSERT_TRUE(PumpUntil(desktop_, [&] { return Focused() == Table(); }));
    }

    HWND Table() { return WindowOf(*main_, L"grdRooms"); }

    Form& Make(const std::wstring& name) {
        form_ = desktop_.CreateForm(name);
        FillCaptions(*form_, name, texts_);
        form_->KeyUp = [this](int key) { keys_.push_back(key); };
        return *form_;
    }

    bool HasFocus(const wchar_t* control) { return Focused() == WindowOf(*form_, control); }

    // Opens the dialog and takes the steps once it has the keyboard.
    void Show(const std::function<void(Journey&)>& steps) {
        Journey journey;
        journey.When(
            "dialog", [&] { return GetForegroundWindow() == WindowOf(*form_) && Focused(); },
            [] {});
        steps(journey);
        journey.When("end", inputIsDone, [&] { form_->Unload(); });
        form_->ShowModal();
    }

    Win32Desktop desktop_;
    Texts texts_;
    std::unique_ptr<Form> main_;
    std::unique_ptr<Form> form_;
    std::vector<int> keys_;
};

const auto always = [] { return true; };

TEST_F(Dialogs, EnterAndEscapeCountOnReleaseWhicheverControlHasTheFocus) {
    for (const wchar_t* name : {L"frmRoom", L"frmGeometry", L"frmReport"}) {
        Form& form = Make(name);
        const auto& entries = dynamic_cast<Win32Form&>(form).Entry().controls;
        int clicks = 0;
        for (const ControlEntry& entry : entries) {
            if (entry.kind == ControlKind::Button)
                form.ButtonNamed(std::wstring(entry.name)).Click = [&] { ++clicks; };
        }
        Show([&](Journey& journey) {
            for (const ControlEntry& entry : entries) {
                const std::wstring control(entry.name);
                if (entry.kind == ControlKind::Label || entry.kind == ControlKind::Frame)
                    continue;
                journey.When("focus", always, [&form, control] { Named(form, control).SetFocus(); })
                    .When(
                        "focused",
                        [&form, control] { return Focused() == WindowOf(form, control); },
                        [this] {
                            keys_.clear();
                            PressKey(VK_RETURN);
                        })
                    .When("pressed", inputIsDone,
                          [this] {
                              EXPECT_THAT(keys_, IsEmpty());
                              ReleaseKey(VK_RETURN);
                          })
                    .When(
                        "released", [this] { return !keys_.empty(); },
                        [this] {
                            EXPECT_THAT(keys_, ElementsAre(KeyEnter));
                            TypeKey(VK_ESCAPE);
                        })
                    .When(
                        "escaped", [this] { return keys_.size() > 1; },
                        [this] { EXPECT_THAT(keys_, ElementsAre(KeyEnter, KeyEscape)); });
            }
        });
        EXPECT_EQ(clicks, 0);
    }
}

TEST_F(Dialogs, SpacePressesTheButtonThatHasTheFocus) {
    Form& form = Make(L"frmRoom");
    int clicks = 0;
    form.ButtonNamed(L"cmdCancel").Click = [&] { ++clicks; };
    Show([&](Journey& journey) {
        journey.When("focus", always, [&] { form.ButtonNamed(L"cmdCancel").SetFocus(); })
            .When(
                "focused", [&] { return HasFocus(L"cmdCancel"); }, [] { TypeKey(VK_SPACE); })
            .When(
                "clicked", [&] { return clicks > 0; }, [] {});
    });
    EXPECT_EQ(clicks, 1);
}

TEST_F(Dialogs, TheEnterThatClosesAMessageDoesNotCount) {
    Form& form = Make(L"frmRoom");
    int shown = 0;
    form.KeyUp = [&](int key) {
        keys_.push_back(key);
        if (key == KeyEnter && ++shown == 1)
            desktop_.ShowMessage({L"Bitte", L" Quartino"});
    };
    Show([&](Journey& journey) {
        journey.When("enter", always, [] { TypeKey(VK_RETURN); })
            .When(
                "message", [] { return SystemDialog() != nullptr; },
                [] {
                    // Held down, it repeats into the dialog behind.
                    PressKey(VK_RETURN);
                    PressKey(VK_RETURN);
                    PressKey(VK_RETURN);
                })
            .When(
                "closed", [&] { return !SystemDialog() && HasFocus(L"txtStoryCode"); },
                [] { ReleaseKey(VK_RETURN); })
            .When("quiet", inputIsDone, [&] { EXPECT_THAT(keys_, ElementsAre(KeyEnter)); })
            .When("again", always, [] { TypeKey(VK_RETURN); })
            .When(
                "counts", [&] { return keys_.size() == 2; }, [] {});
    });
    EXPECT_EQ(shown, 2);
}

TEST_F(Dialogs, AReleaseWithoutItsPressDoesNotCount) {
    Make(L"frmRoom");
    PressKey(VK_RETURN);
    ASSERT_TRUE(PumpUntil(desktop_, inputIsDone));
    Show([&](Journey& journey) {
        journey.When("release", always, [] { ReleaseKey(VK_RETURN); })
            .When("quiet", inputIsDone, [] {});
    });
    EXPECT_THAT(keys_, IsEmpty());
}

TEST_F(Dialogs, ARepeatedKeyCountsOnce) {
    Make(L"frmGeometry");
    Show([&](Journey& journey) {
        journey
            .When("hold", always,
                  [] {
                      for (int repeat = 0; repeat < 5; ++repeat)
                          PressKey(VK_F1);
                      ReleaseKey(VK_F1);
                  })
            .When(
                "released", [&] { return !keys_.empty(); }, [] {});
    });
    EXPECT_THAT(keys_, ElementsAre(KeyF1));
}

TEST_F(Dialogs, AnOpenListGetsEnterToClose) {
    Form& form = Make(L"frmRoom");
    const HWND list = WindowOf(form, L"cboAreaType");
    const auto open = [list] { return SendMessageW(list, CB_GETDROPPEDSTATE, 0, 0) != 0; };
    Show([&](Journey& journey) {
        journey.When("focus", always, [&] { form.DropDownNamed(L"cboAreaType").SetFocus(); })
            .When(
                "focused", [&] { return HasFocus(L"cboAreaType"); },
                [] {
                    PressKey(VK_MENU);
                    TypeKey(VK_DOWN);
                    ReleaseKey(VK_MENU);
                })
            .When("open", open,
                  [] {
                      TypeKey(VK_DOWN);
                      PressKey(VK_RETURN);
                  })
            .When(
                "closed", [open] { return !open(); }, [] { ReleaseKey(VK_RETURN); })
            .When("quiet", inputIsDone, [] {});
    });
    EXPECT_EQ(std::count(keys_.begin(), keys_.end(), KeyEnter), 1);
}

TEST_F(Dialogs, AnOpenListShowsAllItsItems) {
    Form& form = Make(L"frmRoom");
    form.DropDownNamed(L"cboOccupancy").Text(L"ein fremder Wert");
    const HWND list = WindowOf(form, L"cboOccupancy");
    RECT closed{};
    GetWindowRect(list, &closed);
    Show([&](Journey& journey) {
        journey.When("focus", always, [&] { form.DropDownNamed(L"cboOccupancy").SetFocus(); })
            .When(
                "focused", [&] { return HasFocus(L"cboOccupancy"); }, [] { TypeKey(VK_F4); })
            .When(
                "open", [list] { return SendMessageW(list, CB_GETDROPPEDSTATE, 0, 0) != 0; },
                [&] {
                    TakePicture(desktop_, WindowOf(form), "frmRoom-list");
                    COMBOBOXINFO info{};
                    info.cbSize = sizeof info;
                    GetComboBoxInfo(list, &info);
                    RECT open{};
                    GetClientRect(info.hwndList, &open);
                    const auto rows = static_cast<int>(SendMessageW(list, CB_GETCOUNT, 0, 0));
                    const auto height =
                        static_cast<int>(SendMessageW(list, CB_GETITEMHEIGHT, 0, 0));
                    EXPECT_EQ(rows, 7);
                    EXPECT_GE(open.bottom, rows * height);
                    EXPECT_LT(open.bottom, (rows + 1) * height);
                    TypeKey(VK_F4);
                })
            .When(
                "closed", [list] { return !SendMessageW(list, CB_GETDROPPEDSTATE, 0, 0); }, [] {});
    });
}

TEST_F(Dialogs, EnteringAFieldSelectsAndLeavingItTells) {
    Form& form = Make(L"frmRoom");
    std::vector<std::wstring> events;
    for (const wchar_t* name : {L"txtStoryCode", L"txtName", L"txtArea"}) {
        TextField& field = form.FieldNamed(name);
        field.GotFocus = [&, name] {
            events.push_back(std::wstring(L"+") + name);
            field.Select(0, static_cast<int>(field.Text().size()));
        };
        field.LostFocus = [&, name] { events.push_back(std::wstring(L"-") + name); };
    }
    const auto selection = [&](const wchar_t* name) {
        return SendMessageW(WindowOf(form, name), EM_GETSEL, 0, 0);
    };
    Show([&](Journey& journey) {
        journey
            .When(
                "first", [&] { return !events.empty(); },
                [&] {
                    EXPECT_EQ(selection(L"txtStoryCode"), MAKELONG(0, 2));
                    TypeKey(VK_TAB);
                })
            .When(
                "next", [&] { return events.size() == 3; },
                [&] {
                    EXPECT_EQ(selection(L"txtName"), MAKELONG(0, 15));
                    // Another window in between is no leaving.
                    SetForegroundWindow(GetDesktopWindow());
                    desktop_.System().MessageBoxCall(WindowOf(form), L"", L"", MB_OK);
                })
            .When(
                "back", [&] { return HasFocus(L"txtName"); },
                [&] { ClickMiddle(WindowOf(form, L"txtArea")); })
            .When(
                "clicked", [&] { return events.size() == 5; },
                [&] { EXPECT_EQ(selection(L"txtArea"), MAKELONG(0, 6)); });
        // Answers the message in between.
        SetTimer(nullptr, 0, 50, [](HWND, UINT, UINT_PTR timer, DWORD) {
            if (const HWND dialog = SystemDialog()) {
                KillTimer(nullptr, timer);
                PostMessageW(dialog, WM_COMMAND, IDOK, 0);
            }
        });
    });
    EXPECT_THAT(events, ElementsAre(L"+txtStoryCode", L"-txtStoryCode", L"+txtName", L"-txtName",
                                    L"+txtArea"));
}

TEST_F(Dialogs, AFieldIsLeftBeforeTheAccessKeyOfAButtonCounts) {
    Form& form = Make(L"frmRoom");
    std::vector<std::wstring> events;
    form.FieldNamed(L"txtStoryCode").LostFocus = [&] { events.emplace_back(L"left"); };
    form.ButtonNamed(L"cmdOk").Text(L" &OK");
    form.ButtonNamed(L"cmdOk").Click = [&] { events.emplace_back(L"click"); };
    Show([&](Journey& journey) {
        journey
            .When("access key", always,
                  [] {
                      PressKey(VK_MENU);
                      TypeKey('O');
                      ReleaseKey(VK_MENU);
                  })
            .When(
                "clicked", [&] { return events.size() == 2; }, [] {});
    });
    EXPECT_THAT(events, ElementsAre(L"left", L"click"));
}

TEST_F(Dialogs, AMessageWhileLeavingAFieldIsHarmless) {
    Form& form = Make(L"frmRoom");
    desktop_.RuntimeErrorHandler = [&](const RuntimeError& error) {
        desktop_.ShowMessage({error.description(), L" Quartino"});
    };
    int left = 0;
    form.FieldNamed(L"txtStoryCode").LostFocus = [&] {
        ++left;
        throw RuntimeError(RuntimeError::TypeMismatch);
    };
    Show([&](Journey& journey) {
        journey.When("tab", always, [] { TypeKey(VK_TAB); })
            .When(
                "message", [] { return SystemDialog() != nullptr; }, [] { TypeKey(VK_RETURN); })
            .When(
                "back", [&] { return !SystemDialog() && HasFocus(L"txtName"); },
                [&] { EXPECT_TRUE(form.Enabled()); })
            .When("quiet", inputIsDone, [] {});
    });
    EXPECT_EQ(left, 1);
    EXPECT_EQ(std::count(keys_.begin(), keys_.end(), KeyEnter), 0);
}

TEST_F(Dialogs, AFieldMayUnloadItsFormWhenItIsLeft) {
    Form& form = Make(L"frmRoom");
    form.FieldNamed(L"txtStoryCode").LostFocus = [&] { form.Unload(); };
    Journey journey;
    journey.When(
        "dialog", [&] { return HasFocus(L"txtStoryCode"); }, [] { TypeKey(VK_TAB); });
    form.ShowModal();
    EXPECT_TRUE(journey.Done());
    EXPECT_TRUE(main_->Enabled());
}

TEST_F(Dialogs, ARejectedCharacterDoesNotReachTheField) {
    Form& form = Make(L"frmRoom");
    TextField& field = form.FieldNamed(L"txtQuantity");
    field.Text(L"");
    std::vector<int> asked;
    field.KeyPress = [&](std::int16_t& key) {
        asked.push_back(key);
        if (key == 'x' || key == 3)
            key = 0;
        else if (key == 'y')
            key = 'Z';
    };
    Show([&](Journey& journey) {
        journey.When("focus", always, [&] { field.SetFocus(); })
            .When(
                "focused", [&] { return HasFocus(L"txtQuantity"); },
                [] {
                    for (const char key : {'1', 'X', '2', 'Y'})
                        TypeKey(static_cast<WORD>(key));
                    PressKey(VK_CONTROL);
                    TypeKey('C');
                    ReleaseKey(VK_CONTROL);
                })
            .When(
                "typed", [&] { return asked.size() == 5; }, [] {});
    });
    EXPECT_THAT(asked, ElementsAre('1', 'x', '2', 'y', 3));
}

TEST_F(Dialogs, TextsTypedIntoAFieldAreItsText) {
    Form& form = Make(L"frmRoom");
    std::wstring typed;
    Show([&](Journey& journey) {
        journey
            .When("type", always,
                  [&] {
                      form.FieldNamed(L"txtStoryCode").Text(L"");
                      TypeKey('E');
                      TypeKey('G');
                  })
            .When(
                "typed", [&] { return form.FieldNamed(L"txtStoryCode").Text().size() == 2; },
                [&] { typed = form.FieldNamed(L"txtStoryCode").Text(); });
    });
    EXPECT_EQ(typed, L"eg");
}

TEST_F(Dialogs, ArrowsChooseTheNextOption) {
    Form& form = Make(L"frmGeometry");
    std::vector<std::wstring> clicks;
    for (const wchar_t* name : {L"optXDirection", L"optYDirection", L"optRatio", L"optExcelFile"})
        form.OptionNamed(name).Click = [&, name] { clicks.emplace_back(name); };
    Show([&](Journey& journey) {
        journey.When("focus", always, [&] { form.OptionNamed(L"optRatio").SetFocus(); })
            .When(
                "focused", [&] { return HasFocus(L"optRatio"); }, [] { TypeKey(VK_DOWN); })
            .When(
                "down", [&] { return HasFocus(L"optExcelFile"); }, [] { TypeKey(VK_DOWN); })
            .When(
                "around", [&] { return HasFocus(L"optXDirection"); }, [] { TypeKey(VK_UP); })
            .When(
                "up", [&] { return HasFocus(L"optExcelFile"); },
                [&] { ClickMiddle(WindowOf(form, L"optYDirection")); })
            .When(
                "clicked", [&] { return clicks.size() == 4; },
                [&] {
                    EXPECT_TRUE(form.OptionNamed(L"optYDirection").Value());
                    EXPECT_FALSE(form.OptionNamed(L"optExcelFile").Value());
                });
    });
    EXPECT_THAT(clicks,
                ElementsAre(L"optExcelFile", L"optXDirection", L"optExcelFile", L"optYDirection"));
}

TEST_F(Dialogs, TabKeysSwitchTheTabs) {
    Form& form = Make(L"frmPlace");
    TabStrip& tabs = form.TabsNamed(L"SSTab1");
    Show([&](Journey& journey) {
        journey
            .When("ctrl+tab", always,
                  [] {
                      PressKey(VK_CONTROL);
                      TypeKey(VK_TAB);
                      ReleaseKey(VK_CONTROL);
                  })
            .When(
                "second", [&] { return tabs.Tab() == 1; },
                [&] {
                    EXPECT_TRUE(IsWindowVisible(WindowOf(form, L"chkUpdate")));
                    // By mouse back to the first.
                    RECT tab{};
                    SendMessageW(WindowOf(form, L"SSTab1"), TCM_GETITEMRECT, 0,
                                 reinterpret_cast<LPARAM>(&tab));
                    Click(WindowOf(form, L"SSTab1"),
                          {(tab.left + tab.right) / 2, (tab.top + tab.bottom) / 2});
                })
            .When(
                "first", [&] { return tabs.Tab() == 0; },
                [&] { EXPECT_TRUE(IsWindowVisible(WindowOf(form, L"optBlock"))); });
    });
}

TEST_F(Dialogs, TheOwnerWaitsAndGetsTheFocusBack) {
    Form& form = Make(L"frmRoom");
    Show([&](Journey& journey) {
        journey.When("shown", always, [&] {
            EXPECT_FALSE(main_->Enabled());
            EXPECT_EQ(GetWindow(WindowOf(form), GW_OWNER), WindowOf(*main_));
        });
    });
    EXPECT_TRUE(main_->Enabled());
    EXPECT_TRUE(PumpUntil(desktop_, [&] { return Focused() == Table(); }));
}

TEST_F(Dialogs, ADialogMayOpenAnother) {
    Form& room = Make(L"frmRoom");
    std::unique_ptr<Form> geometry;
    room.ButtonNamed(L"cmdGeometry").Click = [&] {
        geometry = desktop_.CreateForm(L"frmGeometry");
        geometry->ButtonNamed(L"cmdCancel").Click = [&] { geometry->Unload(); };
        geometry->ShowModal();
        EXPECT_TRUE(room.Enabled());
        EXPECT_FALSE(main_->Enabled());
    };
    Show([&](Journey& journey) {
        journey.When("open", always, [&] { ClickMiddle(WindowOf(room, L"cmdGeometry")); })
            .When(
                "second", [&] { return geometry && GetForegroundWindow() == WindowOf(*geometry); },
                [&] {
                    EXPECT_FALSE(room.Enabled());
                    EXPECT_EQ(GetWindow(WindowOf(*geometry), GW_OWNER), WindowOf(room));
                    ClickMiddle(WindowOf(*geometry, L"cmdCancel"));
                })
            .When(
                "back", [&] { return GetForegroundWindow() == WindowOf(room); }, [] {});
    });
    EXPECT_TRUE(main_->Enabled());
}

TEST_F(Dialogs, AnOwnerThatWasDisabledStaysDisabled) {
    main_->Enabled(false);
    Make(L"frmReport");
    Journey journey;
    journey.When(
        "shown", [&] { return IsWindowVisible(WindowOf(*form_)) != FALSE; },
        [&] { form_->Unload(); });
    form_->ShowModal();
    EXPECT_FALSE(main_->Enabled());
}

TEST_F(Dialogs, TheCloseButtonUnloadsThroughTheSamePath) {
    Form& form = Make(L"frmRoom");
    int unloaded = 0;
    form.OnUnload = [&] { ++unloaded; };
    Journey journey;
    journey.When(
        "dialog", [&] { return HasFocus(L"txtStoryCode"); },
        [&] { PostMessageW(WindowOf(form), WM_SYSCOMMAND, SC_CLOSE, 0); });
    form.ShowModal();
    EXPECT_EQ(unloaded, 1);
    EXPECT_TRUE(main_->Enabled());
}

TEST_F(Dialogs, AFormMayEndInItsOwnEvent) {
    Form& form = Make(L"frmRoom");
    // What the closure holds must live as long as the closure runs.
    const auto witness = std::make_shared<int>(1);
    std::weak_ptr<int> watched = witness;
    bool stillThere = false;
    form.ButtonNamed(L"cmdOk").Click = [this, held = witness, &watched, &stillThere] {
        form_.reset();
        stillThere = !watched.expired() && *held == 1;
    };
    Journey journey;
    journey.When(
        "dialog", [&] { return HasFocus(L"txtStoryCode"); },
        [&] { ClickMiddle(WindowOf(*form_, L"cmdOk")); });
    form.ShowModal();
    EXPECT_TRUE(stillThere);
    EXPECT_EQ(form_, nullptr);
    EXPECT_TRUE(main_->Enabled());
    EXPECT_TRUE(PumpUntil(desktop_, [&] { return Focused() == Table(); }));
}

TEST_F(Dialogs, ADialogGoesWithItsOwner) {
    Form& form = Make(L"frmRoom");
    Journey journey;
    journey.When(
        "dialog", [&] { return HasFocus(L"txtStoryCode"); },
        [&] { SendMessageW(WindowOf(*main_), WM_ENDSESSION, TRUE, 0); });
    form.ShowModal();
    desktop_.Run();
    EXPECT_EQ(WindowOf(*main_), nullptr);
    form.Text(L"gone");
    EXPECT_EQ(form.FieldNamed(L"txtName").Text(), L"");
}

TEST_F(Dialogs, ColourButtonsShowTheirColour) {
    Form& form = Make(L"frmPlace");
    form.TabsNamed(L"SSTab1").Tab(1);
    Button& button = form.ButtonNamed(L"cmdWithoutCoordinates");
    button.BackColour(0x00C000);
    EXPECT_EQ(button.BackColour(), 0x00C000);
    int clicks = 0;
    button.Click = [&] { ++clicks; };
    const HWND window = WindowOf(form, L"cmdWithoutCoordinates");
    Show([&](Journey& journey) {
        journey
            .When(
                "painted",
                [window] {
                    UpdateWindow(window);
                    RECT client{};
                    GetClientRect(window, &client);
                    HDC context = GetDC(window);
                    const COLORREF pixel = GetPixel(context, client.right / 2, client.bottom / 2);
                    ReleaseDC(window, context);
                    return pixel == 0x00C000;
                },
                [window] { ClickMiddle(window); })
            .When(
                "clicked", [&] { return clicks == 1; }, [window] { ClickMiddle(window); })
            .When(
                "clicked quickly", [&] { return clicks == 2; }, [] {});
    });
}

} // namespace
} // namespace kalvrooms::Gui
