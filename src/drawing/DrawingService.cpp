#include "drawing/DrawingService.h"

namespace kalvrooms {

WorkingElements DrawingService::Elements() const {
    session_.state.CheckDrawing();
    WorkingElements copies;
    copies.reserve(session_.drawing.elements.size());
    for (std::size_t i = 0; i < session_.drawing.elements.size(); ++i)
        copies.push_back(
            std::make_shared<WorkingElement>(WorkingElement{session_.drawing.elements[i], i}));
    return copies;
}

WorkingElementPtr DrawingService::NewElement() const {
    session_.state.CheckDrawing();
    return std::make_shared<WorkingElement>(
        WorkingElement{session_.drawing.NewElement(), std::nullopt});
}

void DrawingService::Change(const WorkingElements& elements) {
    session_.state.CheckDrawing();
    Step step;
    std::set<std::size_t> changing = changing_;
    for (const WorkingElementPtr& copy : elements) {
        if (!copy->index)
            throw HostError(L"An element that is not in the drawing cannot be changed.");
        if (copy->element.identity.FileNumber <= 0)
            throw HostError(L"An element of a KVD file cannot be changed.");
        if (!changing.insert(*copy->index).second)
            throw HostError(L"The element has been handed over already.");
        step.elements.push_back({copy, copy->element});
    }
    changing_ = std::move(changing);
    Queue(std::move(step));
}

void DrawingService::Add(const WorkingElements& elements) {
    Queue(NewElements(Step::Kind::Add, elements));
}

void DrawingService::Place(const WorkingElements& elements, std::int32_t mode) {
    if (mode != PlaceAtCrossHair)
        throw HostError(L"There is no mode " + std::to_wstring(mode) + L" of placing.");
    if (elements.empty())
        throw HostError(L"There is nothing to place.");
    Step step = NewElements(Step::Kind::Place, elements);
    std::vector<Outline> outlines;
    for (const Queued& queued : step.elements)
        outlines.push_back(queued.element.outline);
    step.mode = mode;
    step.at = session_.placing.ShiftFor(outlines, pendingRow_);
    for (Queued& queued : step.elements)
        Shift(queued.element.outline, step.at);
    Queue(std::move(step));
}

DrawingService::Step DrawingService::NewElements(Step::Kind kind,
                                                 const WorkingElements& elements) const {
    session_.state.CheckDrawing();
    Step step;
    step.kind = kind;
    std::set<WorkingElementPtr> known = queued_;
    for (const WorkingElementPtr& copy : elements) {
        if (copy->index || !known.insert(copy).second)
            throw HostError(L"The element is in the drawing already.");
        step.elements.push_back({copy, copy->element});
    }
    return step;
}

void DrawingService::Queue(Step step) {
    for (const Queued& queued : step.elements)
        queued_.insert(queued.copy);
    steps_.push_back(std::move(step));
}

void DrawingService::Apply() {
    session_.state.CheckDrawing();
    Drawing drawing = session_.drawing;
    std::vector<std::pair<WorkingElementPtr, std::size_t>> inserted;
    for (const Step& step : steps_) {
        PlacementRecord placement{step.mode, step.at, {}, {}};
        for (const Queued& queued : step.elements) {
            if (step.kind == Step::Kind::Change) {
                drawing.Replace(queued.element, *queued.copy->index);
                continue;
            }
            const std::size_t index = drawing.Insert(queued.element);
            placement.componentIds.push_back(drawing.elements[index].identity.ComponentID);
            inserted.emplace_back(queued.copy, index);
        }
        if (step.kind == Step::Kind::Place)
            drawing.placements.push_back(std::move(placement));
    }

    session_.drawing = std::move(drawing);
    session_.placing.Applied(pendingRow_);
    pendingRow_ = 0.0;
    steps_.clear();
    queued_.clear();
    changing_.clear();
    for (const auto& [copy, index] : inserted) {
        copy->element = session_.drawing.elements[index];
        copy->index = index;
    }
    if (session_.applied)
        session_.applied();
}

} // namespace kalvrooms
