#pragma once
// Late-bound automation: calls by member name with counting and a bounded retry while the server
// rejects calls.

#include "win32/Com.h"

#include <chrono>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace kalvrooms {

// Conversions as the runtime makes them, under the user's locale; an empty value is 0 or "".
// Errors: TypeMismatch, Overflow.
std::int32_t LongOf(const Variant& value);
double NumberOf(const Variant& value);
std::wstring TextOf(const Variant& value);

// What all objects of one server share: how often it was called, which names it knows, and how
// long a rejected call is tried again.
class ComSession {
  public:
    explicit ComSession(DWORD patienceInMilliseconds = 10000)
        : patience_(patienceInMilliseconds), fullPatience_(patienceInMilliseconds) {}

    std::int64_t Calls() const { return calls_; }
    // The time spent in calls, including releasing objects and waiting for a busy server.
    std::chrono::nanoseconds TimeInCalls() const { return time_; }
    // A call has not come back for five seconds.
    bool Hangs() const;

    // Class identifier of a programmatic identifier. Error: CannotCreateObject.
    static CLSID ClassOf(const wchar_t* programmaticIdentifier);

  private:
    friend class ComObject;
    class Clock;
    std::int64_t calls_ = 0;
    std::chrono::nanoseconds time_{0};
    std::optional<std::chrono::steady_clock::time_point> underWaySince_;
    // Members that a kind of object does not know are kept as DISPID_UNKNOWN.
    std::map<std::pair<std::wstring, std::wstring>, DISPID> names_;
    // A server that stays busy is waited for once, not anew with every following call.
    DWORD patience_;
    DWORD fullPatience_;
    std::chrono::steady_clock::time_point lastCall_{};
};

// An automation object, called by member names. The kind ("room element") is what its member
// names are kept under: all objects of a kind number their members alike.
class ComObject {
  public:
    ComObject() = default;
    // Takes a reference of its own. Error: ObjectVariableNotSet for null.
    ComObject(std::shared_ptr<ComSession> session, std::wstring kind, IDispatch* object);
    ComObject(const ComObject& other) = default;
    ComObject& operator=(const ComObject& other) = default;
    ~ComObject();

    // Creates an object of a registered class. Error: CannotCreateObject (429) with the server's
    // description where it gave one.
    static ComObject Create(std::shared_ptr<ComSession> session, std::wstring kind,
                            const wchar_t* programmaticIdentifier, DWORD context);

    // The running object of a registered class. Error: CannotCreateObject when none is running.
    static ComObject Attach(std::shared_ptr<ComSession> session, std::wstring kind,
                            const wchar_t* programmaticIdentifier);

    using Arguments = std::initializer_list<Variant>;
    // Arguments in the order of the call. Errors: what the server raised; ServerUnavailable when
    // its process is gone; AutomationError for everything else.
    Variant Call(const wchar_t* member, Arguments arguments = {});
    Variant Get(const wchar_t* member, Arguments arguments = {});
    void Put(const wchar_t* member, const Variant& value);
    // Objects that a call or a property brings. Error: AutomationError where it brings none.
    ComObject CallObject(std::wstring kind, const wchar_t* member, Arguments arguments = {});
    ComObject ObjectOf(std::wstring kind, const wchar_t* member, Arguments arguments = {});

    IDispatch* dispatch() const { return object_.Get(); }
    // The locale that calls carry; objects that they bring inherit it.
    void locale(LCID locale) { locale_ = locale; }

  private:
    // With a value: sets the property. Else it is a method or a property that has a result; a
    // server may know a member as either.
    Variant invoke(const wchar_t* member, Arguments arguments, const Variant* value);
    ComObject objectIn(std::wstring kind, const Variant& answer) const;
    DISPID nameOf(const wchar_t* member);
    template <typename Step>
    static HRESULT retried(ComSession& session, Step step);

    std::shared_ptr<ComSession> session_;
    std::wstring kind_;
    ComPtr<IDispatch> object_;
    LCID locale_ = LOCALE_USER_DEFAULT;
};

} // namespace kalvrooms
