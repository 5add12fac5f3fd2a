#include "host/clsKalvero.h"

#include "app/Messages.h"
#include "app/TextNumbers.h"
#include "host/BridgeOperation.h"
#include "model/NumberText.h"
#include "model/RuntimeError.h"

namespace kalvrooms {
namespace {

// A word at the very start of a host's description counts as absent.
bool standsBehindStart(const std::wstring& description, const wchar_t* words) {
    const std::size_t position = description.find(words);
    return position != std::wstring::npos && position > 0;
}

} // namespace

bool Attempt(const std::function<void()>& step) {
    try {
        step();
        return true;
    } catch (const RuntimeError&) {
        return false;
    }
}

std::wstring IdentityKey(std::int32_t componentID, const std::wstring& fileID) {
    const std::wstring file = Trim(fileID);
    if (componentID < 0 || file.empty())
        return {};
    return FromLong(componentID) + L"-" + file;
}

PointArray PointsOf(const Outline& outline) {
    PointArray points;
    for (const Point& point : outline)
        points.Add(point.x, point.y);
    return points;
}

clsKalvero::Progress::Progress(ExportWindow& window, const FileServices& files, std::int32_t words,
                               std::int32_t total)
    : window_(window), files_(files), words_(words), total_(total) {
    // What was pressed before was meant for something else.
    files_.desktop.EscapePressed();
}

bool clsKalvero::Progress::next(std::int32_t room) {
    ended_ = ended_ || files_.desktop.EscapePressed();
    // A room that one pass leaves to the other is begun once.
    if (!ended_ && begun_.insert(room).second)
        window_.ShowProgress(
            MessageText(files_.texts, words_,
                        {FromLong(static_cast<std::int32_t>(begun_.size())), FromLong(total_)}));
    return !ended_;
}

clsKalvero::clsKalvero(HostServer& host, const FileServices& files, ExportWindow& window)
    : host_(host), files_(files), desktop_(files.desktop), texts_(files.texts), window_(window) {
    Attempt([this] { connect(); });
}

void clsKalvero::connect() {
    application_ = host_.CreateHostApplication();
    broken_ = false;
}

template <typename Call>
auto clsKalvero::ask(Call call) {
    try {
        return call(*application_);
    } catch (const RuntimeError&) {
        broken_ = true;
        throw;
    }
}

std::unique_ptr<HostDrawingService> clsKalvero::getDrawingService() {
    const auto service = [](HostApplication& host) { return host.GetDrawingService(); };
    if (application_) {
        try {
            return ask(service);
        } catch (const RuntimeError& error) {
            if (error.number() != RuntimeError::ServerUnavailable)
                throw;
            application_.reset();
        }
    }
    connect();
    if (!application_)
        throw RuntimeError(RuntimeError::ObjectVariableNotSet);
    return ask(service);
}

std::unique_ptr<HostProject> clsKalvero::getProject() {
    return ask([](HostApplication& host) { return host.GetProject(); });
}

std::wstring clsKalvero::GetProjectName() {
    const auto updateProjectInfo = [this] {
        if (!application_)
            connect();
        if (application_)
            application_->UpdateProjectInfo();
    };
    try {
        updateProjectInfo();
    } catch (const RuntimeError& error) {
        // The host was ended; it may have been started again since.
        if (error.number() == RuntimeError::ServerUnavailable) {
            application_.reset();
            Attempt(updateProjectInfo);
        }
    }
    std::wstring name;
    if (application_) {
        Attempt([&] { name = Trim(getProject()->ProjectName()); });
        Attempt([&] { projectPath_ = getProject()->ProjectFolder(); });
    }
    return name.empty() ? ProjectWithoutName : name;
}

std::wstring clsKalvero::GetProjectPath() const {
    return projectPath_;
}

bool clsKalvero::hostForbidsAccess() {
    std::wstring description;
    try {
        auto fresh = host_.CreateHostApplication();
        if (!application_ || broken_) {
            application_ = std::move(fresh);
            broken_ = false;
        }
    } catch (const RuntimeError& error) {
        description = error.description();
    }
    if (standsBehindStart(description, L"interaction") &&
        standsBehindStart(description, L"menue") && standsBehindStart(description, L"terminate")) {
        showHostMessage(TextNumber::EndMenuAction);
        return true;
    }
    if (standsBehindStart(description, L"any Kvd or free plan")) {
        showHostMessage(TextNumber::CloseKvdFiles);
        return true;
    }
    return false;
}

void clsKalvero::showHostMessage(std::int32_t textNumber) {
    if (wait_)
        wait_->BreakWait();
    desktop_.ShowMessage({texts_.GetText(textNumber), texts_.GetText(TextNumber::Title)});
    if (wait_)
        wait_->ContinueWait();
}

void clsKalvero::tell(std::int32_t textNumber, const std::vector<std::wstring>& parts) {
    desktop_.ShowMessage(
        {MessageText(texts_, textNumber, parts), MessageText(texts_, TextNumber::Title)});
}

} // namespace kalvrooms
