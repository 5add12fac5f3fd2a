#pragma once
// Owners of what COM hands out.

#include <windows.h>

#include <oaidl.h>
#include <oleauto.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <string>
#include <utility>

namespace kalvrooms::practice {

// A failure that reaches the client as it is.
class ComError : public std::exception {
  public:
    explicit ComError(HRESULT result, UINT argument = 0) : result_(result), argument_(argument) {
        std::snprintf(what_.data(), what_.size(), "COM error 0x%08lX",
                      static_cast<unsigned long>(result));
    }
    const char* what() const noexcept override { return what_.data(); }
    HRESULT result() const { return result_; }
    // The place of the argument that did not fit, in the order of DISPPARAMS.
    UINT argument() const { return argument_; }

  private:
    HRESULT result_;
    UINT argument_;
    std::array<char, 32> what_{};
};

inline void Check(HRESULT result) {
    if (FAILED(result))
        throw ComError(result);
}

template <class Interface>
class ComPtr {
  public:
    ComPtr() = default;
    // Takes a reference of its own.
    explicit ComPtr(Interface* object) : object_(object) {
        if (object_)
            object_->AddRef();
    }
    ComPtr(const ComPtr& other) : ComPtr(other.object_) {}
    ComPtr(ComPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    ComPtr& operator=(ComPtr other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~ComPtr() {
        if (object_)
            object_->Release();
    }

    // Takes over the reference that somebody else counted.
    static ComPtr Attach(Interface* object) {
        ComPtr pointer;
        pointer.object_ = object;
        return pointer;
    }

    Interface* get() const { return object_; }
    Interface* operator->() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }
    // Where a call writes a reference that it counted; the old one is released.
    Interface** put() {
        *this = ComPtr();
        return &object_;
    }
    Interface* detach() { return std::exchange(object_, nullptr); }

  private:
    Interface* object_ = nullptr;
};

inline std::wstring TextOf(BSTR text) {
    return text ? std::wstring(text, SysStringLen(text)) : std::wstring();
}

inline BSTR NewBstr(const std::wstring& text) {
    BSTR copy = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    if (!copy)
        throw ComError(E_OUTOFMEMORY);
    return copy;
}

class Bstr {
  public:
    Bstr() = default;
    explicit Bstr(const std::wstring& text) : text_(NewBstr(text)) {}
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;
    ~Bstr() { SysFreeString(text_); }

    BSTR get() const { return text_; }
    BSTR* put() {
        SysFreeString(std::exchange(text_, nullptr));
        return &text_;
    }
    std::wstring text() const { return TextOf(text_); }

  private:
    BSTR text_ = nullptr;
};

class Variant {
  public:
    Variant() { VariantInit(&value_); }
    Variant(std::int32_t number) : Variant() {
        value_.vt = VT_I4;
        value_.lVal = number;
    }
    Variant(double number) : Variant() {
        value_.vt = VT_R8;
        value_.dblVal = number;
    }
    Variant(const std::wstring& text) : Variant() {
        value_.bstrVal = NewBstr(text);
        value_.vt = VT_BSTR;
    }
    Variant(const wchar_t* text) : Variant(std::wstring(text)) {}
    // Takes a reference of its own.
    Variant(IDispatch* object) : Variant() {
        value_.vt = VT_DISPATCH;
        value_.pdispVal = object;
        if (object)
            object->AddRef();
    }
    template <class Object>
    Variant(const ComPtr<Object>& object) : Variant(static_cast<IDispatch*>(object.get())) {}
    // Takes the array over.
    Variant(SAFEARRAY* array, VARTYPE type) : Variant() {
        value_.vt = static_cast<VARTYPE>(VT_ARRAY | type);
        value_.parray = array;
    }
    Variant(Variant&& other) noexcept : value_(other.value_) { VariantInit(&other.value_); }
    Variant& operator=(Variant&& other) noexcept {
        std::swap(value_, other.value_);
        return *this;
    }
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;
    ~Variant() { VariantClear(&value_); }

    // A value of its own, whatever the source refers to.
    static Variant CopyOf(const VARIANT& source) {
        Variant copy;
        Check(VariantCopyInd(&copy.value_, const_cast<VARIANT*>(&source)));
        return copy;
    }
    // As another type; the user's locale has no say.
    Variant As(VARTYPE type) const {
        Variant changed;
        Check(VariantChangeTypeEx(&changed.value_, const_cast<VARIANT*>(&value_), LOCALE_INVARIANT,
                                  0, type));
        return changed;
    }

    const VARIANT& raw() const { return value_; }
    VARIANT* get() { return &value_; }
    VARTYPE type() const { return value_.vt; }
    bool empty() const { return value_.vt == VT_EMPTY || value_.vt == VT_NULL; }

    std::int32_t ToLong() const { return As(VT_I4).value_.lVal; }
    double ToNumber() const { return As(VT_R8).value_.dblVal; }
    std::wstring ToText() const { return TextOf(As(VT_BSTR).value_.bstrVal); }
    // Null when there is no object in it.
    IDispatch* ToObject() const { return value_.vt == VT_DISPATCH ? value_.pdispVal : nullptr; }

    // Gives the value away.
    VARIANT detach() {
        const VARIANT value = value_;
        VariantInit(&value_);
        return value;
    }

  private:
    VARIANT value_;
};

class ComApartment {
  public:
    ComApartment() { Check(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)); }
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;
    ~ComApartment() { CoUninitialize(); }
};

} // namespace kalvrooms::practice
