#pragma once
// Which of a drawing's storeys the window shows: all of them, or one.

#include "drawing/DrawingScene.h"

#include <cstddef>
#include <optional>
#include <string>

namespace kalvrooms::practice {

class ShownStorey {
  public:
    void ShowAll() { name_.reset(); }
    void Show(const std::wstring& name) { name_ = name; }
    // One on or one back: all, the first, ..., the last, and all again.
    void Step(const Scene& scene, bool forward);
    // Its place among the scene's storeys. Nothing: all, also while the drawing has no such storey.
    std::optional<std::size_t> In(const Scene& scene) const;

  private:
    std::optional<std::wstring> name_;
};

} // namespace kalvrooms::practice
