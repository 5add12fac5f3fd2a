#include "practice/host/HostObjects.h"

#include "practice/host/SafeArrays.h"

namespace kalvrooms::practice {

namespace {

template <class Object, class... Rest>
Variant New(HostProcess& process, Rest&&... rest) {
    return Variant(ComPtr<Object>::Attach(new Object(process, std::forward<Rest>(rest)...)));
}

// Indices count from 1.
std::size_t IndexFrom(const Arguments& arguments, std::size_t count) {
    const std::int32_t index = arguments.Long(0);
    if (index < 1 || static_cast<std::size_t>(index) > count)
        throw HostError(L"There is no item " + std::to_wstring(index) + L" in the list.");
    return static_cast<std::size_t>(index) - 1;
}

Variant CountOf(std::size_t count) {
    return Variant(static_cast<std::int32_t>(count));
}

} // namespace

// --- application ---------------------------------------------------------------------------------

const Members<ApplicationObject>& ApplicationObject::Members() {
    using Object = ApplicationObject;
    static const practice::Members<Object> members = {
        {L"CheckAccess", 0, &Object::CheckAccess},
        {L"UpdateProjectInfo", 0, &Object::UpdateProjectInfo},
        {L"GetProject", 0, &Object::GetProject},
        {L"GetDrawingService", 0, &Object::GetDrawingService},
    };
    return members;
}

Variant ApplicationObject::CheckAccess(const Arguments&) {
    const std::wstring refusal = process().state.Refusal();
    if (!refusal.empty())
        throw HostError(refusal);
    return {};
}

// The project is always up to date here.
Variant ApplicationObject::UpdateProjectInfo(const Arguments&) {
    return {};
}

Variant ApplicationObject::GetProject(const Arguments&) {
    return New<ProjectObject>(process());
}

Variant ApplicationObject::GetDrawingService(const Arguments&) {
    return New<DrawingServiceObject>(process());
}

// --- project -------------------------------------------------------------------------------------

const Members<ProjectObject>& ProjectObject::Members() {
    using Object = ProjectObject;
    static const practice::Members<Object> members = {
        {L"ProjectNumber", 0, nullptr, &Object::ProjectNumber},
        {L"ProjectName", 0, nullptr, &Object::ProjectName},
        {L"ProjectFolder", 0, nullptr, &Object::ProjectFolder},
    };
    return members;
}

Variant ProjectObject::ProjectNumber() {
    return Variant(project_.number);
}
Variant ProjectObject::ProjectName() {
    return Variant(project_.name);
}
Variant ProjectObject::ProjectFolder() {
    return Variant(project_.folder);
}

// --- room filter and catalogue -------------------------------------------------------------------

const Members<RoomFilterObject>& RoomFilterObject::Members() {
    static const practice::Members<RoomFilterObject> members = {
        {L"SelectRooms", 0, &RoomFilterObject::SelectRooms},
    };
    return members;
}

Variant RoomFilterObject::SelectRooms(const Arguments&) {
    rooms_ = true;
    return {};
}

const Members<AttributeCatalogueObject>& AttributeCatalogueObject::Members() {
    static const practice::Members<AttributeCatalogueObject> members = {
        {L"AttributeName", 1, &AttributeCatalogueObject::AttributeName},
    };
    return members;
}

Variant AttributeCatalogueObject::AttributeName(const Arguments& arguments) {
    return Variant(process().session.drawing.AttributeName(arguments.Long(0)));
}

// --- drawing service -----------------------------------------------------------------------------

const Members<DrawingServiceObject>& DrawingServiceObject::Members() {
    using Object = DrawingServiceObject;
    static const practice::Members<Object> members = {
        {L"GetElements", 1, &Object::GetElements},
        {L"CreateElementList", 0, &Object::CreateElementList},
        {L"CreateRoomElement", 0, &Object::CreateRoomElement},
        {L"ChangeElements", 1, &Object::ChangeElements},
        {L"AddElements", 1, &Object::AddElements},
        {L"PlaceElements", 2, &Object::PlaceElements},
        {L"ApplyChanges", 0, &Object::ApplyChanges},
    };
    return members;
}

Variant DrawingServiceObject::GetElements(const Arguments& arguments) {
    const bool rooms = arguments.Own<RoomFilterObject>(0)->LetsRoomsThrough();
    return New<ElementListObject>(process(), rooms ? service_.Elements() : WorkingElements());
}

Variant DrawingServiceObject::CreateElementList(const Arguments&) {
    return New<ElementListObject>(process(), WorkingElements());
}

Variant DrawingServiceObject::CreateRoomElement(const Arguments&) {
    return New<RoomElementObject>(process(), service_.NewElement());
}

Variant DrawingServiceObject::ChangeElements(const Arguments& arguments) {
    service_.Change(arguments.Own<ElementListObject>(0)->Elements());
    return {};
}

Variant DrawingServiceObject::AddElements(const Arguments& arguments) {
    service_.Add(arguments.Own<ElementListObject>(0)->Elements());
    return {};
}

Variant DrawingServiceObject::PlaceElements(const Arguments& arguments) {
    // A copy: the list is open to other calls while the user looks for the place.
    const WorkingElements elements = arguments.Own<ElementListObject>(0)->Elements();
    service_.Place(elements, arguments.Long(1));
    return {};
}

Variant DrawingServiceObject::ApplyChanges(const Arguments&) {
    service_.Apply();
    return {};
}

// --- element list --------------------------------------------------------------------------------

const Members<ElementListObject>& ElementListObject::Members() {
    using Object = ElementListObject;
    static const practice::Members<Object> members = {
        {L"Count", 0, nullptr, &Object::Count},
        {L"Item", 1, &Object::Item},
        {L"Add", 1, &Object::Add},
        {L"IdentityTable", 0, nullptr, &Object::IdentityTable},
    };
    return members;
}

Variant ElementListObject::Count() {
    return CountOf(elements_.size());
}

Variant ElementListObject::Item(const Arguments& arguments) {
    return New<RoomElementObject>(process(), elements_[IndexFrom(arguments, elements_.size())]);
}

Variant ElementListObject::Add(const Arguments& arguments) {
    elements_.push_back(arguments.Own<RoomElementObject>(0)->Working());
    return {};
}

Variant ElementListObject::IdentityTable() {
    std::vector<Variant> values;
    values.reserve(elements_.size() * 3);
    for (const WorkingElementPtr& copy : elements_) {
        values.emplace_back(copy->element.componentId);
        values.emplace_back(copy->element.fileNumber);
        values.emplace_back(copy->element.fileId);
    }
    return TableArray(values, 3);
}

// --- room element --------------------------------------------------------------------------------

const Members<RoomElementObject>& RoomElementObject::Members() {
    using Object = RoomElementObject;
    static const practice::Members<Object> members = {
        {L"ComponentID", 0, nullptr, &Object::ComponentID},
        {L"FileNumber", 0, nullptr, &Object::FileNumber},
        {L"FileID", 0, nullptr, &Object::FileID},
        {L"RoomName", 0, nullptr, &Object::RoomName, &Object::SetRoomName},
        {L"RoomFunction", 0, nullptr, &Object::RoomFunction, &Object::SetRoomFunction},
        {L"StoreyCode", 0, nullptr, &Object::StoreyCode, &Object::SetStoreyCode},
        {L"Outline", 0, nullptr, &Object::GetOutline, &Object::SetOutline},
        {L"Colour", 0, nullptr, &Object::Colour, &Object::SetColour},
        {L"Attributes", 0, nullptr, &Object::Attributes},
        {L"RoomRecord", 0, nullptr, &Object::RoomRecord},
    };
    return members;
}

Variant RoomElementObject::ComponentID() {
    return Variant(element_->element.componentId);
}
Variant RoomElementObject::FileNumber() {
    return Variant(element_->element.fileNumber);
}
Variant RoomElementObject::FileID() {
    return Variant(element_->element.fileId);
}

Variant RoomElementObject::RoomName() {
    return Variant(element_->element.name);
}
void RoomElementObject::SetRoomName(const Variant& value) {
    element_->element.name = value.ToText();
}

Variant RoomElementObject::RoomFunction() {
    return Variant(element_->element.function);
}
void RoomElementObject::SetRoomFunction(const Variant& value) {
    element_->element.function = value.ToText();
}

Variant RoomElementObject::StoreyCode() {
    return Variant(element_->element.storey);
}
void RoomElementObject::SetStoreyCode(const Variant& value) {
    element_->element.storey = value.ToText();
}

Variant RoomElementObject::GetOutline() {
    return OutlineArray(element_->element.outline);
}
void RoomElementObject::SetOutline(const Variant& value) {
    element_->element.outline = OutlineFrom(value);
    process().session.drawing.UpdateFloorArea(element_->element);
}

Variant RoomElementObject::Colour() {
    return Variant(element_->element.colour);
}
void RoomElementObject::SetColour(const Variant& value) {
    element_->element.colour = value.ToLong();
}

Variant RoomElementObject::Attributes() {
    return New<AttributeListObject>(process(), element_);
}

Variant RoomElementObject::RoomRecord() {
    const Element& element = element_->element;
    std::vector<Variant> values;
    values.emplace_back(element.componentId);
    values.emplace_back(element.fileNumber);
    values.emplace_back(element.fileId);
    values.emplace_back(element.name);
    values.emplace_back(element.function);
    values.emplace_back(element.storey);
    return RecordArray(values);
}

// --- attributes ----------------------------------------------------------------------------------

const Members<AttributeListObject>& AttributeListObject::Members() {
    using Object = AttributeListObject;
    static const practice::Members<Object> members = {
        {L"Count", 0, nullptr, &Object::Count},
        {L"Item", 1, &Object::Item},
        {L"AttributeTable", 0, nullptr, &Object::AttributeTable},
    };
    return members;
}

Variant AttributeListObject::Count() {
    return CountOf(element_->element.attributes.size());
}

Variant AttributeListObject::Item(const Arguments& arguments) {
    return New<AttributeObject>(process(), element_,
                                IndexFrom(arguments, element_->element.attributes.size()));
}

Variant AttributeListObject::AttributeTable() {
    std::vector<Variant> values;
    for (const Attribute& attribute : element_->element.attributes) {
        values.emplace_back(attribute.name);
        values.emplace_back(attribute.NumberValue());
        values.emplace_back(attribute.TextValue());
    }
    return TableArray(values, 3);
}

const Members<AttributeObject>& AttributeObject::Members() {
    using Object = AttributeObject;
    static const practice::Members<Object> members = {
        {L"Name", 0, nullptr, &Object::Name},
        {L"NumberValue", 0, nullptr, &Object::NumberValue},
        {L"TextValue", 0, nullptr, &Object::TextValue, &Object::SetTextValue},
    };
    return members;
}

Attribute& AttributeObject::Target() const {
    return element_->element.attributes.at(index_);
}

Variant AttributeObject::Name() {
    return Variant(Target().name);
}
Variant AttributeObject::NumberValue() {
    return Variant(Target().NumberValue());
}
Variant AttributeObject::TextValue() {
    return Variant(Target().TextValue());
}

void AttributeObject::SetTextValue(const Variant& value) {
    if (process().session.drawing.IsFloorArea(Target()))
        throw HostError(L"The floor area follows from the ground plan and cannot be written.");
    Target().value = value.ToText();
}

} // namespace kalvrooms::practice
