// What goes wrong ends the event, never the program; and keys that count whichever control has the
// focus.

#include "journeys/JourneyTest.h"

namespace kalvrooms::testing {
namespace {

constexpr const char* typeMismatch = "Laufzeitfehler 13:";
constexpr const char* overflow = "Laufzeitfehler 6:";

// A message of the one place that tells runtime errors; closed with Enter, which does nothing else.
void expectError(QuartinoProcess& quartino, HWND dialog, const char* text) {
    const HWND box = quartino.messageBox();
    EXPECT_THAT(toAnsi(quartino.messageOf(box)), ::testing::StartsWith(text));
    EXPECT_EQ(ui::textOf(box), L" Quartino");
    pressKey(VK_RETURN);
    quartino.waitUntilGone(box);
    quartino.waitForKeys(dialog);
    releaseKey(VK_RETURN);
}

TEST_F(JourneyTest, ATextThatStartsWithTheDecimalMarkIsARuntimeErrorWhereverItIsTyped) {
    QuartinoProcess quartino(folder);
    add(quartino, L"Neu", L"20", L"1");
    const auto before = quartino.commandsDone();
    quartino.chooseByKeys(editMenu, addLine);
    const HWND room = quartino.dialog(addTitle);
    const std::wstring text = decimalMark() + L"5";
    quartino.click(quartino.control(room, ID_ROOM_TXTAREA));
    quartino.type(room, ID_ROOM_TXTAREA, text);
    // On leaving the field, ...
    ui::typeKey(VK_TAB);
    expectError(quartino, room, typeMismatch);
    quartino.waitForFocus(room, ID_ROOM_CMDGEOMETRY);
    EXPECT_EQ(quartino.text(room, ID_ROOM_TXTAREA), text);
    // ... and with Enter, which does not get as far as OK.
    ui::typeKey(VK_RETURN);
    expectError(quartino, room, typeMismatch);
    quartino.keysWereHandled(room);
    EXPECT_TRUE(quartino.onlyShows({quartino.main(), room}));
    EXPECT_EQ(quartino.text(room, ID_ROOM_TXTAREA), text);
    EXPECT_THAT(quartino.column(Area), ElementsAre(L"20"));

    // Put right, all goes on; the same in the dialog above.
    quartino.click(quartino.control(room, ID_ROOM_TXTAREA));
    quartino.type(room, ID_ROOM_TXTAREA, L"7");
    quartino.tabTo(room, ID_ROOM_CMDGEOMETRY);
    ui::typeKey(VK_SPACE);
    const HWND geometry = quartino.dialog(geometryTitle);
    for (const int field : {ID_GEOMETRY_TXTDX, ID_GEOMETRY_TXTDY, ID_GEOMETRY_TXTRATIO}) {
        quartino.click(quartino.control(geometry, field));
        quartino.type(geometry, field, text);
        ui::typeKey(VK_RETURN);
        expectError(quartino, geometry, typeMismatch);
        // The Enter of the message does not confirm the dialog.
        quartino.waitForFocus(geometry, field);
        EXPECT_TRUE(quartino.onlyShows({quartino.main(), room, geometry}));
        EXPECT_EQ(quartino.text(geometry, field), text);
        ui::typeKey(VK_HOME);
        ui::typeKey(VK_END, {VK_SHIFT});
        quartino.type(geometry, field, L"1,5");
    }
    ui::typeKey(VK_RETURN);
    quartino.waitUntilGone(geometry);
    quartino.waitForKeys(room);
    ui::typeKey(VK_RETURN);
    quartino.waitForCommand(before);
    EXPECT_THAT(quartino.column(Area), ElementsAre(L"20", L"7"));
    EXPECT_THAT(quartino.column(Shape), ElementsAre(L"quadratisch", L"rechteckig"));

    quartino.chooseByKeys(extrasMenu, 0);
    const HWND options = quartino.dialog(optionsTitle);
    quartino.click(quartino.control(options, ID_PLACE_TXTDX));
    quartino.type(options, ID_PLACE_TXTDX, text);
    ui::typeKey(VK_RETURN);
    expectError(quartino, options, typeMismatch);
    quartino.waitForFocus(options, ID_PLACE_TXTDX);
    EXPECT_TRUE(quartino.onlyShows({quartino.main(), options}));
    const auto cancelled = quartino.commandsDone();
    ui::typeKey(VK_ESCAPE);
    quartino.waitForCommand(cancelled);
}

TEST_F(JourneyTest, NumbersThatAreTooLargeAreRuntimeErrors) {
    QuartinoProcess quartino(folder);
    const auto before = quartino.commandsDone();
    quartino.chooseByKeys(editMenu, addLine);
    const HWND dialog = quartino.dialog(addTitle);
    quartino.click(quartino.control(dialog, ID_ROOM_TXTQUANTITY));
    quartino.type(dialog, ID_ROOM_TXTQUANTITY, L"99999999999");
    ui::typeKey(VK_RETURN);
    expectError(quartino, dialog, overflow);
    quartino.waitForFocus(dialog, ID_ROOM_TXTQUANTITY);
    EXPECT_EQ(quartino.text(dialog, ID_ROOM_TXTQUANTITY), L"99999999999");
    EXPECT_TRUE(quartino.onlyShows({quartino.main(), dialog}));
    EXPECT_THAT(quartino.column(Name), IsEmpty());
    quartino.click(quartino.control(dialog, ID_ROOM_TXTQUANTITY));
    quartino.tabTo(dialog, ID_ROOM_CMDOK);
    ui::typeKey(VK_TAB, {VK_SHIFT});
    quartino.waitForFocus(dialog, ID_ROOM_TXTQUANTITY);
    quartino.type(dialog, ID_ROOM_TXTQUANTITY, L"2");
    ui::typeKey(VK_RETURN);
    quartino.waitForCommand(before);
    EXPECT_EQ(quartino.column(Story).size(), 2u);
}

// --- keys
// ------------------------------------------------------------------------------------------

// Dialogs are tried one control after the other: opened, the focus brought there, a key typed.
class KeysOfTheDialogs : public JourneyTest {
  protected:
    // Wine prefers its own help control to the one beside the program; elsewhere the key is no more
    // than a key.
    static SettingsKey helpControlBesideTheProgram() {
        SettingsKey loading(L"Software\\Wine\\AppDefaults\\Quartino.exe\\DllOverrides");
        for (const wchar_t* name : {L"hhctrl.ocx", L"*hhctrl.ocx"})
            loading.set(name, REG_SZ, std::string("n\0a\0t\0i\0v\0e\0\0\0", 14));
        return loading;
    }

