#pragma once
// A desktop without a screen. A test scripts what the user would answer and reads afterwards what
// the program showed. Scripts are used up in the order in which they were given.

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "headless/HeadlessForm.h"
#include "platform/Gui.h"

namespace kalvrooms {

class HeadlessDesktop final : public Gui::Desktop {
  public:
    using FormScript = std::function<void(HeadlessForm&)>;
    using AnswerScript = std::function<Gui::Answer(const Gui::Message&)>;
    using FileScript = std::function<void(Gui::FileDialog&)>;

    struct FileDialogCall {
        bool Save = false;
        Gui::FileDialog Asked; // as the program handed it in
    };
    struct HelpCall {
        std::wstring Owner;
        std::wstring File;
        std::uint32_t Context = 0;
    };

    ~HeadlessDesktop() override;

    // ---- Scripts.

    // Stands for the layout: runs on every new form of that name before the program gets it.
    void Design(const std::wstring& formName, FormScript layout);
    // Stands for the user while a form of that name is shown modally; one script for each showing.
    // A form that its script leaves open, or that has no script, is unloaded by force.
    void OnModal(const std::wstring& formName, FormScript script);
    // The next message box. Without a script "Ok" and "No" are answered.
    void AnswerNext(Gui::Answer answer);
    void AnswerNext(AnswerScript script);
    // The next file dialog, open or save. Without a script it is cancelled.
    void ChooseFile(const std::wstring& path, int filterIndex = 0);
    void ChooseFile(FileScript script);
    void CancelFileDialog();
    // The next colour dialog. Without a script it is cancelled.
    void ChooseColour(Gui::Colour colour);
    void CancelColourDialog();
    // Stands for Escape pressed while an operation runs.
    void PressEscape() { escapePressed_ = true; }
    // Stands for the user while the program runs. Forms that it leaves open are closed, in the end
    // by force.
    void OnRun(std::function<void()> script);

    // ---- What was shown.

    const std::vector<Gui::Message>& Messages() const { return messages_; }
    const std::vector<FileDialogCall>& FileDialogs() const { return fileDialogs_; }
    const std::vector<HelpCall>& HelpCalls() const { return helpCalls_; }
    // Every pointer shape that was set, in order.
    const std::vector<std::int16_t>& PointerHistory() const { return pointerHistory_; }
    // The names of the forms that were shown modally and of the menus that were popped up.
    const std::vector<std::wstring>& ModalForms() const { return modalNames_; }
    const std::vector<std::wstring>& Popups() const { return popups_; }
    bool ProcessEnded() const { return processEnded_; }
    // The names of the forms that had to be unloaded by force.
    const std::vector<std::wstring>& ForcedUnloads() const { return forcedUnloads_; }
    // Errors of program or test that ended up in an event, where they cannot reach the test.
    const std::vector<std::wstring>& ProgrammingErrors() const { return programmingErrors_; }
    // Answers, files, colours and modal scripts that nobody asked for so far.
    std::size_t UnusedScripts() const;

    bool IsLoaded(const std::wstring& formName) const;
    // The loaded form of that name, the youngest of several; std::logic_error when there is none.
    HeadlessForm& FormNamed(const std::wstring& formName);

    // ---- The desktop as the program sees it.

    std::unique_ptr<Gui::Form> CreateForm(const std::wstring& name) override;
    Gui::Answer ShowMessage(const Gui::Message& message) override;
    void ShowOpen(Gui::FileDialog& dialog) override;
    void ShowSave(Gui::FileDialog& dialog) override;
    void ShowColour(Gui::Colour& colour) override;
    std::int16_t MousePointer() const override { return pointer_; }
    void MousePointer(std::int16_t shape) override;
    bool EscapePressed() override { return std::exchange(escapePressed_, false); }
    // Remembered only.
    void EndProcess() override { processEnded_ = true; }
    void OpenHelp(Gui::Form& owner, const std::wstring& file, std::uint32_t context) override;
    void Run() override;

  private:
    friend class HeadlessForm;

    [[noreturn]] void complain(const std::wstring& text);
    // A script of the test; what it throws would be lost in the event that it runs in.
    void runScript(const std::wstring& what, const std::function<void()>& script);
    void runModal(HeadlessForm& form);
    void popup(const HeadlessMenuItem& menu);
    void unloadByForce(HeadlessForm& form);
    bool isBlocked(const HeadlessForm& form) const;
    // Another window comes to the front: releases of keys pressed before go astray.
    void forgetPressedKeys();
    void askForFile(Gui::FileDialog& dialog, bool save);

    std::vector<HeadlessForm*> forms_;
    std::vector<HeadlessForm*> modalForms_;
    std::map<std::wstring, FormScript> layouts_;
    std::map<std::wstring, std::deque<FormScript>> modalScripts_;
    std::deque<AnswerScript> answers_;
    std::deque<FileScript> files_;
    std::deque<std::optional<Gui::Colour>> colours_;
    std::function<void()> runScript_;

    std::vector<Gui::Message> messages_;
    std::vector<FileDialogCall> fileDialogs_;
    std::vector<HelpCall> helpCalls_;
    std::vector<std::int16_t> pointerHistory_;
    std::vector<std::wstring> modalNames_;
    std::vector<std::wstring> popups_;
    std::vector<std::wstring> forcedUnloads_;
    std::vector<std::wstring> programmingErrors_;
    std::int16_t pointer_ = Gui::DefaultPointer;
    bool escapePressed_ = false;
    bool processEnded_ = false;
};

} // namespace kalvrooms
