#include "win32/Win32Grid.h"

#include "win32/Dpi.h"
#include "win32/MessageHook.h"
#include "win32/Win32Desktop.h"
#include "win32/Win32Form.h"

#include <windowsx.h>

#include <algorithm>
#include <utility>

namespace kalvrooms::Gui {
namespace {

constexpr Twips usualColumnWidth = 960;
// Room above, below and beside a cell's text; pixels at 96 DPI.
constexpr int rowPadding = 3;
constexpr int cellPadding = 4;

// One line in a cell, with an ellipsis only where the text needs one: measuring for it is most of
// what painting a cell costs.
void paintText(HDC context, const RECT& inside, const std::wstring& text, bool centred) {
    if (text.empty() || inside.right <= inside.left)
        return;
    const auto length = static_cast<int>(std::min<std::size_t>(text.size(), 1024));
    SIZE size{};
    GetTextExtentPoint32W(context, text.data(), length, &size);
    if (size.cx > inside.right - inside.left) {
        RECT box = inside;
        DrawTextW(context, text.data(), length, &box,
                  DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_END_ELLIPSIS | DT_NOPREFIX);
        return;
    }
    const LONG x = centred ? (inside.left + inside.right - size.cx) / 2 : inside.left;
    ExtTextOutW(context, static_cast<int>(x),
                static_cast<int>((inside.top + inside.bottom - size.cy) / 2), 0, nullptr,
                text.data(), static_cast<UINT>(length), nullptr);
}

// The background of the current row: light enough for every colour that reads on a window.
COLORREF currentRowColour(bool focused) {
    if (!focused)
        return GetSysColor(COLOR_3DFACE);
    const COLORREF window = GetSysColor(COLOR_WINDOW);
    const COLORREF highlight = GetSysColor(COLOR_HIGHLIGHT);
    const auto mix = [](BYTE most, BYTE some) { return static_cast<BYTE>((most * 3 + some) / 4); };
    return RGB(mix(GetRValue(window), GetRValue(highlight)),
               mix(GetGValue(window), GetGValue(highlight)),
               mix(GetBValue(window), GetBValue(highlight)));
}

HGDIOBJ fontOf(HWND window) {
    return reinterpret_cast<HGDIOBJ>(SendMessageW(window, WM_GETFONT, 0, 0));
}

POINT pointOf(LPARAM data) {
    return {GET_X_LPARAM(data), GET_Y_LPARAM(data)};
}

} // namespace

HWND Win32Grid::Create(HWND parent, int id) {
    const HWND window =
        CreateWindowExW(0, WC_LISTVIEWW, L"",
                        WS_CHILD | WS_VISIBLE | WS_TABSTOP | LVS_REPORT | LVS_OWNERDATA |
                            LVS_SINGLESEL | LVS_SHOWSELALWAYS | LVS_SHAREIMAGELISTS,
                        0, 0, 0, 0, parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                        GetModuleHandleW(nullptr), nullptr);
    if (window)
        ListView_SetExtendedListViewStyle(window, LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
    return window;
}

void Win32Grid::Attach(HWND window) {
    Win32Control::Attach(window);
    HookMessages(header(), headerProcedure, this);
}

Win32Grid::~Win32Grid() {
    if (Window())
        UnhookMessages(header());
    if (rowHeight_)
        ImageList_Destroy(rowHeight_);
}

HWND Win32Grid::header() const {
    return ListView_GetHeader(Window());
}

int Win32Grid::itemCount() const {
    return std::max(cells_.Rows() - 1, 0);
}

// --- Columns and rows -----------------------------------------------------------------------

void Win32Grid::FitRowHeight() {
    TEXTMETRICW metrics{};
    {
        const WindowContext context(Window());
        const Selected font(context, fontOf(Window()));
        GetTextMetricsW(context, &metrics);
    }
    const int padding = Scaled(rowPadding, Owner().Dpi());
    HIMAGELIST images =
        ImageList_Create(1, static_cast<int>(metrics.tmHeight) + 2 * padding, ILC_COLOR, 0, 1);
    ListView_SetImageList(Window(), images, LVSIL_SMALL);
    if (rowHeight_)
        ImageList_Destroy(rowHeight_);
    rowHeight_ = images;
}

void Win32Grid::setPixels(int column, int pixels) {
    settingWidth_ = true;
    ListView_SetColumnWidth(Window(), column, pixels);
    settingWidth_ = false;
}

int Win32Grid::pixelsOf(int column) const {
    return ListView_GetColumnWidth(Window(), column);
}

void Win32Grid::fitColumns() {
    const auto wanted = static_cast<std::size_t>(cells_.Columns());
    while (widths_.size() > wanted) {
        widths_.pop_back();
        ListView_DeleteColumn(Window(), static_cast<int>(widths_.size()));
    }
    while (widths_.size() < wanted) {
        const int column = static_cast<int>(widths_.size());
        widths_.push_back({usualColumnWidth, ToPixels(usualColumnWidth, Owner().Dpi())});
        LVCOLUMNW description{};
        description.mask = LVCF_WIDTH;
        description.cx = widths_.back().pixels;
        settingWidth_ = true;
        ListView_InsertColumn(Window(), column, &description);
        settingWidth_ = false;
    }
    if (shownHeader_.size() > wanted)
        shownHeader_.resize(wanted);
}

Twips Win32Grid::ColWidth(int column) const {
    if (column < 0 || column >= cells_.Columns())
        throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    const auto index = static_cast<std::size_t>(column);
    if (index >= widths_.size())
        return usualColumnWidth;
    // The user may have dragged it.
    const int pixels = Window() ? pixelsOf(column) : widths_[index].pixels;
    return pixels == widths_[index].pixels ? widths_[index].twips : ToTwips(pixels, Owner().Dpi());
}

void Win32Grid::ColWidth(int column, Twips width) {
    if (column < 0 || column >= cells_.Columns())
        throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    if (!Window())
        return;
    fitColumns();
    const int pixels = std::max(ToPixels(width, Owner().Dpi()), 0);
    widths_[static_cast<std::size_t>(column)] = {width, pixels};
    if (pixelsOf(column) != pixels)
        setPixels(column, pixels);
}

void Win32Grid::Bars(ScrollBars bars) {
    if (bars_ == bars)
        return;
    bars_ = bars;
    if (Window()) {
        // A table that was scrolled sideways would stay so without its bar.
        ListView_Scroll(Window(), -GetScrollPos(Window(), SB_HORZ), 0);
        SetWindowPos(Window(), nullptr, 0, 0, 0, 0,
                     SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
        // The list view decides anew which bars it needs.
        ShowScrollBar(Window(), SB_BOTH, TRUE);
        RECT client{};
        GetClientRect(Window(), &client);
        SendMessageW(Window(), WM_SIZE, SIZE_RESTORED, MAKELPARAM(client.right, client.bottom));
        ListView_RedrawItems(Window(), 0, itemCount());
    }
}

void Win32Grid::showHeader() {
    const int columns = cells_.Rows() > 0 ? cells_.Columns() : 0;
    shownHeader_.resize(static_cast<std::size_t>(columns));
    for (int column = 0; column < columns; ++column) {
        HeaderCell cell{cells_.Text(0, column), cells_.CellAlignment(0, column)};
        HeaderCell& shown = shownHeader_[static_cast<std::size_t>(column)];
        if (cell == shown)
            continue;
        shown = std::move(cell);
        HDITEMW item{};
        item.mask = HDI_TEXT | HDI_FORMAT;
        item.pszText = shown.text.data();
        item.fmt = HDF_STRING | (shown.alignment == Alignment::Centre ? HDF_CENTER : HDF_LEFT);
        Header_SetItem(header(), column, &item);
    }
}

void Win32Grid::Redraw(bool on) {
    if (redraw_ == on)
        return;
    redraw_ = on;
    if (!Window())
        return;
    if (!on) {
        SendMessageW(Window(), WM_SETREDRAW, FALSE, 0);
        return;
    }
    SendMessageW(Window(), WM_SETREDRAW, TRUE, 0);
    Sync();
    showCurrent();
}

void Win32Grid::Sync() {
    if (!Window() || !redraw_ || shownChanges_ == cells_.Changes())
        return;
    shownChanges_ = cells_.Changes();
    fitColumns();
    showHeader();
    if (ListView_GetItemCount(Window()) != itemCount()) {
        ListView_SetItemCountEx(Window(), itemCount(), LVSICF_NOSCROLL);
        if (row_ > itemCount())
            row_ = itemCount();
        showCurrent();
    }
    InvalidateRect(Window(), nullptr, FALSE);
}

void Win32Grid::Rescale(UINT from, UINT to) {
    Win32Control::Rescale(from, to);
    if (!Window())
        return;
    FitRowHeight();
    for (std::size_t column = 0; column < widths_.size(); ++column) {
        Width& width = widths_[column];
        const int shown = pixelsOf(static_cast<int>(column));
        if (shown != width.pixels)
            width.twips = ToTwips(shown, from);
        width.pixels = ToPixels(width.twips, to);
        setPixels(static_cast<int>(column), width.pixels);
    }
    showCurrent();
}

// --- The current cell -----------------------------------------------------------------------

void Win32Grid::Row(int row) {
    row_ = row;
    if (redraw_)
        showCurrent();
}

void Win32Grid::Col(int column) {
    col_ = column;
    if (redraw_)
        showCurrent();
}

int Win32Grid::TopRow() const {
    if (!Window())
        return 1;
    return ListView_GetTopIndex(Window()) + 1;
}

void Win32Grid::TopRow(int row) {
    if (!Window() || itemCount() == 0)
        return;
    // Coming from the end, a row that has just to be seen stands at the top.
    ListView_EnsureVisible(Window(), itemCount() - 1, FALSE);
    ListView_EnsureVisible(Window(), std::clamp(row, 1, itemCount()) - 1, FALSE);
}

void Win32Grid::showCurrent() {
    if (!Window())
        return;
    settingRow_ = true;
    const int item = row_ - 1;
    if (item >= 0 && item < ListView_GetItemCount(Window())) {
        ListView_SetItemState(Window(), item, LVIS_SELECTED | LVIS_FOCUSED,
                              LVIS_SELECTED | LVIS_FOCUSED);
        ListView_EnsureVisible(Window(), item, FALSE);
        if (bars_ == ScrollBars::Both && col_ >= 0 && col_ < cells_.Columns()) {
            RECT client{};
            GetClientRect(Window(), &client);
            const RECT cell = cellRectangle(row_, col_);
            if (cell.left < 0 || cell.right - cell.left > client.right)
                ListView_Scroll(Window(), cell.left, 0);
            else if (cell.right > client.right)
                ListView_Scroll(Window(), cell.right - client.right, 0);
        }
    } else {
        ListView_SetItemState(Window(), -1, 0, LVIS_SELECTED | LVIS_FOCUSED);
    }
    repaintRow(std::exchange(shownRow_, row_));
    repaintRow(row_);
    settingRow_ = false;
}

void Win32Grid::moveTo(CellPosition cell) {
    row_ = cell.row;
    col_ = cell.column;
    showCurrent();
}

// The list view itself repaints less than the whole line.
void Win32Grid::repaintRow(int row) {
    RECT line{};
    if (row < 1 || row > ListView_GetItemCount(Window()) ||
        !ListView_GetItemRect(Window(), row - 1, &line, LVIR_BOUNDS))
        return;
    RECT client{};
    GetClientRect(Window(), &client);
    line.left = client.left;
    line.right = client.right;
    InvalidateRect(Window(), &line, FALSE);
}

int Win32Grid::nextColumn(int from, int step) const {
    for (int column = from + step; column >= 0 && column < cells_.Columns(); column += step)
        if (pixelsOf(column) > 0)
            return column;
    return from;
}

bool Win32Grid::navigate(WPARAM key) {
    const int last = itemCount();
    const int page = std::max(ListView_GetCountPerPage(Window()) - 1, 1);
    CellPosition to{row_, col_};
    switch (key) {
    case VK_UP:
        to.row -= 1;
        break;
    case VK_DOWN:
        to.row += 1;
        break;
    case VK_PRIOR:
        to.row -= page;
        break;
    case VK_NEXT:
        to.row += page;
        break;
    case VK_HOME:
        to.row = 1;
        break;
    case VK_END:
        to.row = std::max(cells_.LastFilledRow(), 1);
        break;
    case VK_LEFT:
        to.column = nextColumn(to.column, -1);
        break;
    case VK_RIGHT:
        to.column = nextColumn(to.column, 1);
        break;
    default:
        return false;
    }
    if (last > 0)
        moveTo({std::clamp(to.row, 1, last), to.column});
    return true;
}

RECT Win32Grid::cellRectangle(int row, int column) const {
    RECT rectangle{};
    ListView_GetItemRect(Window(), row - 1, &rectangle, LVIR_BOUNDS);
    for (int before = 0; before < column; ++before)
        rectangle.left += pixelsOf(before);
    rectangle.right = rectangle.left + pixelsOf(column);
    return rectangle;
}

POINT Win32Grid::CurrentCellPoint() const {
    POINT point{};
    if (!Window())
        return point;
    if (row_ > 0) {
        const RECT cell =
            cellRectangle(row_, std::clamp(col_, 0, std::max(cells_.Columns() - 1, 0)));
        point = {cell.left, cell.bottom};
    }
    RECT client{};
    GetClientRect(Window(), &client);
    point.x = std::clamp(point.x, client.left, client.right);
    point.y = std::clamp(point.y, client.top, client.bottom);
    ClientToScreen(Window(), &point);
    return point;
}

Win32Grid::CellPosition Win32Grid::cellAt(POINT point) const {
    const int top = ListView_GetTopIndex(Window());
    RECT first{};
    CellPosition cell{0, 0};
    if (itemCount() > 0 && ListView_GetItemRect(Window(), top, &first, LVIR_BOUNDS) &&
        first.bottom > first.top) {
        const int below = static_cast<int>((point.y - first.top) / (first.bottom - first.top));
        cell.row = std::clamp(top + below, 0, itemCount() - 1) + 1;
    }
    // Right of the last column the last visible one counts.
    LONG edge = first.left;
    for (int column = 0; column < cells_.Columns(); ++column) {
        const int width = pixelsOf(column);
        if (width == 0)
            continue;
        cell.column = column;
        edge += width;
        if (point.x < edge)
            break;
    }
    return cell;
}

// --- Mouse and keys -------------------------------------------------------------------------

bool Win32Grid::mouseUp(MouseButton button, CellPosition cell) {
    return Owner().Raise([handler = MouseUp, button, cell] {
        if (handler)
            handler(button, cell.row, cell.column);
    });
}

// The list view's own handling of the buttons runs a loop of its own that swallows releases, so
// that clicks are handled here altogether. A button counts where it went down: showing the cell
// that is meant whole may scroll another one under the mouse before the button comes up.
void Win32Grid::mouse(UINT message, POINT point) {
    const MouseButton button = message <= WM_LBUTTONDBLCLK   ? MouseButton::Left
                               : message <= WM_RBUTTONDBLCLK ? MouseButton::Right
                                                             : MouseButton::Middle;
    switch (message) {
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN: {
        if (GetFocus() != Window())
            ::SetFocus(Window());
        const CellPosition cell = pressed_[button] = cellAt(point);
        if (cell.row > 0)
            moveTo(cell);
        break;
    }
    case WM_LBUTTONDBLCLK:
        Owner().Raise(DoubleClick);
        break;
    case WM_RBUTTONDBLCLK:
        pressed_[button] = cellAt(point);
        break;
    case WM_LBUTTONUP:
    case WM_RBUTTONUP:
    case WM_MBUTTONUP:
        if (const auto press = pressed_.extract(button))
            mouseUp(button, press.mapped());
        break;
    default:
        break;
    }
}

// The menu opens at the current cell.
void Win32Grid::contextKey() {
    Win32Form& form = Owner();
    form.PopupPoint(CurrentCellPoint());
    if (mouseUp(MouseButton::Right, {row_, col_}))
        form.PopupPoint(std::nullopt);
}

// Just before the list view finds out how much room it has: takes away what it added by itself.
void Win32Grid::removeUnwantedBars() {
    const LONG_PTR style = GetWindowLongPtrW(Window(), GWL_STYLE);
    const LONG_PTR unwanted = bars_ == ScrollBars::None       ? WS_HSCROLL | WS_VSCROLL
                              : bars_ == ScrollBars::Vertical ? WS_HSCROLL
                                                              : 0;
    if (style & unwanted)
        SetWindowLongPtrW(Window(), GWL_STYLE, style & ~unwanted);
}

LRESULT Win32Grid::HandleMessage(UINT message, WPARAM word, LPARAM data) {
    LRESULT result = 0;
    if (message >= WM_LBUTTONDOWN && message <= WM_MBUTTONDBLCLK) {
        mouse(message, pointOf(data));
        return 0;
    }
    switch (message) {
    case WM_CONTEXTMENU:
        if (data == -1)
            contextKey();
        return 0;
    case WM_KEYDOWN:
        if (navigate(word) || word == VK_SPACE)
            return 0;
        // Would fit every column to its contents, the hidden ones too.
        if (word == VK_ADD && GetKeyState(VK_CONTROL) < 0)
            return 0;
        break;
    case WM_CHAR:
        return 0;
    case WM_KILLFOCUS:
        pressed_.clear();
        [[fallthrough]];
    case WM_SETFOCUS:
        repaintRow(row_);
        break;
    case WM_NCCALCSIZE:
        removeUnwantedBars();
        break;
    case WM_SYSCOLORCHANGE:
        // Below the last row the list view paints by itself.
        ListView_SetBkColor(Window(), GetSysColor(COLOR_WINDOW));
        break;
    case WM_NOTIFY: {
        const auto& notification = *reinterpret_cast<const NMHDR*>(data);
        if (notification.hwndFrom == header() && headerNotification(notification, result))
            return result;
        break;
    }
    default:
        break;
    }
    return Win32Control::HandleMessage(message, word, data);
}

bool Win32Grid::headerNotification(const NMHDR& notification, LRESULT& result) const {
    const auto hidden = [&](int column) {
        return column >= 0 && static_cast<std::size_t>(column) < widths_.size() &&
               widths_[static_cast<std::size_t>(column)].pixels == 0;
    };
    const auto& item = reinterpret_cast<const NMHEADERW&>(notification);
    switch (notification.code) {
    case HDN_BEGINTRACKW:
    case HDN_BEGINTRACKA:
    case HDN_DIVIDERDBLCLICKW:
    case HDN_DIVIDERDBLCLICKA:
        result = TRUE;
        return hidden(item.iItem);
    case HDN_ITEMCHANGINGW:
    case HDN_ITEMCHANGINGA:
        result = TRUE;
        return !settingWidth_ && hidden(item.iItem) && item.pitem &&
               (item.pitem->mask & HDI_WIDTH) && item.pitem->cxy != 0;
    default:
        return false;
    }
}

int Win32Grid::headerColumnAt(POINT point) const {
    HDHITTESTINFO test{};
    test.pt = point;
    const auto column =
        static_cast<int>(SendMessageW(header(), HDM_HITTEST, 0, reinterpret_cast<LPARAM>(&test)));
    return column >= 0 ? column : cellAt(point).column;
}

void Win32Grid::showHeaderTip(UINT message, WPARAM word, LPARAM data) {
    const int column = headerColumnAt(pointOf(data));
    if (static_cast<std::size_t>(column) < shownHeader_.size())
        headerTips_.MouseOver(header(), column, shownHeader_[static_cast<std::size_t>(column)].text,
                              message, word, data);
}

LRESULT Win32Grid::headerProcedure(HWND window, UINT message, WPARAM word, LPARAM data,
                                   void* reference) {
    auto& grid = *static_cast<Win32Grid*>(reference);
    switch (message) {
    case WM_SETCURSOR:
        if (grid.Owner().Desktop().ShowPointer())
            return TRUE;
        break;
    case WM_MOUSEMOVE:
    case WM_LBUTTONDOWN:
        grid.showHeaderTip(message, word, data);
        break;
    case WM_RBUTTONUP:
        grid.mouseUp(MouseButton::Right, {0, grid.headerColumnAt(pointOf(data))});
        return 0;
    case WM_RBUTTONDOWN:
    case WM_CONTEXTMENU:
        return 0;
    default:
        break;
    }
    return CallOwnProcedure(window, message, word, data);
}

bool Win32Grid::OnNotify(NMHDR& notification, LRESULT& result) {
    switch (notification.code) {
    case LVN_GETDISPINFOW:
        supplyText(reinterpret_cast<const NMLVDISPINFOW&>(notification).item);
        return true;
    case NM_CUSTOMDRAW:
        result = paint(reinterpret_cast<const NMLVCUSTOMDRAW&>(notification));
        return true;
    case LVN_COLUMNCLICK:
        mouseUp(MouseButton::Left, {0, reinterpret_cast<const NMLISTVIEW&>(notification).iSubItem});
        return true;
    case LVN_ITEMCHANGED: {
        // An assistive program may select a row as well.
        const auto& change = reinterpret_cast<const NMLISTVIEW&>(notification);
        if (!settingRow_ && change.iItem >= 0 && (change.uNewState & LVIS_SELECTED) &&
            !(change.uOldState & LVIS_SELECTED)) {
            row_ = change.iItem + 1;
            repaintRow(std::exchange(shownRow_, row_));
            repaintRow(row_);
        }
        return true;
    }
    default:
        return false;
    }
}

void Win32Grid::supplyText(const LVITEMW& item) const {
    if (!(item.mask & LVIF_TEXT) || !item.pszText || item.cchTextMax <= 0)
        return;
    const int row = item.iItem + 1;
    const bool known = row < cells_.Rows() && item.iSubItem < cells_.Columns();
    lstrcpynW(item.pszText, known ? Shown(cells_.Text(row, item.iSubItem)).c_str() : L"",
              item.cchTextMax);
}

// --- Painting -------------------------------------------------------------------------------

LRESULT Win32Grid::paint(const NMLVCUSTOMDRAW& draw) const {
    switch (draw.nmcd.dwDrawStage) {
    case CDDS_PREPAINT:
        return CDRF_NOTIFYITEMDRAW;
    case CDDS_ITEMPREPAINT:
        paintRow(draw.nmcd.hdc, static_cast<int>(draw.nmcd.dwItemSpec) + 1);
        return CDRF_SKIPDEFAULT;
    default:
        return CDRF_DODEFAULT;
    }
}

void Win32Grid::paintRow(HDC context, int row) const {
    RECT line{};
    if (row < 1 || row >= cells_.Rows() ||
        !ListView_GetItemRect(Window(), row - 1, &line, LVIR_BOUNDS))
        return;
    RECT client{};
    GetClientRect(Window(), &client);
    const bool focused = row == row_ && GetFocus() == Window();
    const COLORREF background = row == row_ ? currentRowColour(focused) : GetSysColor(COLOR_WINDOW);
    const int savedState = SaveDC(context);
    SelectObject(context, fontOf(Window()));
    SetBkMode(context, TRANSPARENT);
    SetDCBrushColor(context, background);
    FillRect(context, &line, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
    RECT cell{line.left, line.top, line.left, line.bottom};
    for (int column = 0; column < cells_.Columns(); ++column) {
        cell.left = cell.right;
        cell.right += pixelsOf(column);
        if (cell.right > std::max(cell.left, LONG{0}) && cell.left < client.right)
            paintCell(context, cell, row, column, background);
    }
    const RECT edge{line.left, line.bottom - 1, cell.right, line.bottom};
    FillRect(context, &edge, GetSysColorBrush(COLOR_3DLIGHT));
    RestoreDC(context, savedState);
}

void Win32Grid::paintCell(HDC context, const RECT& cell, int row, int column,
                          COLORREF background) const {
    const int padding = Scaled(cellPadding, Owner().Dpi());
    const std::optional<Colour> colour = cells_.TextColour(row, column);
    SetTextColor(context, colour ? LegibleColour(*colour, background, COLOR_WINDOWTEXT)
                                 : GetSysColor(COLOR_WINDOWTEXT));
    const RECT inside{cell.left + padding, cell.top, cell.right - padding, cell.bottom - 1};
    paintText(context, inside, cells_.Text(row, column),
              cells_.CellAlignment(row, column) == Alignment::Centre);
    const RECT edge{cell.right - 1, cell.top, cell.right, cell.bottom};
    FillRect(context, &edge, GetSysColorBrush(COLOR_3DLIGHT));
    if (row != row_ || column != col_)
        return;
    const RECT frame{cell.left, cell.top, cell.right - 1, cell.bottom - 1};
    SetTextColor(context, GetSysColor(COLOR_WINDOWTEXT));
    SetBkColor(context, background);
    DrawFocusRect(context, &frame);
}

} // namespace kalvrooms::Gui
