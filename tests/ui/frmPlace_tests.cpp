#include "ui/frmPlace.h"

#include "TestContext.h"
#include "ui/frmReport.h"

namespace kalvrooms {
namespace {

using Names = std::vector<std::wstring>;

class frmPlaceTest : public DialogTest {
  protected:
    void show(std::function<void(HeadlessForm&)> user) {
        DialogTest::show<frmPlace>(L"frmPlace", std::move(user));
    }
    void look(const std::function<void(HeadlessForm&)>& at) {
        show([&](HeadlessForm& form) {
            at(form);
            EXPECT_TRUE(form.Click(L"cmdCancel"));
        });
    }
    // Shows the dialog, acts, and expects that OK is refused with the one message.
    void expectRefused(const std::function<void(HeadlessForm&)>& act) {
        const std::size_t before = desktop.Messages().size();
        show([&](HeadlessForm& form) {
            act(form);
            form.Click(L"cmdOk");
            EXPECT_TRUE(form.Loaded());
            EXPECT_EQ(desktop.Messages().size(), before + 1);
            form.Click(L"cmdCancel");
        });
    }
};

} // namespace

// ------------------------------------------------------------------------- opening

TEST_F(frmPlaceTest, ShowsItsCaptionsInTheirOrderAndOpensOnTheFirstTab) {
    look([](HeadlessForm& form) {
        EXPECT_EQ(form.Journal(), (Names{
                                      L"frmPlace.Text= Optionen ",
                                      L"fraAnordnung.Text= Anordnung neuer Räume im Teilbild",
                                      L"optSingle.Text= Neue Räume einzeln absetzen",
                                      L"optBlock.Text= Neue Räume als Block absetzen",
                                      L"lblDisX.Text= Abstand in X-Richtung in m:",
                                      L"lblDisY.Text= Abstand in Y-Richtung in m:",
                                      L"fraColor.Text= Darstellung",
                                      L"lblcolold.Text= Räume deren Koordinaten bekannt sind",
                                      L"lblcolnew.Text= Räume die am Fadenkreuz abgesetzt werden",
                                      L"chkUpdate.Text= Aktualisierungsbericht anzeigen",
                                      L"cmdOk.Text= OK",
                                      L"cmdCancel.Text= Abbrechen",
                                      L"SSTab1.Tab=1",
                                      L"SSTab1.TabCaption(1)= Darstellung",
                                      L"SSTab1.Tab=0",
                                      L"SSTab1.TabCaption(0)= Anordnung",
                                      L"cmdWithCoordinates.BackColour=0",
                                      L"cmdWithoutCoordinates.BackColour=255",
                                      L"optBlock.Value=True",
                                      L"txtDx.Text=1,000",
                                      L"txtDy.Text=1,000",
                                      L"chkUpdate.Value=True",
                                      L"frmPlace.Visible=True",
                                  }));
        EXPECT_EQ(form.Tabs(L"SSTab1").Tab(), 0);
        // The colour buttons have no text of their own.
        EXPECT_EQ(form.ControlNamed(L"cmdWithCoordinates").Text(), L"");
    });
}

TEST_F(frmPlaceTest, ShowsTheBlockWithItsDistances) {
    context.placement.distanceX = 2.5;
    context.placement.distanceY = 0.1;
    look([](HeadlessForm& form) {
        EXPECT_TRUE(form.Option(L"optBlock").Value());
        EXPECT_FALSE(form.Option(L"optSingle").Value());
        EXPECT_EQ(form.Field(L"txtDx").Text(), L"2,500");
        EXPECT_EQ(form.Field(L"txtDy").Text(), L"0,100");
    });
}

TEST_F(frmPlaceTest, ShowsTheDistancesWithADecimalPoint) {
    useDecimalPoint();
    look([](HeadlessForm& form) { EXPECT_EQ(form.Field(L"txtDx").Text(), L"1.000"); });
}

TEST_F(frmPlaceTest, LeavesTheDistancesOfSingleRoomsEmpty) {
    context.placement.block = false;
    look([](HeadlessForm& form) {
        EXPECT_TRUE(form.Option(L"optSingle").Value());
        EXPECT_FALSE(form.Option(L"optBlock").Value());
        EXPECT_EQ(form.Field(L"txtDx").Text(), L"");
        EXPECT_EQ(form.Field(L"txtDy").Text(), L"");
    });
}

TEST_F(frmPlaceTest, ShowsTheColours) {
    context.placement.colorOld = 0x010203;
    context.placement.colorNew = 0x040506;
    look([](HeadlessForm& form) {
        EXPECT_EQ(form.ControlNamed(L"cmdWithCoordinates").BackColour(), 0x010203);
        EXPECT_EQ(form.ControlNamed(L"cmdWithoutCoordinates").BackColour(), 0x040506);
    });
}

TEST_F(frmPlaceTest, ChecksTheReportUnlessItIsSwitchedOff) {
    look([](HeadlessForm& form) { EXPECT_TRUE(form.Check(L"chkUpdate").Value()); });
    context.noReport = true;
    look([](HeadlessForm& form) { EXPECT_FALSE(form.Check(L"chkUpdate").Value()); });
}

TEST_F(frmPlaceTest, KeepsTheDistanceFieldsEnabled) {
    look([](HeadlessForm& form) {
        for (const wchar_t* option : {L"optSingle", L"optBlock"}) {
            form.Click(option);
            EXPECT_TRUE(form.Field(L"txtDx").Enabled());
            EXPECT_TRUE(form.Field(L"txtDy").Enabled());
            EXPECT_EQ(form.Field(L"txtDx").Text(), L"1,000");
        }
    });
}

// ------------------------------------------------------------------------- OK

TEST_F(frmPlaceTest, HandsOverTheBlock) {
    show([](HeadlessForm& form) {
        form.Type(L"txtDx", L"2.5");
        form.Type(L"txtDy", L"0,25");
        form.Click(L"cmdOk");
        EXPECT_FALSE(form.Loaded());
    });
    EXPECT_EQ(context.calls, (Names{L"SetWithReport", L"SetPlace"}));
    EXPECT_EQ(context.placement.distanceX, 2.5);
    EXPECT_EQ(context.placement.distanceY, 0.25);
    EXPECT_TRUE(context.placement.block);
    EXPECT_EQ(context.placement.colorOld, 0);
    EXPECT_EQ(context.placement.colorNew, 255);
}

TEST_F(frmPlaceTest, RefusesADistanceThatIsZeroOrMissing) {
    for (const wchar_t* field : {L"txtDx", L"txtDy"})
        for (const wchar_t* text : {L"", L"0", L" 0 ", L"   ", L"0,000", L"abc"}) {
            expectRefused([&](HeadlessForm& form) { form.Field(field).Text(text); });
            EXPECT_EQ(context.calls.back(), L"SetWithReport");
        }
    const Gui::Message& message = desktop.Messages().front();
    EXPECT_EQ(message.Prompt, L" Abstände müssen größer als Null sein.");
    EXPECT_EQ(message.Title, L"Quartino");
    EXPECT_EQ(message.ButtonSet, Gui::Message::Buttons::Ok);
    EXPECT_EQ(message.Symbol, Gui::Message::Icon::None);
    EXPECT_EQ(context.placement.distanceX, 1.0);
    EXPECT_EQ(context.placement.distanceY, 1.0);
}

TEST_F(frmPlaceTest, KeepsItsEntriesWhenItRefuses) {
    show([](HeadlessForm& form) {
        form.Type(L"txtDx", L"0");
        form.Type(L"txtDy", L"7");
        form.Click(L"cmdOk");
        EXPECT_EQ(form.Field(L"txtDx").Text(), L"0,000");
        EXPECT_EQ(form.Field(L"txtDy").Text(), L"7,000");
        form.Type(L"txtDx", L"3");
        form.Click(L"cmdOk");
        EXPECT_FALSE(form.Loaded());
    });
    EXPECT_EQ(context.placement.distanceX, 3.0);
    EXPECT_EQ(context.placement.distanceY, 7.0);
}

TEST_F(frmPlaceTest, ShowsItsMessageOnceForTwoMissingDistances) {
    expectRefused([](HeadlessForm& form) {
        form.Field(L"txtDx").Text(L"");
        form.Field(L"txtDy").Text(L"");
    });
}

TEST_F(frmPlaceTest, RefusesOnlyZeroAndTakesAPastedNegativeDistance) {
    show([](HeadlessForm& form) {
        form.Paste(L"txtDx", L"-2,5");
        form.Click(L"cmdOk");
        EXPECT_FALSE(form.Loaded());
    });
    EXPECT_EQ(context.placement.distanceX, -2.5);
    EXPECT_TRUE(desktop.Messages().empty());
}

TEST_F(frmPlaceTest, HandsOverZeroDistancesForSingleRoomsWithoutLookingAtTheFields) {
    show([](HeadlessForm& form) {
        form.Type(L"txtDx", L"0");
        form.Field(L"txtDy").Text(L",5");
        form.Click(L"optSingle");
        form.Click(L"cmdOk");
        EXPECT_FALSE(form.Loaded());
    });
    EXPECT_FALSE(context.placement.block);
    EXPECT_EQ(context.placement.distanceX, 0.0);
    EXPECT_EQ(context.placement.distanceY, 0.0);
    EXPECT_TRUE(desktop.Messages().empty());
    look([](HeadlessForm& form) {
        EXPECT_TRUE(form.Option(L"optSingle").Value());
        EXPECT_EQ(form.Field(L"txtDx").Text(), L"");
    });
    expectRefused([](HeadlessForm& form) { form.Click(L"optBlock"); });
}

TEST_F(frmPlaceTest, AppliesTheReportSwitchEvenWhenItRefusesAndIsCancelled) {
    expectRefused([](HeadlessForm& form) {
        form.Field(L"txtDx").Text(L"0");
        form.Click(L"chkUpdate");
    });
    EXPECT_TRUE(context.noReport);
    EXPECT_EQ(context.calls, Names{L"SetWithoutReport"});
}

TEST_F(frmPlaceTest, AppliesTheReportSwitchBeforeTheMessage) {
    desktop.AnswerNext([&](const Gui::Message&) {
        EXPECT_EQ(context.calls, Names{L"SetWithoutReport"});
        return Gui::Answer::Ok;
    });
    expectRefused([](HeadlessForm& form) {
        form.Field(L"txtDx").Text(L"0");
        form.Click(L"chkUpdate");
    });
}

TEST_F(frmPlaceTest, SwitchesTheReportOnAgain) {
    context.noReport = true;
    show([](HeadlessForm& form) {
        form.Click(L"chkUpdate");
        form.Click(L"cmdOk");
    });
    EXPECT_FALSE(context.noReport);
}

TEST_F(frmPlaceTest, ReadsTheDistancesBeforeItAppliesTheReportSwitch) {
    show([&](HeadlessForm& form) {
        form.Click(L"chkUpdate");
        form.Field(L"txtDx").Text(L",5");
        form.Click(L"cmdOk");
        EXPECT_EQ(errors, std::vector<long>{RuntimeError::TypeMismatch});
        EXPECT_TRUE(form.Loaded());
        EXPECT_TRUE(context.calls.empty());
        form.Click(L"cmdCancel");
    });
    EXPECT_FALSE(context.noReport);
}

// ------------------------------------------------------------------------- colours

TEST_F(frmPlaceTest, HandsOverTheChosenColours) {
    desktop.ChooseColour(0x00FF00);
    desktop.ChooseColour(0xFF0000);
    show([](HeadlessForm& form) {
        form.Click(L"cmdWithCoordinates");
        EXPECT_EQ(form.ControlNamed(L"cmdWithCoordinates").BackColour(), 0x00FF00);
        EXPECT_EQ(form.ControlNamed(L"cmdWithoutCoordinates").BackColour(), 255);
        form.Click(L"cmdWithoutCoordinates");
        form.Click(L"cmdOk");
    });
    EXPECT_EQ(context.placement.colorOld, 0x00FF00);
    EXPECT_EQ(context.placement.colorNew, 0xFF0000);
}

TEST_F(frmPlaceTest, ACancelledColourDialogLeavesTheButtonItsColour) {
    context.placement.colorOld = 0x111111;
    desktop.CancelColourDialog();
    desktop.ChooseColour(0x222222);
    desktop.CancelColourDialog();
    show([](HeadlessForm& form) {
        form.Click(L"cmdWithCoordinates");
        EXPECT_EQ(form.ControlNamed(L"cmdWithCoordinates").BackColour(), 0x111111);
        form.Click(L"cmdWithCoordinates");
        form.Click(L"cmdWithoutCoordinates");
        form.Click(L"cmdOk");
    });
    EXPECT_EQ(context.placement.colorOld, 0x222222);
    EXPECT_EQ(context.placement.colorNew, 255);
}

TEST_F(frmPlaceTest, ARefusedDistanceShowsItsTabAndItsField) {
    for (const wchar_t* refused : {L"txtDx", L"txtDy"})
        look([&](HeadlessForm& form) {
            form.Field(refused).Text(L"0");
            form.SelectTab(L"SSTab1", 1);
            form.Click(L"cmdOk");
            EXPECT_EQ(form.Tabs(L"SSTab1").Tab(), 0);
            EXPECT_EQ(form.Focused(), refused);
        });
}

// ------------------------------------------------------------------------- fields and keys

TEST_F(frmPlaceTest, NormalizesBothFieldsAndTakesEnterAsOk) {
    show([](HeadlessForm& form) {
        form.Field(L"txtDy").Text(L"3");
        form.Type(L"txtDx", L"2.5");
        form.PressKey(Gui::KeyEnter);
        EXPECT_FALSE(form.Loaded());
        EXPECT_EQ(form.Field(L"txtDx").Text(), L"2,500");
        EXPECT_EQ(form.Field(L"txtDy").Text(), L"3,000");
    });
    EXPECT_EQ(context.placement.distanceX, 2.5);
    EXPECT_EQ(context.placement.distanceY, 3.0);
}

TEST_F(frmPlaceTest, NormalizesOnEnterEvenWhenItRefuses) {
    show([&](HeadlessForm& form) {
        form.Type(L"txtDx", L"0");
        form.PressKey(Gui::KeyEnter);
        EXPECT_TRUE(form.Loaded());
        EXPECT_EQ(form.Field(L"txtDx").Text(), L"0,000");
        EXPECT_EQ(desktop.Messages().size(), 1u);
        form.Click(L"cmdCancel");
    });
}

TEST_F(frmPlaceTest, ShowsTheReportSwitchThatTheReportSet) {
    context.counts.updated = 2;
    DialogTest::show<frmReport>(L"frmReport", [](HeadlessForm& form) {
        form.Click(L"chkNoReport");
        form.Click(L"cmdOk");
    });
    look([](HeadlessForm& form) { EXPECT_FALSE(form.Check(L"chkUpdate").Value()); });
}

} // namespace kalvrooms
