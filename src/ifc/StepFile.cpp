#include "ifc/StepFile.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <fstream>
#include <limits>

namespace kalvrooms::ifc {
namespace {

// Lists nested deeper than any schema needs are refused: they would exhaust the stack.
constexpr int mostNested = 64;

constexpr char capital(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
}

constexpr bool isWordLetter(char c) {
    return (capital(c) >= 'A' && capital(c) <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '-' || c == '!';
}

constexpr std::uint32_t hashStart = 2166136261u;
constexpr std::uint32_t hashed(std::uint32_t hash, char c) {
    const std::uint64_t mixed = hash ^ static_cast<unsigned char>(capital(c));
    return static_cast<std::uint32_t>(mixed * 16777619u);
}
// 0 is a complex instance.
constexpr std::uint8_t kindOf(std::uint32_t hash) {
    return static_cast<std::uint8_t>((hash >> 16) % 255 + 1);
}

// The letters at which reading a statement has to look; the zero ends the text.
constexpr auto marks = [] {
    std::array<bool, 256> table{};
    for (const char c : {'\0', '\'', '(', ')', ';', '/'})
        table[static_cast<unsigned char>(c)] = true;
    return table;
}();

} // namespace

bool Instance::Is(std::string_view keyword) const {
    return std::equal(
        keyword_.begin(), keyword_.end(), keyword.begin(), keyword.end(),
        [](char have, char wanted) { return capital(have) == wanted; });
}

Instance Instance::Follow(std::size_t index) const {
    return arguments_.File().Get(arguments_[index]);
}

void Instance::Refuse(const std::string& trouble) const {
    const StepFile& file = arguments_.File();
    throw StepError(trouble, file.LineAt(arguments_.Raw().data()), id_);
}

// Cuts the text into statements and notes where the instances begin.
class StepFile::Scanner {
  public:
    explicit Scanner(StepFile& file)
        : file_(file), at_(file.text_.data()), end_(at_ + file.text_.size()) {}

    void Run() {
        if (std::string_view(at_, static_cast<std::size_t>(end_ - at_)).starts_with("\xEF\xBB\xBF"))
            at_ += 3;
        skipBlanks();
        if (readWord() != "ISO-10303-21")
            refuse("the text is no file after ISO 10303-21");
        closeStatement();
        for (skipBlanks(); at_ != end_; skipBlanks()) {
            statement_ = at_;
            id_ = 0;
            if (*at_ == '#')
                instance();
            else if (!section())
                break;
        }
        if (file_.insertPosition_ == 0)
            refuse("the file ends within its data");
    }

  private:
    [[noreturn]] void refuse(const std::string& trouble) const {
        throw StepError(trouble, file_.LineAt(statement_), id_);
    }

    void skipBlanks() {
        while (at_ != end_)
            if (static_cast<unsigned char>(*at_) <= ' ')
                ++at_;
            else if (!skipComment())
                return;
    }

    bool skipComment() {
        if (*at_ != '/' || at_[1] != '*')
            return false;
        const std::size_t close =
            file_.text_.find("*/", static_cast<std::size_t>(at_ - file_.text_.data()) + 2);
        if (close == std::string::npos) {
            statement_ = at_;
            refuse("a comment without an end");
        }
        at_ = file_.text_.data() + close + 2;
        return true;
    }

    void skipString() {
        const char* open = at_;
        at_ = static_cast<const char*>(
            std::memchr(at_ + 1, '\'', static_cast<std::size_t>(end_ - at_ - 1)));
        // What follows a text is never a letter: there it was the beginning of the next text.
        if (!at_ || isWordLetter(at_[1])) {
            statement_ = open;
            refuse("a text without an end");
        }
        ++at_;
    }

    std::string_view readWord() {
        const char* begin = at_;
        while (at_ != end_ && isWordLetter(*at_))
            ++at_;
        return {begin, static_cast<std::size_t>(at_ - begin)};
    }

