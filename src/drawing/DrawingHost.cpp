#include "drawing/DrawingHost.h"

#include <utility>

namespace kalvrooms {

// An object of the host, counted while it is held.
template <class Interface>
class HostPart : public Interface {
  public:
    explicit HostPart(DrawingHost& host) : host_(host), held_(host.held_) {}

  protected:
    void Enter(const char* member) const { host_.Enter(member); }
    DrawingHost& host_;

  private:
    std::shared_ptr<char> held_;
};

namespace {

class AttributePart : public HostPart<HostAttribute> {
  public:
    AttributePart(DrawingHost& host, WorkingElementPtr element, std::size_t place)
        : HostPart(host), element_(std::move(element)), place_(place) {}

    void TextValue(const std::wstring& value) override {
        Enter("TextValue");
        host_.session.drawing.SetText(element_->element.attributes.at(place_), value);
    }

  private:
    WorkingElementPtr element_;
    std::size_t place_;
};

class AttributeListPart : public HostPart<HostAttributeList> {
  public:
    AttributeListPart(DrawingHost& host, WorkingElementPtr element)
        : HostPart(host), element_(std::move(element)) {}

    std::unique_ptr<HostAttribute> Item(std::int32_t index) override {
        Enter("Item");
        const std::size_t place = ItemPlace(index, element_->element.attributes.size());
        return std::make_unique<AttributePart>(host_, element_, place);
    }
    std::vector<HostAttributeValue> Values() override {
        Enter("Values");
        std::vector<HostAttributeValue> values;
        for (const Attribute& attribute : element_->element.attributes)
            values.push_back({attribute.name, attribute.NumberValue(), attribute.TextValue()});
        if (host_.telling)
            host_.telling(values);
        return values;
    }

  private:
    WorkingElementPtr element_;
};

class RoomElementPart : public HostPart<HostRoomElement> {
  public:
    RoomElementPart(DrawingHost& host, WorkingElementPtr element)
        : HostPart(host), element_(std::move(element)) {}
    const WorkingElementPtr& Working() const { return element_; }

    HostRoomRecord Record() override {
        Enter("Record");
        const Element& element = element_->element;
        return {element.identity, element.name, element.function, element.storey};
    }
    void RoomName(const std::wstring& text) override {
        Enter("RoomName");
        element_->element.name = ElementText(text);
    }
    void RoomFunction(const std::wstring& text) override {
        Enter("RoomFunction");
        element_->element.function = ElementText(text);
    }
    void StoreyCode(const std::wstring& text) override {
        Enter("StoreyCode");
        element_->element.storey = ElementText(text);
    }
    kalvrooms::Outline Outline() override {
        Enter("Outline");
        kalvrooms::Outline closed = element_->element.outline;
        if (!closed.empty())
            closed.push_back(closed.front());
        return closed;
    }
    void Outline(const kalvrooms::Outline& points) override {
        Enter("SetOutline");
        host_.session.drawing.SetOutline(element_->element, points);
    }
    void Colour(std::int32_t rgb) override {
        Enter("Colour");
        element_->element.colour = rgb;
    }
    std::unique_ptr<HostAttributeList> Attributes() override {
        Enter("Attributes");
        return std::make_unique<AttributeListPart>(host_, element_);
    }

  private:
    WorkingElementPtr element_;
};

class ElementListPart : public HostPart<HostElementList> {
  public:
    ElementListPart(DrawingHost& host, WorkingElements elements)
        : HostPart(host), elements_(std::move(elements)) {}
    const WorkingElements& Elements() const { return elements_; }

    std::int32_t Count() override {
        Enter("Count");
        return static_cast<std::int32_t>(elements_.size());
    }
    std::unique_ptr<HostRoomElement> Item(std::int32_t index) override {
        Enter("Item");
        return std::make_unique<RoomElementPart>(host_,
                                                 elements_[ItemPlace(index, elements_.size())]);
    }
    void Add(HostRoomElement& element) override {
        Enter("Add");
        elements_.push_back(dynamic_cast<RoomElementPart&>(element).Working());
    }
    std::vector<std::optional<HostIdentity>> Identities() override {
        Enter("Identities");
        std::vector<std::optional<HostIdentity>> identities;
        for (const WorkingElementPtr& copy : elements_)
            identities.push_back(copy->element.identity);
        return identities;
    }

