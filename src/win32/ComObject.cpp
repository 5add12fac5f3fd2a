#include "win32/ComObject.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace kalvrooms {
namespace {

struct OwnedException : EXCEPINFO {
    OwnedException() : EXCEPINFO{} {}
    ~OwnedException() {
        SysFreeString(bstrSource);
        SysFreeString(bstrDescription);
        SysFreeString(bstrHelpFile);
    }
    OwnedException(const OwnedException&) = delete;
    OwnedException& operator=(const OwnedException&) = delete;

    ComError error() {
        if (pfnDeferredFillIn)
            pfnDeferredFillIn(this);
        const auto code = scode ? scode : static_cast<HRESULT>(0x800A0000UL | wCode);
        return ComError(code, TextOf(bstrDescription));
    }
};

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

// The description that a failed call left behind.
std::wstring errorInformation() {
    ComPtr<IErrorInfo> information;
    Bstr text;
    if (GetErrorInfo(0, &information) == S_OK && information)
        information->GetDescription(text.put());
    return text.text();
}

} // namespace

std::int32_t LongOf(const Variant& value) {
    return value.empty() ? 0 : value.As(VT_I4, LOCALE_USER_DEFAULT).raw().lVal;
}

double NumberOf(const Variant& value) {
    return value.empty() ? 0.0 : value.As(VT_R8, LOCALE_USER_DEFAULT).raw().dblVal;
}

std::wstring TextOf(const Variant& value) {
    return value.empty() ? L"" : TextOf(value.As(VT_BSTR, LOCALE_USER_DEFAULT).raw().bstrVal);
}

// ------------------------------------------------------------------------------- ComSession

CLSID ComSession::ClassOf(const wchar_t* programmaticIdentifier) {
    CLSID classIdentifier{};
    if (FAILED(CLSIDFromProgID(programmaticIdentifier, &classIdentifier)))
        throw RuntimeError(RuntimeError::CannotCreateObject);
    return classIdentifier;
}

// Times a call: from its construction to its destruction.
class ComSession::Clock {
  public:
    explicit Clock(ComSession& session)
        : session_(session), outer_(std::exchange(session.underWaySince_, start_)) {}
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;
    ~Clock() {
        session_.time_ += std::chrono::steady_clock::now() - start_;
        session_.underWaySince_ = outer_;
    }

  private:
    ComSession& session_;
    const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    // A call may be made while another one serves the messages of the thread.
    const std::optional<std::chrono::steady_clock::time_point> outer_;
};

bool ComSession::Hangs() const {
    constexpr auto longest = std::chrono::seconds(5);
    return underWaySince_ && std::chrono::steady_clock::now() - *underWaySince_ >= longest;
}

// -------------------------------------------------------------------------------- ComObject

ComObject::ComObject(std::shared_ptr<ComSession> session, std::wstring kind, IDispatch* object)
    : session_(std::move(session)), kind_(std::move(kind)), object_(object) {
    if (!object_)
        throw RuntimeError(RuntimeError::ObjectVariableNotSet);
}

ComObject::~ComObject() {
    if (object_) {
        const ComSession::Clock clock(*session_);
        object_.Reset();
    }
}

// While another program waits in SendMessage, COM refuses outgoing calls. The message is answered
// then: to the question whether the session may end, 0 is "not now".
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
    if (result == RPC_E_CANTCALLOUT_ININPUTSYNCCALL && ReplyMessage(0))
        result = step();
    while (IsRejected(result) && session.patience_ > 0) {
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
    ComPtr<IDispatch> object;
    SetErrorInfo(0, nullptr);
    const HRESULT result = retried(*session, [&] {
        ++session->calls_;
        return CoCreateInstance(classIdentifier, nullptr, context, IID_PPV_ARGS(&object));
    });
    // Busy is not the same as not there.
    if (IsRejected(result))
        throw ComError(result);
    if (FAILED(result) || !object)
        throw RuntimeError(RuntimeError::CannotCreateObject, errorInformation());
    return ComObject(std::move(session), std::move(kind), object.Get());
}

