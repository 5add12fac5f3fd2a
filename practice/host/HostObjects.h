#pragma once
// The automation objects that a client of the host sees; docs/host-automation.md has their members.

#include "practice/host/HostProcess.h"

#include <vector>

namespace kalvrooms::practice {

template <class Object>
using Members = std::vector<Member<Object>>;

// An object whose calls are counted.
template <class Object>
class HostObject : public Automation<Object> {
  public:
    explicit HostObject(HostProcess& process)
        : Automation<Object>(process.HostGate()), process_(process) {}

  protected:
    HostProcess& process() const { return process_; }

  private:
    HostProcess& process_;
};

class ApplicationObject : public HostObject<ApplicationObject> {
  public:
    using HostObject::HostObject;
    static constexpr const wchar_t* KindName = L"KalvApplication";
    static const practice::Members<ApplicationObject>& Members();

  private:
    Variant CheckAccess(const Arguments&);
    Variant UpdateProjectInfo(const Arguments&);
    Variant GetProject(const Arguments&);
    Variant GetDrawingService(const Arguments&);
};

class ProjectObject : public HostObject<ProjectObject> {
  public:
    explicit ProjectObject(HostProcess& process)
        : HostObject(process), project_(process.session.drawing.project) {}
    static constexpr const wchar_t* KindName = L"KalvProject";
    static const practice::Members<ProjectObject>& Members();

  private:
    Variant ProjectNumber();
    Variant ProjectName();
    Variant ProjectFolder();

    Project project_;
};

class RoomFilterObject : public HostObject<RoomFilterObject> {
  public:
    using HostObject::HostObject;
    static constexpr const wchar_t* KindName = L"KalvRoomFilter";
    static const practice::Members<RoomFilterObject>& Members();

    // A filter that was not prepared lets nothing through.
    bool LetsRoomsThrough() const { return rooms_; }

  private:
    Variant SelectRooms(const Arguments&);

    bool rooms_ = false;
};

class AttributeCatalogueObject : public HostObject<AttributeCatalogueObject> {
  public:
    using HostObject::HostObject;
    static constexpr const wchar_t* KindName = L"KalvAttributeCatalogue";
    static const practice::Members<AttributeCatalogueObject>& Members();

  private:
    Variant AttributeName(const Arguments& arguments);
};

class AttributeObject : public HostObject<AttributeObject> {
  public:
    AttributeObject(HostProcess& process, WorkingElementPtr element, std::size_t index)
        : HostObject(process), element_(std::move(element)), index_(index) {}
    static constexpr const wchar_t* KindName = L"KalvAttribute";
    static const practice::Members<AttributeObject>& Members();

  private:
    Variant Name();
    Variant NumberValue();
    Variant TextValue();
    void SetTextValue(const Variant& value);
    Attribute& Target() const;

    WorkingElementPtr element_;
    std::size_t index_;
};

class AttributeListObject : public HostObject<AttributeListObject> {
  public:
    AttributeListObject(HostProcess& process, WorkingElementPtr element)
        : HostObject(process), element_(std::move(element)) {}
    static constexpr const wchar_t* KindName = L"KalvAttributeList";
    static const practice::Members<AttributeListObject>& Members();

  private:
    Variant Count();
    Variant Item(const Arguments& arguments);
    Variant AttributeTable();

    WorkingElementPtr element_;
};

class RoomElementObject : public HostObject<RoomElementObject> {
  public:
    RoomElementObject(HostProcess& process, WorkingElementPtr element)
        : HostObject(process), element_(std::move(element)) {}
    static constexpr const wchar_t* KindName = L"KalvRoomElement";
    static const practice::Members<RoomElementObject>& Members();

    const WorkingElementPtr& Working() const { return element_; }

  private:
    Variant ComponentID();
    Variant FileNumber();
    Variant FileID();
    Variant RoomName();
    void SetRoomName(const Variant& value);
    Variant RoomFunction();
    void SetRoomFunction(const Variant& value);
    Variant StoreyCode();
    void SetStoreyCode(const Variant& value);
    Variant GetOutline();
    void SetOutline(const Variant& value);
    Variant Colour();
    void SetColour(const Variant& value);
    Variant Attributes();
    Variant RoomRecord();

    WorkingElementPtr element_;
};

class ElementListObject : public HostObject<ElementListObject> {
  public:
    ElementListObject(HostProcess& process, WorkingElements elements)
        : HostObject(process), elements_(std::move(elements)) {}
    static constexpr const wchar_t* KindName = L"KalvElementList";
    static const practice::Members<ElementListObject>& Members();

    const WorkingElements& Elements() const { return elements_; }

  private:
    Variant Count();
    Variant Item(const Arguments& arguments);
    Variant Add(const Arguments& arguments);
    Variant IdentityTable();

    WorkingElements elements_;
};

class DrawingServiceObject : public HostObject<DrawingServiceObject> {
  public:
    explicit DrawingServiceObject(HostProcess& process)
        : HostObject(process), service_(process.session) {}
    static constexpr const wchar_t* KindName = L"KalvDrawingService";
    static const practice::Members<DrawingServiceObject>& Members();

  private:
    Variant GetElements(const Arguments& arguments);
    Variant CreateElementList(const Arguments&);
    Variant CreateRoomElement(const Arguments&);
    Variant ChangeElements(const Arguments& arguments);
    Variant AddElements(const Arguments& arguments);
    Variant PlaceElements(const Arguments& arguments);
    Variant ApplyChanges(const Arguments&);

    DrawingService service_;
};

} // namespace kalvrooms::practice
