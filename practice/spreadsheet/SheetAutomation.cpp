#include "practice/spreadsheet/SheetAutomation.h"

#include <utility>

namespace kalvrooms::practice::spreadsheet {

namespace {

// Under which the runtime's own errors travel.
constexpr SCODE numbered(int number) {
    return static_cast<SCODE>(0x800A0000UL | static_cast<unsigned long>(number));
}

} // namespace

bool Use::Has(UINT index) const {
    if (index >= Count())
        return false;
    const Variant value = arguments_.Value(index);
    return value.type() != VT_ERROR || value.raw().scode != DISP_E_PARAMNOTFOUND;
}

void Use::OnlyReading() const {
    if (IsPut())
        throw ComError(DISP_E_MEMBERNOTFOUND);
}

void Use::AtMost(UINT count) const {
    for (UINT index = count; index < Count(); ++index) {
        if (Has(index))
            throw ComError(DISP_E_BADPARAMCOUNT);
    }
}

HRESULT SheetObject::GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                   DISPID* ids) {
    const ComPtr<DispatchObject> alive(this);
    process_.Speaks(locale);
    try {
        process_.Enter(Kind(), L"GetIDsOfNames");
    } catch (const ComError& error) {
        return error.result();
    } catch (const SheetError& error) {
        return numbered(error.number());
    }
    return DispatchObject::GetIDsOfNames(iid, names, count, locale, ids);
}

HRESULT SheetObject::Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters,
                            VARIANT* result, EXCEPINFO* trouble, UINT* argument) {
    const ComPtr<DispatchObject> alive(this);
    process_.Speaks(locale);
    number_ = SheetError::ApplicationDefined;
    const HRESULT outcome =
        DispatchObject::Invoke(id, iid, locale, flags, parameters, result, trouble, argument);
    if (outcome == DISP_E_EXCEPTION && trouble) {
        SysFreeString(std::exchange(trouble->bstrSource, SysAllocString(L"PracticeSpreadsheet")));
        trouble->scode = numbered(number_);
    }
    return outcome;
}

} // namespace kalvrooms::practice::spreadsheet
