#include "practice/spreadsheet/SheetObjects.h"

#include "practice/spreadsheet/CellVariants.h"
#include "practice/workbook/SheetError.h"

#include <cwctype>
#include <memory>
#include <utility>
#include <vector>

namespace kalvrooms::practice::spreadsheet {

namespace {

// The code that stands for one of the runtime's own error numbers.
SCODE numbered(int number) {
    return static_cast<SCODE>(0x800A0000UL | static_cast<unsigned long>(number));
}

// Errors under the runtime's numbers; calls that are put off while a dialog is open.
template <class Object>
class SheetObject : public Automation<Object> {
  public:
    explicit SheetObject(SheetProcess& process) : Automation<Object>(process), process_(process) {}

    // Asking for names is a call between processes as every other.
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* ids) override {
        const ComPtr<DispatchObject> alive(this);
        process_.Speaks(locale);
        try {
            process_.Enter(Object::KindName, L"GetIDsOfNames");
        } catch (const ComError& error) {
            return error.result();
        } catch (const SheetError& error) {
            return numbered(error.number());
        }
        return Automation<Object>::GetIDsOfNames(iid, names, count, locale, ids);
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID locale, WORD flags,
                                     DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* trouble,
                                     UINT* argument) override {
        const ComPtr<DispatchObject> alive(this);
        process_.Speaks(locale);
        number_ = SheetError::ApplicationDefined;
        const HRESULT outcome = Automation<Object>::Invoke(id, iid, locale, flags, parameters,
                                                           result, trouble, argument);
        if (outcome == DISP_E_EXCEPTION && trouble) {
            SysFreeString(
                std::exchange(trouble->bstrSource, SysAllocString(L"PracticeSpreadsheet")));
            trouble->scode = numbered(number_);
        }
        return outcome;
    }

