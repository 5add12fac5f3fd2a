#include "win32/StartUp.h"

#include "model/RuntimeError.h"

#include <new>
#include <string>

namespace kalvrooms::Gui {
namespace {

constexpr int failed = 1;

// The text table may be what failed, so that these words are fixed.
int tell(const SystemDialogs& dialogs, const std::wstring& reason) {
    std::wstring text = L"Quartino muss beendet werden.";
    if (!reason.empty())
        text += L"\r" + reason;
    dialogs.MessageBoxCall(nullptr, text.c_str(), L"Quartino",
                           MB_OK | MB_ICONSTOP | MB_SETFOREGROUND);
    return failed;
}

} // namespace

int RunToItsEnd(const std::function<void()>& program, const SystemDialogs& dialogs) {
    try {
        program();
        return 0;
    } catch (const RuntimeError& error) {
        return tell(dialogs, error.description());
    } catch (const std::bad_alloc&) {
        return tell(dialogs, RuntimeError(RuntimeError::OutOfMemory).description());
    } catch (const std::exception& error) {
        const std::string what = error.what();
        return tell(dialogs, {what.begin(), what.end()});
    } catch (...) {
        return tell(dialogs, L"");
    }
}

} // namespace kalvrooms::Gui
