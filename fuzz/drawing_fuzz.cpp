// Any bytes as a practice drawing: it is refused with a reason, or written so that it reads back
// the same.

#include "Input.h"
#include "drawing/DrawingFile.h"
#include "drawing/DrawingSvg.h"
#include "drawing/HostError.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace kalvrooms;
    const std::string_view text(reinterpret_cast<const char*>(bytes), size);
    try {
        const Drawing drawing = ReadDrawing(text);
        const std::string written = WriteDrawing(drawing);
        fuzz::Hold(WriteDrawing(ReadDrawing(written)) == written);
        fuzz::Hold(!DrawingSvg(drawing).empty());
    } catch (const HostError& error) {
        fuzz::Hold(!error.description().empty());
    }
    return 0;
}
