#pragma once
// What a server offers for a class: makes its objects. A HostError refuses the creation.

#include "drawing/HostError.h"
#include "practice/server/Com.h"

#include <functional>
#include <new>
#include <utility>

namespace kalvrooms::practice {

class ClassFactory : public Counted<IClassFactory> {
  public:
    using Create = std::function<IDispatch*()>;
    // Told whether the server is to stay (true) or may go again.
    using Lock = std::function<void(bool)>;
    ClassFactory(Create create, Lock lock) : create_(std::move(create)), lock_(std::move(lock)) {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
        if (!object)
            return E_POINTER;
        *object = nullptr;
        if (outer)
            return CLASS_E_NOAGGREGATION;
        try {
            return TakeOver(create_())->QueryInterface(iid, object);
        } catch (const HostError& error) {
            ComPtr<ICreateErrorInfo> trouble;
            ComPtr<IErrorInfo> told;
            if (SUCCEEDED(CreateErrorInfo(&trouble)) &&
                SUCCEEDED(trouble->SetDescription(Bstr(error.description()).get())) &&
                SUCCEEDED(trouble.As(&told)))
                SetErrorInfo(0, told.Get());
            return HostFailure;
        } catch (const std::bad_alloc&) {
            return E_OUTOFMEMORY;
        }
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        lock_(lock != FALSE);
        return S_OK;
    }

  private:
    Create create_;
    Lock lock_;
};
} // namespace kalvrooms::practice
