#pragma once
// The main window: owner of everything that lives for the whole run, the room table and the
// commands of the menus.

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/HandOverFile.h"
#include "app/Options.h"
#include "app/Texts.h"
#include "app/clsText.h"
#include "host/clsKalvero.h"
#include "model/RoomHistory.h"
#include "model/clsFloors.h"
#include "platform/Gui.h"
#include "platform/Platform.h"
#include "ui/Dialog.h"
#include "ui/ListFile.h"
#include "ui/RoomEditing.h"
#include "ui/frmReport.h"

namespace kalvrooms {

class frmMain final : public Texts,
                      public StartValues,
                      public Options,
                      public ExportWindow,
                      public RoomEditing {
  public:
    frmMain(Platform& platform, HostServer& host, SpreadsheetServer& spreadsheets);
    ~frmMain() override;

    // Runs the load handler and shows the window modeless.
    void Show();

    void SetRegKey(const std::wstring& path) override;
    void SetLang(const std::wstring& code) override;
    std::wstring GetText(std::int32_t number) const override;
    std::wstring GetTextWithoutDot(std::int32_t number) const override;
    Placement GetPlace() const override;
    void SetPlace(const Placement& placement) override;
    bool NoReport() const override;
    void SetWithReport() override;
    void SetWithoutReport() override;
    std::shared_ptr<clsRoom> GetCurrentRoom() const override;
    void AddCurrentRoomsToListOfFloors(std::int32_t quantity) override;
    void UpdateTable(bool warn) override;
    void EnableInput(bool enabled) override;
    void ShowProgress(const std::wstring& words) override;
    void HelpFile(const std::wstring& path) override;

  private:
    // Values of the file kind, which are the filter indices of the file dialogs.
    static constexpr int spreadsheetFileKind = 2;

    FileServices files();
    DialogServices dialogs() const;
    void buildMenus();
    void load();
    void unload();
    void askToSave();
    bool mayEndSession();
    void endSession();
    void LoadWindowSettings();
    void SaveWindowSettings();

    // Runs a command of the user unless another one is still under way.
    void command(const std::function<void()>& body);
    void openList();
    void saveList();
    void saveListAs();
    void newList();
    void importRooms();
    void exportRooms();
    void addRoom();
    void modifyRoom();
    void deleteRoom();
    void undo();
    void redo();
    // Shows the list after a step, with the first of these rooms as the current one.
    void showStep(const std::optional<RoomList>& rooms);
    void showOptions();

    void writeListToFile();
    void clearList();
    void SaveChangesPrompt();
    bool hasUnsavedRooms() const;
    void readProjectName();
    void setDefaultFileName();
    struct ChosenFile;
    ChosenFile askForFile(bool save);
    bool mayBeOverwritten();
    std::shared_ptr<const void> holdSession();
    void useFile(const ChosenFile& file);
    void showRoomLimitWarning();
    void showRoomDialog(bool isNew);

    void initTable();
    void fillRow(std::vector<Gui::GridCells::Cell>& cells, const clsRoom& room,
                 const NumberLocale& locale) const;
    void sortAscending();
    void sortDescending();
    void sortTable(Gui::SortOrder order);
    void onTableMouseUp(Gui::MouseButton button, int row, int column);
    void onTableDoubleClick();
    void onResize();
    // How the table tells rooms apart; without a storey there is none.
    struct RoomKey {
        std::wstring storyCode;
        std::int32_t id = 0;
    };
    RoomKey roomIn(int row) const;
    // The last room's when there is no such room.
    int rowOf(const RoomKey& key) const;

    Platform& platform_;
    HostServer& host_;
    SpreadsheetServer& spreadsheets_;
    Gui::Desktop& desktop_;
    std::unique_ptr<clsText> text_;
    std::wstring regKey_;
    std::wstring helpFile_;

    std::unique_ptr<Gui::Form> form_;
    Gui::Grid* grdRooms_ = nullptr;
    Gui::MenuItem* mnuRecord_ = nullptr;

    std::shared_ptr<clsFloors> floors_;
    RoomHistory history_;
    std::shared_ptr<clsRoom> currentRoom_;
    // Keeps what the room dialog last put into it, as the start for the next room to add.
    std::shared_ptr<clsRoom> addTemplate_;
    std::unique_ptr<clsKalvero> kalvero_;
    Placement placement_;
    bool noReport_ = false;

    ListFile listFile_{files()};
    std::wstring fileName_;
    std::wstring fileTitle_;
    int fileKind_ = spreadsheetFileKind;
    bool dirty_ = false;
    std::wstring projectName_;
    // The caption that comes back when an operation has told its progress there.
    std::wstring caption_;
    std::int32_t roomCount_ = 0;
    bool clickedRoomRow_ = false;

    bool settingsRead_ = false;
    bool commandUnderWay_ = false;
    bool closeWhenDone_ = false;
    bool asking_ = false;          // whether to save; never twice at once
    bool askedForSession_ = false; // since the last command
    // A command waits for a host that hangs: the program ends without it.
    bool endWithoutHost_ = false;
    // By a writing, as long as the host answers.
    bool inputLocked_ = false;
};

} // namespace kalvrooms
