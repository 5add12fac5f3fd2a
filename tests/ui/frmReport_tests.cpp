#include "ui/frmReport.h"

#include <limits>

#include "TestContext.h"

namespace kalvrooms {
namespace {

using Names = std::vector<std::wstring>;

constexpr Gui::Twips firstRow = 600;
constexpr Gui::Twips pitch = 360;
constexpr Gui::Twips checkTop = 1800;
constexpr Gui::Twips hintTop = 2100;
constexpr Gui::Twips okTop = 2500;
constexpr Gui::Twips formHeight = 3600;

class frmReportTest : public DialogTest {
  protected:
    frmReportTest() {
        desktop.Design(L"frmReport", [](HeadlessForm& form) {
            form.Height(formHeight);
            for (int row = 1; row <= 3; ++row) {
                const std::wstring number = std::to_wstring(row);
                const Gui::Twips top = firstRow + static_cast<Gui::Twips>(row - 1) * pitch;
                form.Named<Gui::Label>(L"lblNum" + number).Top(top);
                // Not quite on the line of its count, as a layout may have it.
                form.Named<Gui::Label>(L"lblText" + number).Top(top + 15);
            }
            form.Named<Gui::CheckBox>(L"chkNoReport").Top(checkTop);
            form.Named<Gui::Label>(L"lblOption").Top(hintTop);
            form.Named<Gui::Button>(L"cmdOk").Top(okTop);
        });
        context.placement.colorOld = 0x010203;
        context.placement.colorNew = 0x040506;
    }

    void look(std::int32_t updated, std::int32_t newAtPosition, std::int32_t placed,
              const std::function<void(HeadlessForm&)>& at) {
        context.counts.updated = updated;
        context.counts.newAtPosition = newAtPosition;
        context.counts.placed = placed;
        show<frmReport>(L"frmReport", [&](HeadlessForm& form) {
            at(form);
            EXPECT_TRUE(form.Click(L"cmdOk"));
        });
    }

