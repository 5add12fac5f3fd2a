#pragma once
// Tells a person who waits what is being done: on the error stream, once it takes longer than one
// likes to wait without a word. The line is taken back when it is done.

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

#include "console/Qto.h"

namespace kalvrooms {

class Busy {
  public:
    Busy(const Console& console, const std::string& doing);
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;
    ~Busy();

  private:
    void tell(const std::string& doing);

    const Console& console_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool done_ = false;
    std::thread teller_; // only where somebody looks
};

} // namespace kalvrooms
