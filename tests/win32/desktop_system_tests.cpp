// The system's services and its own dialogs.

#include "desktop_support.h"

#include "win32/Com.h"
#include "win32/ControlIds.h"
#include "win32/DialogTemplate.h"
#include "win32/Win32AnsiCodec.h"
#include "win32/Win32Environment.h"
#include "win32/Win32LetterRules.h"
#include "win32/Win32Locale.h"
#include "win32/Win32Registry.h"

#include <gmock/gmock.h>

#include <cderr.h>

#include <algorithm>
#include <cstdio>
#include <type_traits>
#include <utility>

namespace kalvrooms {
namespace {

constexpr std::uint32_t readAccess = 0x20019;
constexpr wchar_t testKey[] = L"Software\\QuartinoTests";

class RegistryOfTheUser : public testing::Test {
  protected:
    void TearDown() override { RegDeleteTreeW(HKEY_CURRENT_USER, testKey); }

    Win32Registry registry_;
};

TEST_F(RegistryOfTheUser, OnlyFourByteNumbersAreNumbers) {
    HKEY raw = nullptr;
    ASSERT_EQ(RegCreateKeyW(HKEY_CURRENT_USER, testKey, &raw), ERROR_SUCCESS);
    const std::uint64_t eight = 5;
    const std::uint16_t two = 5;
    RegSetValueExW(raw, L"Text", 0, REG_SZ, reinterpret_cast<const BYTE*>(L"1"), 4);
    RegSetValueExW(raw, L"Eight", 0, REG_QWORD, reinterpret_cast<const BYTE*>(&eight), 8);
    RegSetValueExW(raw, L"Two", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&two), 2);
    RegSetValueExW(raw, L"Bytes", 0, REG_BINARY, reinterpret_cast<const BYTE*>(&eight), 4);
    RegCloseKey(raw);
    const auto key = registry_.OpenKey(testKey, readAccess);
    ASSERT_NE(key, nullptr);
    for (const wchar_t* name : {L"Text", L"Eight", L"Two", L"Bytes", L"Missing"}) {
        std::int32_t value = 42;
        EXPECT_FALSE(key->QueryDword(name, value)) << name;
        EXPECT_EQ(value, 42);
    }
}

TEST(Variants, AreMovedAndNeverCopied) {
    static_assert(!std::is_copy_constructible_v<Variant> && !std::is_copy_assignable_v<Variant>);
    static_assert(std::is_nothrow_move_constructible_v<Variant> &&
                  std::is_nothrow_move_assignable_v<Variant>);
    Variant first(std::wstring(L"Aula"));
    const wchar_t* const text = first.raw().bstrVal;
    Variant second(std::move(first));
    EXPECT_EQ(second.raw().bstrVal, text);
    EXPECT_TRUE(first.empty());
    Variant third(1.5);
    third = std::move(second);
    EXPECT_EQ(third.raw().bstrVal, text);
    EXPECT_EQ(third.ToText(), L"Aula");
}

TEST(Ansi, WhatTheCodePageLacksBecomesAQuestionMark) {
    const Win32AnsiCodec codec;
    const UINT page = GetACP();
    std::printf("code page %u\n", page);
    EXPECT_EQ(codec.Encode(L""), "");
    EXPECT_EQ(codec.Decode(""), L"");
    EXPECT_EQ(codec.Decode(codec.Encode(L"Räume größer als Null")), L"Räume größer als Null");
    const std::wstring embedded(L"a\0b", 3);
    EXPECT_EQ(codec.Decode(codec.Encode(embedded)), embedded);
    if (page == 1252) {
        EXPECT_EQ(codec.Encode(L"ä€"), "\xE4\x80");
        EXPECT_EQ(codec.Encode(L"a\u0416b\u4E2D"), "a?b?");
        // No look-alikes: they would come back as another text.
        EXPECT_EQ(codec.Encode(L"\u2211\u0391"), "??");
        EXPECT_EQ(codec.Decode("\xFC\x80"), L"ü€");
    }
}

TEST(ProgramFolder, HasASeparatorAtTheEndOnlyForADriveRoot) {
    EXPECT_EQ(FolderOfFile(L"C:\\Programme\\Quartino\\Quartino.exe"), L"C:\\Programme\\Quartino");
    EXPECT_EQ(FolderOfFile(L"D:\\Quartino.exe"), L"D:\\");
    EXPECT_EQ(FolderOfFile(L"\\\\server\\share\\Quartino.exe"), L"\\\\server\\share");
    const std::wstring folder = Win32Environment().ExecutableFolder();
    EXPECT_NE(GetFileAttributesW((folder + L"\\desktop_tests.exe").c_str()),
              INVALID_FILE_ATTRIBUTES);
}

TEST(UserLocaleOfWindows, MarksAreThoseOfTheSystem) {
    const NumberLocale locale = Win32UserLocale();
    wchar_t mark[8] = L"";
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, mark, 8);
    EXPECT_EQ(locale.DecimalMark, std::wstring(mark).substr(0, 1));
    wchar_t name[LOCALE_NAME_MAX_LENGTH] = L"";
    GetUserDefaultLocaleName(name, LOCALE_NAME_MAX_LENGTH);
    std::printf("locale %ls\n", name);
    const bool german = std::wstring(name) == L"de-DE";
    EXPECT_EQ(locale.DecimalMark, german ? L"," : L".");
    EXPECT_EQ(locale.GroupingMark, german ? L"." : L",");
    EXPECT_EQ(locale.CurrencySymbol, german ? L"€" : L"$");
}

