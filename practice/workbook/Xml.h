#pragma once
// A small reader of XML: elements with their namespaces, attributes and texts. No document types,
// so that no file can make it load or unfold anything.

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kalvrooms::practice::spreadsheet {

struct XmlName {
    std::string space; // the namespace itself, empty without one
    std::string local;
    auto operator<=>(const XmlName&) const = default;
};

struct XmlElement {
    XmlName name;
    std::map<XmlName, std::string> attributes;
    std::vector<XmlElement> children;
    std::string text; // of the element itself, what its children say left out

    const std::string* Attribute(const XmlName& wanted) const;
    const XmlElement* Child(const XmlName& wanted) const; // the first
    // The element's text with that of everything inside it, in reading order as far as text
    // comes before children.
    std::string WholeText() const;
};

// UTF-8 with or without a byte-order mark. Raises a HostError for everything that is not well
// formed, and for what this reader leaves out.
XmlElement ReadXml(std::string_view bytes);

// As text between tags or in double quotes. What XML cannot say becomes U+FFFD.
std::string XmlText(std::string_view utf8);

} // namespace kalvrooms::practice::spreadsheet
