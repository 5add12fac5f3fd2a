#pragma once
// What a server offers for a class: makes its objects.

#include "practice/server/Com.h"

#include <atomic>
#include <functional>
#include <new>
#include <utility>

namespace kalvrooms::practice {

// Automation interfaces have no virtual destructor; their objects end in Release.
#ifdef __GNUC__
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
class ClassFactory : public IClassFactory {
  public:
    using Create = std::function<IDispatch*()>;
    // Told whether the server is to stay (true) or may go again.
    using Lock = std::function<void(bool)>;
    ClassFactory(Create create, Lock lock) : create_(std::move(create)), lock_(std::move(lock)) {}
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
            const auto created = ComPtr<IDispatch>::Attach(create_());
            return created->QueryInterface(iid, object);
        } catch (const std::bad_alloc&) {
            return E_OUTOFMEMORY;
        }
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        lock_(lock != FALSE);
        return S_OK;
    }

  private:
    virtual ~ClassFactory() = default;

    std::atomic<ULONG> references_{1};
    Create create_;
    Lock lock_;
};
#ifdef __GNUC__
#pragma GCC diagnostic pop
#endif

} // namespace kalvrooms::practice