TEST(UserLocaleOfWindows, AChangeCountsAtOnce) {
    wchar_t before[8] = L"";
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, before, 8);
    ASSERT_TRUE(SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, L";"));
    EXPECT_EQ(Win32UserLocale().DecimalMark, L";");
    SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, before);
    EXPECT_EQ(Win32UserLocale().DecimalMark, std::wstring(before).substr(0, 1));
}

TEST(LettersOfWindows, LetterCaseIsIgnoredInAllScripts) {
    const LetterRules rules = Win32LetterRules();
    for (const auto& [one, other] : {std::pair{L"Geschoß", L"GESCHOß"},
                                     {L"ÄÖÜ", L"äöü"},
                                     {L"ŸĀĶ", L"ÿāķ"},
                                     {L"ΑΩΪΫ", L"αωϊϋ"},
                                     {L"АЯЁЏ", L"аяёџ"},
                                     {L"ԱՖ", L"աֆ"}})
        EXPECT_EQ(rules.Fold(one), rules.Fold(other)) << std::wstring(one).size();
    for (const auto& [one, other] :
         {std::pair{L"ß", L"SS"}, {L"A", L"Ä"}, {L"×", L"÷"}, {L"EG", L"E G"}})
        EXPECT_NE(rules.Fold(one), rules.Fold(other)) << std::wstring(one).size();
    EXPECT_EQ(rules.Fold(L""), L"");
    EXPECT_EQ(rules.Fold(std::wstring(L"a\0b", 3)), std::wstring(L"A\0B", 3));
}

TEST(LettersOfWindows, TextsStandInTheUsersAlphabeticalOrder) {
    const LetterRules rules = Win32LetterRules();
    std::vector<std::wstring> texts{L"Zimmer", L"Übung", L"Uhr",   L"",      L"Äste",
                                    L"Atrium", L"über",  L"Ubahn", L"Küche", L"Kubus"};
    std::sort(texts.begin(), texts.end(), [&](const std::wstring& a, const std::wstring& b) {
        return rules.SortKey(a) < rules.SortKey(b);
    });
    EXPECT_EQ(texts, (std::vector<std::wstring>{L"", L"Äste", L"Atrium", L"Kubus", L"Küche",
                                                L"Ubahn", L"über", L"Übung", L"Uhr", L"Zimmer"}));
    for (const std::wstring& one : texts)
        for (const std::wstring& other : texts)
            EXPECT_EQ(rules.SortKey(one) < rules.SortKey(other),
                      CompareStringEx(LOCALE_NAME_USER_DEFAULT, 0, one.c_str(), -1, other.c_str(),
                                      -1, nullptr, nullptr, 0) == CSTR_LESS_THAN);
}

} // namespace

