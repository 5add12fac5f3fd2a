#include "ui/frmMain.h"

#include "app/Messages.h"
#include "app/TextNumbers.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "app/clsRegistry.h"
#include "model/NumberText.h"
#include "model/RuntimeError.h"
#include "ui/ListFileDialog.h"
#include "ui/ShortcutText.h"
#include "ui/TablePlace.h"
#include "ui/frmPlace.h"
#include "ui/frmRoom.h"

namespace kalvrooms {
namespace {

constexpr std::uint32_t helpContext = 20;

// The room table. The geometry and the identifier are kept in hidden columns.
constexpr int tableColumns = 11;
constexpr int storyColumn = 3;
constexpr int visibleColumns = 7;
constexpr int geometryColumn = 7;
constexpr int idColumn = 8;
constexpr int leastRows = 100; // header included
constexpr std::int32_t headerTexts[] = {
    TextNumber::Name,      TextNumber::Function,  TextNumber::Area,     TextNumber::Story,
    TextNumber::Enclosure, TextNumber::Occupancy, TextNumber::AreaType, TextNumber::Geometry};

// Twips: the widths of the visible columns and of the table at its smallest.
constexpr Gui::Twips columnWidths[visibleColumns] = {1500, 2400, 1000, 1000, 1400, 1000, 1000};
constexpr Gui::Twips smallestTable = 9600;
constexpr Gui::Twips widestSurplus = 32767;
// Twips: room for frame, caption and menu bar around the table.
constexpr Gui::Twips besideTable = 135;
constexpr Gui::Twips aboveTable = 825;

constexpr std::uint32_t saveFlags = Gui::OverwritePrompt | Gui::HideReadOnly;

bool isPattern(const std::wstring& fileName) {
    return fileName.ends_with(L"*.xls") || fileName.ends_with(L"*.txt");
}

// The table is shown anew when its contents are complete, and also if they never get so far.
class RedrawingOff {
  public:
    explicit RedrawingOff(Gui::Grid& grid) : grid_(grid) { grid_.Redraw(false); }
    ~RedrawingOff() { grid_.Redraw(true); }
    RedrawingOff(const RedrawingOff&) = delete;
    RedrawingOff& operator=(const RedrawingOff&) = delete;

  private:
    Gui::Grid& grid_;
};

// While the user is asked, and what he answered is done. One question may lead to another one.
class SessionHeld {
  public:
    SessionHeld(Gui::Form& form, const std::wstring& reason, bool& asking)
        : form_(form), asking_(asking), inner_(std::exchange(asking, true)) {
        form_.HoldSession(reason);
    }
    ~SessionHeld() {
        if (!inner_)
            form_.HoldSession(std::wstring());
        asking_ = inner_;
    }
    SessionHeld(const SessionHeld&) = delete;
    SessionHeld& operator=(const SessionHeld&) = delete;

