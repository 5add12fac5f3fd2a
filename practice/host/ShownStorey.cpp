#include "practice/host/ShownStorey.h"

namespace kalvrooms::practice {

std::optional<std::size_t> ShownStorey::In(const Scene& scene) const {
    for (std::size_t i = 0; name_ && i < scene.storeys.size(); ++i)
        if (scene.storeys[i].name == *name_)
            return i;
    return std::nullopt;
}

void ShownStorey::Step(const Scene& scene, bool forward) {
    // Place 0 is that of all storeys.
    const std::size_t places = scene.storeys.size() + 1;
    const auto shown = In(scene);
    const std::size_t next = ((shown ? *shown + 1 : 0) + (forward ? 1 : places - 1)) % places;
    if (next == 0)
        ShowAll();
    else
        Show(scene.storeys[next - 1].name);
}

} // namespace kalvrooms::practice
