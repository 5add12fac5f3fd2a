#include "ui/frmGeometry.h"

#include <cstdint>
#include <utility>

#include "model/NumberText.h"
#include "model/RuntimeError.h"
#include "model/basValidation.h"
#include "ui/ListFileDialog.h"

namespace kalvrooms {
namespace {

// The help file treats the two dialogs of a room under one number.
constexpr std::uint32_t helpContext = 7;

constexpr std::size_t longestCaption = 55;

// A path is no caption: its "&" is a letter, not the mark of an access key.
std::wstring asCaption(const std::wstring& path) {
    std::wstring caption;
    for (const wchar_t character : path) {
        caption.push_back(character);
        if (character == L'&')
            caption.push_back(character);
    }
    return caption;
}

} // namespace

frmGeometry::frmGeometry(const DialogServices& services, std::shared_ptr<clsGeometry> geometry)
    : Dialog(services, L"frmGeometry", helpContext), geometry_(std::move(geometry)) {
    prepare(txtDx, IsNumberKey, NormalizeThreeDecimals);
    prepare(txtDy, IsNumberKey, NormalizeThreeDecimals);
    prepare(txtRatio, IsNumberKey, NormalizeTwoDecimals);
    for (Gui::OptionButton* option : {&optXDirection, &optYDirection, &optRatio})
        option->Click = [this] { showFilePath(std::wstring()); };
    optExcelFile.Click = [this] { optExcelFile_Click(); };
    cmdExcelFile.Click = [this] { cmdExcelFile_Click(); };
    cancelWith(cmdCancel);
}

void frmGeometry::load() {
    if (!geometry_)
        throw RuntimeError(RuntimeError::ObjectVariableNotSet);
    setCaptions({{*form_, 30},
                 {form_->Named<Gui::Frame>(L"fraGeo"), 30},
                 {optXDirection, 40},
                 {label(L"lblDx"), 43},
                 {optYDirection, 41},
                 {label(L"lblDy"), 44},
                 {optRatio, 42},
                 {label(L"lblRatio"), 45},
                 {optExcelFile, 46},
                 {cmdOk, 2},
                 {cmdCancel, 3}});
    std::wstring type;
    std::wstring value;
    geometry_->GetTypeAndValue(type, value);
    if (type == CalculationByDx) {
        txtDx.Text(value);
        optXDirection.Value(true);
    } else if (type == CalculationByDy) {
        txtDy.Text(value);
        optYDirection.Value(true);
    } else if (type == CalculationByRatio) {
        txtRatio.Text(NormalizeTwoDecimals(value));
        optRatio.Value(true);
    } else if (type == CalculationByFile) {
        showFilePath(value);
        optExcelFile.Value(true);
    } else {
        txtRatio.Text(FormatTwoDecimals(1.0));
        optRatio.Value(true);
    }
}

void frmGeometry::showFilePath(const std::wstring& path) {
    filePath_ = path;
    const std::wstring shown =
        path.size() > longestCaption ? path.substr(path.size() - longestCaption) : path;
    cmdExcelFile.Text(asCaption(shown));
}

void frmGeometry::optExcelFile_Click() {
    txtDx.Text(std::wstring());
    txtDy.Text(std::wstring());
    txtRatio.Text(std::wstring());
}

void frmGeometry::cmdExcelFile_Click() {
    Gui::FileDialog dialog = ListFileDialog(filePath_);
    try {
        desktop_.ShowOpen(dialog);
    } catch (const RuntimeError& error) {
        if (error.number() != RuntimeError::DialogCancelled)
            throw;
        return;
    }
    showFilePath(Trim(dialog.FileName));
}

void frmGeometry::storeNumber(const std::wstring& type, const Gui::TextField& field) {
    const std::wstring text = field.Text();
    // What is no number is refused like a side of 0, without a word.
    if (!IsNumeric(text) || ToDouble(text) <= 0.0)
        return;
    geometry_->SetTypeAndValue(type, text);
    form_->Unload();
}

void frmGeometry::cmdOk_Click() {
    if (optXDirection.Value()) {
        storeNumber(CalculationByDx, txtDx);
    } else if (optYDirection.Value()) {
        storeNumber(CalculationByDy, txtDy);
    } else if (optRatio.Value()) {
        storeNumber(CalculationByRatio, txtRatio);
    } else if (optExcelFile.Value() && !filePath_.empty()) {
        geometry_->SetTypeAndValue(CalculationByFile, filePath_);
        form_->Unload();
    }
}

} // namespace kalvrooms