  private:
    Gui::Form& form_;
    bool& asking_;
    const bool inner_;
};

} // namespace

struct frmMain::ChosenFile {
    std::wstring name;
    std::wstring title;
    int kind = 0;
};

frmMain::frmMain(Platform& platform, HostServer& host, SpreadsheetServer& spreadsheets)
    : platform_(platform), host_(host), spreadsheets_(spreadsheets), desktop_(platform.desktop) {
    desktop_.RuntimeErrorHandler = [this](const RuntimeError& error) {
        desktop_.ShowMessage(
            {MessageText(*this, TextNumber::RuntimeErrorTitle, {std::to_wstring(error.number())}) +
                 L"\r" + DescriptionText(*this, error),
             MessageText(*this, TextNumber::Title)});
    };
}

frmMain::~frmMain() {
    desktop_.RuntimeErrorHandler = nullptr;
}

void frmMain::Show() {
    form_ = desktop_.CreateForm(L"frmMain");
    grdRooms_ = &form_->Named<Gui::Grid>(L"grdRooms");
    form_->Resize = [this] { onResize(); };
    form_->KeyUp = [this](int key) {
        if (key == Gui::KeyF1)
            desktop_.OpenHelp(*form_, helpFile_, helpContext);
    };
    form_->MayUnload = [this] {
        // The question that stands already has to be answered first.
        if (asking_)
            return false;
        endWithoutHost_ = commandUnderWay_ && host_.Hangs();
        closeWhenDone_ = commandUnderWay_ && !endWithoutHost_;
        return !closeWhenDone_;
    };
    form_->ServesInput = [this] {
        // Commands are refused meanwhile; what is left is to close the window, which needs input.
        const bool hangs = commandUnderWay_ && !asking_ && host_.Hangs();
        if (inputLocked_ && form_->Enabled() != hangs)
            form_->Enabled(hangs);
        return hangs;
    };
    form_->OnUnload = [this] { unload(); };
    form_->MayEndSession = [this] { return mayEndSession(); };
    form_->OnSessionEnd = [this] { endSession(); };
    grdRooms_->MouseUp = [this](Gui::MouseButton button, int row, int column) {
        onTableMouseUp(button, row, column);
    };
    grdRooms_->DoubleClick = [this] { onTableDoubleClick(); };
    desktop_.Dispatch([this] { load(); });
    form_->Show();
}

// ------------------------------------------------------------------------- load and unload

void frmMain::load() {
    floors_ = std::make_shared<clsFloors>();
    addTemplate_ = std::make_shared<clsRoom>();
    currentRoom_ = addTemplate_;
    kalvero_ = std::make_unique<clsKalvero>(host_, files(), *this);
    form_->Text(GetText(TextNumber::Title));
    buildMenus();
    grdRooms_->Cells().Resize(leastRows, tableColumns);
    grdRooms_->Cells().Clear();
    initTable();
    placement_ = Placement();
    readProjectName();
    grdRooms_->Col(0);
    grdRooms_->Row(1);
    fileKind_ = spreadsheetFileKind;
    setDefaultFileName();
    onResize();
    grdRooms_->Redraw(true);
    LoadWindowSettings();
    settingsRead_ = true;
}

FileServices frmMain::files() {
    return {*this, *this, desktop_, platform_.ansi, spreadsheets_};
}

DialogServices frmMain::dialogs() const {
    return {desktop_, *this, helpFile_};
}

void frmMain::buildMenus() {
    const auto runs = [this](void (frmMain::*run)()) {
        return [this, run] { command([this, run] { (this->*run)(); }); };
    };
    const auto item = [&](Gui::MenuItem& menu, const wchar_t* name, std::int32_t text,
                          void (frmMain::*run)(), const std::vector<Gui::KeyStroke>& keys = {}) {
        Gui::MenuItem& entry = menu.AddItem(name);
        entry.Caption(GetText(text));
        entry.Shortcut(ShortcutText(keys, *this));
        entry.Click = runs(run);
        for (const Gui::KeyStroke& key : keys)
            form_->Shortcuts[key] = entry.Click;
    };
    Gui::MenuItem& mnuFile = form_->Menu(L"mnuFile");
    mnuFile.Caption(GetText(4));
    item(mnuFile, L"mnuNew", 5, &frmMain::newList, {{'N', true}});
    item(mnuFile, L"mnuOpen", 6, &frmMain::openList, {{'O', true}});
    item(mnuFile, L"mnuSave", 7, &frmMain::saveList, {{'S', true}});
    item(mnuFile, L"mnuSaveAS", 8, &frmMain::saveListAs, {{'S', true, true}});
    mnuFile.AddSeparator(L"mnuSep1");
    item(mnuFile, L"mnuImport", 9, &frmMain::importRooms, {{'L', true}});
    item(mnuFile, L"mnuExport", 10, &frmMain::exportRooms, {{'E', true}});
    mnuFile.AddSeparator(L"mnusep2");
    Gui::MenuItem& mnuEnd = mnuFile.AddItem(L"mnuEnd");
    mnuEnd.Caption(GetText(11));
    mnuEnd.Click = [this] { form_->Unload(); };

    mnuRecord_ = &form_->Menu(L"mnuRecord");
    mnuRecord_->Caption(GetText(12));
    item(*mnuRecord_, L"mnuAddRoom", 13, &frmMain::addRoom, {{Gui::KeyInsert}});
    item(*mnuRecord_, L"mnuModifyRoom", 14, &frmMain::modifyRoom, {{Gui::KeyEnter}, {Gui::KeyF2}});
    mnuRecord_->AddSeparator(L"mnusep3");
    item(*mnuRecord_, L"mnuDeleteRoom", 15, &frmMain::deleteRoom, {{Gui::KeyDelete}});
    mnuRecord_->AddSeparator(L"mnusep4");
    item(*mnuRecord_, L"mnuSortAscending", 16, &frmMain::sortAscending, {{Gui::KeyUpArrow, true}});
    item(*mnuRecord_, L"mnuSortDescending", 17, &frmMain::sortDescending,
         {{Gui::KeyDownArrow, true}});

    Gui::MenuItem& mnuExtras = form_->Menu(L"mnuExtras");
    mnuExtras.Caption(GetText(18));
    item(mnuExtras, L"mnuPlace", 19, &frmMain::showOptions);

    form_->Shortcuts[{'Z', true}] = runs(&frmMain::undo);
    form_->Shortcuts[{'Y', true}] = runs(&frmMain::redo);
}

void frmMain::unload() {
    askToSave();
    // A session that ends while the window is still loading must not store what was never read.
    if (settingsRead_)
        SaveWindowSettings();
    if (endWithoutHost_)
        desktop_.EndProcess();
}

void frmMain::askToSave() {
    // Saving may call the spreadsheet, which serves this window's messages: no command any more.
    const bool underWay = std::exchange(commandUnderWay_, true);
    if (hasUnsavedRooms()) {
        desktop_.Dispatch([this] {
            try {
                SaveChangesPrompt();
            } catch (const RuntimeError& error) {
                // Unloading is never called off; giving up the file dialog means not saving.
                if (error.number() != RuntimeError::DialogCancelled)
                    throw;
            }
        });
    }
    // The end of a session may still be called off; the program goes on then.
    commandUnderWay_ = underWay;
    if (!underWay)
        closeWhenDone_ = false;
}

bool frmMain::mayEndSession() {
    // The question that stands already has to be answered first.
    if (asking_)
        return false;
    askToSave();
    askedForSession_ = true;
    return true;
}

void frmMain::endSession() {
    // Who was not asked before is asked now; under a question that still stands nothing more can be
    // saved than the settings.
    if (!asking_ && !askedForSession_)
        askToSave();
    if (settingsRead_)
        SaveWindowSettings();
}

void frmMain::LoadWindowSettings() {
    try {
        bool noReport = false;
        std::int32_t left = 0, top = 0, height = 0, width = 0, colorNew = 0, colorOld = 0;
        clsRegistry(platform_.registry)
            .GetSettings(regKey_, noReport, left, top, height, width, colorNew, colorOld);
        if (height < 1 || width < 1)
            return;
        noReport_ = noReport;
        form_->Left(static_cast<Gui::Twips>(left));
        form_->Top(static_cast<Gui::Twips>(top));
        form_->Height(static_cast<Gui::Twips>(height));
        form_->Width(static_cast<Gui::Twips>(width));
        placement_.colorOld = colorOld;
        placement_.colorNew = colorNew;
    } catch (const std::exception&) {
        // Settings are a convenience; starting goes on without them.
    }
}

void frmMain::SaveWindowSettings() {
    try {
        clsRegistry(platform_.registry)
            .SetSettings(regKey_, noReport_, RoundToLong(form_->Left()), RoundToLong(form_->Top()),
                         RoundToLong(form_->Height()), RoundToLong(form_->Width()),
                         placement_.colorNew, placement_.colorOld);
    } catch (const std::exception&) {
        // Nobody could do anything about it while the program ends.
    }
}

// ------------------------------------------------------------------------- public operations

void frmMain::SetRegKey(const std::wstring& path) {
    regKey_ = path;
}

void frmMain::SetLang(const std::wstring& code) {
    text_ = std::make_unique<clsText>(platform_.libraries, platform_.environment);
    text_->SetLanguage(code);
}

std::wstring frmMain::GetText(std::int32_t number) const {
    return text_ ? text_->GetText(number) : std::wstring();
}

std::wstring frmMain::GetTextWithoutDot(std::int32_t number) const {
    return text_->GetTextWithoutDot(number);
}

Placement frmMain::GetPlace() const {
    return placement_;
}

void frmMain::SetPlace(const Placement& placement) {
    placement_ = placement;
}

bool frmMain::NoReport() const {
    return noReport_;
}

void frmMain::SetWithReport() {
    noReport_ = false;
}

void frmMain::SetWithoutReport() {
    noReport_ = true;
}

std::shared_ptr<clsRoom> frmMain::GetCurrentRoom() const {
    return currentRoom_;
}

void frmMain::AddCurrentRoomsToListOfFloors(std::int32_t quantity) {
    const std::int32_t before = floors_->GetCountOfRooms();
    floors_->AddRooms(*currentRoom_, quantity);
    try {
        history_.Added(
            floors_->LastRooms(currentRoom_->StoryCode(), floors_->GetCountOfRooms() - before));
    } catch (const std::bad_alloc&) {
        // The rooms are in the list, and nobody should add them again.
        history_.Clear();
    }
    UpdateTable(false);
}

void frmMain::EnableInput(bool enabled) {
    inputLocked_ = !enabled;
    form_->Enabled(enabled);
}

void frmMain::ShowProgress(const std::wstring& words) {
    if (caption_.empty())
        caption_ = form_->Text();
    form_->Text(words.empty() ? std::exchange(caption_, {})
                              : GetText(TextNumber::Title) + L" - " + words);
}

void frmMain::HelpFile(const std::wstring& path) {
    helpFile_ = path;
}

// ------------------------------------------------------------------------- file commands

void frmMain::command(const std::function<void()>& body) {
    // A call to the host or the spreadsheet pumps messages; a second command that comes in
    // meanwhile would work on a list that the first is still changing.
    if (commandUnderWay_)
        return;
    commandUnderWay_ = true;
    // A user who keeps working is asked again.
    askedForSession_ = false;
    std::exception_ptr failure;
    try {
        body();
    } catch (const RuntimeError& error) {
        if (error.number() != RuntimeError::DialogCancelled)
            failure = std::current_exception();
    } catch (...) {
        failure = std::current_exception();
    }
    commandUnderWay_ = false;
    if (std::exchange(closeWhenDone_, false))
        form_->Unload();
    if (failure)
        std::rethrow_exception(failure);
}

frmMain::ChosenFile frmMain::askForFile(bool save) {
    Gui::FileDialog dialog = ListFileDialog(fileName_);
    dialog.FilterIndex = fileKind_;
    if (save)
        dialog.Flags = saveFlags;
    const auto held = holdSession();
    if (save)
        desktop_.ShowSave(dialog);
    else
        desktop_.ShowOpen(dialog);
    return {dialog.FileName, dialog.FileTitle, dialog.FilterIndex};
}

void frmMain::useFile(const ChosenFile& file) {
    fileName_ = file.name;
    fileTitle_ = file.title;
    form_->Text(GetText(TextNumber::Title) + L" - " + fileTitle_);
}

void frmMain::openList() {
    const ChosenFile file = askForFile(false);
    if (file.name.empty()) {
        setDefaultFileName();
        return;
    }
    // The old list may be saved under a name of its own on the way; only then is it the new file's
    // turn.
    clearList();
    useFile(file);
    const FileOutcome outcome = listFile_.Read(fileName_, *floors_);
    fileKind_ = file.kind;
    dirty_ = !outcome.complete;
    UpdateTable(true);
    listFile_.TellOfReading(fileName_, outcome);
}

void frmMain::saveList() {
    if (isPattern(fileName_) || !listFile_.IsWhole())
        saveListAs();
    else if (mayBeOverwritten())
        writeListToFile();
}

bool frmMain::mayBeOverwritten() {
    const auto held = holdSession();
    return listFile_.MayBeOverwritten(fileName_);
}

void frmMain::saveListAs() {
    const ChosenFile file = askForFile(true);
    if (file.name.empty())
        return;
    useFile(file);
    writeListToFile();
    fileKind_ = file.kind;
}

void frmMain::writeListToFile() {
    dirty_ = !listFile_.Write(fileName_, *floors_);
}

void frmMain::clearList() {
    if (hasUnsavedRooms())
        SaveChangesPrompt();
    floors_ = std::make_shared<clsFloors>();
    history_.Clear();
    UpdateTable(false);
}

void frmMain::newList() {
    clearList();
    readProjectName();
    setDefaultFileName();
    listFile_.Forget();
    dirty_ = false;
}

bool frmMain::hasUnsavedRooms() const {
    return dirty_ && floors_ && floors_->GetCountOfRooms() != 0;
}

// A session that ends meanwhile would ask about the rooms as well, on top of the question that
// stands.
std::shared_ptr<const void> frmMain::holdSession() {
    if (!hasUnsavedRooms())
        return nullptr;
    return std::make_shared<SessionHeld>(*form_, MessageText(*this, TextNumber::UnsavedRooms),
                                         asking_);
}

void frmMain::SaveChangesPrompt() {
    const auto held = holdSession();
    const Gui::Message question{GetText(TextNumber::SaveChanges), GetText(TextNumber::Title),
                                Gui::Message::Buttons::YesNo};
    while (dirty_ && desktop_.ShowMessage(question) == Gui::Answer::Yes)
        saveListAs();
}

void frmMain::readProjectName() {
    projectName_ = Trim(kalvero_->GetProjectName());
    if (!projectName_.empty() && projectName_ != clsKalvero::ProjectWithoutName)
        form_->Text(GetText(TextNumber::Title) + L" - " + projectName_);
    else
        form_->Text(GetText(TextNumber::Title));
}

void frmMain::setDefaultFileName() {
    fileName_ = kalvero_->GetProjectPath() + L"\\*" +
                (fileKind_ == spreadsheetFileKind ? L".xls" : L".txt");
}

// ------------------------------------------------------------------------- drawing commands

void frmMain::importRooms() {
    newList();
    dirty_ = true;
    try {
        kalvero_->ImportFloorsFromKalvero(*floors_);
    } catch (...) {
        // What was read until then is there to be seen and saved.
        UpdateTable(false);
        throw;
    }
    UpdateTable(false);
}

void frmMain::exportRooms() {
    ReportCounts counts;
    try {
        kalvero_->ExportFloorsToKalvero(*floors_, true, placement_.block, placement_.distanceX,
                                        placement_.distanceY, counts.newAtPosition, counts.updated,
                                        counts.placed);
    } catch (const RuntimeError& error) {
        throw listFile_.NamingTheRoom(error, *floors_);
    }
    if (counts.updated + counts.newAtPosition + counts.placed > 0 && !noReport_)
        frmReport(dialogs(), *this, counts).ShowModal();
}

// ------------------------------------------------------------------------- room commands

void frmMain::showRoomDialog(bool isNew) {
    currentRoom_->IsNew(isNew);
    frmRoom(dialogs(), *this).ShowModal();
    dirty_ = true;
}

void frmMain::addRoom() {
    currentRoom_ = addTemplate_;
    showRoomDialog(true);
    if (floors_->GetCountOfRooms() > clsKalvero::MostRooms)
        showRoomLimitWarning();
}

void frmMain::modifyRoom() {
    const RoomKey key = roomIn(grdRooms_->Row());
    std::shared_ptr<clsRoom> room;
    floors_->GetRoomByID(key.storyCode, key.id, room);
    if (!room) {
        currentRoom_ = addTemplate_;
        showRoomDialog(true);
        return;
    }
    const TablePlace place(*grdRooms_);
    const auto before = room->Copy();
    currentRoom_ = room;
    showRoomDialog(false);
    history_.Changed(before, room);
    // Also after Cancel: the geometry dialog changes the room at once.
    UpdateTable(false);
    place.Restore(rowOf(key));
}

void frmMain::deleteRoom() {
    const int row = grdRooms_->Row();
    const RoomKey key = roomIn(row);
    // The next one in the order shown, which filling the table anew takes away.
    RoomKey next = roomIn(row + 1);
    if (next.storyCode.empty())
        next = roomIn(row - 1);
    const TablePlace place(*grdRooms_);
    std::shared_ptr<clsRoom> room;
    floors_->GetRoomByID(key.storyCode, key.id, room);
    floors_->DeleteRoom(key.storyCode, key.id);
    if (room)
        history_.Removed(room);
    dirty_ = true;
    UpdateTable(false);
    place.Restore(room ? rowOf(next) : row);
}

void frmMain::undo() {
    showStep(history_.Undo(*floors_));
}

void frmMain::redo() {
    showStep(history_.Redo(*floors_));
}

void frmMain::showStep(const std::optional<RoomList>& rooms) {
    if (!rooms)
        return;
    dirty_ = true;
    const TablePlace place(*grdRooms_);
    const int row = grdRooms_->Row();
    UpdateTable(false);
    place.Restore(rooms->empty() ? row
                                 : rowOf({rooms->front()->StoryCode(), rooms->front()->ID()}));
}

frmMain::RoomKey frmMain::roomIn(int row) const {
    const Gui::GridCells& cells = std::as_const(*grdRooms_).Cells();
    if (row < 1 || row >= cells.Rows() || cells.Text(row, storyColumn).empty())
        return {};
    return {cells.Text(row, storyColumn), ToLong(cells.Text(row, idColumn))};
}

int frmMain::rowOf(const RoomKey& key) const {
    const Gui::GridCells& cells = std::as_const(*grdRooms_).Cells();
    const std::wstring id = FromLong(key.id);
    int row = 1;
    while (row < roomCount_ &&
           (cells.Text(row, idColumn) != id || cells.Text(row, storyColumn) != key.storyCode))
        ++row;
    return row;
}

void frmMain::showOptions() {
    const TablePlace place(*grdRooms_);
    const int row = grdRooms_->Row();
    const RoomKey key = roomIn(row);
    frmPlace(dialogs(), *this).ShowModal();
    UpdateTable(false);
    place.Restore(key.storyCode.empty() ? row : rowOf(key));
}

void frmMain::showRoomLimitWarning() {
    desktop_.ShowMessage(
        {GetText(TextNumber::RoomLimit) + L"\r" + GetText(TextNumber::RoomLimitRest),
         GetText(TextNumber::Title), Gui::Message::Buttons::Ok, Gui::Message::Icon::Exclamation});
}

// ------------------------------------------------------------------------- the room table

void frmMain::initTable() {
    Gui::GridCells& cells = grdRooms_->Cells();
    cells.Resize(cells.Rows(), tableColumns);
    grdRooms_->Row(0);
    for (int column = 0; column < visibleColumns; ++column)
        cells.CellAlignment(0, column, Gui::Alignment::Centre);
    for (int column = 0; column <= geometryColumn; ++column)
        cells.Text(0, column, GetText(headerTexts[column]));
    cells.Text(0, idColumn, L"ID");
}

void frmMain::fillRow(std::vector<Gui::GridCells::Cell>& cells, const clsRoom& room,
                      const NumberLocale& locale) const {
    cells[0].text = room.Name();
    cells[1].text = room.FunctionName();
    cells[storyColumn].text = room.StoryCode();
    cells[4].text = room.Enclosure();
    cells[5].text = room.Occupancy();
    cells[6].text = room.AreaType();
    cells[idColumn].text = FromLong(room.ID());
    if (!room.Geometry)
        return;
    cells[2].text = FromDouble(room.Geometry->Area(), locale);
    cells[geometryColumn].text = room.Geometry->Info(locale);
    const bool polygon = cells[geometryColumn].text == L"polygonal";
    for (int column = 0; column < visibleColumns; ++column) {
        Gui::GridCells::Cell& cell = cells[static_cast<std::size_t>(column)];
        cell.colour = polygon ? placement_.colorOld : placement_.colorNew;
        cell.alignment = Gui::Alignment::Centre;
    }
}

void frmMain::UpdateTable(bool warn) {
    Gui::GridCells& cells = grdRooms_->Cells();
    const RedrawingOff redrawing(*grdRooms_);
    const std::int32_t rooms = floors_->GetCountOfRooms();
    // Without memory for it the table stays as it was.
    cells.Resize(rooms >= leastRows ? rooms + 1 : leastRows, tableColumns);
    cells.Clear();
    roomCount_ = rooms;
    if (roomCount_ > clsKalvero::MostRooms && warn)
        showRoomLimitWarning();
    initTable();
    // A row's texts come from the list whenever they are shown: a copy of them all would take more
    // memory and time than the list itself. The user's marks are asked for once.
    cells.Supply(
        1, roomCount_,
        [this, floors = floors_, room = std::make_shared<clsRoom>(),
         locale = UserLocale()](std::int32_t number, std::vector<Gui::GridCells::Cell>& row) {
            floors->GetRoomByIndex(number, *room);
            fillRow(row, *room, locale);
        });
    for (int row = roomCount_ + 1; row < leastRows; ++row)
        for (int column = 0; column < visibleColumns; ++column)
            cells.CellAlignment(row, column, Gui::Alignment::Centre);
    grdRooms_->Col(0);
    grdRooms_->Row(1);
}

void frmMain::sortAscending() {
    sortTable(Gui::SortOrder::Ascending);
}

void frmMain::sortDescending() {
    sortTable(Gui::SortOrder::Descending);
}

void frmMain::sortTable(Gui::SortOrder order) {
    if (grdRooms_->Col() >= visibleColumns || grdRooms_->Col() < 0)
        grdRooms_->Col(0);
    if (roomCount_ <= 1)
        return;
    const RedrawingOff redrawing(*grdRooms_);
    grdRooms_->Row(1);
    grdRooms_->Cells().Sort(1, roomCount_, grdRooms_->Col(), order);
}

void frmMain::onTableMouseUp(Gui::MouseButton button, int row, int column) {
    grdRooms_->Col(column);
    grdRooms_->Row(row);
    clickedRoomRow_ = false;
    if (button == Gui::MouseButton::Right)
        form_->PopupMenu(*mnuRecord_);
    else if (row == 0)
        command([this] { sortAscending(); });
    else
        clickedRoomRow_ = true;
}

void frmMain::onTableDoubleClick() {
    if (!clickedRoomRow_)
        return;
    const Gui::GridCells& cells = std::as_const(*grdRooms_).Cells();
    const bool filled = !cells.Text(grdRooms_->Row(), grdRooms_->Col()).empty();
    command([this, filled] { filled ? modifyRoom() : addRoom(); });
}

void frmMain::onResize() {
    const auto inside = [](Gui::Twips outer, Gui::Twips around) {
        return outer > around ? outer - around : 0.0f;
    };
    const Gui::Twips width = inside(form_->Width(), besideTable);
    grdRooms_->Left(0);
    grdRooms_->Top(0);
    grdRooms_->Width(width);
    grdRooms_->Height(inside(form_->Height(), aboveTable));

    // The surplus is a 16-bit whole number; beyond it, on very wide screens, the columns just grow
    // no further.
    std::int16_t share = 0;
    const std::int16_t surplus =
        RoundToInteger(std::clamp(width - smallestTable, -widestSurplus, widestSurplus));
    if (surplus > 0)
        share = RoundToInteger(surplus / 7.0);
    grdRooms_->Bars(width >= smallestTable ? Gui::ScrollBars::Vertical : Gui::ScrollBars::Both);
    for (int column = 0; column < visibleColumns; ++column)
        grdRooms_->ColWidth(column, columnWidths[column] + share);
    for (int column = visibleColumns; column < tableColumns; ++column)
        grdRooms_->ColWidth(column, 0);
}

} // namespace kalvrooms
