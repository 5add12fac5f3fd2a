#include "win32/ComHostServer.h"

#include "model/RuntimeError.h"

namespace kalvrooms {
namespace {

namespace Member = HostMembers;

// Two-dimensional array (0..1, 0..n-1) of 64-bit floats: x and y of the points.
ComVariant toArray(const Outline& points) {
    SAFEARRAYBOUND bounds[] = {{2, 0}, {static_cast<ULONG>(points.size()), 0}};
    ComVariant array(SafeArrayCreate(VT_R8, 2, bounds), VT_R8);
    for (LONG i = 0; i < static_cast<LONG>(points.size()); ++i) {
        Point point = points[static_cast<std::size_t>(i)];
        LONG x[] = {0, i};
        LONG y[] = {1, i};
        if (FAILED(SafeArrayPutElement(array.raw().parray, x, &point.x)) ||
            FAILED(SafeArrayPutElement(array.raw().parray, y, &point.y)))
            throw RuntimeError(RuntimeError::OutOfMemory);
    }
    return array;
}

Outline toOutline(const ComVariant& value) {
    Outline points;
    if (value.isEmpty())
        return points;
    const ComArray array(value, 2);
    const long x = array.lower(1);
    if (array.upper(1) != x + 1)
        throw RuntimeError(RuntimeError::TypeMismatch);
    for (long i = array.lower(2); i <= array.upper(2); ++i)
        points.push_back({array.at(x, i).toDouble(), array.at(x + 1, i).toDouble()});
    return points;
}

template <typename Step>
bool attempted(Step step) {
    try {
        step();
        return true;
    } catch (const RuntimeError& error) {
        if (error.number() == RuntimeError::ServerUnavailable)
            throw;
        return false;
    }
}

class ComAttribute : public HostAttribute {
  public:
    explicit ComAttribute(ComObject object) : object_(std::move(object)) {}
    std::wstring Name() override { return object_.Get(Member::Name).toText(); }
    double NumberValue() override { return object_.Get(Member::NumberValue).toDouble(); }
    std::wstring TextValue() override { return object_.Get(Member::TextValue).toText(); }
    void TextValue(const std::wstring& value) override {
        object_.Put(Member::TextValue, ComVariant(value));
    }

  private:
    ComObject object_;
};

class ComAttributeList : public HostAttributeList {
  public:
    ComAttributeList(ComObject object, const HostBulkMembers& bulk)
        : object_(std::move(object)), bulk_(bulk) {}
    std::int32_t Count() override { return object_.Get(Member::Count).toLong(); }
    std::unique_ptr<HostAttribute> Item(std::int32_t index) override {
        const ComVariant position(index);
        return std::make_unique<ComAttribute>(
            object_.CallObject(L"attribute", Member::Item, {&position}));
    }
    std::vector<HostAttributeValue> Values() override {
        if (bulk_.AttributeTable) {
            try {
                return valuesAtOnce();
            } catch (const RuntimeError& error) {
                // A value that the table cannot carry must not cost all the others.
                if (error.number() == RuntimeError::ServerUnavailable)
                    throw;
            }
        }
        return valuesOneByOne();
    }

  private:
    std::vector<HostAttributeValue> valuesAtOnce() {
        std::vector<HostAttributeValue> values;
        const ComVariant table = object_.Get(bulk_.AttributeTable);
        if (table.isEmpty())
            return values;
        const ComArray array(table, 2);
        const long first = array.lower(2);
        for (long i = array.lower(1); i <= array.upper(1); ++i)
            values.push_back({array.at(i, first).toText(), array.at(i, first + 1).toDouble(),
                              array.at(i, first + 2).toText()});
        return values;
    }
    std::vector<HostAttributeValue> valuesOneByOne() {
        std::vector<HostAttributeValue> values;
        const std::int32_t count = Count();
        for (std::int32_t index = 1; index <= count; ++index) {
            HostAttributeValue value;
            std::unique_ptr<HostAttribute> attribute;
            // What one attribute refuses, a number for a text perhaps, stays empty.
            if (attempted([&] { attribute = Item(index); })) {
                attempted([&] { value.Name = attribute->Name(); });
                attempted([&] { value.Number = attribute->NumberValue(); });
                attempted([&] { value.Text = attribute->TextValue(); });
            }
            values.push_back(std::move(value));
        }
        return values;
    }

    ComObject object_;
    HostBulkMembers bulk_;
};

class ComRoomElement : public HostRoomElement {
  public:
    ComRoomElement(ComObject object, const HostBulkMembers& bulk)
        : object_(std::move(object)), bulk_(bulk) {}
    const ComObject& object() const { return object_; }

