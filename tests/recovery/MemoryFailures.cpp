#include "tests/recovery/MemoryFailures.h"

#include <functional>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "tests/database/FailingAllocation.h"
#include "tests/recovery/OperationTrial.h"
#include "tests/support/FailingSqliteMemory.h"

namespace recovery {

using testing_support::FailingAllocation;
using testing_support::FailingSqliteMemory;

namespace {

template <class Memory>
class MemoryFailure : public Failure {
public:
    template <class... Plan>
    explicit MemoryFailure(Plan... plan) : memory_(plan...) {
        memory_.pause();
    }

    void resume() override { memory_.resume(); }
    void pause() override { memory_.pause(); }
    bool happened() const override { return memory_.happened(); }

private:
    Memory memory_;
};

struct Way {
    const char* name;
    std::unique_ptr<Failure> (*fail)(long n);
};

constexpr Way ways[] = {
    {"the library's",
     [](long n) -> std::unique_ptr<Failure> { return std::make_unique<MemoryFailure<FailingAllocation>>(n); }},
    {"one of SQLite's",
     [](long n) -> std::unique_ptr<Failure> {
         return std::make_unique<MemoryFailure<FailingSqliteMemory>>(n, FailingSqliteMemory::Lasting::once);
     }},
    {"all of SQLite's from then on",
     [](long n) -> std::unique_ptr<Failure> {
         return std::make_unique<MemoryFailure<FailingSqliteMemory>>(n, FailingSqliteMemory::Lasting::fromThenOn);
     }},
};

}  // namespace

void failAllocations(std::span<const ManagerOperation> operations, int stride) {
    long phase = 0;
    for (const ManagerOperation& operation : operations) {
        const OperationTrial trial(operation);
        for (const Way& way : ways) {
            SCOPED_TRACE(way.name);
            bool goesOn = true;
            for (long n = 1 + phase++ % stride; goesOn; n += stride) {
                SCOPED_TRACE("allocation " + std::to_string(n));
                goesOn = trial.run([&] { return way.fail(n); });
            }
        }
    }
}

}  // namespace recovery
