#pragma once
// Lets the program run out of memory: while one lives, no more than so many bytes can be allocated.

#include <cstddef>

namespace kalvrooms {

class MemoryLimit {
  public:
    explicit MemoryLimit(std::size_t bytes);
    ~MemoryLimit();
    MemoryLimit(const MemoryLimit&) = delete;
    MemoryLimit& operator=(const MemoryLimit&) = delete;
};

} // namespace kalvrooms
