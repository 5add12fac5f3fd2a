#pragma once
// The drawing as a picture for a browser: a group per storey, and a legend.

#include "drawing/Drawing.h"

#include <string>

namespace kalvrooms {

// The storeys of a model stand one above the other: apart, they stand side by side.
enum class Storeys { AsTheyStand, Apart };
std::string DrawingSvg(const Drawing& drawing, Storeys storeys = Storeys::AsTheyStand);
// One storey's rooms alone, to stand within a page. All storeys of a drawing come out alike: the
// same scale, one place above the other.
std::string PlanSvg(const Drawing& drawing, const std::wstring& storey, bool german = true);

// As text or as a quoted attribute stands in XML and HTML.
std::string EscapeMarkup(const std::wstring& text);

} // namespace kalvrooms
