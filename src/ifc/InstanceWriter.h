#pragma once
// New instances of a model, in its units and after its schema.

#include <string>
#include <string_view>
#include <vector>

#include "host/HostApplication.h"
#include "ifc/Building.h"
#include "ifc/Space.h"
#include "ifc/StepChanges.h"

namespace kalvrooms::ifc {

class InstanceWriter {
  public:
    InstanceWriter(const Building& building, StepChanges& changes);

    // $ for an empty text.
    static std::string Text(std::wstring_view text);
    // (#1,#2)
    static std::string List(const std::vector<InstanceId>& ids);
    std::string Length(double metres) const;
    static std::string Area(double squareMetres, double unit);

    // An instance with a GlobalId of its own, the model's owner history and these attributes
    // behind.
    InstanceId Root(const std::string& keyword, const std::string& globalId,
                    const std::string& attributes);
    InstanceId Root(const std::string& keyword, const std::string& attributes);

    InstanceId Axes(const Transform& place);
    // `relativeTo` as the file writes it: #12 or $.
    InstanceId Placement(const std::string& relativeTo, const Transform& place);
    // The body and the footprint of a room whose outline stands in the plane of `place`, as seen
    // from the room's own placement.
    std::vector<InstanceId> Representations(const Outline& outline, const Transform& place,
                                            double height);
    InstanceId ProductShape(const std::vector<InstanceId>& representations);

    // Attached to a room.
    void Properties(InstanceId room, const std::vector<InstanceId>& properties);
    InstanceId Property(std::wstring_view name, std::wstring_view value);
    // The quantities of a room; a height of 0 is none. `own`: in a set of our own, where the model
    // has one that others share.
    void Quantities(InstanceId room, double squareMetres, double height, bool own);

  private:
    enum Context { Body, FootPrint };

    static std::string number(double value);
    InstanceId polyline(const std::vector<Vector>& points, bool flat);
    std::string context(Context which);
    std::string findContext(Context which) const;
    std::string newContext();

    const Building& building_;
    StepChanges& changes_;
    std::string owner_ = "$";
    std::string contexts_[2];
};

} // namespace kalvrooms::ifc
