#include "support/ScriptedHost.h"

#include <algorithm>

namespace kalvrooms::testing {
namespace {

// Every object of the host counts itself, so that a test sees what was left behind.
class Counted {
  public:
    explicit Counted(ScriptedHost& host) : host_(host) { ++host_.liveObjects; }
    ~Counted() { --host_.liveObjects; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

  protected:
    ScriptedHost& host_;
};

class Attribute : public HostAttribute, Counted {
  public:
    Attribute(ScriptedHost& host, std::shared_ptr<ScriptedElement> element, std::size_t index)
        : Counted(host), element_(std::move(element)), index_(index) {}
    std::wstring Name() override {
        host_.call("Name");
        return at().name;
    }
    double NumberValue() override {
        host_.call("NumberValue");
        return at().number;
    }
    std::wstring TextValue() override {
        host_.call("TextValue");
        return at().text;
    }
    void TextValue(const std::wstring& value) override {
        host_.call("TextValue=");
        at().text = value;
    }

  private:
    ScriptedAttribute& at() { return element_->attributes.at(index_); }
    std::shared_ptr<ScriptedElement> element_;
    std::size_t index_;
};

class AttributeList : public HostAttributeList, Counted {
  public:
    AttributeList(ScriptedHost& host, std::shared_ptr<ScriptedElement> element)
        : Counted(host), element_(std::move(element)) {}
    std::int32_t Count() override {
        host_.call("Count");
        return static_cast<std::int32_t>(element_->attributes.size());
    }
    std::unique_ptr<HostAttribute> Item(std::int32_t index) override {
        host_.call("Item");
        return std::make_unique<Attribute>(host_, element_, static_cast<std::size_t>(index - 1));
    }
    std::vector<HostAttributeValue> Values() override {
        host_.call("Values");
        std::vector<HostAttributeValue> values;
        for (const ScriptedAttribute& attribute : element_->attributes)
            values.push_back({attribute.name, attribute.number, attribute.text});
        return values;
    }

  private:
    std::shared_ptr<ScriptedElement> element_;
};

class RoomElement : public HostRoomElement, Counted {
  public:
    RoomElement(ScriptedHost& host, std::shared_ptr<ScriptedElement> element)
        : Counted(host), element_(std::move(element)) {}
    const std::shared_ptr<ScriptedElement>& element() const { return element_; }

    HostRoomRecord Record() override {
        host_.call("Record");
        return {element_->identity, element_->name, element_->function, element_->storey};
    }
    void RoomName(const std::wstring& text) override {
        host_.call("RoomName=");
        element_->name = text;
    }
    void RoomFunction(const std::wstring& text) override {
        host_.call("RoomFunction=");
        element_->function = text;
    }
    void StoreyCode(const std::wstring& text) override {
        host_.call("StoreyCode=");
        element_->storey = text;
    }
    kalvrooms::Outline Outline() override {
        host_.call("Outline");
        kalvrooms::Outline closed = element_->outline;
        if (!closed.empty())
            closed.push_back(closed.front());
        return closed;
    }
    void Outline(const kalvrooms::Outline& points) override {
        host_.call("Outline=");
        element_->outline = points;
        if (points.size() > 1 && points.front() == points.back())
            element_->outline.pop_back();
    }
    void Colour(std::int32_t rgb) override {
        host_.call("Colour=");
        element_->colour = rgb;
    }
    std::unique_ptr<HostAttributeList> Attributes() override {
        host_.call("Attributes");
        return std::make_unique<AttributeList>(host_, element_);
    }

  private:
    std::shared_ptr<ScriptedElement> element_;
};

using Elements = std::vector<std::shared_ptr<ScriptedElement>>;

class ElementList : public HostElementList, Counted {
  public:
    ElementList(ScriptedHost& host, Elements elements)
        : Counted(host), elements_(std::move(elements)) {}
    const Elements& elements() const { return elements_; }

    std::int32_t Count() override {
        host_.call("Count");
        return static_cast<std::int32_t>(elements_.size());
    }
    std::unique_ptr<HostRoomElement> Item(std::int32_t index) override {
        host_.call("Item");
        return std::make_unique<RoomElement>(host_,
                                             elements_.at(static_cast<std::size_t>(index - 1)));
    }
    void Add(HostRoomElement& element) override {
        host_.call("Add");
        elements_.push_back(dynamic_cast<RoomElement&>(element).element());
    }
    std::vector<HostIdentity> Identities() override {
        host_.call("Identities");
        std::vector<HostIdentity> identities;
        for (const auto& element : elements_)
            identities.push_back(element->identity);
        return identities;
    }

  private:
    Elements elements_;
};

class RoomSelection : public HostRoomSelection, Counted {
  public:
    using Counted::Counted;
    void SelectRooms() override { host_.call("SelectRooms"); }
};

class DrawingService : public HostDrawingService, Counted {
  public:
    using Counted::Counted;

