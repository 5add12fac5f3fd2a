#include "ui/frmGeometry.h"

#include "TestContext.h"

namespace kalvrooms {
namespace {

class frmGeometryTest : public DialogTest {
  protected:
    void store(const std::wstring& type, const std::wstring& value) {
        context.room->Geometry->SetTypeAndValue(type, value);
    }
    void show(std::function<void(HeadlessForm&)> user) {
        DialogTest::show<frmGeometry>(L"frmGeometry", std::move(user));
    }
    void look(const std::function<void(HeadlessForm&)>& at) {
        show([&](HeadlessForm& form) {
            at(form);
            EXPECT_TRUE(form.Click(L"cmdCancel"));
        });
    }
    void expectStored(const std::wstring& type, const std::wstring& value) const {
        EXPECT_EQ(context.room->Geometry->CalculationType(), type);
        EXPECT_EQ(context.room->Geometry->CalculationValue(), value);
    }
    static std::vector<std::wstring> selected(HeadlessForm& form) {
        std::vector<std::wstring> names;
        for (const wchar_t* name :
             {L"optXDirection", L"optYDirection", L"optRatio", L"optExcelFile"})
            if (form.Option(name).Value())
                names.push_back(name);
        return names;
    }
};

using Names = std::vector<std::wstring>;

} // namespace

// ------------------------------------------------------------------------- opening

TEST_F(frmGeometryTest, ShowsItsCaptionsInTheirOrder) {
    look([](HeadlessForm& form) {
        EXPECT_EQ(
            firstOf(form.Journal(), 11),
            (Names{
                L"frmGeometry.Text= Geometrie",
                L"fraGeo.Text= Geometrie",
                L"optXDirection.Text= Geometrie durch Definition der Ausdehnung in X-Richtung "
                L"festlegen",
                L"lblDx.Text= dx in m:",
                L"optYDirection.Text= Geometrie durch Definition der Ausdehnung in Y-Richtung "
                L"festlegen",
                L"lblDy.Text= dy in m:",
                L"optRatio.Text= Geometrie aus dem Verhältnis dx zu dy berechnen",
                L"lblRatio.Text= dx/dy:",
                L"optExcelFile.Text= Geometrie aus Excel importieren",
                L"cmdOk.Text= OK",
                L"cmdCancel.Text= Abbrechen",
            }));
    });
}

// A side as it stands; a ratio with two decimals, and as 1 for a type that nobody knows.
TEST_F(frmGeometryTest, ShowsWhatIsStored) {
    const std::wstring path = L"C:\\Projekt\\raum.txt";
    struct Case {
        std::wstring type, value, option, dx, dy, ratio, file;
    };
    const Case cases[] = {{CalculationByRatio, L" 1", L"optRatio", L"", L"", L"1,00", L""},
                          {CalculationByDx, L" 5.5x", L"optXDirection", L" 5.5x", L"", L"", L""},
                          {CalculationByDy, L"7", L"optYDirection", L"", L"7", L"", L""},
                          {CalculationByFile, path, L"optExcelFile", L"", L"", L"", path},
                          {L"calculationbydx", L"5", L"optRatio", L"", L"", L"1,00", L""},
                          {CalculationByRatio, L"eins", L"optRatio", L"", L"", L"0,00", L""}};
    for (const Case& entry : cases) {
        SCOPED_TRACE(testing::PrintToString(entry.type + entry.value));
        store(entry.type, entry.value);
        look([&](HeadlessForm& form) {
            EXPECT_EQ(selected(form), Names{entry.option});
            EXPECT_EQ(form.Field(L"txtDx").Text(), entry.dx);
            EXPECT_EQ(form.Field(L"txtDy").Text(), entry.dy);
            EXPECT_EQ(form.Field(L"txtRatio").Text(), entry.ratio);
            EXPECT_EQ(form.ControlNamed(L"cmdExcelFile").Text(), entry.file);
        });
        expectStored(entry.type, entry.value);
    }
}

TEST_F(frmGeometryTest, ShowsTheRatioWithADecimalPoint) {
    useDecimalPoint();
    look([](HeadlessForm& form) { EXPECT_EQ(form.Field(L"txtRatio").Text(), L"1.00"); });
}

TEST_F(frmGeometryTest, CannotOpenOnARatioThatBeginsWithTheMark) {
    store(CalculationByRatio, L",5");
    EXPECT_EQ(errorOf([&] { context.Show<frmGeometry>(); }), RuntimeError::TypeMismatch);
    EXPECT_TRUE(desktop.ModalForms().empty());
}

TEST_F(frmGeometryTest, NeedsARoomWithGeometry) {
    context.room->Geometry = nullptr;
    EXPECT_EQ(errorOf([&] { context.Show<frmGeometry>(); }), RuntimeError::ObjectVariableNotSet);
}

// ------------------------------------------------------------------------- options

TEST_F(frmGeometryTest, ClearsThePathWhenANumberOptionIsSelected) {
    for (const wchar_t* option : {L"optXDirection", L"optYDirection", L"optRatio"}) {
        store(CalculationByFile, L"C:\\raum.txt");
        show([&](HeadlessForm& form) {
            form.Click(option);
            EXPECT_EQ(selected(form), Names{option});
            EXPECT_EQ(form.ControlNamed(L"cmdExcelFile").Text(), L"");
            // The path is gone for good, not only from the button.
            form.Click(L"optExcelFile");
            form.Click(L"cmdOk");
            EXPECT_TRUE(form.Loaded());
            form.Click(L"cmdCancel");
        });
    }
}

TEST_F(frmGeometryTest, EmptiesTheNumbersWhenTheFileIsSelected) {
    store(CalculationByDx, L"5,000");
    look([](HeadlessForm& form) {
        form.Type(L"txtDy", L"6");
        form.Type(L"txtRatio", L"7");
        form.Click(L"optExcelFile");
        for (const wchar_t* name : {L"txtDx", L"txtDy", L"txtRatio"})
            EXPECT_EQ(form.Field(name).Text(), L"");
    });
}

TEST_F(frmGeometryTest, KeepsTheOtherNumbersWhenTheDirectionChanges) {
    store(CalculationByDx, L"5,000");
    look([](HeadlessForm& form) {
        form.Click(L"optYDirection");
        EXPECT_EQ(form.Field(L"txtDx").Text(), L"5,000");
        form.Click(L"optRatio");
        EXPECT_EQ(form.Field(L"txtDx").Text(), L"5,000");
    });
}

TEST_F(frmGeometryTest, DisablesNothingWhateverIsSelected) {
    look([](HeadlessForm& form) {
        for (const wchar_t* option :
             {L"optXDirection", L"optYDirection", L"optRatio", L"optExcelFile"}) {
            form.Click(option);
            for (const wchar_t* name : {L"txtDx", L"txtDy", L"txtRatio", L"cmdExcelFile"})
                EXPECT_TRUE(form.ControlNamed(name).Enabled());
        }
    });
}

// ------------------------------------------------------------------------- the file

TEST_F(frmGeometryTest, AsksForTheFileWithItsSettings) {
    store(CalculationByFile, L"C:\\alt.txt");
    desktop.ChooseFile(L"  C:\\neu.txt ", 2);
    desktop.CancelFileDialog();
    look([](HeadlessForm& form) {
        form.Click(L"cmdExcelFile");
        form.Click(L"cmdExcelFile");
    });
    ASSERT_EQ(desktop.FileDialogs().size(), 2u);
    for (const auto& call : desktop.FileDialogs()) {
        EXPECT_FALSE(call.Save);
        EXPECT_EQ(call.Asked.Filter,
                  L"Text Files(*.txt)|*.txt|Microsoft Excel-Dateien (*.xls)|*.xls");
        // The filter chosen before is not remembered.
        EXPECT_EQ(call.Asked.FilterIndex, 0);
        EXPECT_EQ(call.Asked.DefaultExtension, L"xls");
        EXPECT_EQ(call.Asked.Flags, 0x3004u);
    }
    EXPECT_EQ(desktop.FileDialogs()[0].Asked.FileName, L"C:\\alt.txt");
    EXPECT_EQ(desktop.FileDialogs()[1].Asked.FileName, L"C:\\neu.txt");
}

TEST_F(frmGeometryTest, ShowsAndStoresTheChosenFileTrimmed) {
    desktop.ChooseFile(L"  C:\\Neue Räume\\raum.xls ");
    show([](HeadlessForm& form) {
        form.Click(L"optExcelFile");
        form.Click(L"cmdExcelFile");
        EXPECT_EQ(form.ControlNamed(L"cmdExcelFile").Text(), L"C:\\Neue Räume\\raum.xls");
        form.Click(L"cmdOk");
        EXPECT_FALSE(form.Loaded());
    });
    expectStored(CalculationByFile, L"C:\\Neue Räume\\raum.xls");
}

TEST_F(frmGeometryTest, DoesNotSelectTheFileOptionWithTheFile) {
    desktop.ChooseFile(L"C:\\raum.txt");
    show([](HeadlessForm& form) {
        form.Click(L"cmdExcelFile");
        EXPECT_EQ(selected(form), Names{L"optRatio"});
        EXPECT_EQ(form.ControlNamed(L"cmdExcelFile").Text(), L"C:\\raum.txt");
        form.Click(L"cmdOk");
    });
    expectStored(CalculationByRatio, L"1,00");
}

TEST_F(frmGeometryTest, KeepsAFileThatWasChosenBeforeItsOption) {
    desktop.ChooseFile(L"C:\\raum.txt");
    show([](HeadlessForm& form) {
        form.Click(L"cmdExcelFile");
        form.Click(L"optExcelFile");
        form.Click(L"cmdOk");
    });
    expectStored(CalculationByFile, L"C:\\raum.txt");
}

TEST_F(frmGeometryTest, KeepsTheFileWhenItsDialogIsCancelled) {
    store(CalculationByFile, L"C:\\alt.txt");
    desktop.CancelFileDialog();
    show([&](HeadlessForm& form) {
        form.Click(L"cmdExcelFile");
        EXPECT_EQ(form.ControlNamed(L"cmdExcelFile").Text(), L"C:\\alt.txt");
        form.Click(L"cmdOk");
    });
    expectStored(CalculationByFile, L"C:\\alt.txt");
    EXPECT_TRUE(errors.empty());
}

TEST_F(frmGeometryTest, ReportsAFileDialogThatCannotBeOpened) {
    desktop.ChooseFile([](Gui::FileDialog&) { throw RuntimeError(RuntimeError::BadFileName); });
    look([](HeadlessForm& form) { form.Click(L"cmdExcelFile"); });
    EXPECT_EQ(errors, std::vector<long>{RuntimeError::BadFileName});
}

TEST_F(frmGeometryTest, ShowsTheLastFiftyFiveCharactersOfALongPath) {
    std::wstring path = L"C:\\";
    while (path.size() < 60)
        path.push_back(static_cast<wchar_t>(L'a' + path.size() % 26));
    for (const std::size_t length : {std::size_t{55}, std::size_t{56}, std::size_t{60}}) {
        const std::wstring name = path.substr(0, length);
        store(CalculationByFile, name);
        show([&](HeadlessForm& form) {
            EXPECT_EQ(form.ControlNamed(L"cmdExcelFile").Text(), name.substr(length - 55));
            form.Click(L"cmdOk");
        });
        expectStored(CalculationByFile, name);
    }
}

TEST_F(frmGeometryTest, ShowsAnAmpersandOfThePathAsALetter) {
    store(CalculationByFile, L"C:\\A&B\\raum.txt");
    show([](HeadlessForm& form) {
        EXPECT_EQ(form.ControlNamed(L"cmdExcelFile").Text(), L"C:\\A&&B\\raum.txt");
        form.Click(L"cmdOk");
    });
    expectStored(CalculationByFile, L"C:\\A&B\\raum.txt");
}

TEST_F(frmGeometryTest, CountsAnAmpersandOnceForTheLengthOfTheCaption) {
    const std::wstring name = L"C:\\" + std::wstring(52, L'&');
    store(CalculationByFile, name);
    look([](HeadlessForm& form) {
        EXPECT_EQ(form.ControlNamed(L"cmdExcelFile").Text(), L"C:\\" + std::wstring(104, L'&'));
    });
}

// ------------------------------------------------------------------------- OK

TEST_F(frmGeometryTest, StoresASideAsDisplayed) {
    for (const auto& [option, field, type] :
         {std::tuple{L"optXDirection", L"txtDx", CalculationByDx},
          std::tuple{L"optYDirection", L"txtDy", CalculationByDy}}) {
        show([option = option, field = field](HeadlessForm& form) {
            form.Click(option);
            form.Type(field, L"5.5");
            form.Click(L"cmdOk");
            EXPECT_FALSE(form.Loaded());
        });
        expectStored(type, L"5,500");
    }
    EXPECT_EQ(context.room->Geometry->Area(), 16.0);
    EXPECT_TRUE(context.calls.empty());
}

TEST_F(frmGeometryTest, StoresTheRatioAsDisplayed) {
    useDecimalPoint();
    show([](HeadlessForm& form) {
        form.Type(L"txtRatio", L"1,5");
        form.Click(L"cmdOk");
    });
    expectStored(CalculationByRatio, L"1.50");
}

TEST_F(frmGeometryTest, StoresTheTextAndNotTheNumber) {
    store(CalculationByDx, L" 5 ");
    show([](HeadlessForm& form) { form.Click(L"cmdOk"); });
    expectStored(CalculationByDx, L" 5 ");
}

TEST_F(frmGeometryTest, RefusesWithoutAWordWhatIsNoPositiveNumber) {
    struct Case {
        const wchar_t* option;
        const wchar_t* field;
    };
    for (const Case& entry : {Case{L"optXDirection", L"txtDx"}, Case{L"optYDirection", L"txtDy"},
                              Case{L"optRatio", L"txtRatio"}})
        for (const wchar_t* text : {L"", L"0,000", L"0", L"-1", L"-0,001", L"abc", L"  "}) {
            show([&](HeadlessForm& form) {
                form.Click(entry.option);
                form.Field(entry.field).Text(text);
                form.Click(L"cmdOk");
                EXPECT_TRUE(form.Loaded()) << testing::PrintToString(text);
                form.Click(L"cmdCancel");
            });
            expectStored(CalculationByRatio, L" 1");
        }
    EXPECT_TRUE(desktop.Messages().empty());
    EXPECT_TRUE(errors.empty());
}

TEST_F(frmGeometryTest, LooksAtTheSelectedFieldOnly) {
    show([](HeadlessForm& form) {
        form.Type(L"txtDx", L"5");
        form.Click(L"optYDirection");
        form.Click(L"cmdOk");
        EXPECT_TRUE(form.Loaded());
        form.Click(L"optXDirection");
        form.Click(L"cmdOk");
        EXPECT_FALSE(form.Loaded());
    });
    expectStored(CalculationByDx, L"5,000");
}

TEST_F(frmGeometryTest, RefusesTheFileOptionWithoutAFile) {
    show([&](HeadlessForm& form) {
        form.Click(L"optExcelFile");
        form.Click(L"cmdOk");
        EXPECT_TRUE(form.Loaded());
        form.Click(L"cmdCancel");
    });
    expectStored(CalculationByRatio, L" 1");
    EXPECT_TRUE(desktop.Messages().empty());
}

TEST_F(frmGeometryTest, ChangesTheGeometryThatTheRoomHolds) {
    const std::shared_ptr<clsGeometry> geometry = context.room->Geometry;
    show([](HeadlessForm& form) {
        form.Type(L"txtRatio", L"2");
        form.Click(L"cmdOk");
    });
    EXPECT_EQ(context.room->Geometry, geometry);
    EXPECT_EQ(geometry->CalculationValue(), L"2,00");
}

// ------------------------------------------------------------------------- fields and keys

TEST_F(frmGeometryTest, MakesAnEmptyFieldZeroOnLeaving) {
    look([](HeadlessForm& form) {
        form.Focus(L"txtDx");
        form.Focus(L"txtRatio");
        form.Type(L"txtRatio", L"\b");
        form.LeaveField();
        EXPECT_EQ(form.Field(L"txtDx").Text(), L"0,000");
        EXPECT_EQ(form.Field(L"txtRatio").Text(), L"0,00");
    });
}

TEST_F(frmGeometryTest, NormalizesAllFieldsAndTakesEnterAsOk) {
    show([](HeadlessForm& form) {
        form.Type(L"txtRatio", L"2");
        form.PressKey(Gui::KeyEnter);
        EXPECT_FALSE(form.Loaded());
        EXPECT_EQ(form.Field(L"txtDx").Text(), L"0,000");
        EXPECT_EQ(form.Field(L"txtDy").Text(), L"0,000");
    });
    expectStored(CalculationByRatio, L"2,00");
}

TEST_F(frmGeometryTest, StoresTheFileOnEnter) {
    store(CalculationByFile, L"C:\\alt.txt");
    desktop.ChooseFile(L"C:\\neu.txt");
    show([](HeadlessForm& form) {
        form.Click(L"cmdExcelFile");
        form.Focus(L"optExcelFile");
        form.PressKey(Gui::KeyEnter);
        EXPECT_FALSE(form.Loaded());
    });
    expectStored(CalculationByFile, L"C:\\neu.txt");
}

} // namespace kalvrooms
