#pragma once
// The drawing as JSON, see docs/practice-host.md.

#include "drawing/Drawing.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kalvrooms {

// Raises a HostError that names the place and the trouble; what the text leaves out has a default.
Drawing ReadDrawing(std::string_view json);
std::string WriteDrawing(const Drawing& drawing);

Drawing LoadDrawing(const std::filesystem::path& file);
void SaveDrawing(const Drawing& drawing, const std::filesystem::path& file);

// A reader of the file sees the old text or the new one, never a part. Raises a HostError.
void SaveText(const std::filesystem::path& file, std::string_view text);

// What these refuse, in English as they say it and in German.
extern const std::vector<std::pair<std::string_view, std::string_view>> DrawingTroubles;

} // namespace kalvrooms