    HostRoomRecord Record() override {
        HostRoomRecord record;
        if (bulk_.RoomRecord && attempted([&] { record = recordAtOnce(); }))
            return record;
        attempted([&] { record.Identity.ComponentID = object_.Get(Member::ComponentID).toLong(); });
        attempted([&] { record.Identity.FileNumber = object_.Get(Member::FileNumber).toLong(); });
        attempted([&] { record.Identity.FileID = object_.Get(Member::FileID).toText(); });
        attempted([&] { record.RoomName = object_.Get(Member::RoomName).toText(); });
        attempted([&] { record.RoomFunction = object_.Get(Member::RoomFunction).toText(); });
        attempted([&] { record.StoreyCode = object_.Get(Member::StoreyCode).toText(); });
        return record;
    }
    HostIdentity Identity() {
        return {object_.Get(Member::ComponentID).toLong(), object_.Get(Member::FileNumber).toLong(),
                object_.Get(Member::FileID).toText()};
    }
    HostRoomRecord recordAtOnce() {
        const ComVariant answer = object_.Get(bulk_.RoomRecord);
        const ComArray fields(answer, 1);
        const long first = fields.lower(1);
        HostRoomRecord record;
        record.Identity = {fields.at(first).toLong(), fields.at(first + 1).toLong(),
                           fields.at(first + 2).toText()};
        record.RoomName = fields.at(first + 3).toText();
        record.RoomFunction = fields.at(first + 4).toText();
        record.StoreyCode = fields.at(first + 5).toText();
        return record;
    }
    void RoomName(const std::wstring& text) override {
        object_.Put(Member::RoomName, ComVariant(text));
    }
    void RoomFunction(const std::wstring& text) override {
        object_.Put(Member::RoomFunction, ComVariant(text));
    }
    void StoreyCode(const std::wstring& text) override {
        object_.Put(Member::StoreyCode, ComVariant(text));
    }
    kalvrooms::Outline Outline() override { return toOutline(object_.Get(Member::Outline)); }
    void Outline(const kalvrooms::Outline& points) override {
        object_.Put(Member::Outline, toArray(points));
    }
    void Colour(std::int32_t rgb) override { object_.Put(Member::Colour, ComVariant(rgb)); }
    std::unique_ptr<HostAttributeList> Attributes() override {
        return std::make_unique<ComAttributeList>(
            object_.ObjectOf(L"attribute list", Member::Attributes), bulk_);
    }

  private:
    ComObject object_;
    HostBulkMembers bulk_;
};

class ComElementList : public HostElementList {
  public:
    ComElementList(ComObject object, const HostBulkMembers& bulk)
        : object_(std::move(object)), bulk_(bulk) {}
    const ComObject& object() const { return object_; }

    std::int32_t Count() override { return object_.Get(Member::Count).toLong(); }
    std::unique_ptr<HostRoomElement> Item(std::int32_t index) override { return item(index); }
    void Add(HostRoomElement& element) override {
        const ComVariant argument(dynamic_cast<ComRoomElement&>(element).object().dispatch());
        object_.Call(Member::Add, {&argument});
    }
    std::vector<HostIdentity> Identities() override {
        std::vector<HostIdentity> identities;
        if (bulk_.IdentityTable) {
            const ComVariant table = object_.Get(bulk_.IdentityTable);
            if (table.isEmpty()) {
                // Taken for "no elements", a failed answer would have every known room made again.
                if (Count() != 0)
                    throw RuntimeError(RuntimeError::AutomationError);
                return identities;
            }
            const ComArray array(table, 2);
            const long first = array.lower(2);
            for (long i = array.lower(1); i <= array.upper(1); ++i)
                identities.push_back({array.at(i, first).toLong(), array.at(i, first + 1).toLong(),
                                      array.at(i, first + 2).toText()});
            return identities;
        }
        const std::int32_t count = Count();
        for (std::int32_t index = 1; index <= count; ++index)
            identities.push_back(item(index)->Identity());
        return identities;
    }

  private:
    std::unique_ptr<ComRoomElement> item(std::int32_t index) {
        const ComVariant position(index);
        return std::make_unique<ComRoomElement>(
            object_.CallObject(L"room element", Member::Item, {&position}), bulk_);
    }

    ComObject object_;
    HostBulkMembers bulk_;
};

class ComRoomSelection : public HostRoomSelection {
  public:
    explicit ComRoomSelection(ComObject object) : object_(std::move(object)) {}
    const ComObject& object() const { return object_; }
    void SelectRooms() override { object_.Call(Member::SelectRooms); }

  private:
    ComObject object_;
};

class ComDrawingService : public HostDrawingService {
  public:
    ComDrawingService(ComObject object, const HostBulkMembers& bulk)
        : object_(std::move(object)), bulk_(bulk) {}