    struct Sweep {
        std::function<HWND()> open;
        std::vector<int> stops; // where Tab goes, from the control that has the focus first
        int helpContext;
    };

    // F1 from every control, Tab all the way round and back again.
    void expectHelpEverywhere(QuartinoProcess& quartino, const Sweep& sweep) {
        const HWND dialog = sweep.open();
        quartino.waitForFocus(dialog, sweep.stops.front());
        for (std::size_t stop = 0; stop < sweep.stops.size(); ++stop) {
            ui::typeKey(VK_F1);
            ++helpAsked;
            ui::waitFor("a call for help", [&] { return folder.helpCalls().size() >= helpAsked; });
            EXPECT_EQ(folder.helpCalls().back().context, sweep.helpContext) << stop;
            quartino.tabTo(dialog, sweep.stops[(stop + 1) % sweep.stops.size()]);
        }
        for (std::size_t stop = sweep.stops.size(); stop-- > 0;) {
            ui::typeKey(VK_TAB, {VK_SHIFT});
            quartino.waitForFocus(dialog, sweep.stops[stop]);
        }
        EXPECT_EQ(folder.helpCalls().size(), helpAsked);
        ui::typeKey(VK_ESCAPE);
        quartino.waitUntilGone(dialog);
    }

    // Enter or Escape from every control: pressed it does nothing, released it closes the dialog.
    void expectClosesFromEverywhere(QuartinoProcess& quartino, const Sweep& sweep, WORD virtualKey,
                                    const std::function<void()>& closed) {
        for (std::size_t stop = 0; stop < sweep.stops.size(); ++stop) {
            const HWND dialog = sweep.open();
            quartino.waitForFocus(dialog, sweep.stops.front());
            for (std::size_t step = 1; step <= stop; ++step)
                quartino.tabTo(dialog, sweep.stops[step]);
            ui::typeKey(virtualKey);
            quartino.waitUntilGone(dialog);
            closed();
        }
    }

