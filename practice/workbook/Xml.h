#pragma once
// What is asked of XML elements here. Elements go by their names without prefixes: the forms that
// are read mean the same by a name whatever stands before it.

#include <rapidxml/rapidxml.hpp>

#include <optional>
#include <string>
#include <string_view>

namespace kalvrooms::practice::spreadsheet {

using XmlElement = rapidxml::xml_node<>;

inline std::string_view NameOf(const rapidxml::xml_base<>& named) {
    const std::string_view name(named.name(), named.name_size());
    const std::size_t colon = name.find(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

// The first child, or the next element after one, with that name; null without any.
inline const XmlElement* FirstOf(const XmlElement* element, std::string_view name) {
    while (element && NameOf(*element) != name)
        element = element->next_sibling();
    return element;
}
inline const XmlElement* ChildOf(const XmlElement* parent, std::string_view name) {
    return parent ? FirstOf(parent->first_node(), name) : nullptr;
}
inline const XmlElement* NextOf(const XmlElement* element) {
    return FirstOf(element->next_sibling(), NameOf(*element));
}

inline std::optional<std::string> AttributeOf(const XmlElement* element, std::string_view name) {
    for (const auto* attribute = element ? element->first_attribute() : nullptr; attribute;
         attribute = attribute->next_attribute())
        if (NameOf(*attribute) == name)
            return std::string(attribute->value(), attribute->value_size());
    return std::nullopt;
}

// The element's text with that of everything inside it.
inline std::string TextOf(const XmlElement* element) {
    if (element->type() != rapidxml::node_element)
        return std::string(element->value(), element->value_size());
    std::string text;
    for (const XmlElement* part = element->first_node(); part; part = part->next_sibling())
        text += TextOf(part);
    return text;
}

} // namespace kalvrooms::practice::spreadsheet
