#include "platform/Gui.h"

#include <cstddef>
#include <new>

namespace kalvrooms::Gui {
namespace {

// Enough for a message box with all that the system loads for it.
constexpr std::size_t reserveSize = 4 * 1024 * 1024;

} // namespace

void Desktop::Dispatch(const std::function<void()>& event) noexcept {
    if (!event)
        return;
    setAside();
    try {
        event();
    } catch (const RuntimeError& error) {
        report(error);
    } catch (const std::bad_alloc&) {
        report(outOfMemory_);
    } catch (const std::exception&) {
        report(invalidCall_);
    }
}

void Desktop::report(const RuntimeError& error) noexcept {
    if (error.number() == RuntimeError::OutOfMemory)
        reserve_.reset();
    try {
        if (RuntimeErrorHandler)
            RuntimeErrorHandler(error);
    } catch (const std::bad_alloc&) {
        // Any message is better than none.
        if (reserve_)
            report(outOfMemory_);
    } catch (...) {
        // Reporting the error failed too; the program carries on.
    }
}

void Desktop::setAside() noexcept {
    try {
        if (!reserve_)
            reserve_ = std::make_unique_for_overwrite<char[]>(reserveSize);
    } catch (const std::bad_alloc&) {
        // The next event may succeed.
    }
}

} // namespace kalvrooms::Gui
