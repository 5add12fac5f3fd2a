#include "headless/HeadlessDesktop.h"

#include <algorithm>
#include <exception>
#include <stdexcept>
#include <utility>

namespace kalvrooms {
namespace {

template <class Script>
std::optional<Script> takeFirst(std::deque<Script>& scripts) {
    if (scripts.empty())
        return std::nullopt;
    std::optional<Script> first(std::move(scripts.front()));
    scripts.pop_front();
    return first;
}

// Messages for the developer; everything outside ASCII is of no interest there.
std::string plain(const std::wstring& text) {
    std::string result;
    for (const wchar_t character : text)
        result.push_back(character < 128 ? static_cast<char>(character) : '?');
    return result;
}

} // namespace

HeadlessDesktop::~HeadlessDesktop() = default;

void HeadlessDesktop::complain(const std::wstring& text) {
    programmingErrors_.push_back(text);
    throw std::logic_error(plain(text));
}

void HeadlessDesktop::runScript(const std::wstring& what, const std::function<void()>& script) {
    try {
        script();
    } catch (...) {
        programmingErrors_.push_back(L"an error left the script of " + what);
        throw;
    }
}

// ------------------------------------------------------------------------- scripts

void HeadlessDesktop::Design(const std::wstring& formName, FormScript layout) {
    layouts_[formName] = std::move(layout);
}

void HeadlessDesktop::OnModal(const std::wstring& formName, FormScript script) {
    modalScripts_[formName].push_back(std::move(script));
}

void HeadlessDesktop::AnswerNext(Gui::Answer answer) {
    AnswerNext([answer](const Gui::Message&) { return answer; });
}

void HeadlessDesktop::AnswerNext(AnswerScript script) {
    answers_.push_back(std::move(script));
}

void HeadlessDesktop::ChooseFile(const std::wstring& path, int filterIndex) {
    ChooseFile([path, filterIndex](Gui::FileDialog& dialog) {
        dialog.FileName = path;
        dialog.FileTitle = path.substr(path.find_last_of(L"\\/") + 1);
        if (filterIndex != 0)
            dialog.FilterIndex = filterIndex;
    });
}

void HeadlessDesktop::ChooseFile(FileScript script) {
    files_.push_back(std::move(script));
}

void HeadlessDesktop::CancelFileDialog() {
    ChooseFile([](Gui::FileDialog&) { throw RuntimeError(RuntimeError::DialogCancelled); });
}

void HeadlessDesktop::ChooseColour(Gui::Colour colour) {
    colours_.emplace_back(colour);
}

void HeadlessDesktop::CancelColourDialog() {
    colours_.emplace_back(std::nullopt);
}

void HeadlessDesktop::OnRun(std::function<void()> script) {
    runScript_ = std::move(script);
}

std::size_t HeadlessDesktop::UnusedScripts() const {
    std::size_t count = answers_.size() + files_.size() + colours_.size();
    for (const auto& [name, scripts] : modalScripts_)
        count += scripts.size();
    return count;
}

// ------------------------------------------------------------------------- forms

bool HeadlessDesktop::IsLoaded(const std::wstring& formName) const {
    return std::any_of(
        forms_.begin(), forms_.end(),
        [&](const HeadlessForm* form) { return form->Loaded() && form->Name() == formName; });
}

HeadlessForm& HeadlessDesktop::FormNamed(const std::wstring& formName) {
    const auto found = std::find_if(forms_.rbegin(), forms_.rend(), [&](const HeadlessForm* form) {
        return form->Loaded() && form->Name() == formName;
    });
    if (found == forms_.rend())
        complain(formName + L" is not loaded");
    return **found;
}

std::unique_ptr<Gui::Form> HeadlessDesktop::CreateForm(const std::wstring& name) {
    auto form = std::make_unique<HeadlessForm>(*this, name);
    if (const auto layout = layouts_.find(name); layout != layouts_.end())
        layout->second(*form);
    form->journal_.clear();
    return form;
}

bool HeadlessDesktop::isBlocked(const HeadlessForm& form) const {
    return !modalForms_.empty() && modalForms_.back() != &form;
}

void HeadlessDesktop::forgetPressedKeys() {
    for (HeadlessForm* form : forms_)
        form->pressedKeys_.clear();
}

void HeadlessDesktop::unloadByForce(HeadlessForm& form) {
    forcedUnloads_.push_back(form.Name());
    form.unload(true);
}

void HeadlessDesktop::runModal(HeadlessForm& form) {
    modalNames_.push_back(form.Name());
    forgetPressedKeys();
    if (!modalForms_.empty()) {
        form.ownerName_ = modalForms_.back()->Name();
    } else {
        for (const HeadlessForm* other : forms_)
            if (other != &form && other->Loaded() && other->Visible())
                form.ownerName_ = other->Name();
    }

    struct Showing {
        HeadlessDesktop& desktop;
        HeadlessForm& form;
        Showing(HeadlessDesktop& showingDesktop, HeadlessForm& shownForm)
            : desktop(showingDesktop), form(shownForm) {
            desktop.modalForms_.push_back(&form);
            form.Visible(true);
        }
        ~Showing() {
            if (form.Loaded())
                desktop.unloadByForce(form);
            std::erase(desktop.modalForms_, &form);
        }
    };
    const Showing showing(*this, form);
    if (const auto script = takeFirst(modalScripts_[form.Name()]))
        runScript(form.Name(), [&] { (*script)(form); });
}

void HeadlessDesktop::popup(const HeadlessMenuItem& menu) {
    popups_.push_back(menu.Name());
    forgetPressedKeys();
}

// ------------------------------------------------------------------------- dialogs

Gui::Answer HeadlessDesktop::ShowMessage(const Gui::Message& message) {
    messages_.push_back(message);
    forgetPressedKeys();
    const bool yesNo = message.ButtonSet == Gui::Message::Buttons::YesNo;
    const auto script = takeFirst(answers_);
    if (!script)
        return yesNo ? Gui::Answer::No : Gui::Answer::Ok;
    Gui::Answer answer = Gui::Answer::Ok;
    runScript(L"a message box", [&] { answer = (*script)(message); });
    if ((answer == Gui::Answer::Ok) == yesNo)
        complain(L"the message box has no such button: " + message.Prompt);
    return answer;
}

void HeadlessDesktop::askForFile(Gui::FileDialog& dialog, bool save) {
    fileDialogs_.push_back({save, dialog});
    forgetPressedKeys();
    const auto script = takeFirst(files_);
    if (!script)
        throw RuntimeError(RuntimeError::DialogCancelled);
    if (dialog.FilterIndex == 0)
        dialog.FilterIndex = 1;
    (*script)(dialog);
}

void HeadlessDesktop::ShowOpen(Gui::FileDialog& dialog) {
    askForFile(dialog, false);
}

void HeadlessDesktop::ShowSave(Gui::FileDialog& dialog) {
    askForFile(dialog, true);
}

void HeadlessDesktop::ShowColour(Gui::Colour& colour) {
    forgetPressedKeys();
    if (const auto chosen = takeFirst(colours_); chosen && *chosen)
        colour = **chosen;
}

void HeadlessDesktop::MousePointer(std::int16_t shape) {
    pointer_ = shape;
    pointerHistory_.push_back(shape);
}

void HeadlessDesktop::OpenHelp(Gui::Form& owner, const std::wstring& file, std::uint32_t context) {
    helpCalls_.push_back({dynamic_cast<HeadlessForm&>(owner).Name(), file, context});
}

void HeadlessDesktop::Run() {
    const auto anyLoaded = [this]() -> HeadlessForm* {
        const auto found = std::find_if(forms_.rbegin(), forms_.rend(),
                                        [](const HeadlessForm* form) { return form->Loaded(); });
        return found == forms_.rend() ? nullptr : *found;
    };
    if (!anyLoaded())
        return;
    if (runScript_)
        runScript(L"the run", std::exchange(runScript_, nullptr));
    while (HeadlessForm* form = anyLoaded()) {
        form->Unload();
        if (form->Loaded())
            unloadByForce(*form);
    }
}

} // namespace kalvrooms
