// Any bytes as a workbook of the practice spreadsheet application: it is refused, or written so
// that it reads back the same.

#include "Input.h"
#include "practice/workbook/SheetError.h"
#include "practice/workbook/WorkbookFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace kalvrooms::practice::spreadsheet;
    try {
        const std::string written =
            WriteWorkbook(ReadWorkbook(std::string(reinterpret_cast<const char*>(bytes), size)));
        kalvrooms::fuzz::Hold(WriteWorkbook(ReadWorkbook(written)) == written);
    } catch (const SheetError&) {
        // No workbook.
    }
    return 0;
}
