#include "ui/FieldHandlers.h"

namespace kalvrooms {

void SelectAllOnEntry(Gui::TextField& field) {
    field.GotFocus = [&field] { field.Select(0, static_cast<int>(field.Text().size())); };
}

void FilterKeys(Gui::TextField& field, KeyFilter accepts) {
    field.KeyPress = [accepts](std::int16_t& key) {
        if (!accepts(key))
            key = 0;
    };
}

void NormalizeOnLeaving(Gui::TextField& field, Normalizer normalize) {
    field.LostFocus = [&field, normalize] { NormalizeField(field, normalize); };
}

void NormalizeField(Gui::TextField& field, Normalizer normalize) {
    field.Text(normalize(field.Text()));
}

} // namespace kalvrooms
