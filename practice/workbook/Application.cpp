#include "practice/workbook/Application.h"

#include "drawing/Text.h"
#include "practice/workbook/SheetError.h"

#include <utility>

namespace kalvrooms::practice::spreadsheet {

namespace {

constexpr int exchangeForm = 56;
constexpr int ownForm = -4143;
constexpr int firstVersionWithForms = 12;

std::wstring lastPart(const std::wstring& path) {
    const std::size_t end = path.find_last_of(L"\\/");
    return end == std::wstring::npos ? path : path.substr(end + 1);
}

} // namespace

WorkbookPointer Application::Open(const std::wstring& name) {
    const std::wstring fullName = files_.FullName(name);
    for (const WorkbookPointer& open : workbooks_) {
        if (EqualsIgnoringCase(open->fullName, fullName))
            return open;
        if (EqualsIgnoringCase(open->name, lastPart(fullName)))
            throw SheetError(L"A workbook of this name is open already: " + open->name);
    }
    auto workbook = std::make_shared<OpenWorkbook>();
    if (automationSecurity != SpreadsheetApplication::MacrosOff)
        ++opensWithMacros;
    workbook->file = files_.Open(fullName);
    workbook->book = workbook->file->Read();
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
    if (!workbook.file || workbook.file->ReadOnly())
        throw SheetError(L"The workbook has no file that it may be written to: " + workbook.name);
    store(workbook);
}

void Application::SaveAs(OpenWorkbook& workbook, const std::wstring& name, int form) {
    if (form != ownForm && (form != exchangeForm || version < firstVersionWithForms))
        throw SheetError(L"There is no such workbook form here.");
    const std::wstring fullName = files_.FullName(name);
    if (displayAlerts && files_.Exists(fullName) &&
        ask(L"Replace the file " + fullName + L"?") != Answer::Yes)
        throw SheetError(L"The file is not to be replaced.");
    workbook.file.reset();
    workbook.file = files_.Create(fullName);
    workbook.fullName = fullName;
    workbook.name = lastPart(fullName);
    store(workbook);
}

void Application::store(OpenWorkbook& workbook) {
    workbook.file->Write(workbook.book);
    workbook.saved = true;
}

bool Application::CloseAll() {
    while (!workbooks_.empty()) {
        OpenWorkbook& last = *workbooks_.back();
        if (displayAlerts && !last.saved) {
            const Answer answer = ask(L"Save the changes in " + last.name + L"?");
            if (answer == Answer::Cancel)
                return false;
            if (answer == Answer::Yes)
                Save(last);
        }
        last.isOpen = false;
        last.file.reset();
        workbooks_.pop_back();
    }
    return true;
}

void Application::OpenDialog(const std::wstring& question) {
    dialog_ = question;
    answered_.reset();
}

void Application::AnswerDialog(Answer answer) {
    if (!dialog_.empty())
        answered_.emplace(std::exchange(dialog_, {}), answer);
}

Answer Application::ask(const std::wstring& question) {
    if (answered_ && answered_->first == question)
        return std::exchange(answered_, std::nullopt)->second;
    OpenDialog(question);
    throw DialogOpen();
}

} // namespace kalvrooms::practice::spreadsheet