namespace Gui {
namespace {

constexpr DWORD listFlags = CreatePrompt | FileMustExist | HideReadOnly;

TEST(Templates, AnotherFontLeavesTheControlsAlone) {
    const HRSRC found = FindResourceW(nullptr, MAKEINTRESOURCEW(IDD_REPORT), RT_DIALOG);
    ASSERT_NE(found, nullptr);
    const auto* data = static_cast<const std::byte*>(LockResource(LoadResource(nullptr, found)));
    const std::size_t size = SizeofResource(nullptr, found);
    for (const wchar_t* face : {L"A", L"Segoe UI", L"A much longer name"}) {
        const auto changed = WithFont(data, size, face, 20, 700, true);
        ASSERT_FALSE(changed.empty());
        EXPECT_EQ(changed.size() % 4, size % 4);
        const HWND dialog = CreateDialogIndirectParamW(
            nullptr, reinterpret_cast<const DLGTEMPLATE*>(changed.data()), nullptr,
            [](HWND, UINT, WPARAM, LPARAM) -> INT_PTR { return FALSE; }, 0);
        ASSERT_NE(dialog, nullptr);
        EXPECT_NE(GetDlgItem(dialog, ID_REPORT_LBLOPTION), nullptr);
        EXPECT_NE(GetDlgItem(dialog, ID_REPORT_CMDOK), nullptr);
        LOGFONTW font{};
        GetObjectW(reinterpret_cast<HGDIOBJ>(SendMessageW(dialog, WM_GETFONT, 0, 0)), sizeof font,
                   &font);
        EXPECT_EQ(font.lfWeight, 700);
        DestroyWindow(dialog);
    }
    EXPECT_TRUE(WithFont(data, 10, L"A", 9, 400, false).empty());
    const std::byte nothing[64]{};
    EXPECT_TRUE(WithFont(nothing, sizeof nothing, L"A", 9, 400, false).empty());
}

// The dialogs of the system, with somebody in between who notes what they are asked for.
class SystemDialogsAsked : public testing::Test {
  protected:
    void SetUp() override {
        desktop_.System().OpenFileCall = [this](OPENFILENAMEW& data) { return Answer(data); };
        desktop_.System().SaveFileCall = desktop_.System().OpenFileCall;
        desktop_.System().ErrorCall = [this] { return error_; };
    }

    struct Asked {
        std::wstring file, folder, filter, extension;
        DWORD filterIndex, flags, room;
    };

    bool Answer(OPENFILENAMEW& data) {
        // The filter ends with two NULs.
        const wchar_t* end = data.lpstrFilter;
        while (end && (end[0] || end[1]))
            ++end;
        asked_.push_back({data.lpstrFile, data.lpstrInitialDir ? data.lpstrInitialDir : L"",
                          std::wstring(data.lpstrFilter, end ? end - data.lpstrFilter : 0),
                          data.lpstrDefExt ? data.lpstrDefExt : L"", data.nFilterIndex, data.Flags,
                          data.nMaxFile});
        if (refusals_ > 0) {
            --refusals_;
            return false;
        }
        if (chosen_.empty())
            return false;
        chosen_.copy(data.lpstrFile, chosen_.size());
        data.lpstrFile[chosen_.size()] = L'\0';
        data.nFileOffset = static_cast<WORD>(chosen_.find_last_of(L'\\') + 1);
        data.nFilterIndex = 2;
        return true;
    }

    FileDialog Proposed(const std::wstring& name) {
        FileDialog dialog;
        dialog.FileName = name;
        dialog.Filter = L"Text Files(*.txt)|*.txt|Microsoft Excel-Dateien (*.xls)|*.xls";
        dialog.FilterIndex = 1;
        dialog.DefaultExtension = L"xls";
        dialog.Flags = listFlags;
        return dialog;
    }

