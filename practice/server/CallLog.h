#pragma once
// Counts the calls of clients by member, and holds the faults that a test has planted.

#include "drawing/HostError.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kalvrooms::practice {

enum class FaultMode {
    Fail,   // an error with a description
    Empty,  // nothing is done, and the result is empty
    Reject, // the call is rejected
    Later,  // the call is to be tried again later
    Edited, // rejected as by an application whose user edits a cell
    Stall,  // the answer takes its time
    Exit,   // the process ends without an answer
};

struct Fault {
    FaultMode mode = FaultMode::Fail;
    std::wstring description;
    std::int32_t times = 1; // in a row, for Reject, Later and Edited
    std::int32_t milliseconds = 0;
    static constexpr std::int32_t ForEver = -1;

    // Raises a HostError for an unknown mode or an argument that does not fit it; an empty argument
    // means the mode's own default.
    static Fault From(std::wstring_view mode, const std::wstring& argument);
};

class CallLog {
  public:
    // Counts the call and gives the fault that is set for it.
    std::optional<Fault> Enter(std::wstring_view object, std::wstring_view member);

    // The n-th call from now on.
    void FailAt(std::int32_t n, Fault fault);
    // The next call of the member, named alone or as "object.member".
    void FailMember(std::wstring member, Fault fault);
    void ClearFaults() { armed_.clear(); }

    std::int32_t Count() const { return count_; }
    void ResetCount();
    // Lines "object.member=count" by name, each with a line feed at its end.
    std::wstring Report() const;

  private:
    struct Armed {
        std::int32_t callsBefore = 0; // that go by until it strikes
        std::wstring member;          // empty: any
        Fault fault;
    };
    bool Meets(const Armed& armed, std::wstring_view object, std::wstring_view member) const;

    std::int32_t count_ = 0;
    std::map<std::wstring, std::int32_t> byMember_;
    std::vector<Armed> armed_;
};

} // namespace kalvrooms::practice
