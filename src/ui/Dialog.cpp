#include "ui/Dialog.h"

namespace kalvrooms {

Dialog::Dialog(const DialogServices& services, const wchar_t* name, std::uint32_t helpContext)
    : services_(services), desktop_(services.desktop), form_(desktop_.CreateForm(name)),
      cmdOk(named(L"cmdOk")), helpContext_(helpContext) {
    form_->KeyUp = [this](int key) { onKeyUp(key); };
    cmdOk.Click = [this] { cmdOk_Click(); };
}

void Dialog::ShowModal() {
    load();
    form_->ShowModal();
}

void Dialog::setCaptions(Captions captions) {
    for (const auto& [control, number] : captions)
        control.Text(text(number));
}

void Dialog::prepare(Gui::TextField& field, KeyFilter accepts, Normalizer normalize) {
    field.GotFocus = [&field] { field.Select(0, static_cast<int>(field.Text().size())); };
    if (accepts) {
        field.KeyPress = [accepts](std::int16_t& key) {
            if (!accepts(key))
                key = 0;
        };
    }
    if (normalize) {
        field.LostFocus = [&field, normalize] { field.Text(normalize(field.Text())); };
        numbers_.emplace_back(&field, normalize);
    }
}

void Dialog::cancelWith(Gui::Button& cmdCancel) {
    cmdCancel.Click = onEscape_ = [this] { form_->Unload(); };
}

void Dialog::confirmWithEscape() {
    onEscape_ = [this] { cmdOk_Click(); };
}

void Dialog::onKeyUp(int key) {
    if (key == Gui::KeyF1 && helpContext_) {
        desktop_.OpenHelp(*form_, services_.helpFile, helpContext_);
    } else if (key == Gui::KeyEnter) {
        // The field is not left; an error of its number ends the event with the text as it was.
        for (const auto& [field, normalize] : numbers_)
            field->Text(normalize(field->Text()));
        cmdOk_Click();
    } else if (key == Gui::KeyEscape && onEscape_) {
        onEscape_();
    }
}

} // namespace kalvrooms
