#include "tests/support/FailingSqliteMemory.h"

#include <cstdlib>
#include <iostream>

#include <sqlite3.h>

namespace testing_support {

namespace {

struct Plan {
    long allocationsUntilFailure = 0;  ///< 0: none is to fail.
    bool lasts = false;
    bool paused = false;
    bool failed = false;
};

thread_local Plan plan;

sqlite3_mem_methods real;

bool failsNow() {
    if (plan.paused || plan.allocationsUntilFailure == 0) return false;
    if (plan.allocationsUntilFailure > 1) {
        --plan.allocationsUntilFailure;
        return false;
    }
    if (!plan.lasts) plan.allocationsUntilFailure = 0;
    plan.failed = true;
    return true;
}

void* allocate(int bytes) {
    return failsNow() ? nullptr : real.xMalloc(bytes);
}

void* reallocate(void* memory, int bytes) {
    return failsNow() ? nullptr : real.xRealloc(memory, bytes);
}

/// SQLite takes other memory only before its first use.
const bool installed = [] {
    bool good = sqlite3_config(SQLITE_CONFIG_GETMALLOC, &real) == SQLITE_OK;
    sqlite3_mem_methods failing = real;
    failing.xMalloc = allocate;
    failing.xRealloc = reallocate;
    good = good && sqlite3_config(SQLITE_CONFIG_MALLOC, &failing) == SQLITE_OK;
    // Small pieces would come from a store of a connection's own, which is never short.
    good = good && sqlite3_config(SQLITE_CONFIG_LOOKASIDE, 0, 0) == SQLITE_OK;
    if (good) return true;
    std::cerr << "SQLite takes no other memory" << std::endl;
    std::abort();
}();

}  // namespace

FailingSqliteMemory::FailingSqliteMemory(long n, Lasting lasting) {
    plan = {.allocationsUntilFailure = n, .lasts = lasting == Lasting::fromThenOn};
}

FailingSqliteMemory::~FailingSqliteMemory() {
    plan = {};
}

void FailingSqliteMemory::pause() {
    plan.paused = true;
}

void FailingSqliteMemory::resume() {
    plan.paused = false;
}

bool FailingSqliteMemory::happened() const {
    return plan.failed;
}

}  // namespace testing_support
