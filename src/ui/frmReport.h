#pragma once
// The update report: how many rooms the last writing to the drawing updated, created at their known
// position and set down. Rows without rooms are left out and close up.

#include <cstdint>
#include <memory>

#include "app/Options.h"
#include "platform/Gui.h"
#include "ui/DialogServices.h"

namespace kalvrooms {

struct ReportCounts {
    std::int32_t updated = 0;
    std::int32_t newAtPosition = 0;
    std::int32_t setDown = 0;
};

class frmReport {
  public:
    frmReport(const DialogServices& services, Options& options, const ReportCounts& counts);
    frmReport(const frmReport&) = delete;
    frmReport& operator=(const frmReport&) = delete;

    // Returns when the dialog is closed. Error: Overflow when the counts add up beyond 32 bits.
    void ShowModal();

  private:
    struct Row {
        Gui::Label& count;
        Gui::Label& text;
    };

    void setCaptions();
    void fillRows();
    // False when there is nothing to show; the row is hidden then.
    bool fillRow(const Row& row, std::int32_t count, std::int32_t textForOne, Gui::Colour colour);
    static void moveUp(const Row& row);
    void cmdOk_Click();

    const DialogServices services_;
    Options& options_;
    const ReportCounts counts_;
    std::unique_ptr<Gui::Form> form_;

    Gui::Label& lblTop;
    Gui::Label& lblNum1;
    Gui::Label& lblText1;
    Gui::Label& lblNum2;
    Gui::Label& lblText2;
    Gui::Label& lblNum3;
    Gui::Label& lblText3;
    Gui::CheckBox& chkNoReport;
    Gui::Label& lblOption;
    Gui::Button& cmdOk;
};

} // namespace kalvrooms
