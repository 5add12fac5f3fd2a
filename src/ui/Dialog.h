#pragma once
// What the dialogs share: controls and captions by name, fields of numbers, the keys that act on
// release wherever the focus is, OK and Cancel.

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app/Texts.h"
#include "platform/Gui.h"

namespace kalvrooms {

// What every dialog works with.
struct DialogServices {
    Gui::Desktop& desktop;
    const Texts& texts;
    // The file that F1 opens; empty until the host named one.
    const std::wstring& helpFile;
};

class Dialog {
  public:
    Dialog(const Dialog&) = delete;
    Dialog& operator=(const Dialog&) = delete;

    // Returns when the dialog is closed.
    void ShowModal();

  protected:
    using KeyFilter = bool (*)(std::int16_t keyCode);
    using Normalizer = std::wstring (*)(const std::wstring& text);
    using Captions = std::initializer_list<std::pair<Gui::Control&, std::int32_t>>;

    // Without a help context F1 does nothing.
    Dialog(const DialogServices& services, const wchar_t* name, std::uint32_t helpContext = 0);
    ~Dialog() = default;

    // Fills the form before it is shown.
    virtual void load() = 0;
    // Also what Enter does, once the numbers are shown in full.
    virtual void cmdOk_Click() = 0;

    // A control of the form, of the kind that it is taken for.
    struct Control {
        Gui::Form& form;
        const wchar_t* name;
        template <typename Kind>
        operator Kind&() const {
            return form.Named<Kind>(name);
        }
    };
    Control named(const wchar_t* name) { return {*form_, name}; }
    Gui::Label& label(const wchar_t* name) { return named(name); }
    std::wstring text(std::int32_t number) const { return services_.texts.GetText(number); }
    void setCaptions(Captions captions);
    // Entering the field selects all of it, so that typing replaces what it holds. Keys that are
    // not accepted are swallowed; leaving the field shows the number in full.
    void prepare(Gui::TextField& field, KeyFilter accepts = nullptr,
                 Normalizer normalize = nullptr);
    // The button and Escape close the dialog.
    void cancelWith(Gui::Button& cmdCancel);
    // Escape does what OK does, where there is nothing to call off.
    void confirmWithEscape();

    const DialogServices services_;
    Gui::Desktop& desktop_;
    std::unique_ptr<Gui::Form> form_;
    Gui::Button& cmdOk;

  private:
    void onKeyUp(int key);

    std::uint32_t helpContext_;
    std::function<void()> onEscape_;
    std::vector<std::pair<Gui::TextField*, Normalizer>> numbers_;
};

} // namespace kalvrooms
