#include "win32/ComObject.h"

#include <algorithm>
#include <array>
#include <vector>

#include "model/NumberText.h"
#include "model/RuntimeError.h"

namespace kalvrooms {
namespace {

struct OwnedText {
    BSTR text = nullptr;
    ~OwnedText() { SysFreeString(text); }
    std::wstring str() const { return text ? std::wstring(text, SysStringLen(text)) : L""; }
};

struct OwnedException : EXCEPINFO {
    OwnedException() : EXCEPINFO{} {}
    ~OwnedException() {
        SysFreeString(bstrSource);
        SysFreeString(bstrDescription);
        SysFreeString(bstrHelpFile);
    }
    OwnedException(const OwnedException&) = delete;
    OwnedException& operator=(const OwnedException&) = delete;
};

bool isServerGone(HRESULT result) {
    switch (static_cast<unsigned long>(result)) {
    case 0x800706BA: // RPC server unavailable
    case 0x800706BE: // remote procedure call failed
    case 0x800706BF: // remote procedure call failed and did not execute
    case 0x80010007: // server died
    case 0x80010012: // server died without executing the call
    case 0x80010108: // object disconnected from its clients
    case 0x80010100: // system call failed
    case 0x800401FD: // object not connected to its server
        return true;
    default:
        return false;
    }
}

// What the spreadsheet application answers while its user is in the middle of something.
constexpr auto cellIsBeingEdited = static_cast<HRESULT>(0x800AC472UL);

bool isRejected(HRESULT result) {
    return result == RPC_E_CALL_REJECTED || result == RPC_E_SERVERCALL_RETRYLATER ||
           result == RPC_E_SERVERCALL_REJECTED || result == cellIsBeingEdited;
}

std::wstring systemText(HRESULT result) {
    wchar_t* text = nullptr;
    const DWORD length = FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
        nullptr, static_cast<DWORD>(result), 0, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
    std::wstring description(text ? text : L"", text ? length : 0);
    LocalFree(text);
    while (!description.empty() && (description.back() == L'\r' || description.back() == L'\n'))
        description.pop_back();
    return description;
}

// Codes of the runtime's own errors travel as 0x800A0000 + number.
RuntimeError errorOf(HRESULT result, const std::wstring& description) {
    if (isServerGone(result))
        return RuntimeError(RuntimeError::ServerUnavailable, description);
    if (result == DISP_E_TYPEMISMATCH)
        return RuntimeError(RuntimeError::TypeMismatch, description);
    if (result == DISP_E_OVERFLOW)
        return RuntimeError(RuntimeError::Overflow, description);
    if ((static_cast<unsigned long>(result) & 0xFFFF0000UL) == 0x800A0000UL)
        return RuntimeError(static_cast<long>(result & 0xFFFF), description);
    return RuntimeError(RuntimeError::AutomationError,
                        description.empty() ? systemText(result) : description);
}

// Waits a little while the windows of the thread go on being painted.
void waitServingMessages(DWORD milliseconds) {
    const DWORD start = GetTickCount();
    for (;;) {
        const DWORD passed = GetTickCount() - start;
        if (passed >= milliseconds)
            return;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, milliseconds - passed,
                                  QS_PAINT | QS_SENDMESSAGE);
        MSG message;
        while (PeekMessageW(&message, nullptr, WM_PAINT, WM_PAINT, PM_REMOVE)) {
            if (message.message == WM_QUIT) {
                // It comes through every filter; the loop outside has to see it.
                PostQuitMessage(static_cast<int>(message.wParam));
                return;
            }
            DispatchMessageW(&message);
        }
    }
}

} // namespace

// ------------------------------------------------------------------------------- ComVariant

ComVariant::ComVariant(std::int32_t number) : ComVariant() {
    value_.vt = VT_I4;
    value_.lVal = number;
}

ComVariant::ComVariant(double number) : ComVariant() {
    value_.vt = VT_R8;
    value_.dblVal = number;
}

ComVariant::ComVariant(bool value) : ComVariant() {
    value_.vt = VT_BOOL;
    value_.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
}