    std::unique_ptr<HostElementList> GetElements(HostRoomSelection& selection) override {
        const ComVariant filter(dynamic_cast<ComRoomSelection&>(selection).object().dispatch());
        return std::make_unique<ComElementList>(
            object_.CallObject(L"element list", Member::GetElements, {&filter}), bulk_);
    }
    std::unique_ptr<HostElementList> CreateElementList() override {
        return std::make_unique<ComElementList>(
            object_.CallObject(L"element list", Member::CreateElementList), bulk_);
    }
    std::unique_ptr<HostRoomElement> CreateRoomElement() override {
        return std::make_unique<ComRoomElement>(
            object_.CallObject(L"room element", Member::CreateRoomElement), bulk_);
    }
    void ChangeElements(HostElementList& elements) override {
        const ComVariant list = argument(elements);
        object_.Call(Member::ChangeElements, {&list});
    }
    void AddElements(HostElementList& elements) override {
        const ComVariant list = argument(elements);
        object_.Call(Member::AddElements, {&list});
    }
    void PlaceElements(HostElementList& elements, std::int32_t mode) override {
        const ComVariant list = argument(elements);
        const ComVariant how(mode);
        object_.Call(Member::PlaceElements, {&list, &how});
    }
    void ApplyChanges() override { object_.Call(Member::ApplyChanges); }

  private:
    static ComVariant argument(HostElementList& elements) {
        return ComVariant(dynamic_cast<ComElementList&>(elements).object().dispatch());
    }

    ComObject object_;
    HostBulkMembers bulk_;
};

class ComProject : public HostProject {
  public:
    explicit ComProject(ComObject object) : object_(std::move(object)) {}
    std::int32_t ProjectNumber() override { return object_.Get(Member::ProjectNumber).toLong(); }
    std::wstring ProjectName() override { return object_.Get(Member::ProjectName).toText(); }
    std::wstring ProjectFolder() override { return object_.Get(Member::ProjectFolder).toText(); }

  private:
    ComObject object_;
};

class ComApplication : public HostApplication {
  public:
    ComApplication(ComObject object, const HostBulkMembers& bulk)
        : object_(std::move(object)), bulk_(bulk) {}
    void UpdateProjectInfo() override { object_.Call(Member::UpdateProjectInfo); }
    std::unique_ptr<HostProject> GetProject() override {
        return std::make_unique<ComProject>(object_.CallObject(L"project", Member::GetProject));
    }
    std::unique_ptr<HostDrawingService> GetDrawingService() override {
        return std::make_unique<ComDrawingService>(
            object_.CallObject(L"drawing service", Member::GetDrawingService), bulk_);
    }

  private:
    ComObject object_;
    HostBulkMembers bulk_;
};

class ComAttributeCatalogue : public HostAttributeCatalogue {
  public:
    explicit ComAttributeCatalogue(ComObject object) : object_(std::move(object)) {}
    std::wstring AttributeName(std::int32_t number) override {
        const ComVariant argument(number);
        return object_.Call(Member::AttributeName, {&argument}).toText();
    }

  private:
    ComObject object_;
};

class ComHostServer : public HostServer {
  public:
    ComHostServer(std::shared_ptr<ComSession> session, const HostBulkMembers& bulk)
        : session_(std::move(session)), bulk_(bulk) {}

    std::unique_ptr<HostApplication> CreateHostApplication() override {
        ComObject application = create(L"application", Member::ApplicationClass);
        if (Member::CheckAccess)
            application.Call(Member::CheckAccess);
        return std::make_unique<ComApplication>(std::move(application), bulk_);
    }
    std::unique_ptr<HostRoomSelection> CreateRoomFilter() override {
        return std::make_unique<ComRoomSelection>(create(L"room filter", Member::RoomFilterClass));
    }
    std::unique_ptr<HostAttributeCatalogue> CreateAttributeCatalogue() override {
        return std::make_unique<ComAttributeCatalogue>(
            create(L"attribute catalogue", Member::AttributeCatalogueClass));
    }

  private:
    ComObject create(const wchar_t* kind, const wchar_t* programmaticIdentifier) {
        return ComObject::Create(session_, kind, programmaticIdentifier, CLSCTX_LOCAL_SERVER);
    }

    std::shared_ptr<ComSession> session_;
    HostBulkMembers bulk_;
};

} // namespace

std::unique_ptr<HostServer> MakeComHostServer(std::shared_ptr<ComSession> session,
                                              const HostBulkMembers& bulk) {
    return std::make_unique<ComHostServer>(std::move(session), bulk);
}

std::unique_ptr<HostServer> MakeComHostServer() {
    return MakeComHostServer(std::make_shared<ComSession>());
}

} // namespace kalvrooms
