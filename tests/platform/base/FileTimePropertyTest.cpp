#include <cstdint>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "tessera/platform/base/COleDateTime.h"

namespace {

constexpr std::uint64_t ticksPerDay = 864'000'000'000;

}  // namespace

RC_GTEST_PROP(FileTimes, AnyTimeComesBackToWithinFortyMicroseconds, ()) {
    const auto day = *rc::gen::inRange<std::uint64_t>(0, 3'067'671);
    const auto tick = *rc::gen::inRange<std::uint64_t>(0, ticksPerDay);
    const std::uint64_t ticks = day * ticksPerDay + tick;

    FILETIME back;

    RC_ASSERT(fileTimeOfDate(dateOfFileTime(fileTimeOf(ticks)), back));
    const std::uint64_t after = ticksOf(back);
    // Far from 1899 a double tells days apart only so finely.
    RC_ASSERT((after > ticks ? after - ticks : ticks - after) <= 400U);
}