    Win32Desktop desktop_;
    std::vector<Asked> asked_;
    std::wstring chosen_;
    int refusals_ = 0;
    DWORD error_ = 0;
};

TEST_F(SystemDialogsAsked, AFileDialogGetsWhatItIsAskedWith) {
    chosen_ = L"C:\\Projekte\\Raumliste.xls";
    FileDialog dialog = Proposed(L"C:\\Projekte\\alt.txt");
    desktop_.ShowOpen(dialog);
    ASSERT_EQ(asked_.size(), 1U);
    EXPECT_EQ(asked_[0].file, L"C:\\Projekte\\alt.txt");
    static constexpr wchar_t filter[] =
        L"Text Files(*.txt)\0*.txt\0Microsoft Excel-Dateien (*.xls)\0*.xls";
    EXPECT_EQ(asked_[0].filter, std::wstring(filter, std::size(filter) - 1));
    EXPECT_EQ(asked_[0].filterIndex, 1U);
    EXPECT_EQ(asked_[0].extension, L"xls");
    EXPECT_EQ(asked_[0].flags, listFlags | OFN_EXPLORER | OFN_NOCHANGEDIR);
    EXPECT_EQ(asked_[0].room, 32768U);
    EXPECT_EQ(dialog.FileName, chosen_);
    EXPECT_EQ(dialog.FileTitle, L"Raumliste.xls");
    EXPECT_EQ(dialog.FilterIndex, 2);
}

TEST_F(SystemDialogsAsked, APatternOpensItsFolder) {
    chosen_ = L"C:\\proj\\a.xls";
    const std::pair<const wchar_t*, std::pair<const wchar_t*, const wchar_t*>> cases[] = {
        {L"C:\\proj\\*.xls", {L"C:\\proj", L"*.xls"}},
        {L"C:\\*.txt", {L"C:\\", L"*.txt"}},
        {L"*.xls", {L"", L"*.xls"}},
        {L"\\*.xls", {L"", L"*.xls"}},
        {L"", {L"", L""}}};
    for (const auto& [name, expected] : cases) {
        FileDialog dialog = Proposed(name);
        desktop_.ShowSave(dialog);
        EXPECT_EQ(asked_.back().folder, expected.first);
        EXPECT_EQ(asked_.back().file, expected.second);
    }
}

TEST_F(SystemDialogsAsked, AProposalThatCannotBeShownOpensItsFolder) {
    chosen_ = L"C:\\proj\\a.xls";
    refusals_ = 1;
    error_ = FNERR_INVALIDFILENAME;
    FileDialog dialog = Proposed(L"C:\\proj\\a<b>.xls");
    desktop_.ShowOpen(dialog);
    ASSERT_EQ(asked_.size(), 2U);
    EXPECT_EQ(asked_[1].file, L"");
    EXPECT_EQ(asked_[1].folder, L"C:\\proj\\");
    EXPECT_EQ(dialog.FileName, chosen_);
}

TEST_F(SystemDialogsAsked, GivingUpIsAnErrorAndChangesNothing) {
    FileDialog dialog = Proposed(L"C:\\proj\\*.xls");
    try {
        desktop_.ShowOpen(dialog);
        FAIL() << "no error";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.number(), RuntimeError::DialogCancelled);
    }
    EXPECT_EQ(asked_.size(), 1U);
    EXPECT_EQ(dialog.FileName, L"C:\\proj\\*.xls");
    EXPECT_EQ(dialog.FilterIndex, 1);
}

TEST_F(SystemDialogsAsked, AColourIsAskedWithoutAPreset) {
    DWORD flags = 99;
    COLORREF preset = 99;
    bool confirm = true;
    desktop_.System().ColourCall = [&](CHOOSECOLORW& data) {
        flags = data.Flags;
        preset = data.rgbResult;
        data.rgbResult = 0x123456;
        return confirm;
    };
    Colour colour = 255;
    desktop_.ShowColour(colour);
    EXPECT_EQ(flags & CC_RGBINIT, 0U);
    EXPECT_EQ(preset, 0U);
    EXPECT_EQ(colour, 0x123456);
    confirm = false;
    colour = 255;
    desktop_.ShowColour(colour);
    EXPECT_EQ(colour, 255);
}

TEST_F(SystemDialogsAsked, HelpOpensAnExistingFileAtItsContext) {
    struct Call {
        HWND owner;
        std::string file;
        UINT command;
        DWORD_PTR context;
    };
    std::vector<Call> calls;
    desktop_.System().HelpCall = [&](HWND owner, const char* file, UINT command,
                                     DWORD_PTR context) {
        calls.push_back({owner, file, command, context});
    };
    const auto form = desktop_.CreateForm(L"frmRoom");
    desktop_.OpenHelp(*form, L"C:\\nowhere\\help.chm", 7);
    desktop_.OpenHelp(*form, L"", 7);
    desktop_.OpenHelp(*form, L"C:\\", 7);
    EXPECT_TRUE(calls.empty());
    const std::wstring file = Win32Environment().ExecutableFolder() + L"\\desktop_tests.exe";
    desktop_.OpenHelp(*form, file, 7);
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_EQ(calls[0].owner, WindowOf(*form));
    EXPECT_EQ(calls[0].file, std::string(file.begin(), file.end()));
    EXPECT_EQ(calls[0].command, 15U);
    EXPECT_EQ(calls[0].context, 7U);
}

TEST_F(SystemDialogsAsked, AMessageHasItsButtonsAndItsSign) {
    UINT style = 0;
    int answer = IDOK;
    std::wstring prompt;
    std::wstring title;
    desktop_.System().MessageBoxCall = [&](HWND, const wchar_t* text, const wchar_t* caption,
                                           UINT given) {
        prompt = text;
        title = caption;
        style = given & ~static_cast<UINT>(MB_SETFOREGROUND);
        return answer;
    };
    EXPECT_EQ(desktop_.ShowMessage({L" a\rb & c", L" Quartino"}), Answer::Ok);
    EXPECT_EQ(style, static_cast<UINT>(MB_OK));
    EXPECT_EQ(prompt, L" a\rb & c");
    EXPECT_EQ(title, L" Quartino");
    desktop_.ShowMessage({L"", L"", Message::Buttons::Ok, Message::Icon::Exclamation});
    EXPECT_EQ(style, static_cast<UINT>(MB_OK | MB_ICONEXCLAMATION));
    desktop_.ShowMessage({L"", L"", Message::Buttons::Ok, Message::Icon::Stop});
    EXPECT_EQ(style, static_cast<UINT>(MB_OK | MB_ICONSTOP));
    answer = IDYES;
    EXPECT_EQ(desktop_.ShowMessage({L"", L"", Message::Buttons::YesNo}), Answer::Yes);
    EXPECT_EQ(style, static_cast<UINT>(MB_YESNO));
    answer = IDNO;
    EXPECT_EQ(desktop_.ShowMessage({L"", L"", Message::Buttons::YesNo}), Answer::No);
}

// The real dialogs, answered by keys.
class RealDialogs : public testing::Test {
  protected:
    void SetUp() override {
        wchar_t folder[MAX_PATH] = L"";
        GetTempPathW(MAX_PATH, folder);
        folder_ = folder + std::wstring(L"QuartinoTests");
        CreateDirectoryW(folder_.c_str(), nullptr);
        main_ = desktop_.CreateForm(L"frmMain");
        main_->Show();
        ASSERT_TRUE(PumpUntil(desktop_, [&] { return Focused() != nullptr; }));
    }

    Win32Desktop desktop_;
    std::unique_ptr<Form> main_;
    std::wstring folder_;
};

TEST_F(RealDialogs, EscapeGivesUp) {
    for (const std::wstring& name :
         {folder_ + L"\\*.xls", folder_ + L"\\neu.xls", std::wstring(L"Z:\\no<where\\*.xls")}) {
        FileDialog dialog;
        dialog.FileName = name;
        dialog.Filter = L"a|*.txt";
        ModalSteps user;
        user.When(
            "dialog", [] { return SystemDialog() && GetForegroundWindow() == SystemDialog(); },
            [] { typeKey(VK_ESCAPE); });
        EXPECT_THROW(desktop_.ShowSave(dialog), RuntimeError);
        EXPECT_TRUE(user.Done());
        EXPECT_EQ(dialog.FileName, name);
        EXPECT_TRUE(PumpUntil(desktop_, [] { return !SystemDialog(); }));
    }
}

} // namespace
} // namespace Gui
} // namespace kalvrooms
