#pragma once
// The apartment of a server's objects, open until the process ends. It keeps the interfaces that
// clients call registered with the remote-procedure runtime: otherwise the runtime takes an
// interface back together with the last object that has it, also when the apartment is closed, and
// waits for calls of it to end; Wine's runtime can miss such an end, and the server then waits for
// ever.

#include "practice/server/Com.h"

#include <objbase.h>

#include <atomic>

namespace kalvrooms::practice {

class ServerApartment {
  public:
    ServerApartment() {
        Check(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
        const auto object = ComPtr<Placeholder>::Attach(new Placeholder);
        for (const IID& iid : {IID_IClassFactory, IID_IDispatch}) {
            ComPtr<IStream> stream;
            Check(CreateStreamOnHGlobal(nullptr, TRUE, stream.put()));
            Check(CoMarshalInterface(stream.get(), iid, static_cast<IClassFactory*>(object.get()),
                                     MSHCTX_LOCAL, nullptr, MSHLFLAGS_TABLESTRONG));
        }
    }
    ServerApartment(const ServerApartment&) = delete;
    ServerApartment& operator=(const ServerApartment&) = delete;

  private:
    // Never called by anybody. Automation interfaces have no virtual destructor.
#ifdef __GNUC__
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
    class Placeholder : public IClassFactory, public IDispatch {
      public:
        HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
            if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IClassFactory))
                *object = static_cast<IClassFactory*>(this);
            else if (IsEqualIID(iid, IID_IDispatch))
                *object = static_cast<IDispatch*>(this);
            else
                *object = nullptr;
            if (!*object)
                return E_NOINTERFACE;
            ++references_;
            return S_OK;
        }
        ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
        ULONG STDMETHODCALLTYPE Release() override {
            const ULONG left = --references_;
            if (left == 0)
                delete this;
            return left;
        }
        HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID, void**) override {
            return E_NOTIMPL;
        }
        HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return E_NOTIMPL; }
        HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
        HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override {
            return E_NOTIMPL;
        }
        HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
            return E_NOTIMPL;
        }
        HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*,
                                         EXCEPINFO*, UINT*) override {
            return E_NOTIMPL;
        }

      private:
        virtual ~Placeholder() = default;

        std::atomic<ULONG> references_ = 1;
    };
#ifdef __GNUC__
#pragma GCC diagnostic pop
#endif
};

} // namespace kalvrooms::practice
