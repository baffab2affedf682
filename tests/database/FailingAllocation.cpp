#include "tests/database/FailingAllocation.h"

#include <cstdlib>
#include <new>

namespace {

thread_local long allocationsUntilFailure = 0;  ///< 0: none is to fail.
thread_local bool paused = false;
thread_local bool failed = false;
thread_local bool allFail = false;

void* allocated(std::size_t size) noexcept {
    if (allFail) return nullptr;
    if (!paused && allocationsUntilFailure != 0 && --allocationsUntilFailure == 0) {
        failed = true;
        return nullptr;
    }
    return std::malloc(size == 0 ? 1 : size);
}

void* allocatedOrThrow(std::size_t size) {
    void* const memory = allocated(size);
    return memory != nullptr ? memory : throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size) {
    return allocatedOrThrow(size);
}
void* operator new[](std::size_t size) {
    return allocatedOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocated(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocated(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}

namespace testing_support {

FailingAllocation::FailingAllocation(long n) {
    failed = false;
    paused = false;
    allocationsUntilFailure = n;
}

FailingAllocation::~FailingAllocation() {
    allocationsUntilFailure = 0;
}

void FailingAllocation::pause() {
    paused = true;
}

void FailingAllocation::resume() {
    paused = false;
}

bool FailingAllocation::happened() const {
    return failed;
}

NoAllocation::NoAllocation() {
    allFail = true;
}

NoAllocation::~NoAllocation() {
    allFail = false;
}

}  // namespace testing_support
