#pragma once
// The host of native tests: a drawing whose calls are counted and fail where a test says so.

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "drawing/DrawingHost.h"
#include "model/RuntimeError.h"

namespace kalvrooms::testing {

class TestHost : public DrawingHost {
  public:
    TestHost() {
        drawing.project = {L"Schule", L"C:\\Projekte", 4711};
        // The user clicks at the origin: rooms stand where they were handed over.
        session.placing.OnClick([](const std::vector<Outline>&) { return Point(); });
        entering = [this](const char* member) { call(member); };
    }

    Drawing& drawing = session.drawing;
    std::vector<Element>& elements = drawing.elements;
    std::vector<PlacementRecord>& placements = drawing.placements;
    // The elements of the n-th placement, from 0, in the order of the hand-over.
    std::vector<Element> placed(std::size_t n) const {
        std::vector<Element> found;
        for (const std::int32_t id : placements.at(n).componentIds)
            for (const Element& element : elements)
                if (element.identity.ComponentID == id)
                    found.push_back(element);
        return found;
    }

    // The n-th call from now on fails (0: none); with this number.
    int failAt = 0;
    // A call does not come back.
    bool hangs = false;
    bool Hangs() const override { return hangs; }
    long failNumber = RuntimeError::AutomationError;
    // Fails every call of this name.
    std::string failMember;
    std::function<void(const std::string& member)> onCall;
    int calls = 0;
    std::map<std::string, int> counts;

  private:
    void call(const std::string& member) {
        ++calls;
        ++counts[member];
        if (onCall)
            onCall(member);
        if (calls == failAt || member == failMember)
            throw RuntimeError(failNumber, L"failure of a test");
    }
};

} // namespace kalvrooms::testing
