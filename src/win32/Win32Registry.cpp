#include "win32/Win32Registry.h"

#include <windows.h>

namespace kalvrooms {
namespace {

class Key : public RegistryKey {
  public:
    explicit Key(HKEY key) : key_(key) {}
    ~Key() override { RegCloseKey(key_); }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    bool QueryDword(const std::wstring& name, std::int32_t& value) override {
        std::int32_t read = 0;
        DWORD type = 0;
        DWORD size = sizeof read;
        if (RegQueryValueExW(key_, name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(&read),
                             &size) != ERROR_SUCCESS ||
            type != REG_DWORD || size != sizeof read)
            return false;
        value = read;
        return true;
    }

    bool SetDword(const std::wstring& name, std::int32_t value) override {
        return RegSetValueExW(key_, name.c_str(), 0, REG_DWORD,
                              reinterpret_cast<const BYTE*>(&value), sizeof value) == ERROR_SUCCESS;
    }

  private:
    HKEY key_;
};

// Without a path of the host the key is "\\QTO", directly below the hive. The system refuses a
// leading backslash (ERROR_BAD_PATHNAME), other than its early versions; without it the same key is
// named.
template <typename Call>
std::unique_ptr<RegistryKey> tryPath(const std::wstring& path, Call call) {
    // A name ends at a NUL; what stands before it is another key, at worst the hive itself.
    if (path.find(L'\0') != std::wstring::npos)
        return nullptr;
    HKEY key = nullptr;
    if (call(path.c_str(), &key) == ERROR_SUCCESS)
        return std::make_unique<Key>(key);
    const std::size_t start = path.find_first_not_of(L'\\');
    if (start != 0 && start != std::wstring::npos &&
        call(path.c_str() + start, &key) == ERROR_SUCCESS)
        return std::make_unique<Key>(key);
    return nullptr;
}

} // namespace

std::unique_ptr<RegistryKey> Win32Registry::CreateKey(const std::wstring& path,
                                                      const std::wstring& keyClass,
                                                      std::uint32_t options,
                                                      std::uint32_t accessMask) {
    std::wstring className = keyClass;
    return tryPath(path, [&](const wchar_t* name, HKEY* key) {
        return RegCreateKeyExW(HKEY_CURRENT_USER, name, 0, className.data(), options, accessMask,
                               nullptr, key, nullptr);
    });
}

std::unique_ptr<RegistryKey> Win32Registry::OpenKey(const std::wstring& path,
                                                    std::uint32_t accessMask) {
    return tryPath(
        path,
        [&](const wchar_t* name, HKEY* key) {
            return RegOpenKeyExW(HKEY_CURRENT_USER, name, 0, accessMask, key);
        });
}

} // namespace kalvrooms