    static void expectRow(HeadlessForm& form, int row, const std::wstring& count,
                          const std::wstring& text, Gui::Colour colour) {
        HeadlessControl& number = form.ControlNamed(L"lblNum" + std::to_wstring(row));
        HeadlessControl& label = form.ControlNamed(L"lblText" + std::to_wstring(row));
        EXPECT_TRUE(number.Visible());
        EXPECT_TRUE(label.Visible());
        EXPECT_EQ(number.Text(), count);
        EXPECT_EQ(label.Text(), text);
        EXPECT_EQ(number.ForeColour(), colour);
        EXPECT_EQ(label.ForeColour(), colour);
    }
    static void expectHidden(HeadlessForm& form, int row) {
        EXPECT_FALSE(form.ControlNamed(L"lblNum" + std::to_wstring(row)).Visible());
        EXPECT_FALSE(form.ControlNamed(L"lblText" + std::to_wstring(row)).Visible());
    }
    static Gui::Twips topOf(HeadlessForm& form, const std::wstring& name) {
        return form.ControlNamed(name).Top();
    }
    static void expectLowerPartUpBy(HeadlessForm& form, Gui::Twips distance) {
        EXPECT_EQ(topOf(form, L"chkNoReport"), checkTop - distance);
        EXPECT_EQ(topOf(form, L"lblOption"), hintTop - distance);
        EXPECT_EQ(topOf(form, L"cmdOk"), okTop - distance);
        EXPECT_EQ(form.Height(), formHeight - distance);
    }
};

} // namespace

TEST_F(frmReportTest, ShowsAllRowsWhereTheyWereDesigned) {
    look(2, 3, 4, [](HeadlessForm& form) {
        EXPECT_EQ(form.Text(), L" Quartino");
        EXPECT_EQ(form.ControlNamed(L"lblTop").Text(), L" Es wurden");
        expectRow(form, 1, L"2", L" Räume aktualisiert", 0x010203);
        expectRow(form, 2, L"3", L" neue Räume lagerichtig erzeugt", 0x010203);
        expectRow(form, 3, L"4", L" neue Räume abgesetzt", 0x040506);
        EXPECT_EQ(form.ControlNamed(L"chkNoReport").Text(), L" Diese Meldung nicht mehr anzeigen.");
        EXPECT_EQ(form.ControlNamed(L"lblOption").Text(),
                  L" Sie können diese Meldung unter Optionen aktivieren.");
        EXPECT_EQ(form.ControlNamed(L"cmdOk").Text(), L" OK");
        EXPECT_FALSE(form.Check(L"chkNoReport").Value());
        EXPECT_EQ(topOf(form, L"lblNum3"), firstRow + 2 * pitch);
        EXPECT_EQ(topOf(form, L"lblText3"), firstRow + 2 * pitch + 15);
        expectLowerPartUpBy(form, 0);
    });
}

TEST_F(frmReportTest, SetsItsTextsInTheirOrder) {
    look(1, 1, 1, [](HeadlessForm& form) {
        EXPECT_EQ(firstOf(form.Journal(), 8),
                  (Names{L"frmReport.Text= Quartino", L"lblTop.Text= Es wurden",
                         L"chkNoReport.Text= Diese Meldung nicht mehr anzeigen.",
                         L"lblOption.Text= Sie können diese Meldung unter Optionen aktivieren.",
                         L"lblText1.Text= Räume aktualisiert",
                         L"lblText2.Text= neue Räume lagerichtig erzeugt",
                         L"lblText3.Text= neue Räume abgesetzt", L"cmdOk.Text= OK"}));
    });
}

TEST_F(frmReportTest, HidesTheRowsWithoutRoomsAndMovesTheOthersUp) {
    struct Case {
        std::int32_t counts[3];
        const wchar_t* top;
        const wchar_t* texts[3]; // null where the row is hidden
    };
    const wchar_t* const two = L" Räume aktualisiert";
    const wchar_t* const several = L" neue Räume lagerichtig erzeugt";
    const Case cases[] = {
        {{0, 0, 1}, L" Es wurde", {nullptr, nullptr, L" neuer Raum abgesetzt"}},
        {{2, 0, 0}, L" Es wurden", {two, nullptr, nullptr}},
        {{1, 1, 0},
         L" Es wurden",
         {L" Raum aktualisiert", L" neuer Raum lagerichtig erzeugt", nullptr}},
        {{0, 3, 5}, L" Es wurden", {nullptr, several, L" neue Räume abgesetzt"}},
        {{7, 0, 8}, L" Es wurden", {two, nullptr, L" neue Räume abgesetzt"}},
        {{0, 0, 0}, L" Es wurden", {}},
        {{1, 0, 0}, L" Es wurde", {L" Raum aktualisiert", nullptr, nullptr}},
        {{-1, 2, 0}, L" Es wurde", {nullptr, several, nullptr}},
    };
    for (const auto& [counts, top, texts] : cases) {
        SCOPED_TRACE(testing::PrintToString(counts));
        look(counts[0], counts[1], counts[2], [&](HeadlessForm& form) {
            EXPECT_EQ(form.ControlNamed(L"lblTop").Text(), top);
            int shown = 0;
            for (int row = 1; row <= 3; ++row) {
                if (!texts[row - 1]) {
                    expectHidden(form, row);
                    continue;
                }
                expectRow(form, row, std::to_wstring(counts[row - 1]), texts[row - 1],
                          row == 3 ? 0x040506 : 0x010203);
                const Gui::Twips line = firstRow + static_cast<Gui::Twips>(shown) * pitch;
                const bool moved = ++shown < row;
                EXPECT_EQ(topOf(form, L"lblNum" + std::to_wstring(row)), line);
                EXPECT_EQ(topOf(form, L"lblText" + std::to_wstring(row)), line + (moved ? 0 : 15));
            }
            expectLowerPartUpBy(form, static_cast<Gui::Twips>(3 - shown) * pitch);
        });
    }
}

TEST_F(frmReportTest, CannotOpenOnCountsBeyondTheRange) {
    context.counts.updated = std::numeric_limits<std::int32_t>::max();
    context.counts.placed = 1;
    EXPECT_EQ(errorOf([&] { context.Show<frmReport>(); }), RuntimeError::Overflow);
    EXPECT_TRUE(desktop.ModalForms().empty());
}

TEST_F(frmReportTest, SwitchesTheReportOffOnRequest) {
    look(2, 0, 0, [](HeadlessForm& form) { form.Click(L"chkNoReport"); });
    EXPECT_EQ(context.calls, Names{L"SetWithoutReport"});
}

TEST_F(frmReportTest, SwitchesTheReportOnOtherwise) {
    context.noReport = true;
    look(2, 0, 0, [](HeadlessForm& form) { EXPECT_FALSE(form.Check(L"chkNoReport").Value()); });
    EXPECT_EQ(context.calls, Names{L"SetWithReport"});
    EXPECT_FALSE(context.noReport);
}

TEST_F(frmReportTest, TakesEnterAsOk) {
    context.counts.updated = 1;
    show<frmReport>(L"frmReport", [](HeadlessForm& form) {
        form.Click(L"chkNoReport");
        // The press went to the menu from which the rooms were written.
        form.ReleaseKey(Gui::KeyEnter);
        EXPECT_TRUE(form.Loaded());
        form.PressKey(Gui::KeyF1);
        form.PressKey(Gui::KeyEnter);
        EXPECT_FALSE(form.Loaded());
    });
    EXPECT_EQ(context.calls, Names{L"SetWithoutReport"});
    EXPECT_TRUE(desktop.HelpCalls().empty());
}

TEST_F(frmReportTest, OpensOnItsButtonAndTakesEscapeAsOk) {
    context.counts.updated = 1;
    show<frmReport>(L"frmReport", [](HeadlessForm& form) {
        EXPECT_EQ(form.Focused(), L"cmdOk");
        form.PressKey(Gui::KeyEscape);
        EXPECT_FALSE(form.Loaded());
    });
    EXPECT_EQ(context.calls, Names{L"SetWithReport"});
}

TEST_F(frmReportTest, ChangesNothingWhenItIsClosedByItsFrame) {
    context.counts.updated = 1;
    show<frmReport>(L"frmReport", [](HeadlessForm& form) {
        form.Click(L"chkNoReport");
        form.Close();
    });
    EXPECT_TRUE(context.calls.empty());
}

} // namespace kalvrooms
