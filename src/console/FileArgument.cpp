#include "console/FileArgument.h"

#include <algorithm>

#include "console/FileError.h"
#include "model/LetterRules.h"
#include "model/Utf8.h"

namespace kalvrooms {
namespace {

// JSON is a list or a practice drawing, as its place takes it.
bool takes(const FilePlace& place, const std::string& format) {
    const bool isDrawing = format == "drawing" || format == "ifc" || format == "json";
    const bool isList = format != "drawing" && format != "ifc";
    switch (place.takes) {
    case FilePlace::Takes::List:
        return isList;
    case FilePlace::Takes::Drawing:
        return isDrawing;
    case FilePlace::Takes::Either:
        break;
    }
    return true;
}

bool isKey(const FilePlace& place, const std::string& key) {
    return FoldedCase(FromUtf8(place.key)) == FoldedCase(FromUtf8(key));
}

const FilePlace* placeFor(const std::string& key, const std::string& format,
                          const std::vector<FilePlace>& places) {
    const FilePlace* best = nullptr;
    const auto rank = [](const FilePlace& place) {
        return (place.file->IsStandardStream() ? 2 : 0) + (place.isWritten ? 1 : 0);
    };
    for (const FilePlace& place : places)
        if (takes(place, format) && place.file->format.empty() &&
            (key.empty() || isKey(place, key)) && (!best || rank(place) > rank(*best)))
            best = &place;
    return best;
}

} // namespace

const std::vector<std::string>& FileFormats() {
    static const std::vector<std::string> formats = {"text", "csv", "json", "drawing", "ifc"};
    return formats;
}

void ApplyFormats(const std::vector<std::string>& formats, const std::vector<FilePlace>& places,
                  const Speech& say) {
    for (const std::string& text : formats) {
        const std::size_t equals = text.find('=');
        const std::string format = text.substr(equals == std::string::npos ? 0 : equals + 1);
        const std::string key = equals == std::string::npos ? "" : text.substr(0, equals);
        const auto& known = FileFormats();
        const FilePlace* place = std::find(known.begin(), known.end(), format) == known.end()
                                     ? nullptr
                                     : placeFor(key, format, places);
        if (!place)
            throw FileError(
                "--format " + text + ": " +
                say("passt zu keiner Datei dieses Befehls", "fits none of this command's files"));
        place->file->format = format;
    }
    const auto isInput = [](const FilePlace& place) {
        return !place.isWritten && place.file->IsStandardStream();
    };
    if (std::count_if(places.begin(), places.end(), isInput) > 1)
        throw FileError(say("nur eine Datei kann von der Standardeingabe kommen",
                            "only one file can come from standard input"));
}

} // namespace kalvrooms
