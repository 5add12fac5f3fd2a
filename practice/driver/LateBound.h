#pragma once
// An automation object of another process, called by the names of its members: how a tour and
// tests steer the practice host. The program has a caller of its own, with counting and retries.

#include <windows.h>

#include <oleauto.h>

#include <comdef.h>

#include <string>
#include <utility>
#include <vector>

namespace kalvrooms::driver {

// What a call was answered with instead of a result.
struct CallFailed : std::exception {
    CallFailed(HRESULT outcome, std::wstring words)
        : result(outcome), description(std::move(words)),
          text("automation error " + std::to_string(outcome)) {}
    const char* what() const noexcept override { return text.c_str(); }

    HRESULT result;
    std::wstring description; // of the server; empty where it gave none
    std::string text;
};

class LateBound {
  public:
    LateBound() = default;
    // Error: CallFailed when the value is no object.
    explicit LateBound(const _variant_t& object) : object_(object) {
        if (!*this)
            throw CallFailed(E_POINTER, {});
    }

    static LateBound create(const wchar_t* programmaticIdentifier) {
        CLSID id{};
        check(CLSIDFromProgID(programmaticIdentifier, &id));
        IDispatch* object = nullptr;
        check(CoCreateInstance(id, nullptr, CLSCTX_LOCAL_SERVER, IID_IDispatch,
                               reinterpret_cast<void**>(&object)));
        return LateBound(_variant_t(object, false));
    }

    explicit operator bool() const { return object_.vt == VT_DISPATCH && object_.pdispVal; }

    template <class... Values>
    _variant_t call(const wchar_t* member, const Values&... values) const {
        return invoke(member, DISPATCH_METHOD, {packed(values)...});
    }
    _variant_t get(const wchar_t* member) const { return invoke(member, DISPATCH_PROPERTYGET, {}); }
    template <class Value>
    void put(const wchar_t* member, const Value& value) const {
        invoke(member, DISPATCH_PROPERTYPUT, {packed(value)});
    }
    template <class... Values>
    LateBound object(const wchar_t* member, const Values&... values) const {
        return LateBound(answer(member, values...));
    }
    // What a member brings, be it a method or a property.
    template <class... Values>
    _variant_t answer(const wchar_t* member, const Values&... values) const {
        return invoke(member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, {packed(values)...});
    }
    bool knows(const wchar_t* member) const {
        auto* name = const_cast<wchar_t*>(member);
        DISPID id = DISPID_UNKNOWN;
        return SUCCEEDED(
            object_.pdispVal->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id));
    }

    std::int32_t number(const wchar_t* member) const { return get(member); }
    std::wstring text(const wchar_t* member) const {
        const _bstr_t text(get(member));
        return text.length() == 0 ? std::wstring() : std::wstring(text, text.length());
    }

  private:
    static void check(HRESULT result, const std::wstring& description = {}) {
        if (FAILED(result))
            throw CallFailed(result, description);
    }
    static _variant_t packed(const LateBound& object) { return object.object_; }
    static _variant_t packed(const _variant_t& value) { return value; }
    static _variant_t packed(const std::wstring& text) { return _variant_t(text.c_str()); }
    static _variant_t packed(const wchar_t* text) { return _variant_t(text); }
    static _variant_t packed(int number) { return _variant_t(static_cast<long>(number)); }
    static _variant_t packed(double number) { return _variant_t(number); }

    _variant_t invoke(const wchar_t* member, int kind, std::vector<_variant_t> arguments) const {
        auto* name = const_cast<wchar_t*>(member);
        DISPID id = DISPID_UNKNOWN;
        check(object_.pdispVal->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id));
        // They travel from the last to the first.
        std::vector<VARIANT> values(arguments.rbegin(), arguments.rend());
        DISPPARAMS parameters{values.data(), nullptr, static_cast<UINT>(values.size()), 0};
        DISPID put = DISPID_PROPERTYPUT;
        if (kind == DISPATCH_PROPERTYPUT) {
            parameters.rgdispidNamedArgs = &put;
            parameters.cNamedArgs = 1;
        }
        _variant_t result;
        EXCEPINFO trouble{};
        const HRESULT outcome = object_.pdispVal->Invoke(
            id, IID_NULL, LOCALE_USER_DEFAULT, static_cast<WORD>(kind), &parameters,
            kind == DISPATCH_PROPERTYPUT ? nullptr : &result, &trouble, nullptr);
        const _bstr_t source(trouble.bstrSource, false), help(trouble.bstrHelpFile, false);
        const _bstr_t words(trouble.bstrDescription, false);
        check(outcome, words.length() ? std::wstring(words, words.length()) : std::wstring());
        return result;
    }

    _variant_t object_;
};

} // namespace kalvrooms::driver
