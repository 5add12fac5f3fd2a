#pragma once
// The text table: every caption, label and message by number, German by default, overlaid entry by
// entry from a language library beside the executable. Most texts begin with a blank that belongs
// to them; "..." marks commands that open a dialog.

#include <array>
#include <cstdint>
#include <string>

#include "app/Texts.h"
#include "platform/Platform.h"

namespace kalvrooms {

class clsText final : public Texts {
  public:
    clsText(ResourceLibraries& libraries, const Environment& environment);

    // A code of exactly three characters other than "xxx" names the library
    // "zorvinta_" + code + ".dll"; every other code leaves the defaults and the disk alone.
    void SetLanguage(const std::wstring& code);

    std::wstring GetText(std::int32_t number) const override;
    std::wstring GetTextWithoutDot(std::int32_t number) const override;

    static constexpr std::int32_t LastText = 200;
    // String resource of a text = its number + this.
    static constexpr std::uint32_t FirstResource = 100;

  private:
    void LoadLanguageDll(const std::wstring& fileName);

    ResourceLibraries& libraries_;
    const Environment& environment_;
    std::array<std::wstring, LastText + 1> texts_;
};

} // namespace kalvrooms
