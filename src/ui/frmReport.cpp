#include "ui/frmReport.h"

#include "app/TextNumbers.h"

#include "model/NumberText.h"

namespace kalvrooms {
namespace {

constexpr Gui::Twips rowPitch = 360;

} // namespace

frmReport::frmReport(const DialogServices& services, Options& options, const ReportCounts& counts)
    : Dialog(services, L"frmReport"), options_(options), counts_(counts) {
    confirmWithEscape();
}

void frmReport::load() {
    setCaptions({{*form_, 1},
                 {lblTop, TextNumber::RoomsWere},
                 {chkNoReport, 64},
                 {lblOption, 65},
                 {rows_[0].text, 59},
                 {rows_[1].text, 61},
                 {rows_[2].text, 63},
                 {cmdOk, 2}});
    const auto& [updated, newAtPosition, placed] = counts_;
    if (AddLong(AddLong(updated, newAtPosition), placed) == 1)
        lblTop.Text(text(TextNumber::OneRoomWas));

    const Placement placement = options_.GetPlace();
    const Gui::Twips designedEnd = rows_[2].count.Top() + rowPitch;
    Gui::Twips top = rows_[0].count.Top();
    // Rows without rooms are left out, and what stands below closes up.
    const auto show = [&](const Row& row, std::int32_t count, std::int32_t textForOne,
                          Gui::Colour colour) {
        if (!fillRow(row, count, textForOne, colour))
            return;
        place(row, top);
        top += rowPitch;
    };
    show(rows_[0], updated, TextNumber::OneUpdated, placement.colorOld);
    show(rows_[1], newAtPosition, TextNumber::OneAtPosition, placement.colorOld);
    show(rows_[2], placed, TextNumber::OnePlaced, placement.colorNew);
    moveLowerPartUp(designedEnd - top);
    cmdOk.SetFocus();
}

bool frmReport::fillRow(const Row& row, std::int32_t count, std::int32_t textForOne,
                        Gui::Colour colour) {
    if (count < 1) {
        row.count.Visible(false);
        row.text.Visible(false);
        return false;
    }
    if (count == 1)
        row.text.Text(text(textForOne));
    row.count.Text(FromLong(count));
    row.count.ForeColour(colour);
    row.text.ForeColour(colour);
    return true;
}

// The pitch does not depend on the font, as the designed places may.
void frmReport::place(const Row& row, Gui::Twips top) {
    if (row.count.Top() != top) {
        row.count.Top(top);
        row.text.Top(top);
    }
    row.count.Height(rowPitch);
    row.text.Height(rowPitch);
}

void frmReport::moveLowerPartUp(Gui::Twips distance) {
    const std::initializer_list<Gui::Control*> lowerPart = {&chkNoReport, &lblOption, &cmdOk};
    for (Gui::Control* control : lowerPart)
        control->Top(control->Top() - distance);
    form_->Height(form_->Height() - distance);
}

void frmReport::cmdOk_Click() {
    if (chkNoReport.Value())
        options_.SetWithoutReport();
    else
        options_.SetWithReport();
    form_->Unload();
}

} // namespace kalvrooms
