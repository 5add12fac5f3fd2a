#pragma once
// How clients read and change the drawing. What they get are snapshots; what they hand back waits
// until it is applied, and is forgotten when the service goes without that. All of it raises a
// HostError while the host is in a state that forbids it.

#include "drawing/Drawing.h"
#include "drawing/HostState.h"
#include "drawing/Placing.h"

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace kalvrooms {

// The drawing that is open, with what a run remembers beside it.
struct DrawingSession {
    Drawing drawing;
    Placing placing;
    HostState state;
    // Called after every apply.
    std::function<void()> applied;
};

// A client's own copy of an element.
struct WorkingElement {
    Element element;
    // Where it stands in the drawing; nothing while it is new.
    std::optional<std::size_t> index;
};
using WorkingElementPtr = std::shared_ptr<WorkingElement>;
using WorkingElements = std::vector<WorkingElementPtr>;

class DrawingService {
  public:
    explicit DrawingService(DrawingSession& session) : session_(session) {
        session.state.CheckDrawing();
    }

    WorkingElements Elements() const;
    WorkingElementPtr NewElement() const;

    // The elements are taken over as they are now; later changes of the copies do not count. None
    // may be handed over twice before it is applied, and none of a native drawing at all.
    void Change(const WorkingElements& elements);
    void Add(const WorkingElements& elements);
    // Returns when they were placed. Raises PlacingCancelled when the user gives up.
    void Place(const WorkingElements& elements, std::int32_t mode);

    // All or nothing. Gives the new elements' copies their identity.
    void Apply();

  private:
    struct Queued {
        WorkingElementPtr copy;
        Element element;
    };
    struct Step {
        enum class Kind { Change, Add, Place } kind = Kind::Change;
        std::vector<Queued> elements;
        std::int32_t mode = 0;
        Point at;
    };

    Step NewElements(Step::Kind kind, const WorkingElements& elements) const;
    void Queue(Step step);

    DrawingSession& session_;
    std::vector<Step> steps_;
    std::set<WorkingElementPtr> queued_;
    // Places in the drawing of the elements that are to be changed.
    std::set<std::size_t> changing_;
    double pendingRow_ = 0.0;
};

} // namespace kalvrooms
