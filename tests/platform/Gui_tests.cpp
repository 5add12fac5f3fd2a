#include "platform/Gui.h"

#include <stdexcept>

#include <gmock/gmock.h>

#include "headless/HeadlessDesktop.h"
#include "support/MemoryLimit.h"

namespace kalvrooms {

using testing::ElementsAre;

TEST(GuiDesktop, EndsTheEventAndNotTheProgramOnAnError) {
    HeadlessDesktop desktop;
    std::vector<long> reported;
    desktop.RuntimeErrorHandler = [&](const RuntimeError& error) {
        reported.push_back(error.number());
    };
    desktop.Dispatch([] { throw RuntimeError(RuntimeError::Overflow); });
    desktop.Dispatch([] { throw std::bad_alloc(); });
    desktop.Dispatch([] { throw std::runtime_error("anything"); });
    desktop.Dispatch(nullptr);
    EXPECT_THAT(reported, ElementsAre(RuntimeError::Overflow, RuntimeError::OutOfMemory,
                                      RuntimeError::InvalidProcedureCall));
    desktop.RuntimeErrorHandler = [](const RuntimeError&) { throw std::runtime_error("again"); };
    desktop.Dispatch([] { throw RuntimeError(RuntimeError::Overflow); });
    desktop.RuntimeErrorHandler = nullptr;
    desktop.Dispatch([] { throw RuntimeError(RuntimeError::Overflow); });
}

TEST(GuiDesktop, WithoutAnyMemoryTheErrorIsToldWithWhatWasSetAside) {
    HeadlessDesktop desktop;
    std::vector<long> reported;
    reported.reserve(4);
    std::size_t length = 0;
    desktop.RuntimeErrorHandler = [&](const RuntimeError& error) {
        // What a message takes.
        const std::wstring text(100'000, L'x');
        length = text.size();
        reported.push_back(error.number());
    };
    const std::function<void()> runsOut = [] { std::vector<char>(1000).at(999) = 'x'; };
    const std::function<void()> invalid = [] { throw std::runtime_error("anything"); };
    desktop.Dispatch([] {});
    {
        const MemoryLimit limit(200);
        desktop.Dispatch(runsOut);
    }
    EXPECT_THAT(reported, ElementsAre(RuntimeError::OutOfMemory));
    EXPECT_EQ(length, 100'000u);
    // Any other error that cannot be told is told as that one. And the next event has a reserve
    // again.
    desktop.Dispatch([] {});
    {
        const MemoryLimit limit(200);
        desktop.Dispatch(invalid);
        // Without anything left nothing is told, and the program goes on.
        desktop.RuntimeErrorHandler = [](const RuntimeError&) { throw std::bad_alloc(); };
        desktop.Dispatch(runsOut);
    }
    EXPECT_THAT(reported, ElementsAre(RuntimeError::OutOfMemory, RuntimeError::OutOfMemory));
}

} // namespace kalvrooms
