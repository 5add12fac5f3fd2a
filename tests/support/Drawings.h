#pragma once
// Drawings as tests need them: rooms of 4.5 m by 3 m.

#include <filesystem>
#include <string>
#include <vector>

#include "drawing/Drawing.h"

namespace kalvrooms::testing {

inline Element roomElement(std::int32_t id, std::int32_t fileNumber, const std::wstring& name,
                           const std::wstring& storey = L"EG", double x = 0,
                           int moreAttributes = 0) {
    Element element;
    element.identity.ComponentID = id;
    element.identity.FileNumber = fileNumber;
    element.identity.FileID = L"K" + std::to_wstring(fileNumber);
    element.name = name;
    element.function = L"Büro";
    element.storey = storey;
    element.outline = {{x, 0}, {x + 4.5, 0}, {x + 4.5, 3}, {x, 3}};
    element.attributes = {
        {L"Bodenfläche", 13.5, {}}, {L"Nutzen", L"HNF 2", {}}, {L"Umschließungsart", L"a", {}}};
    for (int i = 1; i <= moreAttributes; ++i)
        element.attributes.push_back({L"Merkmal " + std::to_wstring(i), L"x", {}});
    return element;
}

inline Drawing drawingOf(std::vector<Element> elements, const std::wstring& folder = L"") {
    Drawing drawing;
    drawing.project.name = L"Schule";
    drawing.project.folder = folder;
    drawing.project.number = 4711;
    drawing.elements = std::move(elements);
    return drawing;
}

} // namespace kalvrooms::testing
