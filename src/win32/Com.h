#pragma once
// Owners of what COM hands out: interface pointers, texts, variants, arrays. (The compiler's own
// _variant_t and _bstr_t need a support library that mingw-w64 does not have.)

#include <windows.h>

#include <oleauto.h>
#include <wrl/client.h>

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>

#include "model/RuntimeError.h"

namespace kalvrooms {

using Microsoft::WRL::ComPtr;

// The server is in the middle of something else, and the call may be tried again. The last code is
// the spreadsheet application's own, while its user edits a cell.
inline bool IsRejected(HRESULT result) {
    return result == RPC_E_CALL_REJECTED || result == RPC_E_SERVERCALL_RETRYLATER ||
           result == RPC_E_SERVERCALL_REJECTED || result == static_cast<HRESULT>(0x800AC472UL);
}

// A failure of COM. As a runtime error it has the number that belongs to its code: codes of the
// runtime's own errors are 0x800A0000 + number, everything unknown is an AutomationError.
class ComError : public RuntimeError {
  public:
    // Without a description the system's own is taken. The argument is the place of the one that
    // did not fit, in the order of DISPPARAMS.
    explicit ComError(HRESULT result, const std::wstring& description = {}, UINT argument = 0);
    HRESULT result() const { return result_; }
    bool IsBusy() const noexcept override { return IsRejected(result_); }
    UINT argument() const { return argument_; }

  private:
    HRESULT result_;
    UINT argument_;
};

inline void Check(HRESULT result) {
    if (FAILED(result))
        throw ComError(result);
}

inline std::wstring TextOf(BSTR text) {
    return text ? std::wstring(text, SysStringLen(text)) : std::wstring();
}

// The caller frees it.
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
    // Where a call writes a text of its own.
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
    // Not for pointers, which would turn into truth values.
    template <std::same_as<bool> Truth>
    Variant(Truth truth) : Variant() {
        value_.vt = VT_BOOL;
        value_.boolVal = truth ? VARIANT_TRUE : VARIANT_FALSE;
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
    Variant(const ComPtr<Object>& object) : Variant(static_cast<IDispatch*>(object.Get())) {}
    // Takes the array over.
    Variant(SAFEARRAY* array, VARTYPE elementType) : Variant() {
        if (!array)
            throw ComError(E_OUTOFMEMORY);
        value_.vt = static_cast<VARTYPE>(VT_ARRAY | elementType);
        value_.parray = array;
    }
    Variant(Variant&& other) noexcept : value_(other.detach()) {}
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
    // As another type, by the rules of a locale.
    Variant As(VARTYPE type, LCID locale = LOCALE_INVARIANT) const {
        Variant changed;
        Check(VariantChangeTypeEx(&changed.value_, const_cast<VARIANT*>(&value_), locale, 0, type));
        return changed;
    }

    const VARIANT& raw() const { return value_; }
    VARIANT* get() { return &value_; }
    VARTYPE type() const { return value_.vt; }
    bool empty() const { return value_.vt == VT_EMPTY || value_.vt == VT_NULL; }

    // The user's locale has no say.
    std::int32_t ToLong() const { return As(VT_I4).value_.lVal; }
    double ToNumber() const { return As(VT_R8).value_.dblVal; }
    std::wstring ToText() const { return TextOf(As(VT_BSTR).value_.bstrVal); }
    // Null when there is no automation object in it.
    ComPtr<IDispatch> ToObject() const {
        ComPtr<IDispatch> object;
        if ((value_.vt == VT_DISPATCH || value_.vt == VT_UNKNOWN) && value_.punkVal)
            value_.punkVal->QueryInterface(IID_PPV_ARGS(&object));
        return object;
    }

    // Gives the value away.
    VARIANT detach() {
        const VARIANT value = value_;
        VariantInit(&value_);
        return value;
    }

  private:
    VARIANT value_;
};

// A new array of variants or 64-bit floats with the given numbers of elements. Error:
// E_OUTOFMEMORY.
inline Variant NewArray(VARTYPE type, std::initializer_list<SAFEARRAYBOUND> bounds) {
    return Variant(SafeArrayCreate(type, static_cast<UINT>(bounds.size()),
                                   const_cast<SAFEARRAYBOUND*>(bounds.begin())),
                   type);
}

// Looks into an array of one or two dimensions while it lives: numbers, texts, objects or variants.
// Elements are counted from 0 whatever the array's own bounds are; those of a column lie side by
// side.
class ArrayView {
  public:
    // Error: DISP_E_TYPEMISMATCH when the value holds no such array.
    ArrayView(const Variant& value, UINT dimensions);
    ArrayView(const ArrayView&) = delete;
    ArrayView& operator=(const ArrayView&) = delete;
    ~ArrayView() { SafeArrayUnaccessData(array_); }

    VARTYPE type() const { return type_; }
    std::size_t rows() const { return rows_; }
    std::size_t columns() const { return columns_; }
    // The elements themselves. Error: SubscriptOutOfRange outside the array or for another type.
    double& Number(std::size_t row, std::size_t column = 0);
    VARIANT& Value(std::size_t row, std::size_t column = 0);
    // A copy of an element of any type.
    Variant Copy(std::size_t row, std::size_t column = 0) const;

  private:
    void* at(std::size_t row, std::size_t column) const;
    void* at(VARTYPE type, std::size_t row, std::size_t column) const;

    SAFEARRAY* array_ = nullptr;
    void* data_ = nullptr;
    VARTYPE type_;
    std::size_t size_; // of an element
    std::size_t rows_ = 0;
    std::size_t columns_ = 1;
};

class ComApartment {
  public:
    ComApartment() { Check(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)); }
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;
    ~ComApartment() { CoUninitialize(); }
};

} // namespace kalvrooms
