#include "practice/host/HostObjects.h"

#include "practice/host/SafeArrays.h"

namespace kalvrooms::practice {

namespace {

// An object whose calls are counted.
template <class Object>
class HostObject : public Automation<Object> {
  public:
    explicit HostObject(HostProcess& host)
        : Automation<Object>(host.HostGate()), process(host), drawing(host.session.drawing) {}

    HostProcess& process;
    Drawing& drawing;
};

template <class Object, class... Rest>
Variant New(HostProcess& process, Rest&&... rest) {
    return Variant(Make<Object>(process, std::forward<Rest>(rest)...));
}

Variant CountOf(std::size_t count) {
    return Variant(static_cast<std::int32_t>(count));
}

class AttributeObject : public HostObject<AttributeObject> {
  public:
    AttributeObject(HostProcess& host, WorkingElementPtr of, std::size_t where)
        : HostObject(host), element(std::move(of)), place(where) {}
    Attribute& Target() const { return element->element.attributes.at(place); }

    static constexpr const wchar_t* KindName = L"KalvAttribute";
    static const MemberTable<AttributeObject>& Members() {
        static const MemberTable<AttributeObject> members = {
            Property(L"Name", [](auto& self) { return self.Target().name; }),
            Property(L"NumberValue", [](auto& self) { return self.Target().NumberValue(); }),
            Property(
                L"TextValue", [](auto& self) { return self.Target().TextValue(); },
                [](auto& self, auto& value) {
                    self.drawing.SetText(self.Target(), value.ToText());
                }),
        };
        return members;
    }

    WorkingElementPtr element;
    std::size_t place;
};

class AttributeListObject : public HostObject<AttributeListObject> {
  public:
    AttributeListObject(HostProcess& host, WorkingElementPtr of)
        : HostObject(host), element(std::move(of)) {}
    std::vector<Attribute>& Attributes() const { return element->element.attributes; }
    Variant Table() const {
        std::vector<Variant> values;
        for (const Attribute& attribute : Attributes()) {
            values.emplace_back(attribute.name);
            values.emplace_back(attribute.NumberValue());
            values.emplace_back(attribute.TextValue());
        }
        return TableArray(std::move(values), 3);
    }

    static constexpr const wchar_t* KindName = L"KalvAttributeList";
    static const MemberTable<AttributeListObject>& Members() {
        static const MemberTable<AttributeListObject> members = {
            Property(L"Count", [](auto& self) { return CountOf(self.Attributes().size()); }),
            Method(L"Item", 1,
                   [](auto& self, const Arguments& given) {
                       return New<AttributeObject>(
                           self.process, self.element,
                           ItemPlace(given.Long(0), self.Attributes().size()));
                   }),
            Property(L"AttributeTable", [](auto& self) { return self.Table(); }),
        };
        return members;
    }

    WorkingElementPtr element;
};

class RoomElementObject : public HostObject<RoomElementObject> {
  public:
    RoomElementObject(HostProcess& host, WorkingElementPtr of)
        : HostObject(host), working(std::move(of)), element(working->element) {}
    Variant Record() const {
        std::vector<Variant> values;
        values.emplace_back(element.identity.ComponentID);
        values.emplace_back(element.identity.FileNumber);
        values.emplace_back(element.identity.FileID);
        values.emplace_back(element.name);
        values.emplace_back(element.function);
        values.emplace_back(element.storey);
        return RecordArray(std::move(values));
    }

    static constexpr const wchar_t* KindName = L"KalvRoomElement";
    static const MemberTable<RoomElementObject>& Members() {
        static const MemberTable<RoomElementObject> members = {
            Property(L"ComponentID", [](auto& self) { return self.element.identity.ComponentID; }),
            Property(L"FileNumber", [](auto& self) { return self.element.identity.FileNumber; }),
            Property(L"FileID", [](auto& self) { return self.element.identity.FileID; }),
            TextOf<&Element::name>(L"RoomName"),
            TextOf<&Element::function>(L"RoomFunction"),
            TextOf<&Element::storey>(L"StoreyCode"),
            Property(
                L"Outline", [](auto& self) { return OutlineArray(self.element.outline); },
                [](auto& self, auto& value) {
                    self.drawing.SetOutline(self.element, OutlineFrom(value));
                }),
            Property(
                L"Colour", [](auto& self) { return self.element.colour; },
                [](auto& self, auto& value) { self.element.colour = value.ToLong(); }),
            Property(
                L"Attributes",
                [](auto& self) { return New<AttributeListObject>(self.process, self.working); }),
            Property(L"RoomRecord", [](auto& self) { return self.Record(); }),
        };
        return members;
    }

    WorkingElementPtr working;
    Element& element;

  private:
    template <std::wstring Element::*Text>
    static Member<RoomElementObject> TextOf(const wchar_t* name) {
        return Property(
            name, [](auto& self) { return self.element.*Text; },
            [](auto& self, auto& value) { self.element.*Text = ElementText(value.ToText()); });
    }
};

class ElementListObject : public HostObject<ElementListObject> {
  public:
    ElementListObject(HostProcess& host, WorkingElements of)
        : HostObject(host), elements(std::move(of)) {}
    Variant Identities() const {
        std::vector<Variant> values;
        values.reserve(elements.size() * 3);
        for (const WorkingElementPtr& copy : elements) {
            values.emplace_back(copy->element.identity.ComponentID);
            values.emplace_back(copy->element.identity.FileNumber);
            values.emplace_back(copy->element.identity.FileID);
        }
        return TableArray(std::move(values), 3);
    }

