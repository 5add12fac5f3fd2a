#pragma once
// Late-bound automation: owners of the handles of COM, and calls by member name with counting and
// a bounded retry while the server rejects calls.

#include <windows.h>

#include <oleauto.h>

#include <chrono>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <utility>

namespace kalvrooms {

// Owner of a VARIANT.
class ComVariant {
  public:
    ComVariant() { VariantInit(&value_); }
    explicit ComVariant(std::int32_t number);
    explicit ComVariant(double number);
    explicit ComVariant(bool value);
    explicit ComVariant(const std::wstring& text);
    explicit ComVariant(IDispatch* object);
    // Takes the array over.
    ComVariant(SAFEARRAY* array, VARTYPE elementType);
    ComVariant(ComVariant&& other) noexcept : value_(other.value_) { VariantInit(&other.value_); }
    ComVariant& operator=(ComVariant&& other) noexcept;
    ~ComVariant() { VariantClear(&value_); }

    // An argument that a call leaves out.
    static ComVariant Omitted();

    VARIANT* get() { return &value_; }
    const VARIANT& raw() const { return value_; }
    bool isEmpty() const { return value_.vt == VT_EMPTY || value_.vt == VT_NULL; }

    // Conversions as the runtime makes them; an empty value is 0, "" or no object.
    // Errors: TypeMismatch, Overflow, AutomationError where there is no object.
    std::int32_t toLong() const;
    double toDouble() const;
    std::wstring toText() const;
    IDispatch* toObject() const;

  private:
    VARIANT value_;
};

// Reads a one- or two-dimensional array of variants or 64-bit floats.
class ComArray {
  public:
    // Error: TypeMismatch when the variant holds no such array.
    ComArray(const ComVariant& variant, UINT dimensions);
    long lower(UINT dimension) const; // dimensions from 1, the leftmost first
    long upper(UINT dimension) const; // lower - 1 where it is empty
    ComVariant at(long first) const;
    ComVariant at(long first, long second) const;

  private:
    ComVariant element(long* indices) const;
    SAFEARRAY* array_ = nullptr;
    VARTYPE type_ = VT_EMPTY;
};

// What all objects of one server share: how often it was called, which names it knows, and how
// long a rejected call is tried again.
class ComSession {
  public:
    explicit ComSession(DWORD patienceInMilliseconds = 10000)
        : patience_(patienceInMilliseconds), fullPatience_(patienceInMilliseconds) {}

    std::int64_t Calls() const { return calls_; }
    // What the calls took, the letting go of objects and the waiting for a busy server included.
    std::chrono::nanoseconds TimeInCalls() const { return time_; }

    // Class identifier of a programmatic identifier. Error: CannotCreateObject.
    static CLSID ClassOf(const wchar_t* programmaticIdentifier);

  private:
    friend class ComObject;
    class Clock;
    std::int64_t calls_ = 0;
    std::chrono::nanoseconds time_{0};
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
    ComObject(const ComObject& other);
    ComObject& operator=(ComObject other) noexcept;
    ~ComObject();

    // Creates an object of a registered class. Error: CannotCreateObject (429) with the server's
    // description where it gave one.
    static ComObject Create(std::shared_ptr<ComSession> session, std::wstring kind,
                            const wchar_t* programmaticIdentifier, DWORD context);

    // The running object of a registered class. Error: CannotCreateObject when none is running.
    static ComObject Attach(std::shared_ptr<ComSession> session, std::wstring kind,
                            const wchar_t* programmaticIdentifier);

    // Arguments in the order of the call. Errors: what the server raised; ServerUnavailable when
    // its process is gone; AutomationError for everything else.
    ComVariant Call(const wchar_t* member, std::initializer_list<const ComVariant*> arguments = {});
    ComVariant Get(const wchar_t* member, std::initializer_list<const ComVariant*> arguments = {});
    void Put(const wchar_t* member, const ComVariant& value,
             std::initializer_list<const ComVariant*> arguments = {});
    ComObject CallObject(std::wstring kind, const wchar_t* member,
                         std::initializer_list<const ComVariant*> arguments = {});
    ComObject ObjectOf(std::wstring kind, const wchar_t* member,
                       std::initializer_list<const ComVariant*> arguments = {});

    IDispatch* dispatch() const { return object_; }
    const std::shared_ptr<ComSession>& session() const { return session_; }
    // The locale that calls carry; objects that they bring inherit it.
    void locale(LCID locale) { locale_ = locale; }

  private:
    ComVariant invoke(const wchar_t* member, WORD flags,
                      std::initializer_list<const ComVariant*> arguments, const ComVariant* value);
    DISPID nameOf(const wchar_t* member);
    template <typename Step>
    static HRESULT retried(ComSession& session, Step step);

    std::shared_ptr<ComSession> session_;
    std::wstring kind_;
    IDispatch* object_ = nullptr;
    LCID locale_ = LOCALE_USER_DEFAULT;
};

} // namespace kalvrooms
