#include "drawing/Drawing.h"

#include "drawing/Text.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kalvrooms {

double Attribute::NumberValue() const {
    const auto* number = std::get_if<double>(&value);
    return number ? *number : 0.0;
}

std::wstring Attribute::TextValue() const {
    const auto* text = std::get_if<std::wstring>(&value);
    return text ? *text : NumberText(std::get<double>(value));
}

std::map<std::int32_t, std::wstring> Drawing::DefaultAttributeNames() {
    return {{FloorAreaNumber, L"Bodenfläche"},
            {EnclosureNumber, L"Umschließungsart"},
            {OccupancyNumber, L"Nutzen"},
            {AreaTypeNumber, L"Flächenart 277"}};
}

const std::wstring& Drawing::AttributeName(std::int32_t number) const {
    const auto found = attributeNames.find(number);
    if (found == attributeNames.end())
        throw HostError(L"The catalogue has no attribute " + std::to_wstring(number) + L".");
    return found->second;
}

Element Drawing::NewElement() const {
    Element element;
    const auto carry = [&](const std::wstring& name) {
        const auto same = [&](const Attribute& attribute) { return attribute.name == name; };
        if (std::none_of(element.attributes.begin(), element.attributes.end(), same))
            element.attributes.push_back({name, std::wstring(), {}});
    };
    const auto carryNumber = [&](std::int32_t number) {
        const auto found = attributeNames.find(number);
        if (found != attributeNames.end())
            carry(found->second);
    };

    carryNumber(FloorAreaNumber);
    if (newElementAttributes) {
        for (const std::wstring& name : *newElementAttributes)
            carry(name);
    } else {
        for (const std::int32_t number : {EnclosureNumber, OccupancyNumber, AreaTypeNumber})
            carryNumber(number);
        // Clients find the attributes that they write by these names, whatever the catalogue says.
        for (const wchar_t* name : {L"Umschließungsart", L"Nutzen", L"Flächenart_DIN277"})
            carry(name);
    }
    for (Attribute& attribute : element.attributes)
        if (IsFloorArea(attribute))
            attribute.value = 0.0;
    return element;
}

bool Drawing::IsFloorArea(const Attribute& attribute) const {
    const auto found = attributeNames.find(FloorAreaNumber);
    return found != attributeNames.end() && attribute.name == found->second;
}

void Drawing::SetOutline(Element& element, Outline outline) const {
    CloseOutline(outline);
    element.outline = std::move(outline);
    UpdateFloorArea(element);
}

void Drawing::SetText(Attribute& attribute, std::wstring text) const {
    if (IsFloorArea(attribute))
        throw HostError(L"The floor area follows from the ground plan and cannot be written.");
    attribute.value = std::move(text);
}

void Drawing::UpdateFloorArea(Element& element) const {
    if (element.outline.empty())
        return;
    for (Attribute& attribute : element.attributes)
        if (IsFloorArea(attribute))
            attribute.value = FloorArea(element);
}

double Drawing::FloorArea(const Element& element) const {
    return floorArea ? floorArea(element) : Area(element.outline);
}

void Drawing::Replace(const Element& element, std::size_t hint) {
    const auto same = [&](const Element& candidate) {
        return candidate.identity == element.identity;
    };
    const auto found = hint < elements.size() && same(elements[hint])
                           ? elements.begin() + static_cast<std::ptrdiff_t>(hint)
                           : std::find_if(elements.begin(), elements.end(), same);
    if (found == elements.end())
        throw HostError(L"Element " + std::to_wstring(element.identity.ComponentID) +
                        L" is not in the drawing.");
    *found = element;
    UpdateFloorArea(*found);
}

std::size_t Drawing::Insert(Element element) {
    element.identity = newIdentity ? newIdentity(*this) : NextIdentity();
    UpdateFloorArea(element);
    elements.push_back(std::move(element));
    return elements.size() - 1;
}

HostIdentity Drawing::NextIdentity() const {
    std::int32_t highest = 0;
    const HostIdentity* current = nullptr;
    for (const Element& other : elements) {
        const HostIdentity& identity = other.identity;
        highest = std::max(highest, identity.ComponentID);
        if (identity.FileNumber > 0 && (!current || identity.FileNumber < current->FileNumber))
            current = &identity;
    }
    if (highest == std::numeric_limits<std::int32_t>::max())
        throw HostError(L"The drawing has no component number left.");
    HostIdentity identity = current ? *current : HostIdentity{0, 1, L"K1"};
    identity.ComponentID = highest + 1;
    return identity;
}

std::wstring ElementText(std::wstring text) {
    if (text.size() > LongestHostText)
        throw HostError(L"A text of more than 32 characters does not fit.");
    return text;
}

std::size_t ItemPlace(std::int32_t index, std::size_t count) {
    if (index < 1 || static_cast<std::size_t>(index) > count)
        throw HostError(L"There is no item " + std::to_wstring(index) + L" in the list.");
    return static_cast<std::size_t>(index) - 1;
}

double Area(const Outline& outline) {
    double twice = 0.0;
    // Measured from the first point: coordinates far from the origin then cost no digits.
    for (std::size_t i = 1; i + 1 < outline.size(); ++i) {
        const double ax = outline[i].x - outline[0].x;
        const double ay = outline[i].y - outline[0].y;
        const double bx = outline[i + 1].x - outline[0].x;
        const double by = outline[i + 1].y - outline[0].y;
        twice += ax * by - bx * ay;
    }
    const double area = std::abs(twice) / 2.0;
    return std::isfinite(area) ? area : 0.0;
}

double Width(const Outline& outline) {
    if (outline.empty())
        return 0.0;
    const auto [left, right] = std::minmax_element(
        outline.begin(), outline.end(), [](const Point& a, const Point& b) { return a.x < b.x; });
    return right->x - left->x;
}

void Shift(Outline& outline, const Point& by) {
    for (Point& point : outline) {
        point.x += by.x;
        point.y += by.y;
        if (!std::isfinite(point.x) || !std::isfinite(point.y))
            throw HostError(L"The ground plan lies outside of the drawing.");
    }
}

void CloseOutline(Outline& outline) {
    for (const Point& point : outline)
        if (!std::isfinite(point.x) || !std::isfinite(point.y))
            throw HostError(L"The ground plan has a point that is no number.");
    if (outline.size() > 1 && outline.front() == outline.back())
        outline.pop_back();
}

} // namespace kalvrooms
