#include "app/clsWait.h"

namespace kalvrooms {

clsWait::~clsWait() {
    desktop_.MousePointer(saved_); // which is no hourglass
}

void clsWait::BreakWait() {
    break_ = desktop_.MousePointer();
    desktop_.MousePointer(Gui::DefaultPointer);
}

void clsWait::ContinueWait() {
    desktop_.MousePointer(break_);
}

void clsWait::StartWait() {
    const std::int16_t current = desktop_.MousePointer();
    if (current == Gui::HourglassPointer)
        return;
    saved_ = current;
    desktop_.MousePointer(Gui::HourglassPointer);
}

} // namespace kalvrooms
