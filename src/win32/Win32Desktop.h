#pragma once
// The desktop on Windows.

#include "win32/SystemDialogs.h"

#include <vector>

namespace kalvrooms::Gui {

class Win32Form;

class Win32Desktop : public Desktop {
  public:
    Win32Desktop();
    ~Win32Desktop() override;

    std::unique_ptr<Form> CreateForm(const std::wstring& name) override;
    Answer ShowMessage(const Message& message) override;
    void ShowOpen(FileDialog& dialog) override;
    void ShowSave(FileDialog& dialog) override;
    void ShowColour(Colour& colour) override;
    std::int16_t MousePointer() const override { return pointer_; }
    void MousePointer(std::int16_t shape) override;
    bool EscapePressed() override;
    void EndProcess() override;
    void OpenHelp(Form& owner, const std::wstring& file, std::uint32_t context) override;
    void Run() override;

    // The system's own dialogs, open to be replaced where nobody can answer them.
    SystemDialogs& System() { return system_; }

    // Forms announce themselves.
    void Add(Win32Form& form);
    void Remove(Win32Form& form);
    // The form on top of the others, except one; null without any.
    Win32Form* ActiveForm(const Win32Form* except = nullptr) const;
    // The form that a window belongs to; null for windows of others.
    Win32Form* FormOf(HWND window) const;
    // Waits for the next message and runs it; false when the thread is asked to end.
    bool PumpMessage();
    // Runs the messages of a range that have come, without waiting.
    void ServeMessages(UINT first = 0, UINT last = 0);
    // Shows the pointer that is set; false when every window is to show its own.
    bool ShowPointer() const;

  private:
    HWND activeWindow() const;
    void run(MSG& message);
    static LRESULT CALLBACK seeMessage(int code, WPARAM removed, LPARAM data);

    SystemDialogs system_;
    std::vector<Win32Form*> forms_; // in the order of their making
    std::int16_t pointer_ = DefaultPointer;
    // Messages are also taken from the queue where the program does not look: by calls to other
    // processes, by dialogs of the system.
    HHOOK hook_ = nullptr;
    static inline thread_local bool escapePressed_ = false;
};

} // namespace kalvrooms::Gui
