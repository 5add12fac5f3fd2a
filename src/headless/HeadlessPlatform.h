#pragma once
// All headless services in one object, bundled as the program takes them.

#include "headless/HeadlessDesktop.h"
#include "headless/HeadlessSystem.h"
#include "platform/Platform.h"

namespace kalvrooms {

class HeadlessPlatform {
  public:
    HeadlessPlatform() = default;
    HeadlessPlatform(const HeadlessPlatform&) = delete;
    HeadlessPlatform& operator=(const HeadlessPlatform&) = delete;

    Platform& Bundle() { return bundle_; }

    HeadlessDesktop desktop;
    HeadlessAnsiCodec ansi;
    HeadlessRegistry registry;
    HeadlessResourceLibraries libraries;
    HeadlessEnvironment environment;

  private:
    Platform bundle_{desktop, ansi, registry, libraries, environment};
};

} // namespace kalvrooms
