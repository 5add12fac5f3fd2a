#pragma once
// Dialog templates with the font that the user chose: the layout is in units of the font, so that a
// larger font makes a larger dialog.

#include <windows.h>

#include <cstddef>
#include <string>
#include <vector>

namespace kalvrooms::Gui {

// A template with another font. Empty for bytes that are no extended template with a font and
// without menu, window class and title.
std::vector<std::byte> WithFont(const std::byte* data, std::size_t size, const std::wstring& face,
                                WORD points, WORD weight, bool italic);

// A template of the executable with the user's message font.
std::vector<std::byte> LoadDialogTemplate(int id);

} // namespace kalvrooms::Gui
