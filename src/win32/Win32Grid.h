#pragma once
// The table: a virtual list view that asks for what it shows, so its cost does not depend on how
// many rows there are. Cells are painted here; the texts are also handed to assistive programs.
//
// Row 0 of the cells is the list view's header; row i is its item i - 1.

#include "win32/HeaderTips.h"
#include "win32/Win32Control.h"

#include <map>
#include <optional>
#include <vector>

namespace kalvrooms::Gui {

class Win32Grid : public Grid, public Win32Control {
  public:
    using Win32Control::Win32Control;
    ~Win32Grid() override;

    // The window, before it is attached.
    static HWND Create(HWND parent, int id);

    void Redraw(bool on) override;
    Twips ColWidth(int column) const override;
    void ColWidth(int column, Twips width) override;
    void Bars(ScrollBars bars) override;
    int Row() const override { return row_; }
    void Row(int row) override;
    int Col() const override { return col_; }
    void Col(int column) override;
    int TopRow() const override;
    void TopRow(int row) override;

    // Shows what was changed in the cells since they were shown last.
    void Sync();
    // Where a menu for the current cell opens; in screen pixels.
    POINT CurrentCellPoint() const;

    bool OnNotify(NMHDR& header, LRESULT& result) override;
    void Rescale(UINT from, UINT to) override;
    void Attach(HWND window) override;
    // Gives the rows the height of the window's font.
    void FitRowHeight();

  protected:
    LRESULT HandleMessage(UINT message, WPARAM word, LPARAM data) override;

  private:
    struct Width {
        Twips twips;
        int pixels;
    };
    struct CellPosition {
        int row, column;
    };

    HWND header() const;
    int pixelsOf(int column) const;
    int itemCount() const;
    void fitColumns();
    void setPixels(int column, int pixels);
    void showHeader();
    void showCurrent();
    void moveTo(CellPosition cell);
    void repaintRow(int row);
    int nextColumn(int from, int step) const;
    bool navigate(WPARAM key);
    CellPosition cellAt(POINT point) const;
    int headerColumnAt(POINT point) const;
    void showHeaderTip(UINT message, WPARAM word, LPARAM data);
    RECT cellRectangle(int row, int column) const;
    // False when the event ended the form.
    bool mouseUp(MouseButton button, CellPosition cell);
    void mouse(UINT message, POINT point);
    void contextKey();
    void removeUnwantedBars();
    void supplyText(const LVITEMW& item) const;
    LRESULT paint(const NMLVCUSTOMDRAW& draw) const;
    void paintRow(HDC context, int row) const;
    void paintCell(HDC context, const RECT& cell, int row, int column, COLORREF background) const;
    bool headerNotification(const NMHDR& notification, LRESULT& result) const;
    static LRESULT headerProcedure(HWND window, UINT message, WPARAM word, LPARAM data,
                                   void* reference);

    int row_ = 0;
    int shownRow_ = 0; // the row that was shown as the current one last
    int col_ = 0;
    bool redraw_ = true;
    std::uint64_t shownChanges_ = 0;
    bool settingWidth_ = false;
    bool settingRow_ = false;
    ScrollBars bars_ = ScrollBars::Both;
    std::vector<Width> widths_;
    struct HeaderCell {
        std::wstring text;
        Alignment alignment;
        bool operator==(const HeaderCell&) const = default;
    };
    std::vector<HeaderCell> shownHeader_;
    HeaderTips headerTips_;
    // Gives the rows their height.
    HIMAGELIST rowHeight_ = nullptr;
    // The cells in which buttons went down.
    std::map<MouseButton, CellPosition> pressed_;
};

} // namespace kalvrooms::Gui
