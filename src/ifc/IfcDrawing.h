#pragma once
// A model as a drawing of the host: its rooms are the elements, and what becomes of them in the
// drawing goes back into the model's file.

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "drawing/Drawing.h"
#include "ifc/Building.h"

namespace kalvrooms::ifc {

// Whether a file that begins like this is a model. A comment may stand in front of everything.
bool IsModel(std::string_view begin);

// A model that is in memory already.
struct ModelBytes {
    std::string bytes;
};

// The same words as a HostError has them, and apart: the line, 0 for none in particular, and what
// is wrong there with which instance.
class ModelError : public HostError {
  public:
    ModelError(const std::string& whole, int line, std::string trouble);
    int Line() const { return line_; }
    const std::string& Trouble() const { return trouble_; }

  private:
    int line_;
    std::string trouble_;
};

class IfcDrawing {
  public:
    // Raises a ModelError where the file is no model.
    explicit IfcDrawing(const std::filesystem::path& path);
    explicit IfcDrawing(ModelBytes text);

    // FileID is the space's GlobalId. Every room has the three attributes that a writer looks for,
    // under the names by which it does. The drawing holds on to this object: it gives new rooms a
    // GlobalId.
    Drawing Read() const;

    // The file with the drawing's changes, byte for byte where there are none. Raises a HostError.
    std::string Write(const Drawing& drawing) const;

    // What of the model was passed over.
    const std::vector<std::string>& Troubles() const { return building_->Troubles(); }
    const Building& Model() const { return *building_; }

  private:
    Element elementOf(const Room& room) const;

    std::filesystem::path path_;
    std::unique_ptr<const StepFile> file_;
    std::unique_ptr<const Building> building_;
};

} // namespace kalvrooms::ifc