ComVariant::ComVariant(const std::wstring& text) : ComVariant() {
    value_.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    if (!value_.bstrVal)
        throw RuntimeError(RuntimeError::OutOfMemory);
    value_.vt = VT_BSTR;
}

ComVariant::ComVariant(IDispatch* object) : ComVariant() {
    value_.vt = VT_DISPATCH;
    value_.pdispVal = object;
    if (object)
        object->AddRef();
}

ComVariant::ComVariant(SAFEARRAY* array, VARTYPE elementType) : ComVariant() {
    if (!array)
        throw RuntimeError(RuntimeError::OutOfMemory);
    value_.vt = static_cast<VARTYPE>(VT_ARRAY | elementType);
    value_.parray = array;
}

ComVariant& ComVariant::operator=(ComVariant&& other) noexcept {
    std::swap(value_, other.value_);
    return *this;
}

ComVariant ComVariant::Omitted() {
    ComVariant omitted;
    omitted.value_.vt = VT_ERROR;
    omitted.value_.scode = DISP_E_PARAMNOTFOUND;
    return omitted;
}

std::int32_t ComVariant::toLong() const {
    if (isEmpty())
        return 0;
    ComVariant converted;
    const HRESULT result =
        VariantChangeType(converted.get(), const_cast<VARIANT*>(&value_), 0, VT_I4);
    if (FAILED(result))
        throw errorOf(result, {});
    return converted.raw().lVal;
}

double ComVariant::toDouble() const {
    if (isEmpty())
        return 0.0;
    ComVariant converted;
    const HRESULT result =
        VariantChangeType(converted.get(), const_cast<VARIANT*>(&value_), 0, VT_R8);
    if (FAILED(result))
        throw errorOf(result, {});
    return converted.raw().dblVal;
}

std::wstring ComVariant::toText() const {
    if (isEmpty())
        return {};
    if (value_.vt == VT_BSTR)
        return value_.bstrVal ? std::wstring(value_.bstrVal, SysStringLen(value_.bstrVal)) : L"";
    ComVariant converted;
    const HRESULT result =
        VariantChangeType(converted.get(), const_cast<VARIANT*>(&value_), 0, VT_BSTR);
    if (FAILED(result))
        throw errorOf(result, {});
    return converted.toText();
}

IDispatch* ComVariant::toObject() const {
    if (value_.vt != VT_DISPATCH || !value_.pdispVal)
        throw RuntimeError(RuntimeError::AutomationError);
    return value_.pdispVal;
}

// --------------------------------------------------------------------------------- ComArray

ComArray::ComArray(const ComVariant& variant, UINT dimensions) {
    const VARIANT& value = variant.raw();
    type_ = static_cast<VARTYPE>(value.vt & VT_TYPEMASK);
    if (!(value.vt & VT_ARRAY) || (value.vt & VT_BYREF) || !value.parray ||
        SafeArrayGetDim(value.parray) != dimensions || (type_ != VT_VARIANT && type_ != VT_R8))
        throw RuntimeError(RuntimeError::TypeMismatch);
    array_ = value.parray;
}

long ComArray::lower(UINT dimension) const {
    LONG bound = 0;
    SafeArrayGetLBound(array_, dimension, &bound);
    return bound;
}

long ComArray::upper(UINT dimension) const {
    LONG bound = -1;
    SafeArrayGetUBound(array_, dimension, &bound);
    return bound;
}

ComVariant ComArray::at(long first) const {
    LONG indices[] = {first};
    return element(indices);
}

ComVariant ComArray::at(long first, long second) const {
    LONG indices[] = {first, second};
    return element(indices);
}

ComVariant ComArray::element(long* indices) const {
    ComVariant value;
    double number = 0.0;
    const HRESULT result = SafeArrayGetElement(
        array_, indices, type_ == VT_R8 ? static_cast<void*>(&number) : value.get());
    if (FAILED(result))
        throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    return type_ == VT_R8 ? ComVariant(number) : std::move(value);
}

// ------------------------------------------------------------------------------- ComSession

