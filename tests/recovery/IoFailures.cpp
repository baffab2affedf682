#include "tests/recovery/IoFailures.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "tests/recovery/OperationTrial.h"
#include "tests/support/FaultyDisk.h"

namespace recovery {

using testing_support::FaultyDisk;

namespace {

struct Way {
    const char* name;
    FaultyDisk::Trouble trouble;
    FaultyDisk::Lasting lasting;
};

constexpr Way ways[] = {
    {"an error", FaultyDisk::Trouble::error, FaultyDisk::Lasting::once},
    {"errors from then on", FaultyDisk::Trouble::error, FaultyDisk::Lasting::fromThenOn},
    {"a full disk", FaultyDisk::Trouble::full, FaultyDisk::Lasting::once},
    {"a disk that stays full", FaultyDisk::Trouble::full, FaultyDisk::Lasting::fromThenOn},
};

class DiskFailure : public Failure {
public:
    DiskFailure(const Way& way, long call) {
        disk_.failAt(call, way.trouble, way.lasting);
        disk_.pause();
    }

    void resume() override { disk_.resume(); }
    void pause() override { disk_.pause(); }
    bool happened() const override { return disk_.hasFailed(); }

private:
    FaultyDisk disk_;
};

/// Answers how many of the trials met a failure.
int failCalls(const OperationTrial& trial, const Way& way, long first, int stride) {
    SCOPED_TRACE(way.name);
    int met = 0;
    for (long call = first;; call += stride) {
        SCOPED_TRACE("call " + std::to_string(call));
        if (!trial.run([&] { return std::make_unique<DiskFailure>(way, call); })) return met;
        ++met;
    }
}

}  // namespace

void failCallsToDisk(std::span<const ManagerOperation> operations, int stride) {
    long phase = 0;
    for (const ManagerOperation& operation : operations) {
        const OperationTrial trial(operation);
        EXPECT_EQ(operation.usesStore, failCalls(trial, ways[0], 1, stride) != 0) << operation.name << " and the disk";
        for (const Way& way : std::span(ways).subspan<1>())
            failCalls(trial, way, 1 + phase++ % stride, stride);
    }
}

}  // namespace recovery
