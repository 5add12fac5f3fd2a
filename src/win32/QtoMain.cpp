// The entry of qto on Windows, where arguments are wide texts and a console has a code page.

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cstdio>
#include <iostream>

#include "console/Qto.h"
#include "model/Utf8.h"
#include "win32/Win32LetterRules.h"
#include "win32/Win32Locale.h"

namespace {

// Shows UTF-8 while it lives; whoever writes to the console afterwards finds it as it was.
class Utf8Console {
  public:
    Utf8Console() { SetConsoleOutputCP(CP_UTF8); }
    Utf8Console(const Utf8Console&) = delete;
    Utf8Console& operator=(const Utf8Console&) = delete;
    ~Utf8Console() {
        std::cout.flush();
        if (before_ != 0)
            SetConsoleOutputCP(before_);
    }

  private:
    const UINT before_ = GetConsoleOutputCP(); // 0 without a console
};

} // namespace

int wmain(int count, wchar_t** values) {
    using namespace kalvrooms;
    for (std::FILE* stream : {stdin, stdout, stderr})
        _setmode(_fileno(stream), _O_BINARY);
    std::ios::sync_with_stdio(false);
    const Utf8Console utf8;
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i)
        arguments.push_back(ToUtf8(values[i]));
    const bool german = PRIMARYLANGID(GetUserDefaultUILanguage()) == LANG_GERMAN;
    HandInLetterRules(Win32LetterRules());
    return RunQto(arguments, {std::cin, std::cout, std::cerr, german, Win32UserLocale(),
                              _isatty(_fileno(stderr)) != 0});
}
