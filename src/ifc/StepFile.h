#pragma once
// A file after ISO 10303-21 (clear text): a table of its instances over its text. Instances are
// found by their number; their arguments are parsed when they are asked for.

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ifc/StepValue.h"

namespace kalvrooms::ifc {

class Instance {
  public:
    Instance(InstanceId id, std::string_view keyword, Value arguments)
        : id_(id), keyword_(keyword), arguments_(arguments) {}

    InstanceId Id() const { return id_; }
    // In the letters of the file; empty for a complex instance, whose parts are the arguments.
    std::string_view Keyword() const { return keyword_; }
    // `keyword` in capitals.
    bool Is(std::string_view keyword) const;
    // Null where the instance has fewer.
    Value operator[](std::size_t index) const { return arguments_[index]; }
    const Value& Arguments() const { return arguments_; }
    // The instance that an argument refers to.
    Instance Follow(std::size_t index) const;
    [[noreturn]] void Refuse(const std::string& trouble) const;

  private:
    InstanceId id_;
    std::string_view keyword_;
    Value arguments_;
};

class StepFile {
  public:
    // Raises a StepError for a text whose instances cannot be told apart.
    explicit StepFile(std::string text);
    // Raises a std::runtime_error as well where the file cannot be read.
    static std::unique_ptr<const StepFile> Load(const std::filesystem::path& path);
    StepFile(const StepFile&) = delete;
    StepFile& operator=(const StepFile&) = delete;

    const std::string& Text() const { return text_; }
    // As FILE_SCHEMA names it; empty without that.
    std::string_view Schema() const { return schema_; }

    bool Has(InstanceId id) const { return find(id) != nullptr; }
    Instance Get(InstanceId id) const;
    // Where a value refers to.
    Instance Get(const Value& reference) const;
    // In the order of their numbers; `keyword` in capitals.
    std::vector<InstanceId> OfType(std::string_view keyword) const;
    // Whether at most one other instance refers to it. The first question reads the whole file.
    bool IsUsedOnce(InstanceId id) const;

    InstanceId HighestId() const { return entries_.empty() ? 0 : entries_.back().id; }
    // Where new instances go: before ENDSEC of the last DATA section.
    std::size_t InsertPosition() const { return insertPosition_; }

    std::size_t LineAt(const char* position) const;
    // The instance in whose text the position lies; 0 before the first one.
    InstanceId InstanceAt(const char* position) const;

  private:
    struct Entry {
        InstanceId id;
        std::uint32_t length; // to behind the parenthesis that closes the arguments
        // Of the keyword or of the parenthesis of a complex instance.
        std::uint64_t begin : 56;
        std::uint64_t kind : 8; // a hash of the keyword
    };
    class Scanner;

    const Entry* find(InstanceId id) const;
    Instance at(const Entry& entry) const;
    void sort();
    bool sortByPlaces();
    const char* beginOf(const Entry& entry) const { return text_.data() + entry.begin; }
    void countUses() const;

    std::string text_;
    std::string_view schema_;
    std::vector<Entry> entries_;
    // Of each entry, where a keyword is looked for.
    std::string kinds_;
    std::size_t insertPosition_ = 0;
    // Of each entry; 2 stands for more.
    mutable std::vector<std::uint8_t> uses_;
    // Where lines end and instances begin, in the order of the text; read at the first trouble.
    mutable std::vector<std::size_t> lineEnds_;
    mutable std::vector<const Entry*> places_;
};

} // namespace kalvrooms::ifc
