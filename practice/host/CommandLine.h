#pragma once
// The practice host's command line.

#include "drawing/Drawing.h"
#include "practice/host/HandOver.h"
#include "practice/server/CallLog.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kalvrooms::practice {

struct CommandLine {
    bool registerServer = false;
    bool unregisterServer = false;
    // Known to the system while it runs, and only then.
    bool knownWhileRunning = false;
    // The system starts the server for a client.
    bool embedding = false;
    bool hidden = false;
    bool plain = false;
    bool quitWithClient = false;
    std::wstring drawing;
    // In place of the drawing's own project folder.
    std::wstring projectFolder;
    std::wstring save;
    std::wstring svg;
    std::optional<Point> place;
    std::wstring state;
    std::vector<std::pair<std::int32_t, Fault>> faults;
    std::wstring start;
    HandOver handOver;

    // The arguments without the program's own name. Raises a HostError for what it cannot read.
    static CommandLine From(const std::vector<std::wstring>& arguments);
};

} // namespace kalvrooms::practice
