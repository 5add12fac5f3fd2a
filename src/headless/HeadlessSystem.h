#pragma once
// The system services besides windows, in memory: they keep records of what was asked of them and
// can be told to fail.

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/Platform.h"

namespace kalvrooms {

// Windows-1252. The five bytes that it leaves undefined stand for the control characters of the
// same value, both ways, as Windows has it.
class HeadlessAnsiCodec final : public AnsiCodec {
  public:
    std::string Encode(const std::wstring& text) const override;
    std::wstring Decode(const std::string& bytes) const override;
};

// Key paths and value names are found without regard to letter case, as in the real registry.
class HeadlessRegistry final : public Registry {
  public:
    static constexpr std::uint32_t TypeString = 1; // REG_SZ
    static constexpr std::uint32_t TypeDword = 4;  // REG_DWORD
    struct Value {
        std::uint32_t Type = TypeDword;
        std::vector<std::uint8_t> Bytes;
        bool operator==(const Value&) const = default;
    };
    enum class Operation { Create, Open, Query, Set, Close };
    struct Call {
        Operation What = Operation::Open;
        std::wstring Path;
        std::wstring Name;  // of the value
        std::wstring Class; // of a created key
        std::uint32_t Options = 0;
        std::uint32_t AccessMask = 0;
        std::uint32_t Type = 0;
        std::int32_t Number = 0;
    };

    // What fails from now on.
    bool FailCreate = false;
    bool FailSet = false;

    const std::vector<Call>& Calls() const { return calls_; }
    void ForgetCalls() { calls_.clear(); }
    // Keys that were handed out and not closed yet.
    int OpenKeys() const { return openKeys_; }

    // The store itself, past all failures and records.
    bool HasKey(const std::wstring& path) const;
    void MakeKey(const std::wstring& path);
    void Put(const std::wstring& path, const std::wstring& name, std::int32_t number);
    void Put(const std::wstring& path, const std::wstring& name, Value value);
    void Remove(const std::wstring& path, const std::wstring& name);
    // Null when there is no such value.
    const Value* Find(const std::wstring& path, const std::wstring& name) const;
    // Error: std::logic_error when there is no such number.
    std::int32_t Number(const std::wstring& path, const std::wstring& name) const;

    std::unique_ptr<RegistryKey> CreateKey(const std::wstring& path, const std::wstring& keyClass,
                                           std::uint32_t options,
                                           std::uint32_t accessMask) override;
    std::unique_ptr<RegistryKey> OpenKey(const std::wstring& path,
                                         std::uint32_t accessMask) override;

  private:
    class Key;
    std::map<std::wstring, std::map<std::wstring, Value>> keys_;
    std::vector<Call> calls_;
    int openKeys_ = 0;
};

class HeadlessResourceLibraries final : public ResourceLibraries {
  public:
    void Put(const std::wstring& path, std::map<std::uint32_t, std::wstring> strings) {
        libraries_[path] = std::move(strings);
    }
    // The paths that were asked for, found or not.
    const std::vector<std::wstring>& Loads() const { return loads_; }
    // Libraries that were handed out and not released yet.
    int OpenLibraries() const { return openLibraries_; }
    // The identifiers that were read, in order.
    const std::vector<std::uint32_t>& Reads() const { return reads_; }

    std::unique_ptr<ResourceLibrary> Load(const std::wstring& path) override;

  private:
    class Library;
    std::map<std::wstring, std::map<std::uint32_t, std::wstring>> libraries_;
    std::vector<std::wstring> loads_;
    std::vector<std::uint32_t> reads_;
    int openLibraries_ = 0;
};

class HeadlessEnvironment final : public Environment {
  public:
    std::wstring Folder = L"C:\\Quartino";
    std::wstring ExecutableFolder() const override { return Folder; }
};

} // namespace kalvrooms
