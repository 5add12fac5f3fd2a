#pragma once
// Objects that a server offers through COM.

#include "win32/Com.h"

#include <atomic>
#include <utility>

namespace kalvrooms::practice {

// The code of a server's own errors.
inline constexpr HRESULT HostFailure = MAKE_HRESULT(SEVERITY_ERROR, FACILITY_ITF, 0x200);

// A pointer that takes a counted reference over. (mingw-w64's Attach counts another one.)
template <class Object>
ComPtr<Object> TakeOver(Object* object) {
    ComPtr<Object> pointer;
    *pointer.GetAddressOf() = object;
    return pointer;
}

// A new object with its only reference.
template <class Object, class... Values>
ComPtr<Object> Make(Values&&... values) {
    return TakeOver(new Object(std::forward<Values>(values)...));
}

// An object that counts its references and ends with the last one.
#ifdef __GNUC__
#pragma GCC diagnostic push
// Automation interfaces have no virtual destructor.
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
template <class Interface>
class Counted : public Interface {
  public:
    Counted() = default;
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (!object)
            return E_POINTER;
        *object =
            IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, __uuidof(Interface)) ? this : nullptr;
        if (!*object)
            return E_NOINTERFACE;
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

  protected:
    virtual ~Counted() = default;

  private:
    std::atomic<ULONG> references_{1};
};
#ifdef __GNUC__
#pragma GCC diagnostic pop
#endif

} // namespace kalvrooms::practice
