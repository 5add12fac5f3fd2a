#include "practice/host/HandOver.h"

#include <cstddef>

namespace kalvrooms::practice {

namespace {

std::wstring WithHostsEnding(const std::wstring& helpFile) {
    const std::size_t name = helpFile.find_last_of(L"\\/");
    const std::size_t dot = helpFile.rfind(L'.');
    const bool hasEnding = dot != std::wstring::npos && (name == std::wstring::npos || dot > name);
    return (hasEnding ? helpFile.substr(0, dot) : helpFile) + L".kalvhelp";
}

} // namespace

std::wstring HandOverText(const HandOver& handOver) {
    return L"Kalvero practice host\r\n" + WithHostsEnding(handOver.helpFile) + L"\r\n" +
           handOver.settingsKey + L"\r\n" + handOver.language + L"\r\n";
}

} // namespace kalvrooms::practice
