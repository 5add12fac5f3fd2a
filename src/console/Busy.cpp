#include "console/Busy.h"

#include <ostream>

#include "model/Utf8.h"

namespace kalvrooms {

Busy::Busy(const Console& console, const std::string& doing) : console_(console) {
    if (console.isWatched)
        teller_ = std::thread([this, doing] { tell(doing); });
}

Busy::~Busy() {
    if (!teller_.joinable())
        return;
    {
        const std::lock_guard lock(mutex_);
        done_ = true;
    }
    changed_.notify_one();
    teller_.join();
}

void Busy::tell(const std::string& doing) {
    std::unique_lock lock(mutex_);
    const auto isDone = [this] { return done_; };
    if (changed_.wait_for(lock, console_.patience, isDone))
        return;
    const std::string text = "qto: " + doing + " ...";
    console_.err << text << std::flush;
    changed_.wait(lock, isDone);
    const std::string blanks(FromUtf8(text).size(), ' ');
    console_.err << '\r' << blanks << '\r' << std::flush;
}

} // namespace kalvrooms
