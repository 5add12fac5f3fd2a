#include "ui/Dialog.h"

#include <ostream>

#include "TestContext.h"

namespace kalvrooms {
namespace {

struct NumberField {
    const wchar_t* dialog;
    const wchar_t* field;
    std::uint32_t helpContext;
    const wchar_t* shown; // twelve and a half
    void (TestContext::*show)();
    // The user changes what else there is.
    void (*change)(HeadlessForm& form);
};

std::ostream& operator<<(std::ostream& out, const NumberField& entry) {
    return out << testing::PrintToString(std::wstring(entry.dialog) + entry.field);
}

void changeRoom(HeadlessForm& form) {
    form.Type(L"txtName", L"anders");
    form.Type(L"txtStoryCode", L"OG");
    form.Choose(L"cboAreaType", 1);
}

void changeGeometry(HeadlessForm& form) {
    form.Click(L"optXDirection");
}

void changeOptions(HeadlessForm& form) {
    form.OwningDesktop().ChooseColour(77);
    form.Click(L"cmdWithCoordinates");
    form.Click(L"chkUpdate");
    form.Click(L"optSingle");
}

class DialogFields : public DialogTest, public testing::WithParamInterface<NumberField> {
  protected:
    const std::wstring field = GetParam().field;

    void show(std::function<void(HeadlessForm&)> user) {
        desktop.OnModal(GetParam().dialog, std::move(user));
        (context.*GetParam().show)();
    }
    void look(const std::function<void(HeadlessForm&)>& at) {
        show([&](HeadlessForm& form) {
            at(form);
            EXPECT_TRUE(form.Click(L"cmdCancel"));
        });
    }
    void expectNothingChanged() const {
        EXPECT_TRUE(context.calls.empty());
        EXPECT_EQ(context.room->Name(), L"1");
        EXPECT_EQ(context.room->StoryCode(), L"EG");
        EXPECT_EQ(context.room->AreaType(), L"");
        EXPECT_EQ(context.room->Geometry->Area(), 16.0);
        EXPECT_EQ(context.room->Geometry->CalculationType(), CalculationByRatio);
        EXPECT_EQ(context.room->Geometry->CalculationValue(), L" 1");
        EXPECT_EQ(context.placement.distanceX, 1.0);
        EXPECT_EQ(context.placement.colorOld, 0);
    }
};

INSTANTIATE_TEST_SUITE_P(
    Fields, DialogFields,
    testing::Values(NumberField{L"frmRoom", L"txtArea", 7, L"12,500", &TestContext::Show<frmRoom>,
                                changeRoom},
                    NumberField{L"frmGeometry", L"txtDx", 7, L"12,500",
                                &TestContext::Show<frmGeometry>, changeGeometry},
                    NumberField{L"frmGeometry", L"txtDy", 7, L"12,500",
                                &TestContext::Show<frmGeometry>, changeGeometry},
                    NumberField{L"frmGeometry", L"txtRatio", 7, L"12,50",
                                &TestContext::Show<frmGeometry>, changeGeometry},
                    NumberField{L"frmPlace", L"txtDx", 11, L"12,500", &TestContext::Show<frmPlace>,
                                changeOptions},
                    NumberField{L"frmPlace", L"txtDy", 11, L"12,500", &TestContext::Show<frmPlace>,
                                changeOptions}));

TEST_P(DialogFields, ChangeNothingOnCancelEscapeAndClosing) {
    for (const auto& leave : std::vector<std::function<void(HeadlessForm&)>>{
             [](HeadlessForm& form) { form.Click(L"cmdCancel"); },
             [](HeadlessForm& form) { form.PressKey(Gui::KeyEscape); },
             [](HeadlessForm& form) { form.Close(); }}) {
        show([&](HeadlessForm& form) {
            GetParam().change(form);
            form.Type(field, L"5");
            leave(form);
            EXPECT_FALSE(form.Loaded());
        });
        expectNothingChanged();
    }
}

TEST_P(DialogFields, SelectAllOnEntryTakeNumberKeysOnlyAndShowTheNumberInFull) {
    look([this](HeadlessForm& form) {
        form.Field(field).Text(L"abc");
        form.Focus(field);
        EXPECT_EQ(form.Field(field).SelectionStart(), 0);
        EXPECT_EQ(form.Field(field).SelectionLength(), 3);
        form.Type(field, L"a1-2 .x,5\x03\x16;9\b");
        EXPECT_EQ(form.Field(field).Text(), L"12.,5");
        form.Type(field, L"\b\b\b.5");
        form.LeaveField();
        EXPECT_EQ(form.Field(field).Text(), GetParam().shown);
    });
}

TEST_P(DialogFields, KeepAMarkWithDigitsBehindItAndReportIt) {
    look([this](HeadlessForm& form) {
        form.Type(field, L",5");
        form.Focus(L"cmdOk");
        EXPECT_EQ(errors, std::vector<long>{RuntimeError::TypeMismatch});
        EXPECT_EQ(form.Field(field).Text(), L",5");
        EXPECT_EQ(form.Focused(), L"cmdOk");
        form.Field(field).Text(L"1");
    });
}

TEST_P(DialogFields, EndEnterAtAMarkWithDigitsBehindIt) {
    show([this](HeadlessForm& form) {
        GetParam().change(form);
        form.Type(field, L",5");
        form.PressKey(Gui::KeyEnter);
        EXPECT_EQ(errors, std::vector<long>{RuntimeError::TypeMismatch});
        EXPECT_TRUE(form.Loaded());
        form.PressKey(Gui::KeyEscape);
        EXPECT_FALSE(form.Loaded());
    });
    expectNothingChanged();
}

TEST_P(DialogFields, OpenTheHelpOnF1AndPassOverOtherKeys) {
    look([](HeadlessForm& form) {
        form.PressKey(Gui::KeyF1);
        for (const int key : {9, 32, 65, 111, 113})
            form.PressKey(key);
        EXPECT_TRUE(form.Loaded());
    });
    ASSERT_EQ(desktop.HelpCalls().size(), 1u);
    EXPECT_EQ(desktop.HelpCalls()[0].Owner, GetParam().dialog);
    EXPECT_EQ(desktop.HelpCalls()[0].File, L"C:\\Hilfe\\quartino.chm");
    EXPECT_EQ(desktop.HelpCalls()[0].Context, GetParam().helpContext);
    expectNothingChanged();
}

} // namespace
} // namespace kalvrooms
