#include "ui/frmReport.h"

#include <utility>

#include "model/NumberText.h"

namespace kalvrooms {
namespace {

constexpr std::int32_t textOneRoomWas = 29;
constexpr std::int32_t textRoomsWere = 57;
constexpr std::int32_t textOneUpdated = 58;
constexpr std::int32_t textOneAtPosition = 60;
constexpr std::int32_t textOneSetDown = 62;

constexpr Gui::Twips rowPitch = 360;

} // namespace

frmReport::frmReport(const DialogServices& services, Options& options, const ReportCounts& counts)
    : services_(services), options_(options), counts_(counts),
      form_(services.desktop.CreateForm(L"frmReport")), lblTop(form_->LabelNamed(L"lblTop")),
      lblNum1(form_->LabelNamed(L"lblNum1")), lblText1(form_->LabelNamed(L"lblText1")),
      lblNum2(form_->LabelNamed(L"lblNum2")), lblText2(form_->LabelNamed(L"lblText2")),
      lblNum3(form_->LabelNamed(L"lblNum3")), lblText3(form_->LabelNamed(L"lblText3")),
      chkNoReport(form_->CheckNamed(L"chkNoReport")), lblOption(form_->LabelNamed(L"lblOption")),
      cmdOk(form_->ButtonNamed(L"cmdOk")) {
    cmdOk.Click = [this] { cmdOk_Click(); };
    // The key that everybody presses on a message; the button may not have the focus.
    form_->KeyUp = [this](int key) {
        if (key == Gui::KeyEnter)
            cmdOk_Click();
    };
}

void frmReport::ShowModal() {
    setCaptions();
    fillRows();
    form_->ShowModal();
}

void frmReport::setCaptions() {
    const std::pair<Gui::Control&, std::int32_t> captions[] = {
        {*form_, 1},    {lblTop, textRoomsWere}, {chkNoReport, 64}, {lblOption, 65},
        {lblText1, 59}, {lblText2, 61},          {lblText3, 63},    {cmdOk, 2}};
    for (const auto& [control, number] : captions)
        control.Text(services_.texts.GetText(number));
}

void frmReport::fillRows() {
    const auto& [updated, newAtPosition, setDown] = counts_;
    const Placement placement = options_.GetPlace();
    if (AddLong(AddLong(updated, newAtPosition), setDown) == 1)
        lblTop.Text(services_.texts.GetText(textOneRoomWas));

    const Row row1{lblNum1, lblText1};
    const Row row2{lblNum2, lblText2};
    const Row row3{lblNum3, lblText3};
    int hidden = 0;
    if (!fillRow(row1, updated, textOneUpdated, placement.colorOld)) {
        ++hidden;
        moveUp(row2);
        moveUp(row3);
    }
    if (!fillRow(row2, newAtPosition, textOneAtPosition, placement.colorOld)) {
        ++hidden;
        moveUp(row3);
    }
    if (!fillRow(row3, setDown, textOneSetDown, placement.colorNew))
        ++hidden;
    if (hidden == 0)
        return;
    const Gui::Twips gap = static_cast<Gui::Twips>(hidden) * rowPitch;
    chkNoReport.Top(chkNoReport.Top() - gap);
    lblOption.Top(lblOption.Top() - gap);
    cmdOk.Top(cmdOk.Top() - gap);
    form_->Height(form_->Height() - gap);
}

bool frmReport::fillRow(const Row& row, std::int32_t count, std::int32_t textForOne,
                        Gui::Colour colour) {
    if (count < 1) {
        row.count.Visible(false);
        row.text.Visible(false);
        return false;
    }
    if (count == 1)
        row.text.Text(services_.texts.GetText(textForOne));
    row.count.Text(FromLong(count));
    row.count.ForeColour(colour);
    row.text.ForeColour(colour);
    return true;
}

void frmReport::moveUp(const Row& row) {
    row.count.Top(row.count.Top() - rowPitch);
    row.text.Top(row.count.Top());
}

void frmReport::cmdOk_Click() {
    if (chkNoReport.Value())
        options_.SetWithoutReport();
    else
        options_.SetWithReport();
    form_->Unload();
}

} // namespace kalvrooms
