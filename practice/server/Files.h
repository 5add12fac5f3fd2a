#pragma once
// Paths of this process, and 8-bit texts in the system's code page.

#include <string>

namespace kalvrooms::practice {

std::wstring ExecutablePath();
std::wstring AbsolutePath(const std::wstring& path);
// With the backslash at the end, as far as there is one.
std::wstring FolderOf(const std::wstring& path);
// A character that the code page lacks becomes "?".
std::string AnsiText(const std::wstring& text);

} // namespace kalvrooms::practice
