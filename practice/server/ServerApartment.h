#pragma once
// The apartment of a server's objects, open until the process ends. It keeps the interfaces that
// clients call registered with the remote-procedure runtime: otherwise the runtime takes an
// interface away with the last object that has it, or when the apartment is closed, and waits for
// its calls to end; Wine's runtime can miss such an end, and the server would hang.

#include "practice/server/ClassFactory.h"
#include "practice/server/DispatchObject.h"

#include <objbase.h>

namespace kalvrooms::practice {

class ServerApartment {
  public:
    ServerApartment() {
        Check(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
        Keep(IID_IClassFactory, Make<ClassFactory>(nullptr, nullptr).Get());
        Keep(IID_IDispatch, Make<Placeholder>().Get());
    }
    ServerApartment(const ServerApartment&) = delete;
    ServerApartment& operator=(const ServerApartment&) = delete;

  private:
    static void Keep(const IID& iid, IUnknown* object) {
        ComPtr<IStream> stream;
        Check(CreateStreamOnHGlobal(nullptr, TRUE, &stream));
        Check(CoMarshalInterface(stream.Get(), iid, object, MSHCTX_LOCAL, nullptr,
                                 MSHLFLAGS_TABLESTRONG));
    }

    // Only marshalled, never called.
    class Placeholder : public Counted<IDispatch> {
      public:
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
    };
};

} // namespace kalvrooms::practice
