#pragma once
// Automation objects that answer by member name: late binding only, no type information.

#include "practice/server/Com.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace kalvrooms::practice {

class DispatchObject;

// The arguments of one call, in the order in which the client wrote them.
class Arguments {
  public:
    explicit Arguments(const DISPPARAMS& parameters) : parameters_(parameters) {}

    UINT Count() const { return parameters_.cArgs; }
    Variant Value(UINT index) const;
    std::int32_t Long(UINT index) const;
    double Number(UINT index) const;
    std::wstring Text(UINT index) const;
    // An object of this server and of the wanted kind; a ComError for any other.
    template <class Object>
    ComPtr<Object> Own(UINT index) const {
        const ComPtr<DispatchObject> object = OwnObject(index);
        auto* wanted = dynamic_cast<Object*>(object.Get());
        if (!wanted)
            throw ComError(DISP_E_TYPEMISMATCH, {}, PlaceOf(index));
        return ComPtr<Object>(wanted);
    }

  private:
    UINT PlaceOf(UINT index) const { return parameters_.cArgs - 1 - index; }
    ComPtr<DispatchObject> OwnObject(UINT index) const;
    template <class Convert>
    auto Converted(UINT index, Convert convert) const;

    const DISPPARAMS& parameters_;
};

// Sees every call before its object does: it may count it, delay it or reject it.
class CallGate {
  public:
    virtual ~CallGate() = default;
    // False when the call ends here with an empty result. Raises a HostError or ComError.
    virtual bool Enter(std::wstring_view object, std::wstring_view member) = 0;
    // Whether clients get to know a member.
    virtual bool Knows(std::wstring_view) const { return true; }
    virtual void Created() = 0;
    virtual void Gone() = 0;
};

class DispatchObject : public Counted<IDispatch> {
  public:
    explicit DispatchObject(CallGate& gate) : gate_(gate) { gate_.Created(); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* ids) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID locale, WORD flags,
                                     DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* trouble,
                                     UINT* argument) override;

  protected:
    ~DispatchObject() override { gate_.Gone(); }

    virtual const wchar_t* Kind() const = 0;
    virtual std::size_t MemberCount() const = 0;
    virtual const wchar_t* MemberName(std::size_t index) const = 0;
    // Raises a ComError when the member has no such use or another count of arguments.
    virtual Variant Perform(std::size_t index, WORD flags, const Arguments& arguments) = 0;

  private:
    CallGate& gate_;
};

// A member: a method, or a property that can be read, and maybe written.
template <class Object>
struct Member {
    const wchar_t* name;
    UINT arguments = 0; // of the method
    std::function<Variant(Object&, const Arguments&)> method{};
    std::function<Variant(Object&)> get{};
    std::function<void(Object&, const Variant&)> put{};
};
template <class Object>
using MemberTable = std::vector<Member<Object>>;

// Binds the table `Object::Members()` to the calls; a member's identifier is its place, from 1.
template <class Object>
class Automation : public DispatchObject {
  public:
    using DispatchObject::DispatchObject;

  protected:
    // Does its work with so many arguments; what it returns is the result.
    template <class Work>
    static Member<Object> Method(const wchar_t* name, UINT count, Work work) {
        return {name, count,
                [work](Object& self, const Arguments& arguments) {
                    if constexpr (std::is_void_v<decltype(work(self, arguments))>) {
                        work(self, arguments);
                        return Variant();
                    } else {
                        return Variant(work(self, arguments));
                    }
                }};
    }
    template <class Get>
    static Member<Object> Property(const wchar_t* name, Get get,
                                   std::function<void(Object&, const Variant&)> put = {}) {
        return {name, 0, {}, [get](Object& self) { return Variant(get(self)); }, std::move(put)};
    }

    const wchar_t* Kind() const override { return Object::KindName; }
    std::size_t MemberCount() const override { return Object::Members().size(); }
    const wchar_t* MemberName(std::size_t index) const override {
        return Object::Members()[index].name;
    }
    Variant Perform(std::size_t index, WORD flags, const Arguments& arguments) override {
        const Member<Object>& member = Object::Members()[index];
        auto& self = static_cast<Object&>(*this);
        if ((flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0) {
            Require(member.put != nullptr, arguments.Count() == 1);
            member.put(self, arguments.Value(0));
            return {};
        }
        // A client that cannot know whether it reads a property or calls a method asks for both.
        if (member.method && (flags & DISPATCH_METHOD) != 0) {
            Require(true, arguments.Count() == member.arguments);
            return member.method(self, arguments);
        }
        Require(member.get && (flags & DISPATCH_PROPERTYGET) != 0, arguments.Count() == 0);
        return member.get(self);
    }

  private:
    static void Require(bool use, bool count) {
        if (!use)
            throw ComError(DISP_E_MEMBERNOTFOUND);
        if (!count)
            throw ComError(DISP_E_BADPARAMCOUNT);
    }
};

} // namespace kalvrooms::practice
