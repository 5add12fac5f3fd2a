#include "win32/Com.h"

namespace kalvrooms {
namespace {

constexpr HRESULT fromWin32(unsigned long code) {
    return static_cast<HRESULT>(0x80070000UL | code);
}

long numberOf(HRESULT result) {
    switch (result) {
    case fromWin32(RPC_S_SERVER_UNAVAILABLE):
    case fromWin32(RPC_S_CALL_FAILED):
    case fromWin32(RPC_S_CALL_FAILED_DNE):
    case RPC_E_SERVER_DIED:
    case RPC_E_SERVER_DIED_DNE:
    case RPC_E_DISCONNECTED:
    case RPC_E_SYS_CALL_FAILED:
    case CO_E_OBJNOTCONNECTED:
        return RuntimeError::ServerUnavailable;
    case DISP_E_TYPEMISMATCH:
        return RuntimeError::TypeMismatch;
    case DISP_E_OVERFLOW:
        return RuntimeError::Overflow;
    default:
        break;
    }
    constexpr WORD ofTheRuntime = 0x800A;
    if (HIWORD(result) == ofTheRuntime)
        return LOWORD(result);
    return RuntimeError::AutomationError;
}

std::wstring systemText(HRESULT result) {
    wchar_t* text = nullptr;
    const DWORD length = FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
        nullptr, static_cast<DWORD>(result), 0, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
    std::wstring description(text ? text : L"", text ? length : 0);
    LocalFree(text);
    while (!description.empty() && (description.back() == L'\r' || description.back() == L'\n'))
        description.pop_back();
    return description;
}

std::wstring descriptionOf(HRESULT result, const std::wstring& description) {
    const bool unknown = description.empty() && numberOf(result) == RuntimeError::AutomationError;
    return unknown ? systemText(result) : description;
}

// Of an element of an array; 0 for types that no array of ours has.
std::size_t sizeOf(VARTYPE type) {
    switch (type) {
    case VT_VARIANT:
        return sizeof(VARIANT);
    case VT_R8:
    case VT_CY:
    case VT_DATE:
        return sizeof(double);
    case VT_R4:
    case VT_I4:
    case VT_INT:
        return sizeof(LONG);
    case VT_I2:
        return sizeof(SHORT);
    case VT_BSTR:
    case VT_DISPATCH:
    case VT_UNKNOWN:
        return sizeof(void*);
    default:
        return 0;
    }
}

} // namespace

ComError::ComError(HRESULT result, const std::wstring& description, UINT argument)
    : RuntimeError(numberOf(result), descriptionOf(result, description)), result_(result),
      argument_(argument) {}

ArrayView::ArrayView(const Variant& value, UINT dimensions)
    : type_(static_cast<VARTYPE>(value.type() & VT_TYPEMASK)), size_(sizeOf(type_)) {
    SAFEARRAY* const array = value.raw().parray;
    if (value.type() != (VT_ARRAY | type_) || size_ == 0 || !array ||
        SafeArrayGetDim(array) != dimensions || SafeArrayGetElemsize(array) != size_)
        throw ComError(DISP_E_TYPEMISMATCH);
    const auto extent = [array](UINT dimension) {
        LONG lower = 0;
        LONG upper = -1;
        Check(SafeArrayGetLBound(array, dimension, &lower));
        Check(SafeArrayGetUBound(array, dimension, &upper));
        return upper < lower ? 0 : static_cast<std::size_t>(upper - lower) + 1;
    };
    rows_ = extent(1);
    if (dimensions == 2)
        columns_ = extent(2);
    Check(SafeArrayAccessData(array, &data_));
    array_ = array;
}

void* ArrayView::at(std::size_t row, std::size_t column) const {
    if (row >= rows_ || column >= columns_)
        throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    return static_cast<std::byte*>(data_) + size_ * (column * rows_ + row);
}

void* ArrayView::at(VARTYPE type, std::size_t row, std::size_t column) const {
    if (type != type_)
        throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    return at(row, column);
}

double& ArrayView::Number(std::size_t row, std::size_t column) {
    return *static_cast<double*>(at(VT_R8, row, column));
}

VARIANT& ArrayView::Value(std::size_t row, std::size_t column) {
    return *static_cast<VARIANT*>(at(VT_VARIANT, row, column));
}

Variant ArrayView::Copy(std::size_t row, std::size_t column) const {
    VARIANT element{};
    element.vt = static_cast<VARTYPE>(VT_BYREF | type_);
    element.byref = at(row, column);
    return Variant::CopyOf(element);
}

} // namespace kalvrooms
