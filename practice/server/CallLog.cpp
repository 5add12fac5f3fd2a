#include "practice/server/CallLog.h"

#include "drawing/Text.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kalvrooms::practice {

namespace {

std::int32_t WholeNumber(const std::wstring& text, std::int32_t otherwise, std::int32_t least) {
    const auto number = text.empty() ? otherwise : NumberFrom<std::int32_t>(text);
    if (!number || *number < least)
        throw HostError(L"A fault needs a whole number from " + std::to_wstring(least) +
                        L" on, not \"" + text + L"\".");
    return *number;
}

} // namespace

Fault Fault::From(std::wstring_view mode, const std::wstring& argument) {
    constexpr std::array<std::pair<std::wstring_view, FaultMode>, 7> modes{{
        {L"fail", FaultMode::Fail},
        {L"empty", FaultMode::Empty},
        {L"reject", FaultMode::Reject},
        {L"later", FaultMode::Later},
        {L"edited", FaultMode::Edited},
        {L"stall", FaultMode::Stall},
        {L"exit", FaultMode::Exit},
    }};
    const auto found = std::find_if(modes.begin(), modes.end(), [&](const auto& candidate) {
        return EqualsIgnoringCase(candidate.first, mode);
    });
    if (found == modes.end())
        throw HostError(L"There is no fault \"" + std::wstring(mode) + L"\".");

    Fault fault;
    fault.mode = found->second;
    switch (fault.mode) {
    case FaultMode::Fail:
        fault.description = argument.empty() ? L"The practice host fails here." : argument;
        break;
    case FaultMode::Reject:
    case FaultMode::Later:
    case FaultMode::Edited:
        fault.times = WholeNumber(argument, 1, 1);
        break;
    case FaultMode::Stall:
        fault.milliseconds = argument == L"ever" ? Fault::ForEver : WholeNumber(argument, 1000, 0);
        break;
    case FaultMode::Empty:
    case FaultMode::Exit:
        break;
    }
    return fault;
}

std::optional<Fault> CallLog::Enter(std::wstring_view object, std::wstring_view member) {
    ++count_;
    ++byMember_[std::wstring(object) + L"." + std::wstring(member)];

    std::optional<Fault> struck;
    for (Armed& armed : armed_) {
        if (armed.callsBefore > 0) {
            --armed.callsBefore;
        } else if (Meets(armed, object, member)) {
            --armed.fault.times;
            if (!struck)
                struck = armed.fault;
        }
    }
    std::erase_if(armed_, [](const Armed& armed) { return armed.fault.times <= 0; });
    return struck;
}

bool CallLog::Meets(const Armed& armed, std::wstring_view object, std::wstring_view member) const {
    return armed.member.empty() || EqualsIgnoringCase(armed.member, member) ||
           EqualsIgnoringCase(armed.member, std::wstring(object) + L"." + std::wstring(member));
}

void CallLog::FailAt(std::int32_t n, Fault fault) {
    if (n < 1)
        throw HostError(L"The calls are counted from 1.");
    armed_.push_back({n - 1, {}, std::move(fault)});
}

void CallLog::FailMember(std::wstring member, Fault fault) {
    if (member.empty())
        throw HostError(L"The fault names no member.");
    armed_.push_back({0, std::move(member), std::move(fault)});
}

void CallLog::ResetCount() {
    count_ = 0;
    byMember_.clear();
}

std::wstring CallLog::Report() const {
    std::wstring lines;
    for (const auto& [member, count] : byMember_)
        lines += member + L"=" + std::to_wstring(count) + L"\n";
    return lines;
}

} // namespace kalvrooms::practice
