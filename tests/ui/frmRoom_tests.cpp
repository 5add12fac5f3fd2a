#include "ui/frmRoom.h"

#include "TestContext.h"

namespace kalvrooms {
namespace {

class frmRoomTest : public DialogTest {
  protected:
    frmRoomTest() { context.room->IsNew(true); }

    void show(std::function<void(HeadlessForm&)> user) {
        DialogTest::show<frmRoom>(L"frmRoom", std::move(user));
    }
    // Shows the dialog, looks at it and cancels.
    void look(const std::function<void(HeadlessForm&)>& at) {
        show([&](HeadlessForm& form) {
            at(form);
            EXPECT_TRUE(form.Click(L"cmdCancel"));
        });
    }
    void useFile(const std::wstring& path) {
        context.room->Geometry->SetTypeAndValue(CalculationByFile, path);
    }
};

} // namespace

// ------------------------------------------------------------------------- opening

TEST_F(frmRoomTest, ShowsItsCaptionsInTheirOrder) {
    look([&](HeadlessForm& form) {
        EXPECT_EQ(firstOf(form.Journal(), 13), (std::vector<std::wstring>{
                                                   L"frmAttrib.Text= Raumattribute",
                                                   L"lblGeschoss.Text= Geschoss Kurzbezeichnung:",
                                                   L"lblBez.Text= Bezeichnung:",
                                                   L"lblFkt.Text= Funktion:",
                                                   L"lblFlaeche.Text= Fläche in qm:",
                                                   L"lblGFlaeche.Text= Grundflächen Geometrie",
                                                   L"cmdGeometry.Text= Geometrie ...",
                                                   L"lblUm.Text= Umschließungsart:",
                                                   L"lblNutz.Text= Nutzungsart:",
                                                   L"lblFlArt.Text= Flächenart:",
                                                   L"lblAnz.Text= Anzahl:",
                                                   L"cmdOk.Text= OK",
                                                   L"cmdCancel.Text= Abbrechen",
                                               }));
    });
}

TEST_F(frmRoomTest, FillsItsFieldsInTheirOrder) {
    context.room->FunctionName(L"Arbeiten");
    context.room->AreaType(L"N");
    look([&](HeadlessForm& form) {
        const auto& journal = form.Journal();
        EXPECT_EQ(std::vector<std::wstring>(journal.begin() + 13, journal.end()),
                  (std::vector<std::wstring>{
                      L"frmRoom.Text= Raum hinzufügen ",
                      L"txtQuantity.Text=1",
                      L"txtStoryCode.Text=EG",
                      L"txtFunction.Text=Arbeiten",
                      L"txtName.Text=1",
                      L"txtArea.Text=16,000",
                      L"cboAreaType.Text=N",
                      L"cboEnclosureType.Text= kein Eintrag",
                      L"cboOccupancy.Text= kein Eintrag",
                      L"txtQuantity.Enabled=True",
                      L"txtStoryCode.Enabled=True",
                      L"frmRoom.Visible=True",
                  }));
    });
}

TEST_F(frmRoomTest, CaptionsAnExistingRoomAsModifying) {
    context.room->IsNew(false);
    look([](HeadlessForm& form) { EXPECT_EQ(form.Text(), L" Raum modifizieren "); });
}

// Those of the enclosure have no blanks.
TEST_F(frmRoomTest, OffersTheTypesOfAreaEnclosureAndUse) {
    look([](HeadlessForm& form) {
        using Items = std::vector<std::wstring>;
        EXPECT_EQ(form.List(L"cboAreaType").Items(),
                  (Items{L" kein Eintrag", L" N", L" M", L" L"}));
        EXPECT_EQ(form.List(L"cboEnclosureType").Items(),
                  (Items{L" kein Eintrag", L"a", L"b", L"c", L"bc"}));
        EXPECT_EQ(form.List(L"cboOccupancy").Items(),
                  (Items{L" kein Eintrag", L" NF", L" TF", L" VF", L" HNF 1", L" HNF 2", L" HNF 3",
                         L" HNF 4", L" HNF 5", L" HNF 6", L" NNF", L" FF"}));
    });
}

TEST_F(frmRoomTest, TakesItsTextsFromTheLanguageLibrary) {
    platform.libraries.Put(L"C:\\Quartino\\zorvinta_eng.dll",
                           {{191, L"none"}, {183, L"MUA"}, {128, L"Storey:"}});
    context.text.SetLanguage(L"eng");
    look([](HeadlessForm& form) {
        EXPECT_EQ(form.ControlNamed(L"lblGeschoss").Text(), L"Storey:");
        EXPECT_EQ(form.List(L"cboOccupancy").Item(4), L"MUA 1");
        EXPECT_EQ(form.List(L"cboOccupancy").Text(), L"none");
    });
}

TEST_F(frmRoomTest, StoresNothingForTheNoEntryOfAnotherLanguage) {
    platform.libraries.Put(L"C:\\Quartino\\zorvinta_eng.dll", {{191, L"none"}});
    context.text.SetLanguage(L"eng");
    context.room->Occupancy(L"VF");
    show([](HeadlessForm& form) {
        form.Choose(L"cboOccupancy", 0);
        form.Click(L"cmdOk");
    });
    EXPECT_EQ(context.room->Occupancy(), L"");
}

TEST_F(frmRoomTest, ShowsTheValuesOfTheRoom) {
    context.room->StoryCode(L"2.OG");
    context.room->Name(L"Büro 7");
    context.room->FunctionName(L"Arbeiten");
    context.room->AreaType(L"M");
    context.room->Enclosure(L"bc");
    context.room->Occupancy(L"HNF 3");
    context.room->Geometry->Area(12.5);
    look([](HeadlessForm& form) {
        EXPECT_EQ(form.Field(L"txtStoryCode").Text(), L"2.OG");
        EXPECT_EQ(form.Field(L"txtName").Text(), L"Büro 7");
        EXPECT_EQ(form.Field(L"txtFunction").Text(), L"Arbeiten");
        EXPECT_EQ(form.Field(L"txtArea").Text(), L"12,500");
        EXPECT_EQ(form.List(L"cboAreaType").Text(), L"M");
        EXPECT_EQ(form.List(L"cboEnclosureType").Text(), L"bc");
        EXPECT_EQ(form.List(L"cboOccupancy").Text(), L"HNF 3");
    });
}

TEST_F(frmRoomTest, ShowsAValueThatIsInNoList) {
    context.room->Enclosure(L"überdacht & offen");
    look([](HeadlessForm& form) {
        EXPECT_EQ(form.List(L"cboEnclosureType").Text(), L"überdacht & offen");
        EXPECT_EQ(form.List(L"cboEnclosureType").ItemCount(), 5);
    });
}

TEST_F(frmRoomTest, LocksStoreyAndQuantityOfAnExistingRoom) {
    context.room->IsNew(false);
    look([](HeadlessForm& form) {
        EXPECT_FALSE(form.Field(L"txtStoryCode").Enabled());
        EXPECT_FALSE(form.Field(L"txtQuantity").Enabled());
        EXPECT_EQ(form.Field(L"txtQuantity").Text(), L"1");
        EXPECT_FALSE(form.Type(L"txtStoryCode", L"OG"));
    });
}

TEST_F(frmRoomTest, StartsWithQuantityOneEveryTime) {
    show([](HeadlessForm& form) {
        form.Type(L"txtQuantity", L"5");
        form.Click(L"cmdOk");
    });
    look([](HeadlessForm& form) { EXPECT_EQ(form.Field(L"txtQuantity").Text(), L"1"); });
}

TEST_F(frmRoomTest, NeedsARoom) {
    context.room = nullptr;
    EXPECT_EQ(errorOf([&] { context.Show<frmRoom>(); }), RuntimeError::ObjectVariableNotSet);
    EXPECT_TRUE(desktop.ModalForms().empty());
}

TEST_F(frmRoomTest, IsOwnedByTheMainWindow) {
    look([](HeadlessForm& form) { EXPECT_EQ(form.OwnerName(), L"frmMain"); });
}

// ------------------------------------------------------------------------- OK

TEST_F(frmRoomTest, StoresTrimmedTextsOnOk) {
    show([&](HeadlessForm& form) {
        form.Type(L"txtStoryCode", L"  OG ");
        form.Type(L"txtName", L" Büro 1  ");
        form.Type(L"txtFunction", L"  Arbeiten ");
        form.Type(L"txtArea", L"20.25");
        EXPECT_TRUE(form.Click(L"cmdOk"));
        EXPECT_FALSE(form.Loaded());
        EXPECT_EQ(form.Field(L"txtStoryCode").Text(), L"OG");
    });
    EXPECT_EQ(context.room->StoryCode(), L"OG");
    EXPECT_EQ(context.room->FunctionName(), L"Arbeiten");
    EXPECT_EQ(context.room->Geometry->Area(), 20.25);
    EXPECT_EQ(context.calls, std::vector<std::wstring>{L"AddCurrentRoomsToListOfFloors 1"});
    clsRoom stored;
    context.floors.GetRoomByIndex(1, stored);
    EXPECT_EQ(stored.Name(), L"Büro 1");
    EXPECT_EQ(context.room->Name(), L"Büro2");
}

TEST_F(frmRoomTest, RefusesAnEmptyStoreyCodeAndStaysOpen) {
    show([&](HeadlessForm& form) {
        form.Type(L"txtStoryCode", L"   ");
        form.Type(L"txtName", L"anders");
        form.Type(L"txtFunction", L"anders");
        form.Type(L"txtQuantity", L"0");
        form.Choose(L"cboAreaType", 1);
        form.Click(L"cmdOk");
        EXPECT_TRUE(form.Loaded());
        EXPECT_EQ(form.Field(L"txtStoryCode").Text(), L"");
        EXPECT_EQ(form.Field(L"txtQuantity").Text(), L"1");
        EXPECT_EQ(context.room->Name(), L"1");
        EXPECT_EQ(context.room->StoryCode(), L"EG");
        EXPECT_EQ(context.room->FunctionName(), L"");
        EXPECT_EQ(context.room->AreaType(), L"");
        EXPECT_TRUE(context.calls.empty());
        form.Type(L"txtStoryCode", L"EG");
        form.Click(L"cmdOk");
        EXPECT_FALSE(form.Loaded());
    });
    ASSERT_EQ(desktop.Messages().size(), 1u);
    const Gui::Message& message = desktop.Messages().front();
    EXPECT_EQ(message.Prompt, L" Bitte geben Sie eine Geschoss Kurzbezeichung ein.");
    EXPECT_EQ(message.Title, L" Quartino");
    EXPECT_EQ(message.ButtonSet, Gui::Message::Buttons::Ok);
    EXPECT_EQ(message.Symbol, Gui::Message::Icon::None);
    EXPECT_EQ(context.room->AreaType(), L"N");
}

TEST_F(frmRoomTest, AcceptsAStoreyCodeOfEightCharactersAndRefusesMoreOrNone) {
    for (const auto& [isNew, typed] : std::vector<std::pair<bool, std::wstring>>{
             {true, L" 12345678 "}, {true, L"123456789"}, {false, L""}}) {
        const std::size_t before = desktop.Messages().size();
        const bool accepted = typed.size() == 10;
        context.room->IsNew(isNew);
        context.room->StoryCode(L"EG");
        show([&](HeadlessForm& form) {
            form.Field(L"txtStoryCode").Text(typed);
            form.Click(L"cmdOk");
            EXPECT_EQ(form.Loaded(), !accepted);
            EXPECT_EQ(desktop.Messages().size(), before + (accepted ? 0 : 1));
            form.Click(L"cmdCancel");
        });
        EXPECT_EQ(context.room->StoryCode(), accepted ? L"12345678" : L"EG");
    }
    EXPECT_EQ(context.calls, std::vector<std::wstring>{L"AddCurrentRoomsToListOfFloors 1"});
}

TEST_F(frmRoomTest, RefusesANegativeAreaAndStaysOpen) {
    for (const bool isNew : {true, false}) {
        context.room->IsNew(isNew);
        show([&](HeadlessForm& form) {
            form.Field(L"txtName").Text(L"anders");
            for (const wchar_t* pasted : {L"-1", L" -0,5 ", L"-1.000"}) {
                form.Field(L"txtArea").Text(pasted);
                form.Click(L"cmdOk");
                EXPECT_TRUE(form.Visible());
                EXPECT_EQ(desktop.Messages().back().Prompt,
                          L"Bitte geben Sie eine Fläche ein, die nicht negativ ist.");
                EXPECT_EQ(desktop.Messages().back().Title, L" Quartino");
                EXPECT_EQ(context.room->Name(), L"1");
                EXPECT_EQ(context.room->Geometry->Area(), 16.0);
            }
            EXPECT_EQ(context.calls, std::vector<std::wstring>());
            form.Click(L"cmdCancel");
        });
    }
    EXPECT_EQ(desktop.Messages().size(), 6u);
    EXPECT_EQ(errors, std::vector<long>());
}

TEST_F(frmRoomTest, DoesNotLookAtTheLockedAreaOfAPolygonalRoom) {
    useFile(L"C:\\P\\3-17.txt");
    context.room->Geometry->Area(-2.0);
    show([&](HeadlessForm& form) { form.Click(L"cmdOk"); });
    EXPECT_TRUE(desktop.Messages().empty());
    EXPECT_EQ(context.room->Geometry->Area(), -2.0);
}

TEST_F(frmRoomTest, StoresNothingForNoEntry) {
    context.room->AreaType(L"N");
    context.room->Enclosure(L"a");
    context.room->Occupancy(L"HNF 1");
    show([](HeadlessForm& form) {
        for (const wchar_t* list : {L"cboAreaType", L"cboEnclosureType", L"cboOccupancy"})
            form.Choose(list, 0);
        form.Click(L"cmdOk");
    });
    EXPECT_EQ(context.room->AreaType(), L"");
    EXPECT_EQ(context.room->Enclosure(), L"");
    EXPECT_EQ(context.room->Occupancy(), L"");
}

TEST_F(frmRoomTest, StoresTheChosenEntries) {
    show([](HeadlessForm& form) {
        form.Choose(L"cboAreaType", 3);
        form.Choose(L"cboEnclosureType", 4);
        form.Choose(L"cboOccupancy", 6);
        form.Click(L"cmdOk");
    });
    EXPECT_EQ(context.room->AreaType(), L"L");
    EXPECT_EQ(context.room->Enclosure(), L"bc");
    EXPECT_EQ(context.room->Occupancy(), L"HNF 3");
}

TEST_F(frmRoomTest, KeepsAValueThatIsInNoList) {
    context.room->IsNew(false);
    context.room->Occupancy(L"Sonstiges");
    show([](HeadlessForm& form) { form.Click(L"cmdOk"); });
    EXPECT_EQ(context.room->Occupancy(), L"Sonstiges");
}

TEST_F(frmRoomTest, LimitsNeitherNameNorFunction) {
    const std::wstring longText(300, L'x');
    show([&](HeadlessForm& form) {
        form.Type(L"txtName", longText);
        form.Type(L"txtFunction", longText);
        form.Click(L"cmdOk");
    });
    EXPECT_EQ(context.room->FunctionName(), longText);
    EXPECT_TRUE(desktop.Messages().empty());
}

// A single zero counts as one.
TEST_F(frmRoomTest, AddsAsManyNewRoomsAsTheQuantitySays) {
    for (const auto& [typed, count] :
         std::vector<std::pair<std::wstring, std::int32_t>>{{L"3", 3}, {L"0", 1}, {L"00", 0}}) {
        const std::int32_t before = context.floors.GetCountOfRooms();
        show([&](HeadlessForm& form) {
            form.Type(L"txtQuantity", typed);
            form.Click(L"cmdOk");
        });
        EXPECT_EQ(context.calls.back(), L"AddCurrentRoomsToListOfFloors " + std::to_wstring(count));
        EXPECT_EQ(context.floors.GetCountOfRooms(), before + count);
    }
}

TEST_F(frmRoomTest, RefreshesTheTableForAnExistingRoom) {
    context.room->IsNew(false);
    show([](HeadlessForm& form) {
        form.Type(L"txtName", L"Büro");
        form.Click(L"cmdOk");
    });
    EXPECT_EQ(context.room->Name(), L"Büro");
    EXPECT_EQ(context.calls, std::vector<std::wstring>{L"UpdateTable False"});
}

TEST_F(frmRoomTest, RefusesAQuantityAbove99999AndStaysOpenWithNothingStored) {
    const std::wstring many[] = {L"100000",  L"0000100000",  L"2147483648",          L"1e5",
                                 L"99999,5", L"99999999999", std::wstring(400, L'9')};
    for (const std::wstring& quantity : many) {
        SCOPED_TRACE(testing::PrintToString(quantity));
        desktop.AnswerNext(Gui::Answer::Ok);
        show([&](HeadlessForm& form) {
            form.Type(L"txtName", L"Saal");
            form.Field(L"txtQuantity").Text(quantity);
            form.Click(L"cmdOk");
            EXPECT_TRUE(form.Loaded());
            EXPECT_EQ(form.Field(L"txtQuantity").Text(), quantity);
            form.Click(L"cmdCancel");
        });
        ASSERT_FALSE(desktop.Messages().empty());
        EXPECT_EQ(desktop.Messages().back().Prompt,
                  L"Bitte geben Sie als Anzahl höchstens 99999 ein.");
        EXPECT_EQ(desktop.Messages().back().Title, L" Quartino");
        EXPECT_TRUE(context.calls.empty());
        EXPECT_EQ(context.room->Name(), L"1");
    }
    EXPECT_TRUE(errors.empty());
    show([&](HeadlessForm& form) {
        form.Field(L"txtQuantity").Text(L"000000099999");
        form.Click(L"cmdOk");
    });
    EXPECT_EQ(context.calls.back(), L"AddCurrentRoomsToListOfFloors 99999");
}

TEST_F(frmRoomTest, EndsTheEventOnAnEmptyQuantityAfterTheRoomWasFilled) {
    show([&](HeadlessForm& form) {
        form.Type(L"txtName", L"Büro");
        form.Choose(L"cboOccupancy", 1);
        form.Type(L"txtQuantity", L"\b");
        form.Click(L"cmdOk");
        EXPECT_TRUE(form.Loaded());
        EXPECT_EQ(errors, std::vector<long>{RuntimeError::TypeMismatch});
        EXPECT_EQ(context.room->Name(), L"Büro");
        EXPECT_EQ(context.room->Occupancy(), L"NF");
        EXPECT_TRUE(context.calls.empty());
        form.Type(L"txtQuantity", L"2");
        form.Click(L"cmdOk");
    });
    EXPECT_EQ(context.calls, std::vector<std::wstring>{L"AddCurrentRoomsToListOfFloors 2"});
}

TEST_F(frmRoomTest, EndsTheEventOnAnAreaThatIsNoNumberAfterTheTextsWereStored) {
    show([&](HeadlessForm& form) {
        form.Type(L"txtName", L"Büro");
        form.Choose(L"cboOccupancy", 1);
        form.Field(L"txtArea").Text(L"viel");
        form.Click(L"cmdOk");
        EXPECT_EQ(errors, std::vector<long>{RuntimeError::TypeMismatch});
        EXPECT_TRUE(form.Loaded());
        form.Click(L"cmdCancel");
    });
    EXPECT_EQ(context.room->Name(), L"Büro");
    EXPECT_EQ(context.room->Geometry->Area(), 16.0);
    EXPECT_EQ(context.room->Occupancy(), L"");
    EXPECT_TRUE(context.calls.empty());
}

TEST_F(frmRoomTest, TakesATrimmedArea) {
    show([](HeadlessForm& form) {
        form.Field(L"txtArea").Text(L"  7,5  ");
        form.Click(L"cmdOk");
    });
    EXPECT_EQ(context.room->Geometry->Area(), 7.5);
}

TEST_F(frmRoomTest, KeepsWhatTheLastRoomOfTheTemplateHad) {
    show([](HeadlessForm& form) {
        form.Type(L"txtName", L"Büro 1");
        form.Type(L"txtStoryCode", L"OG");
        form.Choose(L"cboOccupancy", 2);
        form.Type(L"txtQuantity", L"3");
        form.Click(L"cmdOk");
    });
    look([](HeadlessForm& form) {
        EXPECT_EQ(form.Field(L"txtName").Text(), L"Büro4");
        EXPECT_EQ(form.Field(L"txtStoryCode").Text(), L"OG");
        EXPECT_EQ(form.List(L"cboOccupancy").Text(), L"TF");
    });
}

// ------------------------------------------------------------------------- geometry button

TEST_F(frmRoomTest, OpensTheGeometryDialogOverItself) {
    desktop.OnModal(L"frmGeometry", [](HeadlessForm& geometry) {
        EXPECT_EQ(geometry.OwnerName(), L"frmRoom");
        geometry.Click(L"cmdCancel");
    });
    show([](HeadlessForm& form) {
        form.Click(L"cmdGeometry");
        form.Click(L"cmdCancel");
    });
    EXPECT_EQ(desktop.ModalForms(), (std::vector<std::wstring>{L"frmRoom", L"frmGeometry"}));
}

TEST_F(frmRoomTest, KeepsItsFieldsAndTheNewGeometryWhenCancelledAfterwards) {
    desktop.OnModal(L"frmGeometry", [](HeadlessForm& geometry) {
        geometry.Click(L"optExcelFile");
        geometry.OwningDesktop().ChooseFile(L"C:\\Projekt\\raum.txt");
        geometry.Click(L"cmdExcelFile");
        geometry.Click(L"cmdOk");
    });
    show([](HeadlessForm& form) {
        form.Click(L"cmdGeometry");
        EXPECT_TRUE(form.Field(L"txtArea").Enabled());
        EXPECT_EQ(form.Field(L"txtArea").Text(), L"16,000");
        form.Click(L"cmdCancel");
    });
    EXPECT_EQ(context.room->Geometry->CalculationType(), CalculationByFile);
    EXPECT_EQ(context.room->Geometry->CalculationValue(), L"C:\\Projekt\\raum.txt");
    look([](HeadlessForm& form) { EXPECT_FALSE(form.Field(L"txtArea").Enabled()); });
}

// ------------------------------------------------------------------------- fields

TEST_F(frmRoomTest, LetsTheQuantityHaveDigitsOnly) {
    look([](HeadlessForm& form) {
        form.Type(L"txtQuantity", L"-1.2,x34\b");
        EXPECT_EQ(form.Field(L"txtQuantity").Text(), L"123");
    });
}

TEST_F(frmRoomTest, LetsTheOtherFieldsHaveEveryKeyInPlaceOfTheirTexts) {
    context.room->FunctionName(L"Arbeiten");
    look([](HeadlessForm& form) {
        for (const wchar_t* name : {L"txtStoryCode", L"txtName", L"txtFunction"}) {
            form.Type(name, L"a-1.ß");
            form.LeaveField();
            EXPECT_EQ(form.Field(name).Text(), L"a-1.ß");
        }
    });
}

TEST_F(frmRoomTest, LeavesTheQuantityAsTyped) {
    look([](HeadlessForm& form) {
        form.Type(L"txtQuantity", L"007");
        form.LeaveField();
        EXPECT_EQ(form.Field(L"txtQuantity").Text(), L"007");
    });
}

TEST_F(frmRoomTest, NormalizesTheAreaOnLeaving) {
    look([](HeadlessForm& form) {
        const std::pair<const wchar_t*, const wchar_t*> cases[] = {
            {L"12.5", L"12,500"}, {L"12,5", L"12,500"},     {L"7", L"7,000"},
            {L"\b", L"0,000"},    {L"3,14159", L"3,14159"}, {L"1.234,5", L"1234,500"},
            {L"5,", L"5,000"},    {L"1.234.567", L"1,000"}};
        for (const auto& [typed, shown] : cases) {
            form.Type(L"txtArea", typed);
            form.LeaveField();
            EXPECT_EQ(form.Field(L"txtArea").Text(), shown) << testing::PrintToString(typed);
        }
    });
}

TEST_F(frmRoomTest, NormalizesTheAreaWithADecimalPoint) {
    useDecimalPoint();
    show([](HeadlessForm& form) {
        form.Type(L"txtArea", L"12,5");
        form.LeaveField();
        EXPECT_EQ(form.Field(L"txtArea").Text(), L"12.500");
        form.Click(L"cmdOk");
    });
    EXPECT_EQ(context.room->Geometry->Area(), 12.5);
}

TEST_F(frmRoomTest, TakesPastedTextPastTheFilter) {
    look([](HeadlessForm& form) {
        form.Paste(L"txtArea", L"-2,5");
        form.LeaveField();
        EXPECT_EQ(form.Field(L"txtArea").Text(), L"-2,500");
        form.Paste(L"txtArea", L"-0,5");
        form.LeaveField();
        EXPECT_EQ(form.Field(L"txtArea").Text(), L"0,500");
        form.Paste(L"txtArea", L"groß");
        form.LeaveField();
        EXPECT_EQ(form.Field(L"txtArea").Text(), L"0,000");
    });
}

// ------------------------------------------------------------------------- keys

TEST_F(frmRoomTest, NormalizesTheAreaAndTakesEnterAsOk) {
    for (const wchar_t* focus : {L"txtArea", L"txtName", L"cboOccupancy"}) {
        context.calls.clear();
        show([&](HeadlessForm& form) {
            form.Type(L"txtArea", L"12.5");
            form.Focus(focus);
            form.PressKey(Gui::KeyEnter);
            EXPECT_FALSE(form.Loaded());
            EXPECT_EQ(form.Field(L"txtArea").Text(), L"12,500");
        });
        EXPECT_EQ(context.room->Geometry->Area(), 12.5);
        EXPECT_EQ(context.calls, std::vector<std::wstring>{L"AddCurrentRoomsToListOfFloors 1"});
    }
}

TEST_F(frmRoomTest, EnterOnAFocusedButtonPressesThatButtonOnly) {
    show([&](HeadlessForm& form) {
        form.Focus(L"cmdGeometry");
        desktop.OnModal(L"frmGeometry", [](HeadlessForm& geometry) {
            // The release goes to the window that is open by then.
            geometry.ReleaseKey(Gui::KeyEnter);
            EXPECT_TRUE(geometry.Loaded());
            geometry.Click(L"cmdCancel");
        });
        form.PressKey(Gui::KeyEnter);
        EXPECT_EQ(desktop.ModalForms().back(), L"frmGeometry");
        EXPECT_TRUE(form.Loaded());
        form.Focus(L"cmdCancel");
        form.PressKey(Gui::KeyEnter);
        EXPECT_FALSE(form.Loaded());
    });
    EXPECT_TRUE(context.calls.empty());
}

TEST_F(frmRoomTest, NormalizesTheAreaOnEnterEvenWhenItIsRefused) {
    show([&](HeadlessForm& form) {
        form.Type(L"txtStoryCode", L"\b");
        form.Type(L"txtArea", L"5");
        form.PressKey(Gui::KeyEnter);
        EXPECT_TRUE(form.Loaded());
        EXPECT_EQ(form.Field(L"txtArea").Text(), L"5,000");
        EXPECT_EQ(desktop.Messages().size(), 1u);
        form.Click(L"cmdCancel");
    });
    EXPECT_EQ(context.room->Geometry->Area(), 16.0);
}

// ------------------------------------------------------------------------- under both locales

namespace {

class frmRoomWithEveryMark : public UnderBothLocales {};

} // namespace

TEST_P(frmRoomWithEveryMark, ReadsBackTheAreaThatItShows) {
    for (const double area : {0.0, 0.001, 1.0, 12.5, 3.14159, 1234.567, 99999.9999}) {
        HeadlessPlatform platform;
        TestContext context(platform);
        context.room->IsNew(false);
        context.room->Geometry->Area(area);
        platform.desktop.OnModal(L"frmRoom", [](HeadlessForm& form) {
            form.Focus(L"txtArea");
            form.PressKey(Gui::KeyEnter);
        });
        context.Show<frmRoom>();
        EXPECT_EQ(context.room->Geometry->Area(), area);
        EXPECT_EQ(context.calls, std::vector<std::wstring>{L"UpdateTable False"});
    }
}

INSTANTIATE_TEST_SUITE_P(Locales, frmRoomWithEveryMark,
                         testing::Values(NumberLocale::German(), NumberLocale::Point()));

} // namespace kalvrooms
