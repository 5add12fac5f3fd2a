#include "ui/frmGeometry.h"

#include <cstdint>
#include <utility>

#include "model/NumberText.h"
#include "model/RuntimeError.h"
#include "model/basValidation.h"
#include "ui/FieldHandlers.h"

namespace kalvrooms {
namespace {

// The help file treats both editing dialogs under one number.
constexpr std::uint32_t helpContext = 7;

constexpr std::size_t longestCaption = 55;

constexpr const wchar_t* fileFilter =
    L"Text Files(*.txt)|*.txt|Microsoft Excel-Dateien (*.xls)|*.xls";
constexpr std::uint32_t openFlags = 0x3004; // create prompt, file must exist, hide read-only box

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
    : services_(services), desktop_(services.desktop), geometry_(std::move(geometry)),
      form_(desktop_.CreateForm(L"frmGeometry")), fraGeo(form_->FrameNamed(L"fraGeo")),
      optXDirection(form_->OptionNamed(L"optXDirection")), lblDx(form_->LabelNamed(L"lblDx")),
      txtDx(form_->FieldNamed(L"txtDx")), optYDirection(form_->OptionNamed(L"optYDirection")),
      lblDy(form_->LabelNamed(L"lblDy")), txtDy(form_->FieldNamed(L"txtDy")),
      optRatio(form_->OptionNamed(L"optRatio")), lblRatio(form_->LabelNamed(L"lblRatio")),
      txtRatio(form_->FieldNamed(L"txtRatio")), optExcelFile(form_->OptionNamed(L"optExcelFile")),
      cmdExcelFile(form_->ButtonNamed(L"cmdExcelFile")), cmdOk(form_->ButtonNamed(L"cmdOk")),
      cmdCancel(form_->ButtonNamed(L"cmdCancel")) {
    for (Gui::TextField* field : {&txtDx, &txtDy, &txtRatio}) {
        SelectAllOnEntry(*field);
        FilterKeys(*field, IsNumberKey);
    }
    NormalizeOnLeaving(txtDx, NormalizeThreeDecimals);
    NormalizeOnLeaving(txtDy, NormalizeThreeDecimals);
    NormalizeOnLeaving(txtRatio, NormalizeTwoDecimals);
    for (Gui::OptionButton* option : {&optXDirection, &optYDirection, &optRatio})
        option->Click = [this] { showFilePath(std::wstring()); };
    optExcelFile.Click = [this] { optExcelFile_Click(); };
    form_->KeyUp = [this](int key) { onKeyUp(key); };
    cmdExcelFile.Click = [this] { cmdExcelFile_Click(); };
    cmdOk.Click = [this] { cmdOk_Click(); };
    cmdCancel.Click = [this] { cmdCancel_Click(); };
}

void frmGeometry::ShowModal() {
    if (!geometry_)
        throw RuntimeError(RuntimeError::ObjectVariableNotSet);
    setCaptions();
    fillFields();
    form_->ShowModal();
}

void frmGeometry::setCaptions() {
    const std::pair<Gui::Control&, std::int32_t> captions[] = {
        {*form_, 30},        {fraGeo, 30}, {optXDirection, 40}, {lblDx, 43},
        {optYDirection, 41}, {lblDy, 44},  {optRatio, 42},      {lblRatio, 45},
        {optExcelFile, 46},  {cmdOk, 2},   {cmdCancel, 3}};
    for (const auto& [control, number] : captions)
        control.Text(services_.texts.GetText(number));
}

void frmGeometry::fillFields() {
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

void frmGeometry::onKeyUp(int key) {
    switch (key) {
    case Gui::KeyF1:
        desktop_.OpenHelp(*form_, services_.helpFile, helpContext);
        break;
    case Gui::KeyEnter:
        NormalizeField(txtDx, NormalizeThreeDecimals);
        NormalizeField(txtDy, NormalizeThreeDecimals);
        NormalizeField(txtRatio, NormalizeTwoDecimals);
        cmdOk_Click();
        break;
    case Gui::KeyEscape:
        cmdCancel_Click();
        break;
    default:
        break;
    }
}

void frmGeometry::optExcelFile_Click() {
    txtDx.Text(std::wstring());
    txtDy.Text(std::wstring());
    txtRatio.Text(std::wstring());
}

void frmGeometry::cmdExcelFile_Click() {
    Gui::FileDialog dialog;
    dialog.FileName = filePath_;
    dialog.Filter = fileFilter;
    dialog.DefaultExtension = L"xls";
    dialog.Flags = openFlags;
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

void frmGeometry::cmdCancel_Click() {
    form_->Unload();
}

} // namespace kalvrooms
