#pragma once
// The drawing of the practice host: a project, its room elements, and how they were set down.
// Coordinates are metres, areas square metres, colours RGB with red in the low byte.

#include "drawing/HostError.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace kalvrooms::practice {

struct Point {
    double x = 0.0;
    double y = 0.0;
    bool operator==(const Point&) const = default;
};

// A ground plan without a repeated last point.
using Outline = std::vector<Point>;

// Keys of the file that mean nothing to us, with their values as JSON text: they are written back.
using UnknownKeys = std::vector<std::pair<std::string, std::string>>;

struct Attribute {
    std::wstring name;
    std::variant<std::wstring, double> value;
    UnknownKeys unknown;

    // 0 when the attribute is a text.
    double NumberValue() const;
    std::wstring TextValue() const;
};

struct Element {
    // -1 while the element is not in the drawing.
    std::int32_t componentId = -1;
    // 0 or below: the element lies in a native KVD file.
    std::int32_t fileNumber = -1;
    std::wstring fileId;
    std::wstring name;
    std::wstring function;
    std::wstring storey;
    std::int32_t colour = 0;
    Outline outline;
    std::vector<Attribute> attributes;
    UnknownKeys unknown;

    bool SameIdentity(const Element& other) const;
};

struct Placement {
    std::int32_t mode = 0;
    // The shift that placing added to the outlines as they were handed over.
    Point at;
    std::vector<std::int32_t> componentIds;
    UnknownKeys unknown;
};

struct Project {
    std::wstring name;
    std::wstring folder;
    std::int32_t number = 0;
    UnknownKeys unknown;
};

// The attribute numbers that rooms have.
inline constexpr std::int32_t FloorAreaNumber = 293;
inline constexpr std::int32_t EnclosureNumber = 231;
inline constexpr std::int32_t OccupancyNumber = 235;
inline constexpr std::int32_t AreaTypeNumber = 232;

struct Drawing {
    Project project;
    std::map<std::int32_t, std::wstring> attributeNames = DefaultAttributeNames();
    // Names of the attributes that a new element carries besides its floor area; without them it
    // gets those of the catalogue and those that a writer looks for.
    std::optional<std::vector<std::wstring>> newElementAttributes;
    std::vector<Element> elements;
    std::vector<Placement> placements;
    UnknownKeys unknown;

    static std::map<std::int32_t, std::wstring> DefaultAttributeNames();

    // Raises a HostError for a number that has no name.
    const std::wstring& AttributeName(std::int32_t number) const;

    // An element that is not in the drawing yet, with empty attributes.
    Element NewElement() const;

    // Sets the attribute of the floor area from the outline, where the element has one and its
    // outline spans a face.
    void UpdateFloorArea(Element& element) const;
    bool IsFloorArea(const Attribute& attribute) const;

    // Writes a changed element over the one with its identity. The hint is where it was found.
    void Replace(const Element& element, std::size_t hint);
    // Gives the element the next component and the current numbered file and takes it in; returns
    // its index.
    std::size_t Insert(Element element);
};

// By the shoelace rule, never negative.
double Area(const Outline& outline);
// Extent along X, 0 for an empty outline.
double Width(const Outline& outline);
// Adds the shift to every point.
void Shift(Outline& outline, const Point& by);
// Takes away a last point that repeats the first; raises a HostError for a point that is no number.
void CloseOutline(Outline& outline);

} // namespace kalvrooms::practice
