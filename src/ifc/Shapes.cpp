#include "ifc/Shapes.h"

#include <algorithm>
#include <optional>

#include "ifc/Curves.h"
#include "ifc/FaceSets.h"
#include "ifc/Placements.h"
#include "ifc/Solids.h"

namespace kalvrooms::ifc {
namespace {

// In points: what is said a thousand times says enough.
constexpr std::size_t troubleCost = 1000;

class ShapeReader {
  public:
    ShapeReader(Geometry& geometry, std::vector<std::string>& troubles)
        : geometry_(geometry), troubles_(troubles) {}

    // One that cannot be read leaves the others as they are.
    void Items(const Value& items, const Transform& place) {
        for (const Value item : items) {
            const std::size_t before = parts_.size();
            try {
                this->item(geometry_.file.Get(item), place);
            } catch (const StepError& error) {
                if (geometry_.ShapeEnded())
                    throw;
                parts_.resize(before);
                troubles_.push_back(error.what());
                geometry_.Spend(item, troubleCost);
            }
        }
    }
    std::vector<Part> Parts() { return std::move(parts_); }

  private:
    void item(const Instance& item, const Transform& place) {
        const Geometry::Level level(geometry_, item);
        if (passedOver(item))
            return;
        if (auto faces = ReadSolid(geometry_, item))
            addFaces(std::move(*faces), place);
        else if ((faces = ReadFaces(geometry_, item)))
            addFaces(std::move(*faces), place);
        else if (!madeOfOthers(item, place))
            addCurve(ReadCurve(geometry_, item), place);
    }

    static bool passedOver(const Instance& item) {
        for (const char* keyword :
             {"IFCHALFSPACESOLID", "IFCBOXEDHALFSPACE", "IFCPOLYGONALBOUNDEDHALFSPACE",
              "IFCCARTESIANPOINT", "IFCTEXTLITERAL", "IFCTEXTLITERALWITHEXTENT", "IFCPLANE",
              "IFCDEFINEDSYMBOL", "IFCANNOTATIONTEXTOCCURRENCE", "IFCANNOTATIONSYMBOLOCCURRENCE"})
            if (item.Is(keyword))
                return true;
        return false;
    }

    // False: the item is none of those that lead to others.
    bool madeOfOthers(const Instance& item, const Transform& place) {
        if (item.Is("IFCMAPPEDITEM"))
            mapped(item, place);
        else if (item.Is("IFCBOOLEANRESULT") || item.Is("IFCBOOLEANCLIPPINGRESULT"))
            boolean(item, place);
        else if (item.Is("IFCGEOMETRICSET") || item.Is("IFCGEOMETRICCURVESET"))
            set(item, place);
        else if (item.Is("IFCCSGSOLID") || item.Is("IFCSTYLEDITEM") ||
                 item.Is("IFCANNOTATIONFILLAREA") || item.Is("IFCANNOTATIONFILLAREAOCCURRENCE") ||
                 item.Is("IFCANNOTATIONCURVEOCCURRENCE"))
            this->item(item.Follow(0), place);
        else if (item.Is("IFCCURVEBOUNDEDPLANE"))
            this->item(item.Follow(1), place * ReadAxes(geometry_, item.Follow(0)[0]));
        else
            return false;
        return true;
    }

    void mapped(const Instance& item, const Transform& place) {
        const Instance map = item.Follow(0);
        const Transform target = ReadOperator(geometry_, item.Follow(1));
        const Transform origin = ReadAxes(geometry_, map[0]);
        const double scale = std::max({Length(target.x), Length(target.y), Length(target.z)});
        const Geometry::Level level(geometry_, item, scale);
        Items(map.Follow(1)[3], place * target * origin.Inverse());
    }

    // What is cut away or cut out does not change where the first operand stands.
    void boolean(const Instance& item, const Transform& place) {
        Instance result = item;
        while (result.Is("IFCBOOLEANRESULT") || result.Is("IFCBOOLEANCLIPPINGRESULT")) {
            geometry_.Spend(result.Arguments());
            if (result[0].Word() == "UNION")
                this->item(result.Follow(2), place);
            result = result.Follow(1);
        }
        this->item(result, place);
    }

    // The curves of a set belong together: an outline may be drawn in pieces.
    void set(const Instance& item, const Transform& place) {
        const std::size_t first = parts_.size();
        for (const Value member : item[0])
            this->item(geometry_.file.Get(member), place);
        for (std::size_t i = first + 1; i < parts_.size(); ++i) {
            std::move(parts_[i].faces.begin(), parts_[i].faces.end(),
                      std::back_inserter(parts_[first].faces));
            std::move(parts_[i].lines.begin(), parts_[i].lines.end(),
                      std::back_inserter(parts_[first].lines));
        }
        parts_.resize(std::min(parts_.size(), first + 1));
    }

    void addFaces(std::vector<Polygon> faces, const Transform& place) {
        for (Polygon& face : faces)
            for (Vector& point : face)
                point = place(point);
        parts_.push_back({std::move(faces), {}});
    }

    void addCurve(Polygon points, const Transform& place) {
        for (Vector& point : points)
            point = place(point);
        const bool closed = points.size() > 3 && Length(points.front() - points.back()) < 1e-3;
        Part part;
        (closed ? part.faces : part.lines).push_back(std::move(points));
        parts_.push_back(std::move(part));
    }

    Geometry& geometry_;
    std::vector<std::string>& troubles_;
    std::vector<Part> parts_;
};

} // namespace

std::vector<Part> ReadShape(Geometry& geometry, const Instance& representation,
                            const Transform& place, std::vector<std::string>& troubles) {
    ShapeReader reader(geometry, troubles);
    reader.Items(representation[3], place);
    return reader.Parts();
}

} // namespace kalvrooms::ifc
