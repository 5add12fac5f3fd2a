#pragma once
// A drawing of the host: a project, its room elements, and how they were placed. Coordinates are
// metres, areas square metres, colours RGB with red in the low byte.

#include "drawing/HostError.h"
#include "host/HostApplication.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace kalvrooms {

// Keys of the file that mean nothing to us, with their values as JSON text: they are written back.
using UnknownKeys = std::vector<std::pair<std::string, std::string>>;

struct Attribute {
    std::wstring name;
    std::variant<std::wstring, double> value;
    UnknownKeys unknown{};

    // 0 when the attribute is a text.
    double NumberValue() const;
    std::wstring TextValue() const;
};

struct Element {
    // -1, -1, "" while the element is not in the drawing. In a file with a number of 0 or below it
    // lies in a native KVD file.
    HostIdentity identity{-1, -1, L""};
    std::wstring name;
    std::wstring function;
    std::wstring storey;
    std::int32_t colour = 0;
    Outline outline; // without a repeated last point
    std::vector<Attribute> attributes;
    UnknownKeys unknown{};
};

struct PlacementRecord {
    std::int32_t mode = 0;
    // The shift that placing added to the outlines as they were handed over.
    Point at;
    std::vector<std::int32_t> componentIds;
    UnknownKeys unknown{};
};

struct Project {
    std::wstring name;
    std::wstring folder;
    std::int32_t number = 0;
    UnknownKeys unknown{};
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
    std::vector<PlacementRecord> placements;
    UnknownKeys unknown{};

    // Rules of drawings that are kept in models of another kind. The identity of an element that is
    // taken in; without it, the next component of the current numbered file.
    std::function<HostIdentity(const Drawing&)> newIdentity;
    // The floor area of an element with an outline; without it, that of the outline.
    std::function<double(const Element&)> floorArea;

    static std::map<std::int32_t, std::wstring> DefaultAttributeNames();

    // Raises a HostError for a number that has no name.
    const std::wstring& AttributeName(std::int32_t number) const;

    // An element that is not in the drawing yet, with empty attributes.
    Element NewElement() const;

    // By the drawing's rule.
    double FloorArea(const Element& element) const;

    // Takes the ground plan with or without a repeated last point; the floor area follows it.
    void SetOutline(Element& element, Outline outline) const;
    // The text must not go to the floor area, which follows the outline: a HostError.
    void SetText(Attribute& attribute, std::wstring text) const;

    // Writes a changed element over the one with its identity. The hint is where it was found.
    void Replace(const Element& element, std::size_t hint);
    // Gives the element the next component and the current numbered file and takes it in; returns
    // its index.
    std::size_t Insert(Element element);

  private:
    // The next component of the current numbered file.
    HostIdentity NextIdentity() const;
    bool IsFloorArea(const Attribute& attribute) const;
    // Does nothing for an element without outline: the figure is all that is known of it.
    void UpdateFloorArea(Element& element) const;
};

// What a text of an element becomes. Raises a HostError for one of more than 32 characters.
std::wstring ElementText(std::wstring text);

// The place of an item whose index counts from 1; raises a HostError when there is none.
std::size_t ItemPlace(std::int32_t index, std::size_t count);

// By the shoelace rule, never negative.
double Area(const Outline& outline);
// Extent along X, 0 for an empty outline.
double Width(const Outline& outline);
// Adds the shift to every point.
void Shift(Outline& outline, const Point& by);
// Takes away a last point that repeats the first; raises a HostError for a point that is no number.
void CloseOutline(Outline& outline);

} // namespace kalvrooms