    std::unique_ptr<HostElementList> GetElements(HostRoomSelection&) override {
        host_.call("GetElements");
        Elements copies;
        for (std::size_t index = 0; index < host_.drawing.size(); ++index) {
            copies.push_back(std::make_shared<ScriptedElement>(host_.drawing[index]));
            standing_[copies.back()] = index;
        }
        return std::make_unique<ElementList>(host_, copies);
    }
    std::unique_ptr<HostElementList> CreateElementList() override {
        host_.call("CreateElementList");
        return std::make_unique<ElementList>(host_, Elements());
    }
    std::unique_ptr<HostRoomElement> CreateRoomElement() override {
        host_.call("CreateRoomElement");
        auto element = std::make_shared<ScriptedElement>();
        element->attributes = host_.newElementAttributes;
        return std::make_unique<RoomElement>(host_, element);
    }
    void ChangeElements(HostElementList& elements) override {
        host_.call("ChangeElements");
        ++host_.changeCalls;
        append(changed_, elements);
    }
    void AddElements(HostElementList& elements) override {
        host_.call("AddElements");
        ++host_.addCalls;
        append(added_, elements);
    }
    void PlaceElements(HostElementList& elements, std::int32_t mode) override {
        host_.call("PlaceElements");
        ScriptedPlacing placing;
        placing.mode = mode;
        for (const auto& element : dynamic_cast<ElementList&>(elements).elements())
            placing.elements.push_back(*element);
        placings_.push_back(placing);
        append(added_, elements);
    }
    void ApplyChanges() override {
        host_.call("ApplyChanges");
        ++host_.applies;
        for (const auto& element : changed_)
            host_.drawing.at(standing_.at(element)) = *element;
        for (const auto& element : added_) {
            std::int32_t highest = 0;
            for (const ScriptedElement& standing : host_.drawing)
                highest = std::max(highest, standing.identity.ComponentID);
            element->identity = {highest + 1, 1, L"K1"};
            host_.drawing.push_back(*element);
        }
        host_.placings.insert(host_.placings.end(), placings_.begin(), placings_.end());
        changed_.clear();
        added_.clear();
        placings_.clear();
    }

  private:
    static void append(Elements& queue, HostElementList& elements) {
        const Elements& more = dynamic_cast<ElementList&>(elements).elements();
        queue.insert(queue.end(), more.begin(), more.end());
    }
    Elements changed_, added_;
    // Where in the drawing the elements stand that were handed out.
    std::map<std::shared_ptr<ScriptedElement>, std::size_t> standing_;
    std::vector<ScriptedPlacing> placings_;
};

class Project : public HostProject, Counted {
  public:
    using Counted::Counted;
    std::int32_t ProjectNumber() override {
        host_.call("ProjectNumber");
        return host_.projectNumber;
    }
    std::wstring ProjectName() override {
        host_.call("ProjectName");
        return host_.projectName;
    }
    std::wstring ProjectFolder() override {
        host_.call("ProjectFolder");
        return host_.projectFolder;
    }
};

class Application : public HostApplication, Counted {
  public:
    using Counted::Counted;
    void UpdateProjectInfo() override { host_.call("UpdateProjectInfo"); }
    std::unique_ptr<HostProject> GetProject() override {
        host_.call("GetProject");
        return std::make_unique<Project>(host_);
    }
    std::unique_ptr<HostDrawingService> GetDrawingService() override {
        host_.call("GetDrawingService");
        return std::make_unique<DrawingService>(host_);
    }
};

class Catalogue : public HostAttributeCatalogue, Counted {
  public:
    using Counted::Counted;
    std::wstring AttributeName(std::int32_t number) override {
        host_.call("AttributeName");
        const auto name = host_.attributeNames.find(number);
        if (name == host_.attributeNames.end())
            throw RuntimeError(RuntimeError::InvalidProcedureCall, L"unknown attribute");
        return name->second;
    }
};

} // namespace

std::unique_ptr<HostApplication> ScriptedHost::CreateHostApplication() {
    ++created;
    if (!creationError.empty())
        throw RuntimeError(RuntimeError::CannotCreateObject, creationError);
    call("CreateHostApplication");
    return std::make_unique<Application>(*this);
}

std::unique_ptr<HostRoomSelection> ScriptedHost::CreateRoomFilter() {
    call("CreateRoomFilter");
    return std::make_unique<RoomSelection>(*this);
}

std::unique_ptr<HostAttributeCatalogue> ScriptedHost::CreateAttributeCatalogue() {
    call("CreateAttributeCatalogue");
    return std::make_unique<Catalogue>(*this);
}

} // namespace kalvrooms::testing
