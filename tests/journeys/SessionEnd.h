#pragma once

#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "practice/driver/UiDriver.h"

namespace kalvrooms::testing {

// The system that asks whether the session may end, and waits for the answer.
class SessionEnd {
  public:
    explicit SessionEnd(HWND window)
        : asking_([this, window] {
              SendMessageTimeoutW(window, WM_QUERYENDSESSION, 0, 0, SMTO_NORMAL, driver::usualLimit,
                                  &answer_);
              answered_ = true;
          }) {}
    ~SessionEnd() { asking_.join(); }
    SessionEnd(const SessionEnd&) = delete;
    SessionEnd& operator=(const SessionEnd&) = delete;

    bool answered() const { return answered_; }
    void expectConsent() const {
        driver::waitFor("the answer to the system", [this] { return answered(); });
        EXPECT_EQ(answer_, static_cast<DWORD_PTR>(TRUE));
    }

  private:
    DWORD_PTR answer_ = 0;
    std::atomic<bool> answered_ = false;
    std::thread asking_;
};

} // namespace kalvrooms::testing