    std::size_t helpAsked = 0;
};

TEST_F(KeysOfTheDialogs, CountWhicheverControlHasTheFocus) {
    const SettingsKey loading = helpControlBesideTheProgram();
    writeBytes(file(L"hilfe.chm"), "");
    folder.writeHandOver(keyPath, L"xxx", file(L"hilfe.kalvhelp").wstring());
    QuartinoProcess quartino(folder);
    add(quartino, L"R1", L"20", L"1");
    HWND room = nullptr;
    const auto toMain = [&] { quartino.waitForKeys(quartino.main()); };
    const auto showOptions = [&](int tab) {
        quartino.chooseByKeys(extrasMenu, 0);
        const HWND dialog = quartino.dialog(optionsTitle);
        if (tab == 1) {
            quartino.waitForFocus(dialog, ID_PLACE_OPTBLOCK);
            ui::typeKey(VK_TAB, {VK_SHIFT});
            quartino.waitForFocus(dialog, ID_PLACE_SSTAB1);
            ui::typeKey(VK_RIGHT);
            ui::waitFor("the other tab",
                        [&] { return quartino.visible(dialog, ID_PLACE_CHKUPDATE); });
        }
        return dialog;
    };

    const Sweep rooms{[&] {
                          quartino.chooseByKeys(editMenu, addLine);
                          return quartino.dialog(addTitle);
                      },
                      {ID_ROOM_TXTSTORYCODE, ID_ROOM_TXTNAME, ID_ROOM_TXTFUNCTION, ID_ROOM_TXTAREA,
                       ID_ROOM_CMDGEOMETRY, ID_ROOM_CBOENCLOSURETYPE, ID_ROOM_CBOOCCUPANCY,
                       ID_ROOM_CBOAREATYPE, ID_ROOM_TXTQUANTITY, ID_ROOM_CMDOK, ID_ROOM_CMDCANCEL},
                      7};
    expectHelpEverywhere(quartino, rooms);
    toMain();
    expectClosesFromEverywhere(quartino, rooms, VK_ESCAPE, toMain);
    EXPECT_EQ(quartino.column(Name).size(), 1u);
    std::size_t count = 1;
    expectClosesFromEverywhere(quartino, rooms, VK_RETURN, [&] {
        toMain();
        ++count;
        EXPECT_EQ(quartino.column(Name).size(), count) << "Enter is OK, also on Cancel";
    });
    // One of them is opened for all that follows.
    const Sweep existing{[&] {
                             quartino.chooseByKeys(editMenu, modifyLine);
                             return quartino.dialog(modifyTitle);
                         },
                         {ID_ROOM_TXTNAME, ID_ROOM_TXTFUNCTION, ID_ROOM_TXTAREA,
                          ID_ROOM_CMDGEOMETRY, ID_ROOM_CBOENCLOSURETYPE, ID_ROOM_CBOOCCUPANCY,
                          ID_ROOM_CBOAREATYPE, ID_ROOM_CMDOK, ID_ROOM_CMDCANCEL},
                         7};
    expectHelpEverywhere(quartino, existing);
    toMain();

    room = existing.open();
    quartino.waitForFocus(room, ID_ROOM_TXTNAME);
    quartino.tabTo(room, ID_ROOM_TXTFUNCTION);
    quartino.tabTo(room, ID_ROOM_TXTAREA);
    quartino.tabTo(room, ID_ROOM_CMDGEOMETRY);
    const auto toRoom = [&] {
        quartino.waitForKeys(room);
        quartino.waitForFocus(room, ID_ROOM_CMDGEOMETRY);
    };
    const Sweep geometry{[&] {
                             ui::typeKey(VK_SPACE);
                             return quartino.dialog(geometryTitle);
                         },
                         {ID_GEOMETRY_TXTDX, ID_GEOMETRY_TXTDY, ID_GEOMETRY_OPTRATIO,
                          ID_GEOMETRY_TXTRATIO, ID_GEOMETRY_CMDEXCELFILE, ID_GEOMETRY_CMDOK,
                          ID_GEOMETRY_CMDCANCEL},
                         7};
    expectHelpEverywhere(quartino, geometry);
    toRoom();
    expectClosesFromEverywhere(quartino, geometry, VK_ESCAPE, toRoom);
    expectClosesFromEverywhere(quartino, geometry, VK_RETURN, toRoom);
    ui::typeKey(VK_ESCAPE);
    quartino.waitUntilGone(room);
    toMain();

    const Sweep arrangement{[&] { return showOptions(0); },
                            {ID_PLACE_OPTBLOCK, ID_PLACE_TXTDX, ID_PLACE_TXTDY, ID_PLACE_CMDOK,
                             ID_PLACE_CMDCANCEL, ID_PLACE_SSTAB1},
                            11};
    const Sweep display{[&] { return showOptions(1); },
                        {ID_PLACE_SSTAB1, ID_PLACE_CMDWITHCOORDINATES,
                         ID_PLACE_CMDWITHOUTCOORDINATES, ID_PLACE_CHKUPDATE, ID_PLACE_CMDOK,
                         ID_PLACE_CMDCANCEL},
                        11};
    for (const Sweep& options : {arrangement, display}) {
        expectHelpEverywhere(quartino, options);
        toMain();
        expectClosesFromEverywhere(quartino, options, VK_ESCAPE, toMain);
        expectClosesFromEverywhere(quartino, options, VK_RETURN, toMain);
    }
}

} // namespace
} // namespace kalvrooms::testing
