#include "headless/HeadlessSystem.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

#include "model/RuntimeError.h"

namespace kalvrooms {
namespace {

// Windows-1252 from byte 0x80 to 0x9F; everywhere else byte and character have the same value.
constexpr std::array<wchar_t, 32> upperControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
constexpr wchar_t firstControl = 0x80;
constexpr wchar_t firstLatin = 0xA0;
constexpr wchar_t lastLatin = 0xFF;

// What a key has to be opened for.
constexpr std::uint32_t queryValue = 1;
constexpr std::uint32_t setValue = 2;

constexpr std::size_t longestResource = 255;

std::wstring folded(std::wstring text) {
    std::transform(text.begin(), text.end(), text.begin(), [](wchar_t character) {
        return character >= L'A' && character <= L'Z' ? character + (L'a' - L'A') : character;
    });
    return text;
}

HeadlessRegistry::Value dword(std::int32_t number) {
    const auto bits = static_cast<std::uint32_t>(number);
    HeadlessRegistry::Value value;
    for (int shift = 0; shift < 32; shift += 8)
        value.Bytes.push_back(static_cast<std::uint8_t>(bits >> shift));
    return value;
}

bool readDword(const HeadlessRegistry::Value& value, std::int32_t& number) {
    if (value.Type != HeadlessRegistry::TypeDword || value.Bytes.size() != sizeof(number))
        return false;
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < value.Bytes.size(); ++i)
        bits |= static_cast<std::uint32_t>(value.Bytes[i]) << (8 * i);
    number = static_cast<std::int32_t>(bits);
    return true;
}

} // namespace

// ------------------------------------------------------------------------- code page

std::string HeadlessAnsiCodec::Encode(const std::wstring& text) const {
    std::string bytes(text.size(), '?');
    auto byte = bytes.begin();
    for (const wchar_t character : text) {
        if (character < firstControl || (character >= firstLatin && character <= lastLatin)) {
            *byte = static_cast<char>(character);
        } else {
            const auto special = std::find(upperControls.begin(), upperControls.end(), character);
            if (special != upperControls.end())
                *byte = static_cast<char>(firstControl + (special - upperControls.begin()));
        }
        ++byte;
    }
    return bytes;
}

std::wstring HeadlessAnsiCodec::Decode(const std::string& bytes) const {
    std::wstring text(bytes.size(), L' ');
    auto character = text.begin();
    for (const char byte : bytes) {
        const wchar_t value = static_cast<unsigned char>(byte);
        const bool special = value >= firstControl && value < firstLatin;
        *character++ =
            special ? upperControls[static_cast<std::size_t>(value - firstControl)] : value;
    }
    return text;
}

// ------------------------------------------------------------------------- registry

class HeadlessRegistry::Key final : public RegistryKey {
  public:
    Key(HeadlessRegistry& registry, std::wstring path, std::uint32_t accessMask)
        : registry_(registry), path_(std::move(path)), accessMask_(accessMask) {
        ++registry_.openKeys_;
    }
    ~Key() override {
        --registry_.openKeys_;
        record(Operation::Close, std::wstring(), 0);
    }

    bool QueryDword(const std::wstring& name, std::int32_t& value) override {
        record(Operation::Query, name, 0);
        if ((accessMask_ & queryValue) == 0)
            return false;
        const Value* found = registry_.Find(path_, name);
        return found && readDword(*found, value);
    }

    bool SetDword(const std::wstring& name, std::int32_t value) override {
        record(Operation::Set, name, value);
        if (registry_.FailSet || (accessMask_ & setValue) == 0)
            return false;
        registry_.Put(path_, name, value);
        return true;
    }

  private:
    void record(Operation what, const std::wstring& name, std::int32_t number) {
        Call call;
        call.What = what;
        call.Path = path_;
        call.Name = name;
        call.AccessMask = accessMask_;
        call.Type = what == Operation::Set ? TypeDword : 0;
        call.Number = number;
        registry_.calls_.push_back(std::move(call));
    }

    HeadlessRegistry& registry_;
    std::wstring path_;
    std::uint32_t accessMask_;
};

bool HeadlessRegistry::HasKey(const std::wstring& path) const {
    return keys_.contains(folded(path));
}

void HeadlessRegistry::MakeKey(const std::wstring& path) {
    keys_[folded(path)];
}

void HeadlessRegistry::Put(const std::wstring& path, const std::wstring& name,
                           std::int32_t number) {
    Put(path, name, dword(number));
}

void HeadlessRegistry::Put(const std::wstring& path, const std::wstring& name, Value value) {
    keys_[folded(path)][folded(name)] = std::move(value);
}

void HeadlessRegistry::Remove(const std::wstring& path, const std::wstring& name) {
    keys_[folded(path)].erase(folded(name));
}

const HeadlessRegistry::Value* HeadlessRegistry::Find(const std::wstring& path,
                                                      const std::wstring& name) const {
    const auto key = keys_.find(folded(path));
    if (key == keys_.end())
        return nullptr;
    const auto value = key->second.find(folded(name));
    return value == key->second.end() ? nullptr : &value->second;
}

std::int32_t HeadlessRegistry::Number(const std::wstring& path, const std::wstring& name) const {
    const Value* found = Find(path, name);
    std::int32_t number = 0;
    if (!found || !readDword(*found, number))
        throw std::logic_error("the registry holds no such number");
    return number;
}

std::unique_ptr<RegistryKey> HeadlessRegistry::CreateKey(const std::wstring& path,
                                                         const std::wstring& keyClass,
                                                         std::uint32_t options,
                                                         std::uint32_t accessMask) {
    Call call;
    call.What = Operation::Create;
    call.Path = path;
    call.Class = keyClass;
    call.Options = options;
    call.AccessMask = accessMask;
    calls_.push_back(std::move(call));
    if (FailCreate)
        return nullptr;
    MakeKey(path);
    return std::make_unique<Key>(*this, path, accessMask);
}

std::unique_ptr<RegistryKey> HeadlessRegistry::OpenKey(const std::wstring& path,
                                                       std::uint32_t accessMask) {
    Call call;
    call.What = Operation::Open;
    call.Path = path;
    call.AccessMask = accessMask;
    calls_.push_back(std::move(call));
    if (!HasKey(path))
        return nullptr;
    return std::make_unique<Key>(*this, path, accessMask);
}

// ------------------------------------------------------------------------- resource libraries

class HeadlessResourceLibraries::Library final : public ResourceLibrary {
  public:
    Library(HeadlessResourceLibraries& owner, std::map<std::uint32_t, std::wstring> strings)
        : owner_(owner), strings_(std::move(strings)) {
        ++owner_.openLibraries_;
    }
    ~Library() override { --owner_.openLibraries_; }

    std::wstring String(std::uint32_t identifier) override {
        owner_.reads_.push_back(identifier);
        const auto found = strings_.find(identifier);
        return found == strings_.end() ? std::wstring() : found->second.substr(0, longestResource);
    }

  private:
    HeadlessResourceLibraries& owner_;
    std::map<std::uint32_t, std::wstring> strings_;
};

std::unique_ptr<ResourceLibrary> HeadlessResourceLibraries::Load(const std::wstring& path) {
    loads_.push_back(path);
    const auto found = libraries_.find(path);
    if (found == libraries_.end())
        return nullptr;
    return std::make_unique<Library>(*this, found->second);
}

} // namespace kalvrooms
