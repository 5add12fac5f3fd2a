#pragma once
// The main window: owner of everything that lives for the whole run, the room table and the
// commands of the menus.

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "app/ProgramContext.h"
#include "app/clsText.h"
#include "host/clsKalvero.h"
#include "model/clsFloors.h"
#include "platform/Gui.h"

namespace kalvrooms {

class frmMain : public ProgramContext {
  public:
    explicit frmMain(Platform& platform);
    ~frmMain() override;

    // Runs the load handler and shows the window modeless.
    void Show();

    void SetRegKey(const std::wstring& path) override;
    void SetLang(const std::wstring& code) override;
    std::wstring GetText(std::int32_t number) const override;
    std::wstring GetTextWithoutDot(std::int32_t number) const override;
    void GetReport(std::int32_t& colorOld, std::int32_t& colorNew, std::int32_t& updated,
                   std::int32_t& newAtPosition, std::int32_t& setDown,
                   bool& noReport) const override;
    void SetWithoutReport() override;
    void SetWithReport() override;
    void GetPlace(double& distanceX, double& distanceY, bool& block, std::int32_t& colorOld,
                  std::int32_t& colorNew, bool& noReport) const override;
    void SetPlace(double distanceX, double distanceY, bool block, std::int32_t colorOld,
                  std::int32_t colorNew) override;
    void WriteListToFile() override;
    void ReadListFromFile() override;
    std::shared_ptr<clsRoom> GetCurrentRoom() const override;
    void AddCurrentRoomsToListOfFloors(std::int32_t quantity) override;
    void UpdateTable(bool warn) override;
    void EnableInput(bool enabled) override;
    std::wstring HelpFile() const override;
    void HelpFile(const std::wstring& path) override;
    Platform& System() const override;

  private:
    struct Placement {
        double distanceX = 1.0; // metres
        double distanceY = 1.0;
        bool block = true;
        std::int32_t colorOld = 0;
        std::int32_t colorNew = 255;
    };
    struct ReportCounts {
        std::int32_t updated = 0;
        std::int32_t newAtPosition = 0;
        std::int32_t setDown = 0;
    };
    // Values of the file kind, which are the filter indices of the file dialogs.
    static constexpr int textFileKind = 1;
    static constexpr int spreadsheetFileKind = 2;

    void buildMenus();
    void load();
    void unload();
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
    void showOptions();

    void clearList();
    void SaveChangesPrompt();
    bool hasUnsavedRooms() const;
    void readProjectName();
    void setDefaultFileName();
    struct ChosenFile;
    ChosenFile askForFile(bool save);
    void useFile(const ChosenFile& file);
    void showRoomLimitWarning();
    void showRoomDialog(bool isNew);

    void initTable();
    void sortTable(Gui::SortOrder order);
    void onTableMouseUp(Gui::MouseButton button, int row, int column);
    void onTableDoubleClick();
    void onResize();
    bool selectedRoom(std::wstring& storyCode, std::int32_t& id) const;

    Platform& platform_;
    Gui::Desktop& desktop_;
    std::unique_ptr<clsText> text_;
    std::wstring regKey_;
    std::wstring helpFile_;

    std::unique_ptr<Gui::Form> form_;
    Gui::Grid* grdRooms_ = nullptr;
    Gui::MenuItem* mnuRecord_ = nullptr;

    std::shared_ptr<clsFloors> floors_;
    std::shared_ptr<clsRoom> currentRoom_;
    // Keeps what the room dialog last put into it, as the start for the next room to add.
    std::shared_ptr<clsRoom> addTemplate_;
    std::unique_ptr<clsKalvero> kalvero_;
    Placement placement_;
    bool noReport_ = false;
    ReportCounts report_;

    std::wstring fileName_;
    std::wstring fileTitle_;
    int fileKind_ = spreadsheetFileKind;
    bool dirty_ = false;
    std::wstring projectName_;
    std::int32_t roomCount_ = 0;
    bool clickedRoomRow_ = false;

    bool settingsRead_ = false;
    bool commandUnderWay_ = false;
    bool closeWhenDone_ = false;
};

} // namespace kalvrooms
