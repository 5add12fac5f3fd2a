// Any bytes as a hand-over file: reading ends, and the values are those of the lines.

#include <optional>

#include "Input.h"
#include "app/HandOverFile.h"
#include "headless/HeadlessSystem.h"

namespace {

class Values final : public kalvrooms::StartValues {
  public:
    void HelpFile(const std::wstring& path) override { help = path; }
    void SetRegKey(const std::wstring& path) override { key = path; }
    void SetLang(const std::wstring& code) override { language = code; }

    std::optional<std::wstring> help, key, language;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace kalvrooms;
    // The name that comes out of a folder, the mark between and the file's own name.
    static const std::wstring ending = L"\\kalvqtotemp";
    static const fuzz::File input("hand-over", "\\kalvqtotemp");
    static HeadlessEnvironment environment;
    static const HeadlessAnsiCodec ansi;
    environment.Folder = input.Name().substr(0, input.Name().size() - ending.size());
    input.Write(bytes, size);
    Values values;
    ReadHandOverFile(environment, ansi, values);
    // A line counts only after the one before it.
    fuzz::Hold(values.help || !values.key);
    fuzz::Hold(values.key || !values.language);
    fuzz::Hold(!values.help || values.help->ends_with(L"chm"));
    for (const auto& value : {values.help, values.key, values.language})
        fuzz::Hold(!value || value->find_first_of(L"\r\n") == std::wstring::npos);
    return 0;
}
