#include "standin/kalvero/win32/ClassObjects.h"

#include "standin/kalvero/win32/ClassIds.h"
#include "standin/kalvero/win32/ControlObject.h"
#include "standin/kalvero/win32/HostObjects.h"

#include <atomic>
#include <new>
#include <string>

namespace kalvrooms::practice {

namespace {

using Create = IDispatch* (*)(HostProcess&);

template <class Object>
IDispatch* CreateOne(HostProcess& process) {
    return new Object(process);
}

// Automation interfaces have no virtual destructor; their objects end in Release.
#ifdef __GNUC__
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
class ClassFactory : public IClassFactory {
  public:
    ClassFactory(HostProcess& process, Create create) : process_(process), create_(create) {}
    ClassFactory(const ClassFactory&) = delete;
    ClassFactory& operator=(const ClassFactory&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (!object)
            return E_POINTER;
        *object = nullptr;
        if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IClassFactory))
            return E_NOINTERFACE;
        *object = static_cast<IClassFactory*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0)
            delete this;
        return left;
    }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
        if (!object)
            return E_POINTER;
        *object = nullptr;
        if (outer)
            return CLASS_E_NOAGGREGATION;
        try {
            const auto created = ComPtr<IDispatch>::Attach(create_(process_));
            return created->QueryInterface(iid, object);
        } catch (const std::bad_alloc&) {
            return E_OUTOFMEMORY;
        }
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        if (lock)
            process_.AddUse();
        else
            process_.RemoveUse();
        return S_OK;
    }

  private:
    virtual ~ClassFactory() = default;

    std::atomic<ULONG> references_{1};
    HostProcess& process_;
    Create create_;
};
#ifdef __GNUC__
#pragma GCC diagnostic pop
#endif

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
        const auto factory = ComPtr<ClassFactory>::Attach(new ClassFactory(process, offer.create));
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
