#include "standin/spreadsheet/win32/SheetClassObject.h"

#include "standin/kalvero/HostError.h"
#include "standin/spreadsheet/win32/SheetClass.h"
#include "standin/spreadsheet/win32/SheetObjects.h"

#include <atomic>
#include <new>

namespace kalvrooms::practice::spreadsheet {

namespace {

// Automation interfaces have no virtual destructor; their objects end in Release.
#ifdef __GNUC__
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
class ClassFactory : public IClassFactory {
  public:
    explicit ClassFactory(SheetProcess& process) : process_(process) {}
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
            const auto created = ComPtr<ApplicationObject>::Attach(new ApplicationObject(process_));
            return created->QueryInterface(iid, object);
        } catch (const std::bad_alloc&) {
            return E_OUTOFMEMORY;
        }
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        if (lock)
            process_.Created();
        else
            process_.Gone();
        return S_OK;
    }

  private:
    virtual ~ClassFactory() = default;

    std::atomic<ULONG> references_{1};
    SheetProcess& process_;
};
#ifdef __GNUC__
#pragma GCC diagnostic pop
#endif

} // namespace

SheetClassObject::SheetClassObject(SheetProcess& process, bool inUsersHands) {
    if (inUsersHands)
        return;
    const auto factory = ComPtr<ClassFactory>::Attach(new ClassFactory(process));
    if (FAILED(CoRegisterClassObject(ApplicationClassId, factory.get(), CLSCTX_LOCAL_SERVER,
                                     REGCLS_SINGLEUSE, &entry_)))
        throw HostError(L"The class cannot be offered.");
}

SheetClassObject::~SheetClassObject() {
    if (entry_ != 0)
        CoRevokeClassObject(entry_);
}

} // namespace kalvrooms::practice::spreadsheet