    static constexpr const wchar_t* KindName = L"KalvElementList";
    static const MemberTable<ElementListObject>& Members() {
        static const MemberTable<ElementListObject> members = {
            Property(L"Count", [](auto& self) { return CountOf(self.elements.size()); }),
            Method(L"Item", 1,
                   [](auto& self, const Arguments& given) {
                       return New<RoomElementObject>(
                           self.process,
                           self.elements[ItemPlace(given.Long(0), self.elements.size())]);
                   }),
            Method(L"Add", 1,
                   [](auto& self, const Arguments& given) {
                       self.elements.push_back(given.Own<RoomElementObject>(0)->working);
                   }),
            Property(L"IdentityTable", [](auto& self) { return self.Identities(); }),
        };
        return members;
    }

    WorkingElements elements;
};

class RoomFilterObject : public HostObject<RoomFilterObject> {
  public:
    using HostObject::HostObject;

    static constexpr const wchar_t* KindName = L"KalvRoomFilter";
    static const MemberTable<RoomFilterObject>& Members() {
        static const MemberTable<RoomFilterObject> members = {
            Method(L"SelectRooms", 0, [](auto& self, auto&) { self.letsRoomsThrough = true; }),
        };
        return members;
    }

    bool letsRoomsThrough = false;
};

class DrawingServiceObject : public HostObject<DrawingServiceObject> {
  public:
    explicit DrawingServiceObject(HostProcess& host) : HostObject(host), service(host.session) {}
    Variant ElementsThrough(const RoomFilterObject& filter) const {
        return New<ElementListObject>(process, filter.letsRoomsThrough ? service.Elements()
                                                                       : WorkingElements());
    }

    static constexpr const wchar_t* KindName = L"KalvDrawingService";
    static const MemberTable<DrawingServiceObject>& Members() {
        static const MemberTable<DrawingServiceObject> members = {
            Method(L"GetElements", 1,
                   [](auto& self, const Arguments& given) {
                       return self.ElementsThrough(*given.Own<RoomFilterObject>(0).Get());
                   }),
            Method(L"CreateElementList", 0,
                   [](auto& self, auto&) {
                       return New<ElementListObject>(self.process, WorkingElements());
                   }),
            Method(L"CreateRoomElement", 0,
                   [](auto& self, auto&) {
                       return New<RoomElementObject>(self.process, self.service.NewElement());
                   }),
            Method(
                L"ChangeElements", 1,
                [](auto& self, const Arguments& given) { self.service.Change(ElementsOf(given)); }),
            Method(L"AddElements", 1,
                   [](auto& self, const Arguments& given) { self.service.Add(ElementsOf(given)); }),
            Method(L"PlaceElements", 2,
                   [](auto& self, const Arguments& given) {
                       self.service.Place(ElementsOf(given), given.Long(1));
                   }),
            Method(L"ApplyChanges", 0, [](auto& self, auto&) { self.service.Apply(); }),
        };
        return members;
    }

    DrawingService service;

  private:
    // A copy: the list is open to other calls while the user looks for the place.
    static WorkingElements ElementsOf(const Arguments& given) {
        return given.Own<ElementListObject>(0)->elements;
    }
};

class ProjectObject : public HostObject<ProjectObject> {
  public:
    explicit ProjectObject(HostProcess& host) : HostObject(host), project(drawing.project) {}

    static constexpr const wchar_t* KindName = L"KalvProject";
    static const MemberTable<ProjectObject>& Members() {
        static const MemberTable<ProjectObject> members = {
            Property(L"ProjectNumber", [](auto& self) { return self.project.number; }),
            Property(L"ProjectName", [](auto& self) { return self.project.name; }),
            Property(L"ProjectFolder", [](auto& self) { return self.project.folder; }),
        };
        return members;
    }

    Project project;
};

class ApplicationObject : public HostObject<ApplicationObject> {
  public:
    using HostObject::HostObject;

    static constexpr const wchar_t* KindName = L"KalvApplication";
    static const MemberTable<ApplicationObject>& Members() {
        static const MemberTable<ApplicationObject> members = {
            Method(L"CheckAccess", 0,
                   [](auto& self, auto&) { self.process.session.state.CheckAccess(); }),
            // The project is always up to date here.
            Method(L"UpdateProjectInfo", 0, [](auto&, auto&) {}),
            Method(L"GetProject", 0,
                   [](auto& self, auto&) { return New<ProjectObject>(self.process); }),
            Method(L"GetDrawingService", 0,
                   [](auto& self, auto&) { return New<DrawingServiceObject>(self.process); }),
        };
        return members;
    }
};

class AttributeCatalogueObject : public HostObject<AttributeCatalogueObject> {
  public:
    using HostObject::HostObject;

    static constexpr const wchar_t* KindName = L"KalvAttributeCatalogue";
    static const MemberTable<AttributeCatalogueObject>& Members() {
        static const MemberTable<AttributeCatalogueObject> members = {
            Method(L"AttributeName", 1,
                   [](auto& self, const Arguments& given) {
                       return Variant(self.drawing.AttributeName(given.Long(0)));
                   }),
        };
        return members;
    }
};

} // namespace

IDispatch* NewApplication(HostProcess& process) {
    return new ApplicationObject(process);
}

IDispatch* NewRoomFilter(HostProcess& process) {
    return new RoomFilterObject(process);
}

IDispatch* NewAttributeCatalogue(HostProcess& process) {
    return new AttributeCatalogueObject(process);
}

} // namespace kalvrooms::practice
