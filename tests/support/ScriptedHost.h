#pragma once
// A host in memory: keeps a drawing, counts calls, and fails at the call that a test names.

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/HostApplication.h"
#include "model/RuntimeError.h"

namespace kalvrooms::testing {

struct ScriptedAttribute {
    std::wstring name;
    double number = 0.0;
    std::wstring text;
};

struct ScriptedElement {
    HostIdentity identity{-1, -1, L""};
    std::wstring name, function, storey;
    Outline outline; // without the repeated last point
    std::int32_t colour = -1;
    std::vector<ScriptedAttribute> attributes;
};

struct ScriptedPlacing {
    std::int32_t mode = 0;
    std::vector<ScriptedElement> elements;
};

class ScriptedHost : public HostServer {
  public:
    // The drawing as applied so far.
    std::vector<ScriptedElement> drawing;
    std::vector<ScriptedPlacing> placings;
    int changeCalls = 0;
    int addCalls = 0;
    int applies = 0;

    std::wstring projectName = L"Schule";
    std::wstring projectFolder = L"C:\\Projekte";
    std::int32_t projectNumber = 4711;
    std::map<std::int32_t, std::wstring> attributeNames;
    std::vector<ScriptedAttribute> newElementAttributes;

    // Description with which creating the application fails; empty: it succeeds.
    std::wstring creationError;
    // The n-th call from now on fails (0: none); with this number.
    int failAt = 0;
    long failNumber = RuntimeError::AutomationError;
    // Fails every call of this name.
    std::string failMember;
    std::function<void(const std::string& member)> onCall;
    int calls = 0;
    int created = 0;
    int liveObjects = 0;

    void call(const std::string& member) {
        ++calls;
        ++counts[member];
        if (onCall)
            onCall(member);
        if (calls == failAt || member == failMember)
            throw RuntimeError(failNumber, L"scripted failure");
    }
    std::map<std::string, int> counts;

    std::unique_ptr<HostApplication> CreateHostApplication() override;
    std::unique_ptr<HostRoomSelection> CreateRoomFilter() override;
    std::unique_ptr<HostAttributeCatalogue> CreateAttributeCatalogue() override;
};

} // namespace kalvrooms::testing