ComObject ComObject::Attach(std::shared_ptr<ComSession> session, std::wstring kind,
                            const wchar_t* programmaticIdentifier) {
    const CLSID classIdentifier = ComSession::ClassOf(programmaticIdentifier);
    ComPtr<IDispatch> object;
    {
        const ComSession::Clock clock(*session);
        ++session->calls_;
        ComPtr<IUnknown> running;
        if (SUCCEEDED(GetActiveObject(classIdentifier, nullptr, &running)) && running)
            running.As(&object);
    }
    if (!object)
        throw RuntimeError(RuntimeError::CannotCreateObject);
    return ComObject(std::move(session), std::move(kind), object.Get());
}

DISPID ComObject::nameOf(const wchar_t* member) {
    const auto key = std::make_pair(kind_, std::wstring(member));
    auto known = session_->names_.find(key);
    if (known == session_->names_.end()) {
        DISPID id = DISPID_UNKNOWN;
        ++session_->calls_;
        LPOLESTR name = const_cast<LPOLESTR>(member);
        const HRESULT result = retried(
            *session_, [&] { return object_->GetIDsOfNames(IID_NULL, &name, 1, locale_, &id); });
        if (result != DISP_E_UNKNOWNNAME)
            Check(result);
        known = session_->names_.emplace(key, FAILED(result) ? DISPID_UNKNOWN : id).first;
    }
    if (known->second == DISPID_UNKNOWN)
        throw ComError(DISP_E_UNKNOWNNAME);
    return known->second;
}

Variant ComObject::invoke(const wchar_t* member, Arguments arguments, const Variant* value) {
    if (!object_)
        throw RuntimeError(RuntimeError::ObjectVariableNotSet);
    const DISPID id = nameOf(member);
    // Automation takes the arguments from the last to the first; the value of a put stands first.
    std::vector<VARIANT> reversed;
    if (value)
        reversed.push_back(value->raw());
    for (auto argument = arguments.end(); argument != arguments.begin();)
        reversed.push_back((--argument)->raw());
    DISPID putName = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{reversed.data(), value ? &putName : nullptr,
                          static_cast<UINT>(reversed.size()), value ? 1U : 0U};
    const WORD flags = value ? DISPATCH_PROPERTYPUT : DISPATCH_METHOD | DISPATCH_PROPERTYGET;
    Variant answer;
    std::optional<ComError> raised;
    const HRESULT result = retried(*session_, [&] {
        OwnedException exception;
        UINT badArgument = 0;
        ++session_->calls_;
        SetErrorInfo(0, nullptr);
        const HRESULT outcome =
            object_->Invoke(id, IID_NULL, locale_, flags, &parameters,
                            value ? nullptr : answer.get(), &exception, &badArgument);
        if (outcome == DISP_E_EXCEPTION)
            raised = exception.error();
        else if (FAILED(outcome))
            raised = ComError(outcome, errorInformation());
        return outcome;
    });
    // A server that answers is no longer busy. (Making an object shows nothing: a server may do
    // that while it rejects every call.)
    if (!IsRejected(result))
        session_->patience_ = session_->fullPatience_;
    if (FAILED(result))
        throw *raised;
    // A reference, maybe to another variant, is good only as long as the server keeps its target.
    while ((answer.type() & VT_BYREF) != 0)
        answer = Variant::CopyOf(answer.raw());
    return answer;
}

Variant ComObject::Call(const wchar_t* member, Arguments arguments) {
    return invoke(member, arguments, nullptr);
}

Variant ComObject::Get(const wchar_t* member, Arguments arguments) {
    return invoke(member, arguments, nullptr);
}

void ComObject::Put(const wchar_t* member, const Variant& value) {
    invoke(member, {}, &value);
}

ComObject ComObject::CallObject(std::wstring kind, const wchar_t* member, Arguments arguments) {
    return objectIn(std::move(kind), Call(member, arguments));
}

ComObject ComObject::ObjectOf(std::wstring kind, const wchar_t* member, Arguments arguments) {
    return objectIn(std::move(kind), Get(member, arguments));
}

ComObject ComObject::objectIn(std::wstring kind, const Variant& answer) const {
    const ComPtr<IDispatch> found = answer.ToObject();
    if (!found)
        throw RuntimeError(RuntimeError::AutomationError);
    ComObject object(session_, std::move(kind), found.Get());
    object.locale_ = locale_;
    return object;
}

} // namespace kalvrooms
