// The main window and its table, with real keys and a real mouse.

#include "desktop_support.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cmath>

namespace kalvrooms::Gui {
namespace {

class MainWindow : public testing::Test {
  protected:
    void SetUp() override {
        made_ = desktop_.CreateForm(L"frmMain");
        form_ = dynamic_cast<Win32Form*>(made_.get());
        grid_ = &form_->GridNamed(L"grdRooms");
        form_->Text(L" Quartino");
        MenuItem& file = form_->Menu(L"mnuFile");
        file.Caption(texts_(4));
        MenuItem& open = file.AddItem(L"mnuOpen");
        open.Caption(texts_(6));
        open.Click = [this] { ++opened_; };
        file.AddSeparator(L"mnuSep1");
        file.AddItem(L"mnuEnd").Caption(texts_(11));
        MenuItem& edit = form_->Menu(L"mnuRecord");
        edit.Caption(texts_(12));
        edit.AddItem(L"mnuAddRoom").Caption(texts_(13));
        form_->Menu(L"mnuExtras").Caption(texts_(18));
        // As the program's main window lays its table out.
        form_->Resize = [this] {
            grid_->Width(form_->Width() - 135);
            grid_->Height(form_->Height() - 825);
            const float surplus = grid_->Width() - 9600;
            const float share = surplus > 0 ? std::nearbyint(surplus / 7) : 0;
            grid_->Bars(surplus >= 0 ? ScrollBars::Vertical : ScrollBars::Both);
            static constexpr float least[] = {1500, 2400, 1000, 1000, 1400, 1000, 1000};
            for (int column = 0; column < 7; ++column)
                grid_->ColWidth(column, least[column] + share);
            for (int column = 7; column < 11; ++column)
                grid_->ColWidth(column, 0);
        };
        FillTable(*grid_, 120, texts_);
        form_->Show();
        list_ = WindowOf(*form_, L"grdRooms");
        ASSERT_TRUE(PumpUntil(desktop_, [&] { return Focused() == list_; }));
    }

    POINT CellPoint(int row, int column) {
        RECT item{};
        ListView_GetItemRect(list_, row - 1, &item, LVIR_BOUNDS);
        for (int before = 0; before < column; ++before)
            item.left += ListView_GetColumnWidth(list_, before);
        return {item.left + ListView_GetColumnWidth(list_, column) / 2,
                (item.top + item.bottom) / 2};
    }

    Win32Desktop desktop_;
    Texts texts_;
    std::unique_ptr<Form> made_;
    Win32Form* form_ = nullptr;
    Grid* grid_ = nullptr;
    HWND list_ = nullptr;
    int opened_ = 0;
};

TEST_F(MainWindow, TheTableFitsBesideTheFrame) {
    RECT client{};
    GetClientRect(form_->Window(), &client);
    RECT table{};
    GetWindowRect(list_, &table);
    MapWindowPoints(HWND_DESKTOP, form_->Window(), reinterpret_cast<POINT*>(&table), 2);
    EXPECT_EQ(table.left, 0);
    EXPECT_EQ(table.top, 0);
    EXPECT_LE(table.right, client.right);
    EXPECT_LE(table.bottom, client.bottom);
    TakePicture(desktop_, form_->Window(), "main");
}

} // namespace
} // namespace kalvrooms::Gui
