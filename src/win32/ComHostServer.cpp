#include "win32/ComHostServer.h"

#include <type_traits>

namespace kalvrooms {
namespace {

namespace Member = HostMembers;

// Two-dimensional array (0..1, 0..n-1) of 64-bit floats: x and y of the points.
Variant toArray(const Outline& points) {
    Variant array = NewArray(VT_R8, {{2, 0}, {static_cast<ULONG>(points.size()), 0}});
    ArrayView view(array, 2);
    for (std::size_t i = 0; i < points.size(); ++i) {
        view.Number(0, i) = points[i].x;
        view.Number(1, i) = points[i].y;
    }
    return array;
}

Outline toOutline(const Variant& value) {
    Outline points;
    if (value.empty())
        return points;
    const ArrayView view(value, 2);
    if (view.rows() != 2)
        throw RuntimeError(RuntimeError::TypeMismatch);
    for (std::size_t i = 0; i < view.columns(); ++i)
        points.push_back({NumberOf(view.Copy(0, i)), NumberOf(view.Copy(1, i))});
    return points;
}

// False when the host refuses the step; a lost connection is passed on.
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

// For an empty table: taken for one without rows, a failed answer would have known rooms made again
// and attributes emptied.
void requireNone(ComObject& list) {
    if (LongOf(list.Get(Member::Count)) != 0)
        throw RuntimeError(RuntimeError::AutomationError);
}

// An object of the host behind one of the abstract interfaces.
template <typename Interface>
class Adapter : public Interface {
  public:
    Adapter(ComObject object, const HostBulkMembers& bulk)
        : object_(std::move(object)), bulk_(bulk) {}
    // As an argument of a call.
    static IDispatch* Of(Interface& adapted) {
        return dynamic_cast<Adapter&>(adapted).object_.dispatch();
    }

  protected:
    ComObject object_;
    HostBulkMembers bulk_;
};

class ComAttribute : public Adapter<HostAttribute> {
  public:
    using Adapter::Adapter;
    std::wstring Name() { return TextOf(object_.Get(Member::Name)); }
    double NumberValue() { return NumberOf(object_.Get(Member::NumberValue)); }
    std::wstring TextValue() { return TextOf(object_.Get(Member::TextValue)); }
    void TextValue(const std::wstring& value) override { object_.Put(Member::TextValue, value); }
};

class ComAttributeList : public Adapter<HostAttributeList> {
  public:
    using Adapter::Adapter;
    std::unique_ptr<HostAttribute> Item(std::int32_t index) override { return item(index); }
    std::vector<HostAttributeValue> Values() override {
        std::vector<HostAttributeValue> values;
        // A value that the table cannot carry must not cost all the others.
        if (!bulk_.AttributeTable || !attempted([&] { values = valuesAtOnce(); }))
            values = valuesOneByOne();
        return values;
    }

