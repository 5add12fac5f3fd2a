#pragma once
// All headless services in one object, bundled as the program takes them.

#include "headless/HeadlessDesktop.h"
#include "headless/HeadlessSystem.h"
#include "platform/Platform.h"

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