    // Moves behind the semicolon that ends the statement.
    void closeStatement() {
        int depth = 0;
        closed_ = nullptr;
        while (true) {
            while (!marks[static_cast<unsigned char>(*at_)])
                ++at_;
            switch (*at_) {
            case '\'':
                skipString();
                continue;
            case '(':
                if (++depth > mostNested)
                    refuse("lists nested too deep");
                break;
            case ')':
                if (--depth < 0)
                    refuse("a parenthesis too many");
                if (depth == 0 && !closed_)
                    closed_ = at_ + 1;
                break;
            case ';':
                if (depth != 0)
                    refuse("a parenthesis without its end");
                ++at_;
                return;
            case '/':
                if (skipComment())
                    continue;
                break;
            case '\0':
                if (at_ == end_)
                    refuse("the file ends within a statement");
                break;
            default:
                break;
            }
            ++at_;
        }
    }

    void instance() {
        const auto [number, error] = std::from_chars(at_ + 1, end_, id_);
        if (error != std::errc() || id_ == 0) {
            id_ = 0;
            refuse("a number of an instance that cannot be one");
        }
        at_ = number;
        skipBlanks();
        if (*at_ != '=')
            refuse("'=' is expected behind the number of the instance");
        ++at_;
        skipBlanks();
        const char* begin = at_;
        std::uint32_t hash = hashStart;
        for (; isWordLetter(*at_); ++at_)
            hash = hashed(hash, *at_);
        const bool complex = at_ == begin;
        skipBlanks();
        if (*at_ != '(')
            refuse("the instance has no arguments");
        closeStatement();
        const auto length = static_cast<std::uint64_t>(closed_ - begin);
        if (length > std::numeric_limits<std::uint32_t>::max())
            refuse("a text without an end");
        file_.entries_.push_back({id_, static_cast<std::uint32_t>(length),
                                  static_cast<std::uint64_t>(begin - file_.text_.data()),
                                  complex ? std::uint64_t{0} : kindOf(hash)});
    }

    // A statement that is no instance. False: it was the last one.
    bool section() {
        const std::string_view word = readWord();
        if (word.empty())
            refuse("neither an instance nor the beginning or end of a section");
        if (word == "ENDSEC" && inData_)
            file_.insertPosition_ = static_cast<std::size_t>(statement_ - file_.text_.data());
        inData_ = word == "DATA" || (inData_ && word != "ENDSEC");
        closeStatement();
        if (word == "FILE_SCHEMA")
            readSchema();
        return word != "END-ISO-10303-21";
    }

    void readSchema() {
        const std::string_view text(statement_, static_cast<std::size_t>(at_ - statement_));
        const std::size_t open = text.find('\'');
        const std::size_t close = text.find('\'', open + 1);
        if (open != std::string_view::npos && close != std::string_view::npos)
            file_.schema_ = text.substr(open + 1, close - open - 1);
    }

