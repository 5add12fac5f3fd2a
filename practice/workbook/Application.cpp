#include "practice/workbook/Application.h"

#include "drawing/Text.h"
#include "practice/workbook/SheetError.h"
#include "practice/workbook/WorkbookFile.h"

#include <algorithm>
#include <utility>

namespace kalvrooms::practice::spreadsheet {

namespace {

constexpr int exchangeForm = 56;
constexpr int ownForm = -4143;

std::wstring lastPart(const std::wstring& path) {
    const std::size_t end = path.find_last_of(L"\\/");
    return end == std::wstring::npos ? path : path.substr(end + 1);
}

} // namespace

WorkbookPointer Application::ActiveWorkbook() const {
    return workbooks_.empty() ? nullptr : workbooks_.back();
}

WorkbookPointer Application::Open(const std::wstring& name) {
    const std::wstring fullName = files_.FullName(name);
    for (const WorkbookPointer& open : workbooks_) {
        if (EqualsIgnoringCase(open->fullName, fullName))
            return open;
        if (EqualsIgnoringCase(open->name, lastPart(fullName)))
            throw SheetError(L"A workbook of this name is open already: " + open->name);
    }
    auto file = files_.Open(fullName);
    auto workbook = std::make_shared<OpenWorkbook>();
    workbook->book = ReadWorkbook(file->Read());
    workbook->file = std::move(file);
    workbook->fullName = fullName;
    workbook->name = lastPart(fullName);
    workbooks_.push_back(workbook);
    return workbook;
}

WorkbookPointer Application::Add() {
    auto workbook = std::make_shared<OpenWorkbook>();
    workbook->book = Workbook::New();
    workbook->name = workbook->fullName = L"Book" + std::to_wstring(++added_);
    workbooks_.push_back(workbook);
    return workbook;
}

void Application::Save(OpenWorkbook& workbook) {
    if (!workbook.file) {
        SaveAs(workbook, workbook.name + L".xls", std::nullopt);
        return;
    }
    if (workbook.ReadOnly())
        throw SheetError(L"The workbook is open for reading only: " + workbook.name);
    Store(workbook);
}

void Application::SaveAs(OpenWorkbook& workbook, const std::wstring& name,
                         std::optional<int> form) {
    if (form && *form != exchangeForm && *form != ownForm)
        throw SheetError(L"There is no such workbook form here.");
    const std::wstring fullName = files_.FullName(name);
    if (workbook.file && !workbook.ReadOnly() && EqualsIgnoringCase(fullName, workbook.fullName)) {
        Store(workbook);
        return;
    }
    for (const WorkbookPointer& open : workbooks_) {
        if (open.get() != &workbook && EqualsIgnoringCase(open->name, lastPart(fullName)))
            throw SheetError(L"A workbook of this name is open already: " + open->name);
    }
    if (displayAlerts && files_.Exists(fullName) &&
        Ask(L"Replace the file " + fullName + L"?") != Answer::Yes)
        throw SheetError(L"The file is not to be replaced.");
    workbook.file = files_.Create(fullName);
    workbook.fullName = fullName;
    workbook.name = lastPart(fullName);
    Store(workbook);
}

void Application::Store(OpenWorkbook& workbook) {
    workbook.file->Write(WriteWorkbook(workbook.book));
    workbook.saved = true;
}

bool Application::Close(OpenWorkbook& workbook, std::optional<bool> saveChanges) {
    if (!saveChanges && displayAlerts && !workbook.saved) {
        const Answer answer = Ask(L"Save the changes in " + workbook.name + L"?");
        if (answer == Answer::Cancel)
            return false;
        saveChanges = answer == Answer::Yes;
    }
    if (saveChanges.value_or(false) && !workbook.saved)
        Save(workbook);
    Forget(workbook);
    return true;
}

bool Application::CloseAll() {
    while (!workbooks_.empty()) {
        const WorkbookPointer last = workbooks_.back();
        if (!Close(*last))
            return false;
    }
    return true;
}

void Application::Forget(OpenWorkbook& workbook) {
    workbook.isOpen = false;
    workbook.file.reset();
    std::erase_if(workbooks_, [&](const WorkbookPointer& open) { return open.get() == &workbook; });
}

void Application::OpenDialog(const std::wstring& question) {
    dialog_ = question;
    answered_.reset();
    if (dialogChanged)
        dialogChanged();
}

void Application::AnswerDialog(Answer answer) {
    if (dialog_.empty())
        return;
    answered_.emplace(std::exchange(dialog_, {}), answer);
    if (dialogChanged)
        dialogChanged();
}

Answer Application::Ask(const std::wstring& question) {
    if (answered_ && answered_->first == question) {
        const Answer answer = answered_->second;
        answered_.reset();
        return answer;
    }
    OpenDialog(question);
    throw DialogOpen();
}

} // namespace kalvrooms::practice::spreadsheet
