#include "support/MemoryLimit.h"

#include <malloc.h>

#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

// Of one thread, so that others go on undisturbed.
thread_local bool limited = false;
thread_local std::int64_t left = 0;

std::int64_t sizeOf(void* block) {
#ifdef _WIN32
    return static_cast<std::int64_t>(_msize(block));
#else
    return static_cast<std::int64_t>(malloc_usable_size(block));
#endif
}

void* allocate(std::size_t size) noexcept {
    if (limited && static_cast<std::int64_t>(size) > left)
        return nullptr;
    void* const block = std::malloc(size > 0 ? size : 1);
    if (block)
        left -= sizeOf(block);
    return block;
}

void* allocateOrThrow(std::size_t size) {
    if (void* const block = allocate(size))
        return block;
    throw std::bad_alloc();
}

void release(void* block) noexcept {
    if (block)
        left += sizeOf(block);
    std::free(block);
}

} // namespace

void* operator new(std::size_t size) {
    return allocateOrThrow(size);
}
void* operator new[](std::size_t size) {
    return allocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}
void operator delete(void* block) noexcept {
    release(block);
}
void operator delete[](void* block) noexcept {
    release(block);
}
void operator delete(void* block, std::size_t) noexcept {
    release(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    release(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    release(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
    release(block);
}

namespace kalvrooms {

MemoryLimit::MemoryLimit(std::size_t bytes) {
    left = static_cast<std::int64_t>(bytes);
    limited = true;
}

MemoryLimit::~MemoryLimit() {
    limited = false;
}

} // namespace kalvrooms
