#include "practice/workbook/Xml.h"

#include "drawing/HostError.h"
#include "drawing/Text.h"

#include <cstdint>

namespace kalvrooms::practice::spreadsheet {

namespace {

constexpr int deepestNesting = 100;
constexpr std::string_view replacement = "\xEF\xBF\xBD";
constexpr const char* xmlSpace = "http://www.w3.org/XML/1998/namespace";

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

bool isNameCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '-' || c == '.' || c == ':' || static_cast<unsigned char>(c) >= 0x80;
}

class Reader {
  public:
    explicit Reader(std::string_view bytes) : bytes_(bytes) {}

    XmlElement Document() {
        take("\xEF\xBB\xBF");
        skipBetweenElements();
        XmlElement root = element(0, {{"xml", xmlSpace}});
        skipBetweenElements();
        if (at_ != bytes_.size())
            fail();
        return root;
    }

  private:
    using Spaces = std::map<std::string, std::string>; // by prefix

    [[noreturn]] static void fail() { throw HostError(L"This is not XML as it can be read here."); }
    bool take(std::string_view text) {
        if (bytes_.substr(at_, text.size()) != text)
            return false;
        at_ += text.size();
        return true;
    }
    void want(std::string_view text) {
        if (!take(text))
            fail();
    }
    char next() const {
        if (at_ >= bytes_.size())
            fail();
        return bytes_[at_];
    }
    bool skipBlanks() {
        const std::size_t start = at_;
        while (at_ < bytes_.size() && isBlank(bytes_[at_]))
            ++at_;
        return at_ > start;
    }
    std::string_view until(std::string_view end) {
        const std::size_t found = bytes_.find(end, at_);
        if (found == std::string_view::npos)
            fail();
        const std::string_view inside = bytes_.substr(at_, found - at_);
        at_ = found + end.size();
        return inside;
    }
    void skipBetweenElements() {
        for (;;) {
            skipBlanks();
            if (take("<?"))
                until("?>");
            else if (take("<!--"))
                until("-->");
            else
                return;
        }
    }
    std::string name() {
        const std::size_t start = at_;
        while (at_ < bytes_.size() && isNameCharacter(bytes_[at_]))
            ++at_;
        if (at_ == start)
            fail();
        return std::string(bytes_.substr(start, at_ - start));
    }
    static XmlName resolved(const std::string& name, const Spaces& spaces, bool isAttribute) {
        const std::size_t colon = name.find(':');
        const std::string prefix = colon == std::string::npos ? "" : name.substr(0, colon);
        XmlName result{"", colon == std::string::npos ? name : name.substr(colon + 1)};
        // Attributes without a prefix are in no namespace.
        if (isAttribute && prefix.empty())
            return result;
        const auto space = spaces.find(prefix);
        if (space != spaces.end())
            result.space = space->second;
        else if (!prefix.empty())
            fail();
        return result;
    }
    // After the "&".
    void reference(std::string& text) {
        const std::string_view what = until(";");
        if (what == "lt") {
            text += '<';
        } else if (what == "gt") {
            text += '>';
        } else if (what == "amp") {
            text += '&';
        } else if (what == "quot") {
            text += '"';
        } else if (what == "apos") {
            text += '\'';
        } else if (what.size() > 1 && what.front() == '#') {
            character(text, what.substr(1));
        } else {
            fail();
        }
    }
    static void character(std::string& text, std::string_view digits) {
        const bool isHex = digits.front() == 'x';
        if (isHex)
            digits.remove_prefix(1);
        if (digits.empty() || digits.size() > 8)
            fail();
        std::uint32_t code = 0;
        for (const char c : digits) {
            std::uint32_t digit = 0;
            if (c >= '0' && c <= '9')
                digit = static_cast<std::uint32_t>(c - '0');
            else if (isHex && (c | 0x20) >= 'a' && (c | 0x20) <= 'f')
                digit = static_cast<std::uint32_t>((c | 0x20) - 'a' + 10);
            else
                fail();
            code = code * (isHex ? 16 : 10) + digit;
        }
        if (code == 0 || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF))
            fail();
        AppendUtf8(text, code);
    }
    std::string quoted() {
        const char quote = next();
        if (quote != '"' && quote != '\'')
            fail();
        ++at_;
        std::string text;
        while (next() != quote) {
            const char c = bytes_[at_++];
            if (c == '<')
                fail();
            if (c == '&')
                reference(text);
            else
                text += isBlank(c) ? ' ' : c;
        }
        ++at_;
        return text;
    }

    XmlElement element(int depth, Spaces spaces) {
        if (depth > deepestNesting)
            fail();
        want("<");
        const std::string tag = name();
        std::vector<std::pair<std::string, std::string>> attributes;
        for (;;) {
            const bool separated = skipBlanks();
            if (next() == '>' || next() == '/')
                break;
            if (!separated)
                fail();
            std::string attribute = name();
            skipBlanks();
            want("=");
            skipBlanks();
            attributes.emplace_back(std::move(attribute), quoted());
        }
        for (const auto& [attribute, value] : attributes) {
            if (attribute == "xmlns")
                spaces[""] = value;
            else if (attribute.starts_with("xmlns:"))
                spaces[attribute.substr(6)] = value;
        }
        XmlElement result;
        result.name = resolved(tag, spaces, false);
        for (const auto& [attribute, value] : attributes) {
            if (attribute == "xmlns" || attribute.starts_with("xmlns:"))
                continue;
            if (!result.attributes.emplace(resolved(attribute, spaces, true), value).second)
                fail();
        }
        if (take("/>"))
            return result;
        want(">");
        content(result, depth, spaces);
        if (name() != tag)
            fail();
        skipBlanks();
        want(">");
        return result;
    }
    // Up to and with the "</" of the end.
    void content(XmlElement& into, int depth, const Spaces& spaces) {
        while (!take("</")) {
            if (take("<![CDATA["))
                into.text += until("]]>");
            else if (take("<!--"))
                until("-->");
            else if (take("<?"))
                until("?>");
            else if (next() == '<')
                into.children.push_back(element(depth + 1, spaces));
            else if (take("&"))
                reference(into.text);
            else if (take("\r\n") || take("\r"))
                into.text += '\n';
            else
                into.text += bytes_[at_++];
        }
    }

    std::string_view bytes_;
    std::size_t at_ = 0;
};

} // namespace

const std::string* XmlElement::Attribute(const XmlName& wanted) const {
    const auto found = attributes.find(wanted);
    return found == attributes.end() ? nullptr : &found->second;
}

const XmlElement* XmlElement::Child(const XmlName& wanted) const {
    for (const XmlElement& child : children) {
        if (child.name == wanted)
            return &child;
    }
    return nullptr;
}

std::string XmlElement::WholeText() const {
    std::string whole = text;
    for (const XmlElement& child : children)
        whole += child.WholeText();
    return whole;
}

XmlElement ReadXml(std::string_view bytes) {
    return Reader(bytes).Document();
}

std::string XmlText(std::string_view utf8) {
    std::string text;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const char c = utf8[i];
        switch (c) {
        case '<':
            text += "&lt;";
            break;
        case '>':
            text += "&gt;";
            break;
        case '&':
            text += "&amp;";
            break;
        case '"':
            text += "&quot;";
            break;
        case '\t':
            text += "&#9;";
            break;
        case '\n':
            text += "&#10;";
            break;
        case '\r':
            text += "&#13;";
            break;
        default:
            if (static_cast<unsigned char>(c) < 0x20)
                text += replacement;
            else
                text += c;
        }
    }
    return text;
}

} // namespace kalvrooms::practice::spreadsheet
