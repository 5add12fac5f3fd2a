#pragma once
// The update report: how many rooms the last writing to the drawing updated, created at their known
// position and placed at the cross-hair. Rows without rooms are left out and close up.

#include <cstdint>

#include "app/Options.h"
#include "ui/Dialog.h"

namespace kalvrooms {

struct ReportCounts {
    std::int32_t updated = 0;
    std::int32_t newAtPosition = 0;
    std::int32_t placed = 0;
};

class frmReport final : public Dialog {
  public:
    // Showing it with counts that add up beyond 32 bits is an error: Overflow.
    frmReport(const DialogServices& services, Options& options, const ReportCounts& counts);

  private:
    struct Row {
        Gui::Label& count;
        Gui::Label& text;
    };

    void load() override;
    // False when there is nothing to show; the row is hidden then.
    bool fillRow(const Row& row, std::int32_t count, std::int32_t textForOne, Gui::Colour colour);
    static void place(const Row& row, Gui::Twips top);
    void moveLowerPartUp(Gui::Twips distance);
    void cmdOk_Click() override;

    Options& options_;
    const ReportCounts counts_;

    Gui::Label& lblTop = named(L"lblTop");
    const Row rows_[3] = {{named(L"lblNum1"), named(L"lblText1")},
                          {named(L"lblNum2"), named(L"lblText2")},
                          {named(L"lblNum3"), named(L"lblText3")}};
    Gui::CheckBox& chkNoReport = named(L"chkNoReport");
    Gui::Label& lblOption = named(L"lblOption");
};

} // namespace kalvrooms