CLSID ComSession::ClassOf(const wchar_t* programmaticIdentifier) {
    CLSID classIdentifier{};
    if (FAILED(CLSIDFromProgID(programmaticIdentifier, &classIdentifier)))
        throw RuntimeError(RuntimeError::CannotCreateObject);
    return classIdentifier;
}

// Adds the time of its own life.
class ComSession::Clock {
  public:
    explicit Clock(ComSession& session) : session_(session) {}
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;
    ~Clock() { session_.time_ += std::chrono::steady_clock::now() - start_; }

  private:
    ComSession& session_;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

// -------------------------------------------------------------------------------- ComObject

ComObject::ComObject(std::shared_ptr<ComSession> session, std::wstring kind, IDispatch* object)
    : session_(std::move(session)), kind_(std::move(kind)), object_(object) {
    if (!object_)
        throw RuntimeError(RuntimeError::ObjectVariableNotSet);
    object_->AddRef();
}

ComObject::ComObject(const ComObject& other)
    : session_(other.session_), kind_(other.kind_), object_(other.object_), locale_(other.locale_) {
    if (object_)
        object_->AddRef();
}

ComObject& ComObject::operator=(ComObject other) noexcept {
    std::swap(session_, other.session_);
    std::swap(kind_, other.kind_);
    std::swap(object_, other.object_);
    std::swap(locale_, other.locale_);
    return *this;
}

ComObject::~ComObject() {
    if (object_) {
        const ComSession::Clock clock(*session_);
        object_->Release();
    }
}

template <typename Step>
HRESULT ComObject::retried(ComSession& session, Step step) {
    const ComSession::Clock clock(session);
    constexpr DWORD pause = 100;
    // Patience is spent once for the calls of a command; the next command finds it whole.
    constexpr auto betweenCommands = std::chrono::seconds(1);
    const auto now = std::chrono::steady_clock::now();
    if (now - session.lastCall_ > betweenCommands)
        session.patience_ = session.fullPatience_;
    HRESULT result = step();
    while (isRejected(result) && session.patience_ > 0) {
        const DWORD wait = std::min(pause, session.patience_);
        session.patience_ -= wait;
        waitServingMessages(wait);
        result = step();
    }
    session.lastCall_ = std::chrono::steady_clock::now();
    return result;
}

ComObject ComObject::Create(std::shared_ptr<ComSession> session, std::wstring kind,
                            const wchar_t* programmaticIdentifier, DWORD context) {
    const CLSID classIdentifier = ComSession::ClassOf(programmaticIdentifier);
    IDispatch* object = nullptr;
    SetErrorInfo(0, nullptr);
    HRESULT result = S_OK;
    result = retried(*session, [&] {
        ++session->calls_;
        return CoCreateInstance(classIdentifier, nullptr, context, IID_IDispatch,
                                reinterpret_cast<void**>(&object));
    });
    // Busy is not the same as not there.
    if (isRejected(result))
        throw errorOf(result, {});
    if (FAILED(result) || !object) {
        std::wstring description;
        IErrorInfo* info = nullptr;
        if (GetErrorInfo(0, &info) == S_OK && info) {
            OwnedText text;
            info->GetDescription(&text.text);
            description = text.str();
            info->Release();
        }
        throw RuntimeError(RuntimeError::CannotCreateObject, description);
    }
    ComObject created(std::move(session), std::move(kind), object);
    object->Release();
    return created;
}

ComObject ComObject::Attach(std::shared_ptr<ComSession> session, std::wstring kind,
                            const wchar_t* programmaticIdentifier) {
    const CLSID classIdentifier = ComSession::ClassOf(programmaticIdentifier);
    IUnknown* running = nullptr;
    IDispatch* object = nullptr;
    {
        const ComSession::Clock clock(*session);
        ++session->calls_;
        if (SUCCEEDED(GetActiveObject(classIdentifier, nullptr, &running)) && running) {
            running->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&object));
            running->Release();
        }
    }
    if (!object)
        throw RuntimeError(RuntimeError::CannotCreateObject);
    ComObject attached(std::move(session), std::move(kind), object);
    object->Release();
    return attached;
}

