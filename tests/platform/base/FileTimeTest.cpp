#include <ctime>
#include <limits>

#include <gtest/gtest.h>

#include "tessera/platform/base/COleDateTime.h"

namespace {

constexpr std::uint64_t ticksPerDay = 864'000'000'000;
constexpr std::uint64_t unixEpoch = 116'444'736'000'000'000;

DATE dateOf(int year, int month, int day, int hour = 0) {
    return COleDateTime(year, month, day, hour).date();
}

}  // namespace

TEST(FileTimeOfDate, CountsFrom1601) {
    FILETIME time;

    EXPECT_TRUE(fileTimeOfDate(dateOf(1601, 1, 1), time));
    EXPECT_EQ(ticksOf(time), 0U);
    EXPECT_TRUE(fileTimeOfDate(dateOf(1970, 1, 1), time));
    EXPECT_EQ(ticksOf(time), unixEpoch);
    EXPECT_TRUE(fileTimeOfDate(dateOf(1970, 1, 1, 12), time));
    EXPECT_EQ(ticksOf(time), unixEpoch + ticksPerDay / 2);
    EXPECT_TRUE(fileTimeOfDate(949998.0, time));
    EXPECT_EQ(dateOfFileTime(time), 949998.0);
}

TEST(FileTimeOfDate, BeforeDayZeroTheFractionStillCountsForwards) {
    FILETIME day, noon;

    ASSERT_TRUE(fileTimeOfDate(-1000.0, day));
    ASSERT_TRUE(fileTimeOfDate(-1000.5, noon));

    EXPECT_EQ(ticksOf(noon), ticksOf(day) + ticksPerDay / 2);
    EXPECT_EQ(dateOfFileTime(noon), -1000.5);
}

TEST(FileTimeOfDate, RefusesWhatHasNoFileTimeAndLeavesTheOutputAlone) {
    const double refused[] = {
        dateOf(1600, 12, 31),
        dateOf(1600, 12, 31, 23),
        dateOf(100, 1, 1),
        -657435.0,
        2958466.0,
        1e300,
        -1e300,
        std::numeric_limits<double>::quiet_NaN(),
        std::numeric_limits<double>::infinity(),
        -std::numeric_limits<double>::infinity(),
    };
    for (const double date : refused) {
        FILETIME time = fileTimeOf(12345);
        EXPECT_FALSE(fileTimeOfDate(date, time)) << date;
        EXPECT_EQ(ticksOf(time), 12345U) << date;
    }
}

TEST(DateOfFileTime, ATimeAfter9999IsNoDate) {
    FILETIME last;
    ASSERT_TRUE(fileTimeOfDate(dateOf(9999, 12, 31), last));

    EXPECT_EQ(dateOfFileTime(last), dateOf(9999, 12, 31));
    EXPECT_EQ(dateOfFileTime(fileTimeOf(ticksOf(last) + ticksPerDay)), 0.0);
    EXPECT_EQ(dateOfFileTime(fileTimeOf(std::numeric_limits<std::uint64_t>::max())), 0.0);
}

TEST(FileTimes, EveryWholeDayComesBackExactly) {
    for (DATE day = dateOf(1601, 1, 1); day <= dateOf(2200, 12, 31); day += 1.0) {
        FILETIME time;
        ASSERT_TRUE(fileTimeOfDate(day, time));
        ASSERT_EQ(ticksOf(time) % ticksPerDay, 0U);
        ASSERT_EQ(dateOfFileTime(time), day);
    }
}

TEST(CurrentFileTime, IsWhatTheClockOfTheSystemShows) {
    const std::time_t before = std::time(nullptr);
    const FILETIME now = currentFileTime();
    const std::time_t after = std::time(nullptr);

    const auto seconds = static_cast<std::time_t>((ticksOf(now) - unixEpoch) / 10'000'000);
    EXPECT_GE(seconds, before);
    EXPECT_LE(seconds, after + 1);  // the coarser clock may lag behind the finer one
}
