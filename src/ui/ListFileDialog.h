#pragma once
// The file dialog for room lists and point files, which come as text or as workbook.

#include <string>

#include "platform/Gui.h"

namespace kalvrooms {

inline Gui::FileDialog ListFileDialog(const std::wstring& fileName) {
    Gui::FileDialog dialog;
    dialog.FileName = fileName;
    dialog.Filter = L"Text Files(*.txt)|*.txt|Microsoft Excel-Dateien (*.xls)|*.xls";
    dialog.DefaultExtension = L"xls";
    dialog.Flags = Gui::CreatePrompt | Gui::FileMustExist | Gui::HideReadOnly;
    return dialog;
}

} // namespace kalvrooms