DISPID ComObject::nameOf(const wchar_t* member) {
    const auto key = std::make_pair(kind_, std::wstring(member));
    const auto known = session_->names_.find(key);
    if (known != session_->names_.end())
        return known->second;
    DISPID id = DISPID_UNKNOWN;
    ++session_->calls_;
    LPOLESTR name = const_cast<LPOLESTR>(member);
    const HRESULT result = retried(
        *session_, [&] { return object_->GetIDsOfNames(IID_NULL, &name, 1, locale_, &id); });
    if (FAILED(result))
        throw errorOf(result, {});
    session_->names_.emplace(key, id);
    return id;
}

ComVariant ComObject::invoke(const wchar_t* member, WORD flags,
                             std::initializer_list<const ComVariant*> arguments,
                             const ComVariant* value) {
    if (!object_)
        throw RuntimeError(RuntimeError::ObjectVariableNotSet);
    const DISPID id = nameOf(member);
    // Automation takes the arguments from the last to the first; the value of a put stands first.
    std::vector<VARIANT> reversed;
    if (value)
        reversed.push_back(value->raw());
    for (auto argument = arguments.end(); argument != arguments.begin();)
        reversed.push_back((*--argument)->raw());
    DISPID putName = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{};
    parameters.rgvarg = reversed.empty() ? nullptr : reversed.data();
    parameters.cArgs = static_cast<UINT>(reversed.size());
    if (value) {
        parameters.rgdispidNamedArgs = &putName;
        parameters.cNamedArgs = 1;
    }
    ComVariant answer;
    std::wstring description;
    HRESULT serverCode = 0;
    const HRESULT result = retried(*session_, [&] {
        OwnedException exception;
        UINT badArgument = 0;
        ++session_->calls_;
        const HRESULT outcome =
            object_->Invoke(id, IID_NULL, locale_, flags, &parameters,
                            value ? nullptr : answer.get(), &exception, &badArgument);
        if (outcome == DISP_E_EXCEPTION) {
            if (exception.pfnDeferredFillIn)
                exception.pfnDeferredFillIn(&exception);
            serverCode = exception.scode ? exception.scode
                                         : static_cast<HRESULT>(0x800A0000UL | exception.wCode);
            if (exception.bstrDescription)
                description.assign(exception.bstrDescription,
                                   SysStringLen(exception.bstrDescription));
        }
        return outcome;
    });
    // Who answers is not busy any more. (Making an object shows nothing: a server may do that while
    // it rejects every call.)
    if (!isRejected(result))
        session_->patience_ = session_->fullPatience_;
    if (result == DISP_E_EXCEPTION)
        throw errorOf(serverCode, description);
    if (FAILED(result))
        throw errorOf(result, {});
    return answer;
}

ComVariant ComObject::Call(const wchar_t* member,
                           std::initializer_list<const ComVariant*> arguments) {
    return invoke(member, DISPATCH_METHOD, arguments, nullptr);
}

ComVariant ComObject::Get(const wchar_t* member,
                          std::initializer_list<const ComVariant*> arguments) {
    return invoke(member, DISPATCH_PROPERTYGET, arguments, nullptr);
}

void ComObject::Put(const wchar_t* member, const ComVariant& value,
                    std::initializer_list<const ComVariant*> arguments) {
    invoke(member, DISPATCH_PROPERTYPUT, arguments, &value);
}

ComObject ComObject::CallObject(std::wstring kind, const wchar_t* member,
                                std::initializer_list<const ComVariant*> arguments) {
    const ComVariant answer = Call(member, arguments);
    ComObject object(session_, std::move(kind), answer.toObject());
    object.locale_ = locale_;
    return object;
}

ComObject ComObject::ObjectOf(std::wstring kind, const wchar_t* member,
                              std::initializer_list<const ComVariant*> arguments) {
    const ComVariant answer = Get(member, arguments);
    ComObject object(session_, std::move(kind), answer.toObject());
    object.locale_ = locale_;
    return object;
}

} // namespace kalvrooms
