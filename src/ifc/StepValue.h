#pragma once
// One argument in the text of an instance. It is a window on the file's text, parsed when it is
// asked: nothing is copied, lists and typed values are walked as they stand. A value that is not of
// the kind that is asked for raises a StepError.

#include <string>
#include <string_view>

#include "ifc/StepError.h"

namespace kalvrooms::ifc {

class StepFile;

class Value {
  public:
    class Iterator;

    Value(const StepFile& file, const char* begin, const char* end)
        : file_(&file), begin_(begin), end_(end) {}

    // The list that begins at the next letter that is no blank and goes on to the end.
    static Value ListBehind(const StepFile& file, const char* at, const char* end);

    // $, *, or an argument that is not there.
    bool IsNull() const { return begin_ == end_ || *begin_ == '$' || *begin_ == '*'; }
    bool IsReference() const { return begin_ != end_ && *begin_ == '#'; }
    bool IsText() const { return begin_ != end_ && *begin_ == '\''; }
    bool IsList() const { return begin_ != end_ && *begin_ == '('; }
    bool IsTyped() const;

    InstanceId Reference() const;
    double Number() const;
    std::int64_t Integer() const;
    std::wstring Text() const;
    // The text as it stands between its quotes.
    std::string_view RawText() const;
    // An enumeration without its dots.
    std::string_view Word() const;
    // .T. is true; everything else that may stand there is not.
    bool IsTrue() const { return Raw() == ".T."; }

    // The members of a list, or what stands in the parentheses of a typed value.
    Iterator begin() const;
    Iterator end() const;
    // The member with that index; null where the list is shorter.
    Value operator[](std::size_t index) const;
    std::size_t Count() const;

    // IFCLABEL of IFCLABEL('x'); empty for a value without a type.
    std::string_view Type() const;
    // 'x' of IFCLABEL('x'), and the value itself where it has no type.
    Value Untyped() const;

    std::string_view Raw() const { return {begin_, static_cast<std::size_t>(end_ - begin_)}; }
    const StepFile& File() const { return *file_; }
    // What is wrong with it, with its place.
    StepError Trouble(const std::string& trouble) const;
    [[noreturn]] void Refuse(const std::string& trouble) const;

  private:
    const StepFile* file_;
    const char* begin_;
    const char* end_;
};

class Value::Iterator {
  public:
    using value_type = Value;
    using difference_type = std::ptrdiff_t;

    // `at` stands before a member, `end` before the parenthesis that closes the list.
    Iterator(const StepFile& file, const char* at, const char* end);

    Value operator*() const { return {*file_, begin_, valueEnd_}; }
    Iterator& operator++();
    bool operator==(const Iterator& other) const { return begin_ == other.begin_; }

  private:
    void find(const char* at);

    const StepFile* file_;
    const char* begin_;
    const char* valueEnd_;
    const char* end_;
};

} // namespace kalvrooms::ifc
