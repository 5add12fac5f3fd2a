#pragma once
// The application's automation objects.

#include "practice/spreadsheet/SheetAutomation.h"

#include <memory>
#include <vector>

namespace kalvrooms::practice::spreadsheet {

class ApplicationObject : public SheetAutomation<ApplicationObject> {
  public:
    static constexpr const wchar_t* KindName = L"application";
    static const std::vector<SheetMember<ApplicationObject>>& Members();
    using SheetAutomation::SheetAutomation;

  private:
    Variant Name(const Use& use);
    Variant Version(const Use& use);
    Variant Ready(const Use& use);
    Variant UserControl(const Use& use);
    Variant Visible(const Use& use);
    Variant DisplayAlerts(const Use& use);
    Variant Workbooks(const Use& use);
    Variant ActiveWorkbook(const Use& use);
    Variant Quit(const Use& use);

    bool visible_ = false;
};

class WorkbooksObject : public SheetAutomation<WorkbooksObject> {
  public:
    static constexpr const wchar_t* KindName = L"workbooks";
    static const std::vector<SheetMember<WorkbooksObject>>& Members();
    using SheetAutomation::SheetAutomation;

    Variant Item(const Use& use);

  private:
    Variant Count(const Use& use);
    Variant Open(const Use& use);
    Variant Add(const Use& use);
    Variant Close(const Use& use);
};

class WorkbookObject : public SheetAutomation<WorkbookObject> {
  public:
    static constexpr const wchar_t* KindName = L"workbook";
    static const std::vector<SheetMember<WorkbookObject>>& Members();
    WorkbookObject(SheetProcess& process, WorkbookPointer workbook)
        : SheetAutomation(process), workbook_(std::move(workbook)) {}

  private:
    OpenWorkbook& Opened() const;
    Variant Name(const Use& use);
    Variant FullName(const Use& use);
    Variant ReadOnly(const Use& use);
    Variant Saved(const Use& use);
    Variant ActiveSheet(const Use& use);
    Variant Worksheets(const Use& use);
    Variant Save(const Use& use);
    Variant SaveAs(const Use& use);
    Variant Close(const Use& use);

    WorkbookPointer workbook_;
};

class WorksheetsObject : public SheetAutomation<WorksheetsObject> {
  public:
    static constexpr const wchar_t* KindName = L"worksheets";
    static const std::vector<SheetMember<WorksheetsObject>>& Members();
    WorksheetsObject(SheetProcess& process, WorkbookPointer workbook)
        : SheetAutomation(process), workbook_(std::move(workbook)) {}

    Variant Item(const Use& use);

  private:
    Variant Count(const Use& use);
    Variant Add(const Use& use);

    WorkbookPointer workbook_;
};

class WorksheetObject : public SheetAutomation<WorksheetObject> {
  public:
    static constexpr const wchar_t* KindName = L"worksheet";
    static const std::vector<SheetMember<WorksheetObject>>& Members();
    WorksheetObject(SheetProcess& process, WorkbookPointer workbook, std::shared_ptr<Sheet> sheet)
        : SheetAutomation(process), workbook_(std::move(workbook)), sheet_(std::move(sheet)) {}

  private:
    Variant Name(const Use& use);
    Variant Range(const Use& use);
    Variant Cells(const Use& use);
    Variant UsedRange(const Use& use);
    Variant Activate(const Use& use);
    Variant SaveAs(const Use& use);
    Area AreaOf(const Use& use, UINT index) const;

    WorkbookPointer workbook_;
    std::shared_ptr<Sheet> sheet_;
};

class RangeObject : public SheetAutomation<RangeObject> {
  public:
    static constexpr const wchar_t* KindName = L"range";
    static const std::vector<SheetMember<RangeObject>>& Members();
    RangeObject(SheetProcess& process, WorkbookPointer workbook, std::shared_ptr<Sheet> sheet,
                Area area)
        : SheetAutomation(process), workbook_(std::move(workbook)), sheet_(std::move(sheet)),
          area_(Checked(area)) {}

    const Area& area() const { return area_; }
    const Sheet* sheet() const { return sheet_.get(); }
    // The cell at a row and column of the range; both may lie outside of it.
    Variant Item(const Use& use);

  private:
    Variant Address(const Use& use);
    Variant Count(const Use& use);
    Variant Value(const Use& use);
    Variant Value2(const Use& use);
    Variant Values(const Use& use, bool plain);
    Variant NumberFormat(const Use& use);
    Variant ClearContents(const Use& use);
    void Change() const;

    WorkbookPointer workbook_;
    std::shared_ptr<Sheet> sheet_;
    Area area_;
};

} // namespace kalvrooms::practice::spreadsheet
