#include "practice/host/CommandLine.h"

#include "drawing/HostState.h"
#include "drawing/Text.h"

#include <algorithm>
#include <cstddef>
#include <map>

namespace kalvrooms::practice {

namespace {

Point PointFrom(const std::wstring& text) {
    const std::size_t comma = text.find(L',');
    const auto x = NumberFrom<double>(text.substr(0, comma));
    const auto y = NumberFrom<double>(comma < text.size() ? text.substr(comma + 1) : L"");
    if (!x || !y)
        throw HostError(L"--place needs X,Y with decimal points, not \"" + text + L"\".");
    return {*x, *y};
}

// N:mode or N:mode:argument; the argument may have colons of its own.
std::pair<std::int32_t, Fault> FaultFrom(const std::wstring& text) {
    const std::size_t first = text.find(L':');
    const auto n = NumberFrom<std::int32_t>(text.substr(0, first));
    if (first == std::wstring::npos || !n || *n < 1)
        throw HostError(L"--fail-at needs N:mode or N:mode:argument, not \"" + text + L"\".");
    const std::size_t second = std::min(text.find(L':', first + 1), text.size());
    return {*n, Fault::From(text.substr(first + 1, second - first - 1),
                            second < text.size() ? text.substr(second + 1) : std::wstring())};
}

} // namespace

CommandLine CommandLine::From(const std::vector<std::wstring>& arguments) {
    CommandLine line;
    const std::map<std::wstring, bool*> switches = {
        {L"--register", &line.registerServer},
        {L"--unregister", &line.unregisterServer},
        {L"--known-while-running", &line.knownWhileRunning},
        {L"--hidden", &line.hidden},
        {L"--plain", &line.plain},
        {L"--quit-with-client", &line.quitWithClient}};
    const std::map<std::wstring, std::wstring*> texts = {
        {L"--drawing", &line.drawing},
        {L"--project-folder", &line.projectFolder},
        {L"--save", &line.save},
        {L"--svg", &line.svg},
        {L"--state", &line.state},
        {L"--start", &line.start},
        {L"--language", &line.handOver.language},
        {L"--settings-key", &line.handOver.settingsKey},
        {L"--help-file", &line.handOver.helpFile}};
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::wstring& option = arguments[i];
        const auto value = [&]() -> const std::wstring& {
            if (i + 1 >= arguments.size())
                throw HostError(option + L" needs a value.");
            return arguments[++i];
        };
        if (switches.contains(option))
            *switches.at(option) = true;
        else if (texts.contains(option))
            *texts.at(option) = value();
        else if (option == L"--place")
            line.place = PointFrom(value());
        else if (option == L"--fail-at")
            line.faults.push_back(FaultFrom(value()));
        else if (EqualsIgnoringCase(option, L"-Embedding") ||
                 EqualsIgnoringCase(option, L"/Embedding"))
            line.embedding = true;
        else
            throw HostError(L"Unknown option " + option + L".");
    }
    HostState().Set(line.state);
    if (line.quitWithClient && line.start.empty())
        throw HostError(L"--quit-with-client needs --start.");
    return line;
}

} // namespace kalvrooms::practice
