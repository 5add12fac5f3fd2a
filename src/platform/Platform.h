#pragma once
// What the program wants from an operating system besides windows, as small abstract interfaces,
// and the bundle in which a platform hands all of it in.

#include <cstdint>
#include <memory>
#include <string>

namespace kalvrooms {

namespace Gui {
class Desktop;
}

// 8-bit texts in the system's ANSI code page. A character that the code page lacks becomes "?".
class AnsiCodec {
  public:
    virtual ~AnsiCodec() = default;
    virtual std::string Encode(const std::wstring& text) const = 0;
    virtual std::wstring Decode(const std::string& bytes) const = 0;
};

class RegistryKey {
  public:
    virtual ~RegistryKey() = default; // closes the key
    // A 4-byte REG_DWORD; false when it is missing or anything else, the value then untouched.
    virtual bool QueryDword(const std::wstring& name, std::int32_t& value) = 0;
    virtual bool SetDword(const std::wstring& name, std::int32_t value) = 0;
};

// The current user's hive. Both return null when the key cannot be had.
class Registry {
  public:
    virtual ~Registry() = default;
    virtual std::unique_ptr<RegistryKey> CreateKey(const std::wstring& path,
                                                   const std::wstring& keyClass,
                                                   std::uint32_t options,
                                                   std::uint32_t accessMask) = 0;
    virtual std::unique_ptr<RegistryKey> OpenKey(const std::wstring& path,
                                                 std::uint32_t accessMask) = 0;
};

class ResourceLibrary {
  public:
    virtual ~ResourceLibrary() = default; // releases the library
    // The string resource, cut at 255 characters; empty when there is none.
    virtual std::wstring String(std::uint32_t identifier) = 0;
};

class ResourceLibraries {
  public:
    virtual ~ResourceLibraries() = default;
    // As data only, no code of it runs; null when it cannot be loaded.
    virtual std::unique_ptr<ResourceLibrary> Load(const std::wstring& path) = 0;
};

class Environment {
  public:
    virtual ~Environment() = default;
    // As the system reports it: with a separator at the end only for a drive's root.
    virtual std::wstring ExecutableFolder() const = 0;
};

struct Platform {
    Gui::Desktop& desktop;
    AnsiCodec& ansi;
    Registry& registry;
    ResourceLibraries& libraries;
    Environment& environment;
};

} // namespace kalvrooms
