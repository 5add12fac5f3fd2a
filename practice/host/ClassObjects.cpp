#include "practice/host/ClassObjects.h"

#include "practice/host/ClassIds.h"
#include "practice/host/HostObjects.h"
#include "practice/server/ClassFactory.h"

#include <string>

namespace kalvrooms::practice {

ClassObjects::ClassObjects(HostProcess& process) : process_(process) {
    struct Offer {
        const ServerClass* serverClass;
        IDispatch* (*create)(HostProcess&);
    };
    const auto newApplication = [](HostProcess& host) {
        if (host.plain)
            host.session.state.CheckAccess();
        return NewApplication(host);
    };
    const Offer offers[] = {
        {&ApplicationClass, newApplication},
        {&RoomFilterClass, &NewRoomFilter},
        {&AttributeCatalogueClass, &NewAttributeCatalogue},
        {&ControlClass, &NewControl},
    };
    for (const Offer& offer : offers) {
        const auto factory = Make<ClassFactory>(
            [&process, create = offer.create] { return create(process); },
            [&process](bool stay) { stay ? process.AddUse() : process.RemoveUse(); });
        DWORD cookie = 0;
        // Suspended until all of them are registered, so that no client finds only some.
        const HRESULT result =
            CoRegisterClassObject(offer.serverClass->id, factory.Get(), CLSCTX_LOCAL_SERVER,
                                  REGCLS_MULTIPLEUSE | REGCLS_SUSPENDED, &cookie);
        if (FAILED(result))
            throw HostError(std::wstring(L"The class cannot be offered: ") +
                            offer.serverClass->programId);
        cookies_.push_back(cookie);
    }
    CoResumeClassObjects();
    // Wine keeps handing out the classes of a process that ended without revoking them.
    process_.goingAway = [this] { Revoke(); };
}

ClassObjects::~ClassObjects() {
    process_.goingAway = [] {};
    Revoke();
}

void ClassObjects::Revoke() {
    for (const DWORD cookie : cookies_)
        CoRevokeClassObject(cookie);
    cookies_.clear();
}

} // namespace kalvrooms::practice
