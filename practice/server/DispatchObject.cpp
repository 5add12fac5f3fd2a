#include "practice/server/DispatchObject.h"

#include "drawing/HostError.h"
#include "drawing/Text.h"

#include <exception>
#include <new>

namespace kalvrooms::practice {

namespace {

// Known within this process only: tells our own objects from a client's.
// {7C0F2B5E-86C1-4B0E-9B65-0D0C2A6E7A11}
constexpr IID OwnObjectIid = {
    0x7c0f2b5e, 0x86c1, 0x4b0e, {0x9b, 0x65, 0x0d, 0x0c, 0x2a, 0x6e, 0x7a, 0x11}};

HRESULT Describe(EXCEPINFO* trouble, const std::wstring& description, HRESULT code = HostFailure) {
    if (trouble) {
        *trouble = {};
        trouble->bstrSource = SysAllocString(L"Kalvero");
        trouble->bstrDescription =
            SysAllocStringLen(description.data(), static_cast<UINT>(description.size()));
        trouble->scode = code;
    }
    return DISP_E_EXCEPTION;
}

} // namespace

template <class Convert>
auto Arguments::Converted(UINT index, Convert convert) const {
    try {
        return convert(Value(index));
    } catch (const ComError& error) {
        throw ComError(error.result(), {}, PlaceOf(index));
    }
}

Variant Arguments::Value(UINT index) const {
    if (index >= parameters_.cArgs)
        throw ComError(DISP_E_BADPARAMCOUNT);
    return Variant::CopyOf(parameters_.rgvarg[PlaceOf(index)]);
}

std::int32_t Arguments::Long(UINT index) const {
    return Converted(
        index, [](const Variant& value) { return value.ToLong(); });
}

double Arguments::Number(UINT index) const {
    return Converted(
        index, [](const Variant& value) { return value.ToNumber(); });
}

std::wstring Arguments::Text(UINT index) const {
    return Converted(
        index, [](const Variant& value) { return value.ToText(); });
}

ComPtr<DispatchObject> Arguments::OwnObject(UINT index) const {
    const Variant value = Value(index);
    const ComPtr<IDispatch> object = value.ToObject();
    void* own = nullptr;
    if (!object || FAILED(object->QueryInterface(OwnObjectIid, &own)))
        throw ComError(DISP_E_TYPEMISMATCH, {}, PlaceOf(index));
    return TakeOver(static_cast<DispatchObject*>(own));
}

HRESULT DispatchObject::QueryInterface(REFIID iid, void** object) {
    if (!object || !IsEqualIID(iid, OwnObjectIid))
        return Counted::QueryInterface(iid, object);
    *object = this;
    AddRef();
    return S_OK;
}

HRESULT DispatchObject::GetTypeInfoCount(UINT* count) {
    if (!count)
        return E_POINTER;
    *count = 0;
    return S_OK;
}

HRESULT DispatchObject::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
    if (info)
        *info = nullptr;
    return E_NOTIMPL;
}

HRESULT DispatchObject::GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
    if (!IsEqualIID(iid, IID_NULL))
        return DISP_E_UNKNOWNINTERFACE;
    if (!names || !ids || count == 0)
        return E_INVALIDARG;
    // Named arguments are not supported.
    for (UINT i = 0; i < count; ++i)
        ids[i] = DISPID_UNKNOWN;
    for (std::size_t member = 0; member < MemberCount(); ++member) {
        if (_wcsicmp(names[0], MemberName(member)) == 0 && gate_.Knows(MemberName(member))) {
            ids[0] = static_cast<DISPID>(member) + 1;
            return count == 1 ? S_OK : DISP_E_UNKNOWNNAME;
        }
    }
    return DISP_E_UNKNOWNNAME;
}

HRESULT DispatchObject::Invoke(DISPID id, REFIID iid, LCID, WORD flags, DISPPARAMS* parameters,
                               VARIANT* result, EXCEPINFO* trouble, UINT* argument) {
    if (!IsEqualIID(iid, IID_NULL))
        return DISP_E_UNKNOWNINTERFACE;
    if (!parameters)
        return E_INVALIDARG;
    // The call may release the last reference that a client has.
    const ComPtr<DispatchObject> alive(this);
    if (result)
        VariantInit(result);
    try {
        const bool known = id >= 1 && static_cast<std::size_t>(id) <= MemberCount();
        const std::size_t member = known ? static_cast<std::size_t>(id) - 1 : 0;
        if (!gate_.Enter(Kind(), known ? MemberName(member) : L"?"))
            return S_OK;
        if (!known)
            return DISP_E_MEMBERNOTFOUND;
        Variant value = Perform(member, flags, Arguments(*parameters));
        if (result)
            *result = value.detach();
        return S_OK;
    } catch (const HostError& error) {
        return Describe(trouble, error.description(),
                        error.number() == HostError::DialogCancelled ? E_ABORT : HostFailure);
    } catch (const ComError& error) {
        if (argument)
            *argument = error.argument();
        return error.result();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (const std::exception& error) {
        return Describe(trouble, FromUtf8(error.what()));
    }
}

} // namespace kalvrooms::practice