    StepFile& file_;
    const char* at_;
    const char* end_;
    const char* statement_ = at_;
    // Behind the first list of the statement.
    const char* closed_ = nullptr;
    InstanceId id_ = 0;
    bool inData_ = false;
};

StepFile::StepFile(std::string text) : text_(std::move(text)) {
    // An instance takes some sixty letters.
    entries_.reserve(text_.size() / 56);
    Scanner(*this).Run();
    sort();
    kinds_.reserve(entries_.size());
    for (const Entry& entry : entries_)
        kinds_.push_back(static_cast<char>(entry.kind));
}

std::unique_ptr<const StepFile> StepFile::Load(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    const std::streamoff size = file ? static_cast<std::streamoff>(file.tellg()) : -1;
    std::string text;
    if (size >= 0) {
        text.resize(static_cast<std::size_t>(size));
        file.seekg(0).read(text.data(), size);
    }
    if (!file)
        throw std::runtime_error("the file cannot be read");
    return std::make_unique<const StepFile>(std::move(text));
}

void StepFile::sort() {
    const auto byId = [](const Entry& a, const Entry& b) { return a.id < b.id; };
    if (!std::is_sorted(entries_.begin(), entries_.end(), byId) && !sortByPlaces())
        std::stable_sort(entries_.begin(), entries_.end(), byId);
    const auto twice =
        std::adjacent_find(entries_.begin(), entries_.end(),
                           [](const Entry& a, const Entry& b) { return a.id == b.id; });
    if (twice != entries_.end())
        throw StepError("the instance stands there twice", LineAt(beginOf(*std::next(twice))),
                        twice->id);
}

// Most files use their numbers one after the other: then every entry knows its place.
bool StepFile::sortByPlaces() {
    InstanceId highest = 0;
    for (const Entry& entry : entries_)
        highest = std::max(highest, entry.id);
    if (highest > 2 * entries_.size())
        return false;
    std::vector<Entry> places(highest + std::size_t{1});
    for (const Entry& entry : entries_) {
        if (places[entry.id].id != 0)
            return false;
        places[entry.id] = entry;
    }
    std::copy_if(places.begin(), places.end(), entries_.begin(),
                 [](const Entry& entry) { return entry.id != 0; });
    return true;
}

const StepFile::Entry* StepFile::find(InstanceId id) const {
    const auto found =
        std::lower_bound(entries_.begin(), entries_.end(), id,
                         [](const Entry& entry, InstanceId wanted) { return entry.id < wanted; });
    return found != entries_.end() && found->id == id ? &*found : nullptr;
}

Instance StepFile::at(const Entry& entry) const {
    const char* begin = beginOf(entry);
    const char* at = begin;
    while (isWordLetter(*at))
        ++at;
    const std::string_view keyword(begin, static_cast<std::size_t>(at - begin));
    return {entry.id, keyword, Value::ListBehind(*this, at, begin + entry.length)};
}

Instance StepFile::Get(InstanceId id) const {
    const Entry* entry = find(id);
    if (!entry)
        throw StepError("the instance is missing", 0, id);
    return at(*entry);
}

Instance StepFile::Get(const Value& reference) const {
    const Entry* entry = find(reference.Reference());
    if (!entry)
        reference.Refuse("the instance is missing");
    return at(*entry);
}

std::vector<InstanceId> StepFile::OfType(std::string_view keyword) const {
    std::uint32_t hash = hashStart;
    for (const char c : keyword)
        hash = hashed(hash, c);
    const char kind = static_cast<char>(kindOf(hash));
    std::vector<InstanceId> ids;
    for (std::size_t i = kinds_.find(kind); i != std::string::npos; i = kinds_.find(kind, i + 1))
        if (at(entries_[i]).Is(keyword))
            ids.push_back(entries_[i].id);
    return ids;
}

void StepFile::countUses() const {
    uses_.resize(entries_.size());
    const char* end = text_.data() + text_.size();
    for (const char* at = text_.data(); at != end; ++at) {
        at = static_cast<const char*>(std::memchr(at, '#', static_cast<std::size_t>(end - at)));
        if (!at)
            break;
        InstanceId id = 0;
        const char* next = std::from_chars(at + 1, end, id).ptr;
        while (next != end && static_cast<unsigned char>(*next) <= ' ')
            ++next;
        const Entry* entry = next != end && *next == '=' ? nullptr : find(id);
        if (!entry)
            continue;
        std::uint8_t& uses = uses_[static_cast<std::size_t>(entry - entries_.data())];
        uses = static_cast<std::uint8_t>(std::min(uses + 1, 2));
    }
}

bool StepFile::IsUsedOnce(InstanceId id) const {
    if (uses_.empty())
        countUses();
    const Entry* entry = find(id);
    return entry && uses_[static_cast<std::size_t>(entry - entries_.data())] < 2;
}

std::size_t StepFile::LineAt(const char* position) const {
    if (lineEnds_.empty()) {
        for (std::size_t at = 0; at < text_.size(); ++at)
            if (text_[at] == '\n')
                lineEnds_.push_back(at);
        lineEnds_.push_back(text_.size());
    }
    const auto offset = static_cast<std::size_t>(position - text_.data());
    const auto line = std::lower_bound(lineEnds_.begin(), lineEnds_.end(), offset);
    return 1 + static_cast<std::size_t>(line - lineEnds_.begin());
}

InstanceId StepFile::InstanceAt(const char* position) const {
    if (places_.empty()) {
        for (const Entry& entry : entries_)
            places_.push_back(&entry);
        std::sort(places_.begin(), places_.end(),
                  [](const Entry* a, const Entry* b) { return a->begin < b->begin; });
    }
    const auto offset = static_cast<std::size_t>(position - text_.data());
    const auto behind =
        std::upper_bound(places_.begin(), places_.end(), offset,
                         [](std::size_t at, const Entry* entry) { return at < entry->begin; });
    return behind == places_.begin() ? 0 : (*std::prev(behind))->id;
}

} // namespace kalvrooms::ifc
