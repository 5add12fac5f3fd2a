#pragma once
// What reading a shape carries along. Lengths become metres where a point or a length is read, so
// everything behind that is in metres.

#include "ifc/Space.h"
#include "ifc/Units.h"

namespace kalvrooms::ifc {

class Geometry {
  public:
    Geometry(const StepFile& model, const Units& units) : file(model), units_(units) {}

    const StepFile& file;

    double Length(const Value& value) const { return value.Untyped().Number() * units_.length; }
    double Angle(const Value& value) const { return value.Untyped().Number() * units_.angle; }
    // A list of coordinates; what is missing is 0.
    Vector Coordinates(const Value& list) const;
    Vector Point(const Instance& point) const;
    // Every point of an IfcCartesianPointList.
    Polygon PointList(const Instance& list);
    static Vector Direction(const Instance& direction);

    // The points that stand for an arc besides its first one, so that it is met within 5 mm.
    int ArcSteps(double radius, double angle) const;
    // How far a sampled curve may leave the true one.
    double ChordError() const { return 0.0025 / scale_; }

    // Shapes are made of shapes. A level stands for one of them; too many below each other, or too
    // many at all, raise a StepError: they could be made of themselves.
    class Level {
      public:
        // `scale` is how much larger the shape is seen from outside.
        Level(Geometry& geometry, const Instance& shape, double scale = 1.0);
        ~Level();
        Level(const Level&) = delete;
        Level& operator=(const Level&) = delete;

      private:
        Geometry& geometry_;
        double scale_;
    };
    // Called for every point, so that a small file cannot ask for endless work.
    void Spend(const Value& place, std::size_t points = 1);
    // For the next shape.
    void StartShape() {
        spent_ = 0;
        ended_ = false;
    }
    // Whether a limit was reached: then nothing more of the shape is read.
    bool ShapeEnded() const { return ended_; }

  private:
    Units units_;
    double scale_ = 1.0;
    int depth_ = 0;
    bool ended_ = false;
    std::size_t spent_ = 0;
    std::size_t spentInAll_ = 0;
};

} // namespace kalvrooms::ifc
