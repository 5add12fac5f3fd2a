#pragma once
// What the application's automation objects have in common: members by name, errors under the
// runtime's numbers, and calls that are put off while a dialog is open.

#include "practice/server/DispatchObject.h"
#include "practice/spreadsheet/SheetProcess.h"
#include "practice/workbook/SheetError.h"

#include <optional>
#include <string>
#include <vector>

namespace kalvrooms::practice::spreadsheet {

// One use of a member: a reading, a writing or a call. Whether it is meant as a call or as a
// reading makes no difference, as clients often cannot know.
class Use {
  public:
    Use(WORD flags, const Arguments& arguments) : flags_(flags), arguments_(arguments) {}

    bool IsPut() const { return (flags_ & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0; }
    // The arguments without the value that is written.
    UINT Count() const { return arguments_.Count() - (IsPut() ? 1 : 0); }
    bool Has(UINT index) const;
    Variant NewValue() const { return arguments_.Value(Count()); }
    const Arguments& arguments() const { return arguments_; }

    // Raise a ComError for another use than the one that the member allows.
    void OnlyReading() const;
    void AtMost(UINT count) const;

  private:
    WORD flags_;
    const Arguments& arguments_;
};

class SheetObject : public DispatchObject {
  public:
    explicit SheetObject(SheetProcess& process) : DispatchObject(process), process_(process) {}

    // Asking for names is a call between processes as every other.
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* ids) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID locale, WORD flags,
                                     DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* trouble,
                                     UINT* argument) override;

  protected:
    template <class Step>
    Variant Guarded(Step step) {
        try {
            return step();
        } catch (const SheetError& error) {
            number_ = error.number();
            throw;
        } catch (const DialogOpen&) {
            throw ComError(RPC_E_SERVERCALL_RETRYLATER);
        }
    }

    SheetProcess& process_;

  private:
    int number_ = SheetError::ApplicationDefined;
};

template <class Object>
struct SheetMember {
    const wchar_t* name;
    Variant (Object::*use)(const Use&);
};

// Binds the table `Object::Members()` to the calls.
template <class Object>
class SheetAutomation : public SheetObject {
  public:
    using SheetObject::SheetObject;

  protected:
    const wchar_t* Kind() const override { return Object::KindName; }
    std::size_t MemberCount() const override { return Object::Members().size(); }
    const wchar_t* MemberName(std::size_t index) const override {
        return Object::Members()[index].name;
    }
    Variant Perform(std::size_t index, WORD flags, const Arguments& arguments) override {
        return Guarded([&] {
            auto& self = static_cast<Object&>(*this);
            return (self.*Object::Members()[index].use)(Use(flags, arguments));
        });
    }
};

} // namespace kalvrooms::practice::spreadsheet
