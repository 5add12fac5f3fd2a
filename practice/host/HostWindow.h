#pragma once
// The practice host's window: shows the drawing, lets the user place rooms and switch the host's
// states.

#include "practice/host/HostProcess.h"
#include "practice/host/Painter.h"
#include "practice/host/ShownStorey.h"

#include <shellapi.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kalvrooms::practice {

class HostWindow {
  public:
    struct Options {
        bool hidden = false;    // never shown
        bool embedding = false; // clients keep the process, not the window
    };

    HostWindow(HostProcess& process, Options options, std::function<void()> startProgram);
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;
    ~HostWindow();

    HWND handle() const { return window_; }
    void Show();
    // Runs until the process has to end; returns its exit code.
    int Run();

    // A message that ends the run with its first parameter as exit code.
    static constexpr UINT EndMessage = WM_APP + 1;

  private:
    struct PlacingState {
        std::vector<Outline> outlines;
        Point pointer; // pixels
        std::optional<Point> clicked;
        bool cancelled = false;
    };

    static LRESULT CALLBACK Receive(HWND window, UINT message, WPARAM first, LPARAM second);
    LRESULT Handle(UINT message, WPARAM first, LPARAM second);
    // Tells the user what went wrong.
    void Try(const std::function<void()>& action);
    void Command(WORD identifier);
    void Open(const std::wstring& file);
    void ShowOpened();
    void OpenDropped(HDROP files);
    bool HandlePlacing(UINT message, WPARAM first, LPARAM second);
    bool HandleView(UINT message, WPARAM first, LPARAM second);
    void ChangeView(std::optional<View> view);
    void ChooseStorey(const POINT& pixel);
    void StepStorey(bool forward);
    void OnTimer(UINT_PTR timer);
    void Paint();
    void Close();

    Point PlaceByClick(const std::vector<Outline>& outlines);
    const Scene& CurrentScene();
    Point PointAt(const Point& pixel);
    std::wstring Status() const;
    void Refresh();
    void LeaveSoon(UINT_PTR timer);
    void LoadDrawing();
    void SaveDrawing();
    void SaveSvg();
    void ToggleState(const wchar_t* state);
    void UpdateMenu();
    std::wstring AskForFile(bool save, const wchar_t* filter, const wchar_t* extension,
                            const std::wstring& proposed = {});

    HostProcess& process_;
    Options options_;
    std::function<void()> startProgram_;
    HWND window_ = nullptr;
    std::unique_ptr<Painter> painter_;
    std::optional<Scene> scene_;
    std::optional<View> view_;   // the user's own; without it the drawing fits the window
    std::optional<Point> panAt_; // where the hand holds the drawing, pixels
    ShownStorey storey_;
    PlacingState* placing_ = nullptr;
    bool shown_ = false;
    bool refreshPending_ = false;
    bool drawingChanged_ = true;
};

} // namespace kalvrooms::practice
