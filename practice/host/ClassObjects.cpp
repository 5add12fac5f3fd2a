#include "practice/host/ClassObjects.h"

#include "practice/host/ClassIds.h"
#include "practice/host/ControlObject.h"
#include "practice/host/HostObjects.h"
#include "practice/server/ClassFactory.h"

#include <string>

namespace kalvrooms::practice {

namespace {

using Create = IDispatch* (*)(HostProcess&);

template <class Object>
IDispatch* CreateOne(HostProcess& process) {
    return new Object(process);
}

} // namespace

ClassObjects::ClassObjects(HostProcess& process) : process_(process) {
    struct Offer {
        const ServerClass* serverClass;
        Create create;
    };
    const Offer offers[] = {
        {&ApplicationClass, &CreateOne<ApplicationObject>},
        {&RoomFilterClass, &CreateOne<RoomFilterObject>},
        {&AttributeCatalogueClass, &CreateOne<AttributeCatalogueObject>},
        {&ControlClass, &CreateOne<ControlObject>},
    };
    for (const Offer& offer : offers) {
        const auto factory = ComPtr<ClassFactory>::Attach(new ClassFactory(
            [&process, create = offer.create] { return create(process); },
            [&process](bool stay) { stay ? process.AddUse() : process.RemoveUse(); }));
        DWORD cookie = 0;
        // Suspended, so that no client meets a server that offers only some of its classes yet.
        const HRESULT result =
            CoRegisterClassObject(offer.serverClass->id, factory.get(), CLSCTX_LOCAL_SERVER,
                                  REGCLS_MULTIPLEUSE | REGCLS_SUSPENDED, &cookie);
        if (FAILED(result))
            throw HostError(std::wstring(L"The class cannot be offered: ") +
                            offer.serverClass->programId);
        cookies_.push_back(cookie);
    }
    CoResumeClassObjects();
    // Wine keeps handing out the classes of a process that ended without taking them back.
    process_.goingAway = [this] { Revoke(); };
}

ClassObjects::~ClassObjects() {
    process_.goingAway = nullptr;
    Revoke();
}

void ClassObjects::Revoke() {
    for (const DWORD cookie : cookies_)
        CoRevokeClassObject(cookie);
    cookies_.clear();
}

} // namespace kalvrooms::practice