  protected:
    Variant Perform(std::size_t index, WORD flags, const Arguments& arguments) override {
        try {
            // A client often cannot know whether it reads or calls.
            return Automation<Object>::Perform(index, static_cast<WORD>(flags | DISPATCH_METHOD),
                                               arguments);
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

template <class Object, class... Values>
Variant newObject(Values&&... values) {
    return Variant(Make<Object>(std::forward<Values>(values)...));
}

OpenWorkbook& stillOpen(const WorkbookPointer& workbook) {
    if (!workbook->isOpen)
        throw SheetError(L"The workbook has been closed.", SheetError::ObjectRequired);
    return *workbook;
}

// "A1:K501"
CellRange rangeOf(const std::wstring& address) {
    std::size_t at = 0;
    const auto number = [&](auto isPart, int base, auto digitOf) {
        int value = 0;
        for (; at < address.size() && isPart(address[at]) && value <= (1 << 20); ++at)
            value = value * base + digitOf(address[at]);
        return value;
    };
    const auto column = [&] {
        return number([](wchar_t c) { return c >= L'A' && c <= L'Z'; }, 26,
                      [](wchar_t c) { return c - L'A' + 1; });
    };
    const auto row = [&] {
        return number([](wchar_t c) { return c >= L'0' && c <= L'9'; }, 10,
                      [](wchar_t c) { return c - L'0'; });
    };
    CellRange range;
    range.Column = column();
    range.Row = row();
    if (at < address.size() && address[at] == L':') {
        ++at;
        range.Columns = column() - range.Column + 1;
        range.Rows = row() - range.Row + 1;
    }
    if (at != address.size())
        throw SheetError(L"This is no address: " + address);
    return range;
}

class RangeObject final : public SheetObject<RangeObject> {
  public:
    static constexpr const wchar_t* KindName = L"range";
    static const MemberTable<RangeObject>& Members() {
        static const MemberTable<RangeObject> all = {
            {L"Value", 0, &RangeObject::value, {}, &RangeObject::setValue},
            {L"NumberFormat", 0, {}, {}, &RangeObject::setFormat}};
        return all;
    }
    RangeObject(SheetProcess& process, WorkbookPointer workbook, std::shared_ptr<Sheet> sheet,
                const CellRange& range)
        : SheetObject(process), workbook_(std::move(workbook)), sheet_(std::move(sheet)),
          range_(range) {
        sheet_->Check(range_);
    }

  private:
    Variant value(const Arguments&) {
        stillOpen(workbook_);
        return VariantOf(*sheet_, range_);
    }
    void setValue(const Variant& value) {
        stillOpen(workbook_).saved = false;
        Enter(*sheet_, range_, value);
    }
    void setFormat(const Variant& format) {
        stillOpen(workbook_).saved = false;
        sheet_->Format(range_, format.ToText());
    }

    WorkbookPointer workbook_;
    std::shared_ptr<Sheet> sheet_;
    CellRange range_;
};

class WorksheetObject final : public SheetObject<WorksheetObject> {
  public:
    static constexpr const wchar_t* KindName = L"worksheet";
    static const MemberTable<WorksheetObject>& Members() {
        static const MemberTable<WorksheetObject> all = {{L"Range", 1, &WorksheetObject::range},
                                                         {L"SaveAs", 2, &WorksheetObject::saveAs}};
        return all;
    }
    WorksheetObject(SheetProcess& process, WorkbookPointer workbook, std::shared_ptr<Sheet> sheet)
        : SheetObject(process), workbook_(std::move(workbook)), sheet_(std::move(sheet)) {}

  private:
    Variant range(const Arguments& arguments) {
        stillOpen(workbook_);
        return newObject<RangeObject>(process_, workbook_, sheet_, rangeOf(arguments.Text(0)));
    }
    Variant saveAs(const Arguments& arguments) {
        process_.application.SaveAs(stillOpen(workbook_), arguments.Text(0), arguments.Long(1));
        return {};
    }

    WorkbookPointer workbook_;
    std::shared_ptr<Sheet> sheet_;
};

class WorksheetsObject final : public SheetObject<WorksheetsObject> {
  public:
    static constexpr const wchar_t* KindName = L"worksheets";
    static const MemberTable<WorksheetsObject>& Members() {
        static const MemberTable<WorksheetsObject> all = {{L"Add", 0, &WorksheetsObject::add}};
        return all;
    }
    WorksheetsObject(SheetProcess& process, WorkbookPointer workbook)
        : SheetObject(process), workbook_(std::move(workbook)) {}

  private:
    Variant add(const Arguments&) {
        OpenWorkbook& workbook = stillOpen(workbook_);
        workbook.saved = false;
        return newObject<WorksheetObject>(process_, workbook_, workbook.book.AddSheet());
    }

    WorkbookPointer workbook_;
};

class WorkbookObject final : public SheetObject<WorkbookObject> {
  public:
    static constexpr const wchar_t* KindName = L"workbook";
    static const MemberTable<WorkbookObject>& Members() {
        static const MemberTable<WorkbookObject> all = {
            {L"ActiveSheet", 0, &WorkbookObject::activeSheet},
            {L"Worksheets", 0, &WorkbookObject::worksheets},
            {L"Save", 0, &WorkbookObject::save}};
        return all;
    }
    WorkbookObject(SheetProcess& process, WorkbookPointer workbook)
        : SheetObject(process), workbook_(std::move(workbook)) {}

  private:
    Variant activeSheet(const Arguments&) {
        const Workbook& book = stillOpen(workbook_).book;
        return newObject<WorksheetObject>(process_, workbook_, book.sheets[book.active]);
    }
    Variant worksheets(const Arguments&) {
        stillOpen(workbook_);
        return newObject<WorksheetsObject>(process_, workbook_);
    }
    Variant save(const Arguments&) {
        process_.application.Save(stillOpen(workbook_));
        return {};
    }

    WorkbookPointer workbook_;
};

class WorkbooksObject final : public SheetObject<WorkbooksObject> {
  public:
    static constexpr const wchar_t* KindName = L"workbooks";
    static const MemberTable<WorkbooksObject>& Members() {
        static const MemberTable<WorkbooksObject> all = {{L"Open", 1, &WorkbooksObject::open},
                                                         {L"Add", 0, &WorkbooksObject::add},
                                                         {L"Close", 0, &WorkbooksObject::close}};
        return all;
    }
    using SheetObject::SheetObject;

  private:
    Variant open(const Arguments& arguments) {
        return newObject<WorkbookObject>(process_, process_.application.Open(arguments.Text(0)));
    }
    Variant add(const Arguments&) {
        return newObject<WorkbookObject>(process_, process_.application.Add());
    }
    Variant close(const Arguments&) {
        process_.application.CloseAll();
        return {};
    }
};

class ApplicationObject final : public SheetObject<ApplicationObject> {
  public:
    static constexpr const wchar_t* KindName = L"application";
    static const MemberTable<ApplicationObject>& Members() {
        static const MemberTable<ApplicationObject> all = {
            {L"Version", 0, &ApplicationObject::version},
            {L"DisplayAlerts",
             0,
             &ApplicationObject::displayAlerts,
             {},
             &ApplicationObject::setDisplayAlerts},
            {L"AutomationSecurity",
             0,
             &ApplicationObject::automationSecurity,
             {},
             &ApplicationObject::setAutomationSecurity},
            {L"Workbooks", 0, &ApplicationObject::workbooks},
            {L"Quit", 0, &ApplicationObject::quit}};
        return all;
    }
    using SheetObject::SheetObject;

  private:
    Variant version(const Arguments&) { return process_.settings.version; }
    Variant displayAlerts(const Arguments&) { return process_.application.displayAlerts; }
    Variant automationSecurity(const Arguments&) { return process_.application.automationSecurity; }
    void setAutomationSecurity(const Variant& level) {
        process_.application.automationSecurity = level.ToLong();
    }
    void setDisplayAlerts(const Variant& on) {
        process_.application.displayAlerts = on.As(VT_BOOL).raw().boolVal != VARIANT_FALSE;
    }
    Variant workbooks(const Arguments&) { return newObject<WorkbooksObject>(process_); }
    Variant quit(const Arguments&) {
        if (process_.application.CloseAll())
            process_.Quit();
        return {};
    }
};

} // namespace

IDispatch* NewApplicationObject(SheetProcess& process) {
    return new ApplicationObject(process);
}

} // namespace kalvrooms::practice::spreadsheet
