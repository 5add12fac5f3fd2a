#include "practice/host/CommandLine.h"

#include "drawing/HostState.h"

#include <charconv>
#include <cmath>
#include <cstddef>

namespace kalvrooms::practice {

namespace {

double Coordinate(std::wstring_view text) {
    const std::string digits = ToUtf8(text);
    double value = 0.0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (read.ec != std::errc() || read.ptr != digits.data() + digits.size() ||
        !std::isfinite(value))
        throw HostError(L"\"" + std::wstring(text) + L"\" is not a coordinate.");
    return value;
}

Point PointFrom(const std::wstring& text) {
    const std::size_t comma = text.find(L',');
    if (comma == std::wstring::npos)
        throw HostError(L"--place wants X,Y with decimal points.");
    return {Coordinate(std::wstring_view(text).substr(0, comma)),
            Coordinate(std::wstring_view(text).substr(comma + 1))};
}

// N:mode or N:mode:argument; the argument may have colons of its own.
std::pair<std::int32_t, Fault> FaultFrom(const std::wstring& text) {
    const std::size_t first = text.find(L':');
    if (first == std::wstring::npos)
        throw HostError(L"--fail-at wants N:mode or N:mode:argument.");
    const std::string digits = ToUtf8(std::wstring_view(text).substr(0, first));
    std::int32_t n = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), n);
    if (read.ec != std::errc() || read.ptr != digits.data() + digits.size() || n < 1)
        throw HostError(L"--fail-at wants the number of a call, not \"" + text + L"\".");
    const std::size_t second = text.find(L':', first + 1);
    const bool hasArgument = second != std::wstring::npos;
    const std::wstring mode =
        text.substr(first + 1, hasArgument ? second - first - 1 : std::wstring::npos);
    return {n, Fault::From(mode, hasArgument ? text.substr(second + 1) : std::wstring())};
}

} // namespace

CommandLine CommandLine::From(const std::vector<std::wstring>& arguments) {
    CommandLine line;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::wstring& option = arguments[i];
        const auto value = [&]() -> const std::wstring& {
            if (i + 1 >= arguments.size())
                throw HostError(option + L" wants a value.");
            return arguments[++i];
        };
        if (option == L"--register")
            line.registerServer = true;
        else if (option == L"--unregister")
            line.unregisterServer = true;
        else if (EqualsIgnoringCase(option, L"-Embedding") ||
                 EqualsIgnoringCase(option, L"/Embedding"))
            line.embedding = true;
        else if (option == L"--hidden")
            line.hidden = true;
        else if (option == L"--quit-with-client")
            line.quitWithClient = true;
        else if (option == L"--drawing")
            line.drawing = value();
        else if (option == L"--save")
            line.save = value();
        else if (option == L"--svg")
            line.svg = value();
        else if (option == L"--place")
            line.place = PointFrom(value());
        else if (option == L"--state") {
            line.state = value();
            HostState().Set(line.state);
        } else if (option == L"--fail-at")
            line.faults.push_back(FaultFrom(value()));
        else if (option == L"--start")
            line.start = value();
        else if (option == L"--language")
            line.handOver.language = value();
        else if (option == L"--settings-key")
            line.handOver.settingsKey = value();
        else if (option == L"--help-file")
            line.handOver.helpFile = value();
        else
            throw HostError(L"Unknown option " + option + L".");
    }
    if (line.quitWithClient && line.start.empty())
        throw HostError(L"--quit-with-client wants --start.");
    return line;
}

} // namespace kalvrooms::practice