  private:
    std::unique_ptr<ComAttribute> item(std::int32_t index) {
        return std::make_unique<ComAttribute>(
            object_.CallObject(L"attribute", Member::Item, {index}), bulk_);
    }
    std::vector<HostAttributeValue> valuesAtOnce() {
        std::vector<HostAttributeValue> values;
        const Variant table = object_.Get(bulk_.AttributeTable);
        if (table.empty()) {
            requireNone(object_);
            return values;
        }
        const ArrayView rows(table, 2);
        for (std::size_t i = 0; i < rows.rows(); ++i)
            values.push_back(
                {TextOf(rows.Copy(i, 0)), NumberOf(rows.Copy(i, 1)), TextOf(rows.Copy(i, 2))});
        return values;
    }
    std::vector<HostAttributeValue> valuesOneByOne() {
        std::vector<HostAttributeValue> values;
        const std::int32_t count = LongOf(object_.Get(Member::Count));
        std::int32_t failuresInARow = 0;
        for (std::int32_t index = 1; index <= count && failuresInARow < MostFailuresInARow;
             ++index) {
            HostAttributeValue value;
            std::unique_ptr<ComAttribute> attribute;
            ++failuresInARow;
            // What one attribute refuses, a number for a text perhaps, stays without a value.
            if (attempted([&] { attribute = item(index); })) {
                failuresInARow = 0;
                attempted([&] { value.Name = attribute->Name(); });
                attempted([&] { value.Number = attribute->NumberValue(); });
                attempted([&] { value.Text = attribute->TextValue(); });
            }
            values.push_back(std::move(value));
        }
        return values;
    }
};

class ComRoomElement : public Adapter<HostRoomElement> {
  public:
    using Adapter::Adapter;
    HostRoomRecord Record() override {
        HostRoomRecord record;
        if (bulk_.RoomRecord && attempted([&] { record = recordAtOnce(); }))
            return record;
        record = {};
        const Variant fileNumber = object_.Get(Member::FileNumber);
        // No answer is not the number of a native file.
        if (fileNumber.empty())
            throw RuntimeError(RuntimeError::TypeMismatch);
        record.Identity.FileNumber = LongOf(fileNumber);
        const auto ask = [&](auto& field, const wchar_t* member) {
            const bool told = attempted([&] {
                const Variant answer = object_.Get(member);
                if constexpr (std::is_same_v<decltype(field), std::wstring&>)
                    field = TextOf(answer);
                else
                    field = LongOf(answer);
            });
            record.Whole = record.Whole && told;
        };
        // A number that no element has, unless it is told.
        record.Identity.ComponentID = -1;
        ask(record.Identity.ComponentID, Member::ComponentID);
        ask(record.Identity.FileID, Member::FileID);
        ask(record.RoomName, Member::RoomName);
        ask(record.RoomFunction, Member::RoomFunction);
        ask(record.StoreyCode, Member::StoreyCode);
        return record;
    }
    HostIdentity Identity() {
        return {LongOf(object_.Get(Member::ComponentID)), LongOf(object_.Get(Member::FileNumber)),
                TextOf(object_.Get(Member::FileID))};
    }
    void RoomName(const std::wstring& text) override { object_.Put(Member::RoomName, text); }
    void RoomFunction(const std::wstring& text) override {
        object_.Put(Member::RoomFunction, text);
    }
    void StoreyCode(const std::wstring& text) override { object_.Put(Member::StoreyCode, text); }
    kalvrooms::Outline Outline() override { return toOutline(object_.Get(Member::Outline)); }
    void Outline(const kalvrooms::Outline& points) override {
        object_.Put(Member::Outline, toArray(points));
    }
    void Colour(std::int32_t rgb) override { object_.Put(Member::Colour, rgb); }
    std::unique_ptr<HostAttributeList> Attributes() override {
        return std::make_unique<ComAttributeList>(
            object_.ObjectOf(L"attribute list", Member::Attributes), bulk_);
    }

  private:
    HostRoomRecord recordAtOnce() {
        const Variant answer = object_.Get(bulk_.RoomRecord);
        const ArrayView fields(answer, 1);
        // As above; the single calls follow.
        if (fields.Copy(1).empty())
            throw RuntimeError(RuntimeError::TypeMismatch);
        const auto text = [&](std::size_t index) { return TextOf(fields.Copy(index)); };
        const auto number = [&](std::size_t index) { return LongOf(fields.Copy(index)); };
        HostRoomRecord record;
        record.Identity = {number(0), number(1), text(2)};
        record.RoomName = text(3);
        record.RoomFunction = text(4);
        record.StoreyCode = text(5);
        return record;
    }
};

class ComElementList : public Adapter<HostElementList> {
  public:
    using Adapter::Adapter;
    std::int32_t Count() override { return LongOf(object_.Get(Member::Count)); }
    std::unique_ptr<HostRoomElement> Item(std::int32_t index) override { return item(index); }
    void Add(HostRoomElement& element) override {
        object_.Call(Member::Add, {ComRoomElement::Of(element)});
    }
    std::vector<std::optional<HostIdentity>> Identities() override {
        std::vector<std::optional<HostIdentity>> identities;
        if (bulk_.IdentityTable && attempted([&] { identities = identitiesAtOnce(); }))
            return identities;
        const std::int32_t count = Count();
        std::int32_t failuresInARow = 0;
        for (std::int32_t index = 1; index <= count; ++index) {
            std::unique_ptr<ComRoomElement> element;
            if (attempted([&] { element = item(index); }))
                failuresInARow = 0;
            else if (++failuresInARow == MostFailuresInARow)
                throw RuntimeError(RuntimeError::AutomationError);
            std::optional<HostIdentity>& identity = identities.emplace_back();
            // One element that does not tell who it is keeps nobody from finding the others.
            if (element)
                attempted([&] { identity = element->Identity(); });
        }
        return identities;
    }

