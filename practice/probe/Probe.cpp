// Asks a host's automation server for every name that the program calls it by, and says what
// answers and how. Members that would change the drawing are looked up, not called.
//   QuartinoProbe [SERVER]
// SERVER is what stands before the point in the names of the classes, where it is another than the
// program's own. Exit code 0: every name is known; 1: some are not, or could not be asked; 2: the
// server does not start.

#include <windows.h>

#include <cstdio>
#include <initializer_list>
#include <optional>
#include <string>

#include "drawing/Text.h"
#include "practice/driver/LateBound.h"
#include "win32/HostMembers.h"

namespace {

using namespace kalvrooms;
using driver::CallFailed;
using driver::LateBound;

int unknown = 0;
int unasked = 0;

void say(const std::wstring& line) {
    std::puts(ToUtf8(line).c_str());
}

std::wstring hexadecimal(HRESULT result) {
    wchar_t text[16];
    std::swprintf(text, 16, L"0x%08lX", static_cast<unsigned long>(result));
    return text;
}

std::wstring typeOf(const VARIANT& value) {
    std::wstring type;
    switch (value.vt & VT_TYPEMASK) {
    case VT_EMPTY:
        type = L"nothing";
        break;
    case VT_I2:
        type = L"16-bit integer";
        break;
    case VT_I4:
        type = L"32-bit integer";
        break;
    case VT_R4:
        type = L"32-bit float";
        break;
    case VT_R8:
        type = L"64-bit float";
        break;
    case VT_BSTR:
        type = L"text";
        break;
    case VT_BOOL:
        type = L"truth value";
        break;
    case VT_DISPATCH:
        type = L"object";
        break;
    case VT_UNKNOWN:
        type = L"object without automation";
        break;
    case VT_VARIANT:
        type = L"variant";
        break;
    default:
        type = L"type " + std::to_wstring(value.vt & VT_TYPEMASK);
    }
    if (!(value.vt & VT_ARRAY) || !value.parray)
        return type;
    std::wstring bounds;
    for (UINT dimension = 1; dimension <= SafeArrayGetDim(value.parray); ++dimension) {
        LONG lower = 0, upper = 0;
        SafeArrayGetLBound(value.parray, dimension, &lower);
        SafeArrayGetUBound(value.parray, dimension, &upper);
        bounds +=
            (dimension > 1 ? L", " : L"") + std::to_wstring(lower) + L".." + std::to_wstring(upper);
    }
    return L"array (" + bounds + L") of " + type;
}

void report(const std::wstring& object, const wchar_t* member, const std::wstring& outcome) {
    say(L"  " + object + L"." + member + L": " + outcome);
}

// Nobody can be asked for a name below an object that did not come.
bool askable(const std::wstring& object, const LateBound& server, const wchar_t* member) {
    if (server)
        return true;
    ++unasked;
    report(object, member, L"not asked");
    return false;
}

// Names that change something: whether they are known, no more.
void lookUp(const std::wstring& object, const LateBound& server,
            std::initializer_list<const wchar_t*> members) {
    for (const wchar_t* member : members) {
        if (!askable(object, server, member))
            continue;
        const bool known = server.knows(member);
        unknown += known ? 0 : 1;
        report(object, member, known ? L"known (not called)" : L"NOT KNOWN");
    }
}

template <class... Values>
std::optional<_variant_t> ask(const std::wstring& object, const LateBound& server,
                              const wchar_t* member, const Values&... values) {
    if (!askable(object, server, member))
        return std::nullopt;
    if (!server.knows(member)) {
        ++unknown;
        report(object, member, L"NOT KNOWN");
        return std::nullopt;
    }
    try {
        const _variant_t answer = server.answer(member, values...);
        report(object, member, typeOf(answer));
        return answer;
    } catch (const CallFailed& failure) {
        report(object, member,
               L"fails with " + hexadecimal(failure.result) +
                   (failure.description.empty() ? L"" : L": " + failure.description));
        return std::nullopt;
    }
}

// The object that a member brings; nothing where it brings none.
template <class... Values>
LateBound objectOf(const std::wstring& object, const LateBound& server, const wchar_t* member,
                   const Values&... values) {
    const auto answer = ask(object, server, member, values...);
    return answer && answer->vt == VT_DISPATCH && answer->pdispVal ? LateBound(*answer)
                                                                   : LateBound();
}

LateBound created(const std::wstring& server, const wchar_t* ownName) {
    const std::wstring own = ownName;
    const std::wstring name = server.empty() ? own : server + own.substr(own.find(L'.'));
    try {
        LateBound object = LateBound::create(name.c_str());
        say(name + L": created");
        return object;
    } catch (const CallFailed& failure) {
        ++unknown;
        say(name + L": CANNOT BE CREATED, " + hexadecimal(failure.result));
        return {};
    }
}

void probeAttributes(const LateBound& element) {
    const LateBound attributes = objectOf(L"element", element, HostMembers::Attributes);
    ask(L"attributes", attributes, HostMembers::Count);
    ask(L"attributes", attributes, HostBulkMembers().AttributeTable);
    const LateBound attribute = objectOf(L"attributes", attributes, HostMembers::Item, 1);
    for (const wchar_t* member :
         {HostMembers::Name, HostMembers::NumberValue, HostMembers::TextValue})
        ask(L"attribute", attribute, member);
}

void probeElements(const LateBound& service, const LateBound& filter) {
    const LateBound elements = objectOf(L"service", service, HostMembers::GetElements, filter);
    ask(L"elements", elements, HostMembers::Count);
    lookUp(L"elements", elements, {HostMembers::Add});
    ask(L"elements", elements, HostBulkMembers().IdentityTable);
    const LateBound element = objectOf(L"elements", elements, HostMembers::Item, 1);
    if (!element)
        say(L"  (a room in the drawing would show how elements answer)");
    for (const wchar_t* member :
         {HostMembers::ComponentID, HostMembers::FileNumber, HostMembers::FileID,
          HostMembers::RoomName, HostMembers::RoomFunction, HostMembers::StoreyCode,
          HostMembers::Outline, HostMembers::Colour, HostBulkMembers().RoomRecord})
        ask(L"element", element, member);
    probeAttributes(element);
}

int probe(const std::wstring& server) {
    const LateBound application = created(server, HostMembers::ApplicationClass);
    if (!application)
        return 2;
    ask(L"application", application, HostMembers::CheckAccess);
    ask(L"application", application, HostMembers::UpdateProjectInfo);
    const LateBound project = objectOf(L"application", application, HostMembers::GetProject);
    for (const wchar_t* member :
         {HostMembers::ProjectNumber, HostMembers::ProjectName, HostMembers::ProjectFolder})
        ask(L"project", project, member);
    ask(L"catalogue", created(server, HostMembers::AttributeCatalogueClass),
        HostMembers::AttributeName, 231);
    const LateBound filter = created(server, HostMembers::RoomFilterClass);
    ask(L"filter", filter, HostMembers::SelectRooms);
    const LateBound service = objectOf(L"application", application, HostMembers::GetDrawingService);
    lookUp(L"service", service,
           {HostMembers::CreateElementList, HostMembers::CreateRoomElement,
            HostMembers::ChangeElements, HostMembers::AddElements, HostMembers::PlaceElements,
            HostMembers::ApplyChanges});
    // Without a filter there is nothing to ask the service with.
    probeElements(filter ? service : LateBound(), filter);
    say(std::to_wstring(unknown) + L" names are not known");
    if (unasked > 0)
        say(std::to_wstring(unasked) + L" names could not be asked");
    return unknown == 0 && unasked == 0 ? 0 : 1;
}

} // namespace

int wmain(int count, wchar_t** arguments) {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    const int outcome = probe(count > 1 ? arguments[1] : L"");
    CoUninitialize();
    return outcome;
}
