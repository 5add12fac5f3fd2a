#include "app/clsRegistry.h"

namespace kalvrooms {
namespace {

constexpr std::uint32_t nonVolatile = 0;
// Query value, set value, create sub-key, enumerate sub-keys, notify, write DAC.
constexpr std::uint32_t writeAccess = 0x4001F;
constexpr std::uint32_t readAccess = 0x20019;

// Booleans are stored as 2 and 1, so that 0 can stand for a missing value.
constexpr std::int32_t storedTrue = 2;
constexpr std::int32_t storedFalse = 1;

std::wstring settingsKey(const std::wstring& keyPath) {
    return keyPath + L"\\QTO";
}

} // namespace

void clsRegistry::SetSettings(const std::wstring& keyPath, bool noReport, std::int32_t left,
                              std::int32_t top, std::int32_t height, std::int32_t width,
                              std::int32_t colorNew, std::int32_t colorOld) {
    const auto key = registry_.CreateKey(settingsKey(keyPath), L"0", nonVolatile, writeAccess);
    if (!key)
        return;
    key->SetDword(L"Report", noReport ? storedTrue : storedFalse);
    key->SetDword(L"Height", height);
    key->SetDword(L"Width", width);
    key->SetDword(L"Top", top);
    key->SetDword(L"Left", left);
    key->SetDword(L"ColorOld", colorOld);
    key->SetDword(L"ColorNew", colorNew);
}

void clsRegistry::GetSettings(const std::wstring& keyPath, bool& noReport, std::int32_t& left,
                              std::int32_t& top, std::int32_t& height, std::int32_t& width,
                              std::int32_t& colorNew, std::int32_t& colorOld) {
    noReport = false;
    const auto key = registry_.OpenKey(settingsKey(keyPath), readAccess);
    bool missing = true;
    if (key) {
        std::int32_t report = 0;
        if (key->QueryDword(L"Report", report))
            noReport = report == storedTrue;
        missing = !key->QueryDword(L"Height", height);
        missing = !key->QueryDword(L"Width", width) || missing;
    }
    if (missing) {
        left = top = height = width = 0;
        return;
    }
    key->QueryDword(L"Top", top);
    key->QueryDword(L"Left", left);
    key->QueryDword(L"ColorOld", colorOld);
    key->QueryDword(L"ColorNew", colorNew);
}

} // namespace kalvrooms