  private:
    WorkingElements elements_;
};

class RoomSelectionPart : public HostPart<HostRoomSelection> {
  public:
    using HostPart::HostPart;
    bool SelectsRooms() const { return rooms_; }

    void SelectRooms() override {
        Enter("SelectRooms");
        rooms_ = true;
    }

  private:
    bool rooms_ = false;
};

class DrawingServicePart : public HostPart<HostDrawingService> {
  public:
    explicit DrawingServicePart(DrawingHost& host) : HostPart(host), service_(host.session) {}

    std::unique_ptr<HostElementList> GetElements(HostRoomSelection& selection) override {
        Enter("GetElements");
        const bool rooms = dynamic_cast<RoomSelectionPart&>(selection).SelectsRooms();
        return std::make_unique<ElementListPart>(host_,
                                                 rooms ? service_.Elements() : WorkingElements());
    }
    std::unique_ptr<HostElementList> CreateElementList() override {
        Enter("CreateElementList");
        return std::make_unique<ElementListPart>(host_, WorkingElements());
    }
    std::unique_ptr<HostRoomElement> CreateRoomElement() override {
        Enter("CreateRoomElement");
        return std::make_unique<RoomElementPart>(host_, service_.NewElement());
    }
    void ChangeElements(HostElementList& elements) override {
        Enter("ChangeElements");
        service_.Change(ElementsOf(elements));
    }
    void AddElements(HostElementList& elements) override {
        Enter("AddElements");
        service_.Add(ElementsOf(elements));
    }
    void PlaceElements(HostElementList& elements, std::int32_t mode) override {
        Enter("PlaceElements");
        service_.Place(ElementsOf(elements), mode);
    }
    void ApplyChanges() override {
        Enter("ApplyChanges");
        service_.Apply();
    }

  private:
    static const WorkingElements& ElementsOf(HostElementList& elements) {
        return dynamic_cast<ElementListPart&>(elements).Elements();
    }

    DrawingService service_;
};

class ProjectPart : public HostPart<HostProject> {
  public:
    explicit ProjectPart(DrawingHost& host)
        : HostPart(host), project_(host.session.drawing.project) {}

    std::int32_t ProjectNumber() override {
        Enter("ProjectNumber");
        return project_.number;
    }
    std::wstring ProjectName() override {
        Enter("ProjectName");
        return project_.name;
    }
    std::wstring ProjectFolder() override {
        Enter("ProjectFolder");
        return project_.folder;
    }

  private:
    Project project_;
};

class ApplicationPart : public HostPart<HostApplication> {
  public:
    using HostPart::HostPart;

    // The project is always up to date here.
    void UpdateProjectInfo() override { Enter("UpdateProjectInfo"); }
    std::unique_ptr<HostProject> GetProject() override {
        Enter("GetProject");
        return std::make_unique<ProjectPart>(host_);
    }
    std::unique_ptr<HostDrawingService> GetDrawingService() override {
        Enter("GetDrawingService");
        return std::make_unique<DrawingServicePart>(host_);
    }
};

class AttributeCataloguePart : public HostPart<HostAttributeCatalogue> {
  public:
    using HostPart::HostPart;

    std::wstring AttributeName(std::int32_t number) override {
        Enter("AttributeName");
        return host_.session.drawing.AttributeName(number);
    }
};

} // namespace

void DrawingHost::Enter(const char* member) const {
    if (entering)
        entering(member);
}

std::unique_ptr<HostApplication> DrawingHost::CreateHostApplication() {
    Enter("CreateHostApplication");
    session.state.CheckAccess();
    return std::make_unique<ApplicationPart>(*this);
}

std::unique_ptr<HostRoomSelection> DrawingHost::CreateRoomFilter() {
    Enter("CreateRoomFilter");
    return std::make_unique<RoomSelectionPart>(*this);
}

std::unique_ptr<HostAttributeCatalogue> DrawingHost::CreateAttributeCatalogue() {
    Enter("CreateAttributeCatalogue");
    return std::make_unique<AttributeCataloguePart>(*this);
}

} // namespace kalvrooms
