#include "platform/Gui.h"

#include <new>

namespace kalvrooms::Gui {

void Desktop::Dispatch(const std::function<void()>& event) noexcept {
    if (!event)
        return;
    const auto report = [this](const RuntimeError& error) noexcept {
        try {
            if (RuntimeErrorHandler)
                RuntimeErrorHandler(error);
        } catch (...) {
            // Telling of the error failed as well; the program goes on all the same.
        }
    };
    try {
        event();
    } catch (const RuntimeError& error) {
        report(error);
    } catch (const std::bad_alloc&) {
        report(RuntimeError(RuntimeError::OutOfMemory));
    } catch (const std::exception&) {
        report(RuntimeError(RuntimeError::InvalidProcedureCall));
    }
}

} // namespace kalvrooms::Gui
