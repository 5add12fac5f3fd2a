#include "drawing/DrawingService.h"

#include <algorithm>

namespace kalvrooms::practice {

WorkingElements DrawingService::Elements() const {
    WorkingElements copies;
    copies.reserve(session_.drawing.elements.size());
    for (std::size_t i = 0; i < session_.drawing.elements.size(); ++i)
        copies.push_back(
            std::make_shared<WorkingElement>(WorkingElement{session_.drawing.elements[i], i}));
    return copies;
}

WorkingElementPtr DrawingService::NewElement() const {
    return std::make_shared<WorkingElement>(
        WorkingElement{session_.drawing.NewElement(), std::nullopt});
}

void DrawingService::Change(const WorkingElements& elements) {
    Step step;
    for (const WorkingElementPtr& copy : elements) {
        if (!copy->index)
            throw HostError(L"An element that is not in the drawing cannot be changed.");
        step.elements.push_back({copy, copy->element});
    }
    steps_.push_back(std::move(step));
}

void DrawingService::Add(const WorkingElements& elements) {
    steps_.push_back(NewElements(Step::Kind::Add, elements));
}

void DrawingService::Place(const WorkingElements& elements, std::int32_t mode) {
    if (mode != PlaceAtCrossHair)
        throw HostError(L"There is no mode " + std::to_wstring(mode) + L" of placing.");
    Step step = NewElements(Step::Kind::Place, elements);
    if (step.elements.empty())
        return;
    std::vector<Outline> outlines;
    for (const Queued& queued : step.elements)
        outlines.push_back(queued.element.outline);
    step.mode = mode;
    step.at = session_.placing.ShiftFor(outlines, pendingRow_);
    for (Queued& queued : step.elements)
        Shift(queued.element.outline, step.at);
    steps_.push_back(std::move(step));
}

DrawingService::Step DrawingService::NewElements(Step::Kind kind,
                                                 const WorkingElements& elements) const {
    Step step;
    step.kind = kind;
    for (const WorkingElementPtr& copy : elements) {
        const bool twice = std::any_of(step.elements.begin(), step.elements.end(),
                                       [&](const Queued& queued) { return queued.copy == copy; });
        if (copy->index || twice || IsQueued(copy))
            throw HostError(L"The element is in the drawing already.");
        step.elements.push_back({copy, copy->element});
    }
    return step;
}

bool DrawingService::IsQueued(const WorkingElementPtr& copy) const {
    return std::any_of(steps_.begin(), steps_.end(), [&](const Step& step) {
        return step.kind != Step::Kind::Change &&
               std::any_of(step.elements.begin(), step.elements.end(),
                           [&](const Queued& queued) { return queued.copy == copy; });
    });
}

void DrawingService::Apply() {
    Drawing drawing = session_.drawing;
    std::vector<std::pair<WorkingElementPtr, std::size_t>> inserted;
    for (const Step& step : steps_) {
        Placement placement{step.mode, step.at, {}, {}};
        for (const Queued& queued : step.elements) {
            if (step.kind == Step::Kind::Change) {
                drawing.Replace(queued.element, *queued.copy->index);
                continue;
            }
            const std::size_t index = drawing.Insert(queued.element);
            placement.componentIds.push_back(drawing.elements[index].componentId);
            inserted.emplace_back(queued.copy, index);
        }
        if (step.kind == Step::Kind::Place)
            drawing.placements.push_back(std::move(placement));
    }

    session_.drawing = std::move(drawing);
    session_.placing.Applied(pendingRow_);
    pendingRow_ = 0.0;
    steps_.clear();
    for (const auto& [copy, index] : inserted) {
        copy->element = session_.drawing.elements[index];
        copy->index = index;
    }
    if (session_.applied)
        session_.applied();
}

} // namespace kalvrooms::practice
