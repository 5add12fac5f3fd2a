#include "win32/MessageHook.h"

#include <unordered_map>

namespace kalvrooms::Gui {
namespace {

struct Hook {
    WNDPROC own;
    // Null: removed while another handler was still in front of it.
    MessageHandler handler;
    void* reference;
};

std::unordered_map<HWND, Hook>& hooks() {
    static thread_local std::unordered_map<HWND, Hook> all;
    return all;
}

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM word, LPARAM data) {
    const auto found = hooks().find(window);
    if (found == hooks().end())
        return DefWindowProcW(window, message, word, data);
    const Hook hook = found->second;
    if (message == WM_NCDESTROY) {
        const LRESULT result = hook.handler
                                   ? hook.handler(window, message, word, data, hook.reference)
                                   : CallOwnProcedure(window, message, word, data);
        hooks().erase(window);
        return result;
    }
    if (!hook.handler)
        return CallWindowProcW(hook.own, window, message, word, data);
    return hook.handler(window, message, word, data, hook.reference);
}

} // namespace

void HookMessages(HWND window, MessageHandler handler, void* reference) {
    if (const auto found = hooks().find(window); found != hooks().end()) {
        found->second.handler = handler;
        found->second.reference = reference;
        return;
    }
    const auto own = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window, GWLP_WNDPROC));
    hooks()[window] = {own, handler, reference};
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
}

void UnhookMessages(HWND window) {
    const auto found = hooks().find(window);
    if (found == hooks().end())
        return;
    if (GetWindowLongPtrW(window, GWLP_WNDPROC) != reinterpret_cast<LONG_PTR>(procedure)) {
        found->second.handler = nullptr;
        return;
    }
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(found->second.own));
    hooks().erase(found);
}

LRESULT CallOwnProcedure(HWND window, UINT message, WPARAM word, LPARAM data) {
    const auto found = hooks().find(window);
    if (found == hooks().end())
        return DefWindowProcW(window, message, word, data);
    return CallWindowProcW(found->second.own, window, message, word, data);
}

} // namespace kalvrooms::Gui
