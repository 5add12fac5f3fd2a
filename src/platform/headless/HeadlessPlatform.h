#pragma once
// All headless services in one object, bundled as the program takes them.

#include "platform/Platform.h"
#include "platform/headless/HeadlessDesktop.h"
#include "platform/headless/HeadlessSystem.h"

namespace kalvrooms {

class HeadlessPlatform {
  public:
    // Without a host there is none on the machine.
    explicit HeadlessPlatform(SpreadsheetServer& spreadsheets, HostServer* host = nullptr)
        : bundle_{desktop,     ansi, registry, libraries, environment, host ? *host : noHost_,
                  spreadsheets} {}
    HeadlessPlatform(const HeadlessPlatform&) = delete;
    HeadlessPlatform& operator=(const HeadlessPlatform&) = delete;

    Platform& Bundle() { return bundle_; }

    HeadlessDesktop desktop;
    HeadlessAnsiCodec ansi;
    HeadlessRegistry registry;
    HeadlessResourceLibraries libraries;
    HeadlessEnvironment environment;

  private:
    AbsentHostServer noHost_;
    Platform bundle_;
};

} // namespace kalvrooms
