#include "practice/spreadsheet/SheetObjects.h"

#include "drawing/Text.h"
#include "practice/spreadsheet/CellVariants.h"

#include <utility>

namespace kalvrooms::practice::spreadsheet {

namespace {

template <class Object, class... Values>
Variant NewObject(Values&&... values) {
    return Variant(ComPtr<Object>::Attach(new Object(std::forward<Values>(values)...)));
}

Variant Truth(bool truth) {
    Variant variant;
    variant.get()->vt = VT_BOOL;
    variant.get()->boolVal = truth ? VARIANT_TRUE : VARIANT_FALSE;
    return variant;
}

bool TruthOf(const Variant& variant) {
    return variant.As(VT_BOOL).raw().boolVal != VARIANT_FALSE;
}

// One of several, by its number from 1 or by its name.
template <class Pointer, class NameOf>
Pointer Chosen(const std::vector<Pointer>& all, const Variant& which, NameOf nameOf) {
    if (which.type() == VT_BSTR) {
        for (const Pointer& one : all) {
            if (EqualsIgnoringCase(nameOf(*one), which.ToText()))
                return one;
        }
    } else {
        const std::int32_t number = which.ToLong();
        if (number >= 1 && static_cast<std::size_t>(number) <= all.size())
            return all[static_cast<std::size_t>(number) - 1];
    }
    throw SheetError(L"The index lies outside of the range.", 9);
}

OpenWorkbook& StillOpen(const WorkbookPointer& workbook) {
    if (!workbook->isOpen)
        throw SheetError(L"The workbook has been closed.", SheetError::ObjectRequired);
    return *workbook;
}

Variant SaveUnderName(SheetProcess& process, OpenWorkbook& workbook, const Use& use) {
    use.OnlyReading();
    const std::wstring name = use.arguments().Text(0);
    std::optional<int> form;
    if (use.Has(1))
        form = use.arguments().Long(1);
    process.application.SaveAs(workbook, name, form);
    return {};
}

} // namespace

// --------------------------------------------------------------------------------- application

const std::vector<SheetMember<ApplicationObject>>& ApplicationObject::Members() {
    static const std::vector<SheetMember<ApplicationObject>> members = {
        {L"Name", &ApplicationObject::Name},
        {L"Version", &ApplicationObject::Version},
        {L"Ready", &ApplicationObject::Ready},
        {L"UserControl", &ApplicationObject::UserControl},
        {L"Visible", &ApplicationObject::Visible},
        {L"DisplayAlerts", &ApplicationObject::DisplayAlerts},
        {L"Workbooks", &ApplicationObject::Workbooks},
        {L"ActiveWorkbook", &ApplicationObject::ActiveWorkbook},
        {L"Quit", &ApplicationObject::Quit},
    };
    return members;
}

Variant ApplicationObject::Name(const Use& use) {
    use.OnlyReading();
    return L"Practice spreadsheet application";
}

Variant ApplicationObject::Version(const Use& use) {
    use.OnlyReading();
    return process_.settings.version;
}

Variant ApplicationObject::Ready(const Use& use) {
    use.OnlyReading();
    return Truth(true);
}

Variant ApplicationObject::UserControl(const Use& use) {
    use.OnlyReading();
    return Truth(process_.InUsersHands());
}

Variant ApplicationObject::Visible(const Use& use) {
    if (use.IsPut())
        visible_ = TruthOf(use.NewValue());
    return Truth(visible_ || process_.InUsersHands());
}

Variant ApplicationObject::DisplayAlerts(const Use& use) {
    if (use.IsPut())
        process_.application.displayAlerts = TruthOf(use.NewValue());
    return Truth(process_.application.displayAlerts);
}

Variant ApplicationObject::Workbooks(const Use& use) {
    use.OnlyReading();
    const auto all = ComPtr<WorkbooksObject>::Attach(new WorkbooksObject(process_));
    return use.Has(0) ? all.get()->Item(use) : Variant(all);
}

Variant ApplicationObject::ActiveWorkbook(const Use& use) {
    use.OnlyReading();
    const WorkbookPointer active = process_.application.ActiveWorkbook();
    return active ? NewObject<WorkbookObject>(process_, active)
                  : Variant(static_cast<IDispatch*>(nullptr));
}

Variant ApplicationObject::Quit(const Use& use) {
    use.OnlyReading();
    if (process_.application.CloseAll())
        process_.Quit();
    return {};
}

// --------------------------------------------------------------------------------- workbooks

const std::vector<SheetMember<WorkbooksObject>>& WorkbooksObject::Members() {
    static const std::vector<SheetMember<WorkbooksObject>> members = {
        {L"Count", &WorkbooksObject::Count}, {L"Item", &WorkbooksObject::Item},
        {L"Open", &WorkbooksObject::Open},   {L"Add", &WorkbooksObject::Add},
        {L"Close", &WorkbooksObject::Close},
    };
    return members;
}

Variant WorkbooksObject::Count(const Use& use) {
    use.OnlyReading();
    return static_cast<std::int32_t>(process_.application.workbooks().size());
}

Variant WorkbooksObject::Item(const Use& use) {
    use.OnlyReading();
    return NewObject<WorkbookObject>(
        process_, Chosen(process_.application.workbooks(), use.arguments().Value(0),
                         [](const OpenWorkbook& workbook) { return workbook.name; }));
}

Variant WorkbooksObject::Open(const Use& use) {
    use.OnlyReading();
    use.AtMost(1);
    return NewObject<WorkbookObject>(process_, process_.application.Open(use.arguments().Text(0)));
}

Variant WorkbooksObject::Add(const Use& use) {
    use.OnlyReading();
    use.AtMost(0);
    return NewObject<WorkbookObject>(process_, process_.application.Add());
}

Variant WorkbooksObject::Close(const Use& use) {
    use.OnlyReading();
    use.AtMost(0);
    process_.application.CloseAll();
    return {};
}

// --------------------------------------------------------------------------------- workbook

const std::vector<SheetMember<WorkbookObject>>& WorkbookObject::Members() {
    static const std::vector<SheetMember<WorkbookObject>> members = {
        {L"Name", &WorkbookObject::Name},
        {L"FullName", &WorkbookObject::FullName},
        {L"ReadOnly", &WorkbookObject::ReadOnly},
        {L"Saved", &WorkbookObject::Saved},
        {L"ActiveSheet", &WorkbookObject::ActiveSheet},
        {L"Worksheets", &WorkbookObject::Worksheets},
        {L"Sheets", &WorkbookObject::Worksheets},
        {L"Save", &WorkbookObject::Save},
        {L"SaveAs", &WorkbookObject::SaveAs},
        {L"Close", &WorkbookObject::Close},
    };
    return members;
}

OpenWorkbook& WorkbookObject::Opened() const {
    return StillOpen(workbook_);
}

Variant WorkbookObject::Name(const Use& use) {
    use.OnlyReading();
    return Opened().name;
}

Variant WorkbookObject::FullName(const Use& use) {
    use.OnlyReading();
    return Opened().fullName;
}

Variant WorkbookObject::ReadOnly(const Use& use) {
    use.OnlyReading();
    return Truth(Opened().ReadOnly());
}

Variant WorkbookObject::Saved(const Use& use) {
    if (use.IsPut())
        Opened().saved = TruthOf(use.NewValue());
    return Truth(Opened().saved);
}

Variant WorkbookObject::ActiveSheet(const Use& use) {
    use.OnlyReading();
    Workbook& book = Opened().book;
    return NewObject<WorksheetObject>(process_, workbook_, book.sheets[book.active]);
}

Variant WorkbookObject::Worksheets(const Use& use) {
    use.OnlyReading();
    Opened();
    const auto all = ComPtr<WorksheetsObject>::Attach(new WorksheetsObject(process_, workbook_));
    return use.Has(0) ? all.get()->Item(use) : Variant(all);
}

Variant WorkbookObject::Save(const Use& use) {
    use.OnlyReading();
    process_.application.Save(Opened());
    return {};
}

Variant WorkbookObject::SaveAs(const Use& use) {
    return SaveUnderName(process_, Opened(), use);
}

Variant WorkbookObject::Close(const Use& use) {
    use.OnlyReading();
    std::optional<bool> saveChanges;
    if (use.Has(0))
        saveChanges = TruthOf(use.arguments().Value(0));
    process_.application.Close(Opened(), saveChanges);
    return {};
}

// --------------------------------------------------------------------------------- worksheets

const std::vector<SheetMember<WorksheetsObject>>& WorksheetsObject::Members() {
    static const std::vector<SheetMember<WorksheetsObject>> members = {
        {L"Count", &WorksheetsObject::Count},
        {L"Item", &WorksheetsObject::Item},
        {L"Add", &WorksheetsObject::Add},
    };
    return members;
}

Variant WorksheetsObject::Count(const Use& use) {
    use.OnlyReading();
    return static_cast<std::int32_t>(StillOpen(workbook_).book.sheets.size());
}

Variant WorksheetsObject::Item(const Use& use) {
    use.OnlyReading();
    return NewObject<WorksheetObject>(process_, workbook_,
                                      Chosen(StillOpen(workbook_).book.sheets,
                                             use.arguments().Value(0),
                                             [](const Sheet& sheet) { return sheet.name(); }));
}

Variant WorksheetsObject::Add(const Use& use) {
    use.OnlyReading();
    use.AtMost(0);
    OpenWorkbook& workbook = StillOpen(workbook_);
    workbook.saved = false;
    return NewObject<WorksheetObject>(process_, workbook_, workbook.book.AddSheet());
}

// --------------------------------------------------------------------------------- worksheet

const std::vector<SheetMember<WorksheetObject>>& WorksheetObject::Members() {
    static const std::vector<SheetMember<WorksheetObject>> members = {
        {L"Name", &WorksheetObject::Name},         {L"Range", &WorksheetObject::Range},
        {L"Cells", &WorksheetObject::Cells},       {L"UsedRange", &WorksheetObject::UsedRange},
        {L"Activate", &WorksheetObject::Activate}, {L"SaveAs", &WorksheetObject::SaveAs},
    };
    return members;
}

Variant WorksheetObject::Name(const Use& use) {
    use.OnlyReading();
    StillOpen(workbook_);
    return sheet_->name();
}

Area WorksheetObject::AreaOf(const Use& use, UINT index) const {
    if (use.arguments().Value(index).type() == VT_DISPATCH) {
        const auto range = use.arguments().Own<RangeObject>(index);
        if (range.get()->sheet() != sheet_.get())
            throw SheetError(L"The range lies on another sheet.");
        return range.get()->area();
    }
    return AreaFrom(use.arguments().Text(index));
}

Variant WorksheetObject::Range(const Use& use) {
    use.OnlyReading();
    use.AtMost(2);
    StillOpen(workbook_);
    Area area = AreaOf(use, 0);
    if (use.Has(1))
        area = Around(area, AreaOf(use, 1));
    return NewObject<RangeObject>(process_, workbook_, sheet_, area);
}

Variant WorksheetObject::Cells(const Use& use) {
    use.OnlyReading();
    use.AtMost(2);
    StillOpen(workbook_);
    const auto all = ComPtr<RangeObject>::Attach(
        new RangeObject(process_, workbook_, sheet_, {1, 1, LastRow, LastColumn}));
    return use.Has(0) ? all.get()->Item(use) : Variant(all);
}

Variant WorksheetObject::UsedRange(const Use& use) {
    use.OnlyReading();
    StillOpen(workbook_);
    return NewObject<RangeObject>(process_, workbook_, sheet_, sheet_->Used());
}

Variant WorksheetObject::Activate(const Use& use) {
    use.OnlyReading();
    Workbook& book = StillOpen(workbook_).book;
    for (std::size_t i = 0; i < book.sheets.size(); ++i) {
        if (book.sheets[i] == sheet_)
            book.active = i;
    }
    return {};
}

Variant WorksheetObject::SaveAs(const Use& use) {
    return SaveUnderName(process_, StillOpen(workbook_), use);
}

// --------------------------------------------------------------------------------- range

const std::vector<SheetMember<RangeObject>>& RangeObject::Members() {
    static const std::vector<SheetMember<RangeObject>> members = {
        {L"Address", &RangeObject::Address},
        {L"Count", &RangeObject::Count},
        {L"Item", &RangeObject::Item},
        {L"Value", &RangeObject::Value},
        {L"Value2", &RangeObject::Value2},
        {L"NumberFormat", &RangeObject::NumberFormat},
        {L"ClearContents", &RangeObject::ClearContents},
    };
    return members;
}

void RangeObject::Change() const {
    StillOpen(workbook_).saved = false;
}

Variant RangeObject::Address(const Use& use) {
    use.OnlyReading();
    return AddressOf(area_);
}

Variant RangeObject::Count(const Use& use) {
    use.OnlyReading();
    return static_cast<std::int32_t>(area_.cells());
}

Variant RangeObject::Item(const Use& use) {
    use.OnlyReading();
    StillOpen(workbook_);
    std::int32_t row = use.arguments().Long(0);
    std::int32_t column = 1;
    if (use.Has(1)) {
        column = use.arguments().Long(1);
    } else {
        // A number alone counts the cells row by row.
        column = (row - 1) % area_.columns + 1;
        row = (row - 1) / area_.columns + 1;
    }
    if (row < -LastRow || row > LastRow || column < -LastColumn || column > LastColumn)
        throw SheetError(L"The cell does not lie on the sheet.");
    return NewObject<RangeObject>(process_, workbook_, sheet_,
                                  Area{area_.row + row - 1, area_.column + column - 1, 1, 1});
}

Variant RangeObject::Value(const Use& use) {
    return Values(use, false);
}

Variant RangeObject::Value2(const Use& use) {
    return Values(use, true);
}

Variant RangeObject::Values(const Use& use, bool plain) {
    StillOpen(workbook_);
    if (!use.IsPut())
        return VariantOf(*sheet_, area_, plain);
    const Variant value = use.NewValue();
    Change();
    if (IsArray(value))
        sheet_->Put(area_, BlockOf(value), process_.ThisYear());
    else
        sheet_->Put(area_, ValueOf(value.raw()), process_.ThisYear());
    return {};
}

Variant RangeObject::NumberFormat(const Use& use) {
    StillOpen(workbook_);
    if (use.IsPut()) {
        const std::wstring format = use.NewValue().ToText();
        Change();
        sheet_->Format(area_, format);
        return {};
    }
    const std::wstring format = sheet_->FormatOf(area_);
    if (!format.empty())
        return format;
    Variant mixed;
    mixed.get()->vt = VT_NULL;
    return mixed;
}

Variant RangeObject::ClearContents(const Use& use) {
    use.OnlyReading();
    Change();
    sheet_->Put(area_, spreadsheet::Value(), process_.ThisYear());
    return {};
}

} // namespace kalvrooms::practice::spreadsheet