  private:
    std::vector<std::optional<HostIdentity>> identitiesAtOnce() {
        std::vector<std::optional<HostIdentity>> identities;
        const Variant table = object_.Get(bulk_.IdentityTable);
        if (table.empty()) {
            requireNone(object_);
            return identities;
        }
        const ArrayView rows(table, 2);
        for (std::size_t i = 0; i < rows.rows(); ++i)
            identities.push_back(HostIdentity{LongOf(rows.Copy(i, 0)), LongOf(rows.Copy(i, 1)),
                                              TextOf(rows.Copy(i, 2))});
        return identities;
    }
    std::unique_ptr<ComRoomElement> item(std::int32_t index) {
        return std::make_unique<ComRoomElement>(
            object_.CallObject(L"room element", Member::Item, {index}), bulk_);
    }
};

class ComRoomSelection : public Adapter<HostRoomSelection> {
  public:
    using Adapter::Adapter;
    void SelectRooms() override { object_.Call(Member::SelectRooms); }
};

class ComDrawingService : public Adapter<HostDrawingService> {
  public:
    using Adapter::Adapter;
    std::unique_ptr<HostElementList> GetElements(HostRoomSelection& selection) override {
        return std::make_unique<ComElementList>(
            object_.CallObject(L"element list", Member::GetElements,
                               {ComRoomSelection::Of(selection)}),
            bulk_);
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
        object_.Call(Member::ChangeElements, {ComElementList::Of(elements)});
    }
    void AddElements(HostElementList& elements) override {
        object_.Call(Member::AddElements, {ComElementList::Of(elements)});
    }
    void PlaceElements(HostElementList& elements, std::int32_t mode) override {
        // The user has to act in the host, which may come to the front only with the leave of the
        // program that is there.
        CoAllowSetForegroundWindow(object_.dispatch(), nullptr);
        try {
            object_.Call(Member::PlaceElements, {ComElementList::Of(elements), mode});
        } catch (const ComError& error) {
            if (error.result() == E_ABORT || error.result() == HRESULT_FROM_WIN32(ERROR_CANCELLED))
                throw RuntimeError(RuntimeError::DialogCancelled);
            throw;
        }
    }
    void ApplyChanges() override { object_.Call(Member::ApplyChanges); }
};

class ComProject : public Adapter<HostProject> {
  public:
    using Adapter::Adapter;
    std::int32_t ProjectNumber() override { return LongOf(object_.Get(Member::ProjectNumber)); }
    std::wstring ProjectName() override { return TextOf(object_.Get(Member::ProjectName)); }
    std::wstring ProjectFolder() override { return TextOf(object_.Get(Member::ProjectFolder)); }
};

class ComApplication : public Adapter<HostApplication> {
  public:
    using Adapter::Adapter;
    void UpdateProjectInfo() override { object_.Call(Member::UpdateProjectInfo); }
    std::unique_ptr<HostProject> GetProject() override {
        return std::make_unique<ComProject>(object_.CallObject(L"project", Member::GetProject),
                                            bulk_);
    }
    std::unique_ptr<HostDrawingService> GetDrawingService() override {
        return std::make_unique<ComDrawingService>(
            object_.CallObject(L"drawing service", Member::GetDrawingService), bulk_);
    }
};

class ComAttributeCatalogue : public Adapter<HostAttributeCatalogue> {
  public:
    using Adapter::Adapter;
    std::wstring AttributeName(std::int32_t number) override {
        return TextOf(object_.Call(Member::AttributeName, {number}));
    }
};

class ComHostServer : public HostServer {
  public:
    ComHostServer(std::shared_ptr<ComSession> session, const HostBulkMembers& bulk)
        : session_(std::move(session)), bulk_(bulk) {}

    std::unique_ptr<HostApplication> CreateHostApplication() override {
        ComObject application = create(L"application", Member::ApplicationClass);
        try {
            application.Call(Member::CheckAccess);
        } catch (const ComError& error) {
            // A host without this member forbids the creation itself.
            if (error.result() != DISP_E_UNKNOWNNAME && error.result() != DISP_E_MEMBERNOTFOUND)
                throw;
        }
        return std::make_unique<ComApplication>(std::move(application), bulk_);
    }
    std::unique_ptr<HostRoomSelection> CreateRoomFilter() override {
        return std::make_unique<ComRoomSelection>(create(L"room filter", Member::RoomFilterClass),
                                                  bulk_);
    }
    std::unique_ptr<HostAttributeCatalogue> CreateAttributeCatalogue() override {
        return std::make_unique<ComAttributeCatalogue>(
            create(L"attribute catalogue", Member::AttributeCatalogueClass), bulk_);
    }

    bool Hangs() const override { return session_->Hangs(); }

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
