#pragma once
// How clients and tests find the practice spreadsheet application.

#include <windows.h>

namespace kalvrooms::practice::spreadsheet {

inline constexpr const wchar_t* ProgramId = L"Excel.Application";
// {4F1C6E0B-93A7-4A58-8E42-6C0D5B7A21F4}
inline constexpr CLSID ApplicationClassId = {
    0x4f1c6e0b, 0x93a7, 0x4a58, {0x8e, 0x42, 0x6c, 0x0d, 0x5b, 0x7a, 0x21, 0xf4}};

// Below the current user's hive, all of them texts; see Settings.
inline constexpr const wchar_t* SettingsKey = L"Software\\PracticeSpreadsheet";

// Each instance has a hidden window of this class, which takes messages from its user.
inline constexpr const wchar_t* ControlWindowClass = L"PracticeSpreadsheetControl";
// Answers the dialog that is open: 0 yes, 1 no, 2 cancel.
inline constexpr UINT AnswerMessage = WM_APP + 1;
// Opens a dialog.
inline constexpr UINT DialogMessage = WM_APP + 2;
// The user closes the application and keeps no changes. WM_CLOSE does the same.
inline constexpr UINT LeaveMessage = WM_APP + 3;
// Gives 1 while a dialog is open and 0 otherwise.
inline constexpr UINT AskDialogMessage = WM_APP + 4;
// Gives the number of calls that have come in, those that were put off included.
inline constexpr UINT AskCallsMessage = WM_APP + 5;
// Give what the application is set to.
inline constexpr UINT AskAlertsMessage = WM_APP + 6;
inline constexpr UINT AskSecurityMessage = WM_APP + 7;

} // namespace kalvrooms::practice::spreadsheet
