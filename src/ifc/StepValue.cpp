#include "ifc/StepValue.h"

#include <charconv>
#include <cmath>
#include <cstring>

#include "ifc/StepFile.h"
#include "ifc/StepText.h"

namespace kalvrooms::ifc {
namespace {

// The text was cut into instances before: strings, comments and parentheses are closed.

const char* skipString(const char* at, const char* end) {
    const auto* quote =
        static_cast<const char*>(std::memchr(at + 1, '\'', static_cast<std::size_t>(end - at - 1)));
    return quote ? quote + 1 : end;
}

const char* skipBlanks(const char* at, const char* end) {
    while (at != end) {
        if (static_cast<unsigned char>(*at) <= ' ') {
            ++at;
        } else if (*at == '/' && at + 1 != end && at[1] == '*') {
            const std::string_view rest(at + 2, static_cast<std::size_t>(end - at - 2));
            const std::size_t close = rest.find("*/");
            at = close == std::string_view::npos ? end : rest.data() + close + 2;
        } else {
            break;
        }
    }
    return at;
}

// Behind the value that begins at `at`: it ends with the parenthesis that closes it or before a
// comma.
const char* skipValue(const char* at, const char* end) {
    int depth = 0;
    const char* last = at;
    while (at != end) {
        if (*at == ',' && depth == 0)
            break;
        if (*at == '\'') {
            last = at = skipString(at, end);
            continue;
        }
        if (*at == '/' || static_cast<unsigned char>(*at) <= ' ') {
            const char* next = skipBlanks(at, end);
            if (next != at) {
                at = next;
                continue;
            }
        }
        const char c = *at;
        last = ++at;
        depth += (c == '(') - (c == ')');
        if (c == ')' && depth <= 0)
            break;
    }
    return last;
}

} // namespace

Value Value::ListBehind(const StepFile& file, const char* at, const char* end) {
    return {file, skipBlanks(at, end), end};
}

bool Value::IsTyped() const {
    return begin_ != end_ && *begin_ >= 'A' && *begin_ <= 'z' && *(end_ - 1) == ')';
}

InstanceId Value::Reference() const {
    InstanceId id = 0;
    if (!IsReference() || std::from_chars(begin_ + 1, end_, id).ptr != end_ || id == 0)
        Refuse("a reference to an instance is expected");
    return id;
}

double Value::Number() const {
    double number = 0.0;
    const char* begin = begin_ != end_ && *begin_ == '+' ? begin_ + 1 : begin_;
    const auto [end, error] = std::from_chars(begin, end_, number);
    if (begin == end_ || error != std::errc() || end != end_ || !std::isfinite(number))
        Refuse("a number is expected");
    return number;
}

std::int64_t Value::Integer() const {
    const double number = Number();
    if (number != std::floor(number) || std::abs(number) > 9e15)
        Refuse("a whole number is expected");
    return static_cast<std::int64_t>(number);
}

std::string_view Value::RawText() const {
    if (!IsText() || end_ - begin_ < 2)
        Refuse("a text is expected");
    return Raw().substr(1, Raw().size() - 2);
}

std::wstring Value::Text() const {
    return DecodeText(RawText());
}

std::string_view Value::Word() const {
    if (end_ - begin_ < 3 || *begin_ != '.' || *(end_ - 1) != '.')
        Refuse("a word between dots is expected");
    return Raw().substr(1, Raw().size() - 2);
}

Value::Iterator Value::begin() const {
    const char* open = begin_;
    if (!IsList()) {
        if (!IsTyped())
            Refuse("a list is expected");
        open = begin_ + Raw().find('(');
    }
    return {*file_, open + 1, end_ - 1};
}

Value::Iterator Value::end() const {
    return {*file_, end_ - 1, end_ - 1};
}

Value Value::operator[](std::size_t index) const {
    Iterator at = begin();
    for (; index != 0 && at != end(); --index)
        ++at;
    return *at;
}

std::size_t Value::Count() const {
    std::size_t count = 0;
    for (Iterator at = begin(); at != end(); ++at)
        ++count;
    return count;
}

std::string_view Value::Type() const {
    if (!IsTyped())
        return {};
    const std::string_view name = Raw().substr(0, Raw().find('('));
    return name.substr(0, name.find_last_not_of(" \t\r\n") + 1);
}

Value Value::Untyped() const {
    return IsTyped() ? (*this)[0] : *this;
}

StepError Value::Trouble(const std::string& trouble) const {
    const std::string shown(Raw().substr(0, 40));
    return {trouble + (shown.empty() ? " and missing" : ", not " + shown), file_->LineAt(begin_),
            file_->InstanceAt(begin_)};
}

void Value::Refuse(const std::string& trouble) const {
    throw Trouble(trouble);
}

Value::Iterator::Iterator(const StepFile& file, const char* at, const char* end)
    : file_(&file), begin_(at), valueEnd_(at), end_(end) {
    find(at);
}

void Value::Iterator::find(const char* at) {
    begin_ = skipBlanks(at, end_);
    valueEnd_ = skipValue(begin_, end_);
}

Value::Iterator& Value::Iterator::operator++() {
    const char* at = skipBlanks(valueEnd_, end_);
    // The parts of a complex instance stand side by side.
    find(at != end_ && *at == ',' ? at + 1 : at);
    return *this;
}

} // namespace kalvrooms::ifc
