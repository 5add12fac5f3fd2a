// The least that a program with a window can be; what starting one costs is measured beside it.

#include <windows.h>

namespace {

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM word, LPARAM data) {
    if (message == WM_DESTROY)
        PostQuitMessage(0);
    return DefWindowProcW(window, message, word, data);
}

} // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int show) {
    WNDCLASSW description{};
    description.lpfnWndProc = procedure;
    description.hInstance = instance;
    description.lpszClassName = L"EmptyWindow";
    description.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_WINDOW + 1));
    RegisterClassW(&description);
    const HWND window =
        CreateWindowExW(0, L"EmptyWindow", L"Empty", WS_OVERLAPPEDWINDOW, CW_USEDEFAULT,
                        CW_USEDEFAULT, 800, 600, nullptr, nullptr, instance, nullptr);
    ShowWindow(window, show);
    UpdateWindow(window);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0)
        DispatchMessageW(&message);
    return 0;
}
