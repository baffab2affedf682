#include <csignal>
#include <sys/resource.h>
#include <vector>

#include <gtest/gtest.h>

#include "tests/phonebook/SpeedDialBuilders.h"
#include "tests/support/TemporaryStore.h"

// Operations on slots that cannot be kept.

namespace PhoneBook {
namespace {

using speed_dial::dial;
using speed_dial::mobileType;
using speed_dial::Row;
using speed_dial::rows;
using speed_dial::wordOf;
using testing_support::contact;
using testing_support::OpenPhoneBook;
using testing_support::TemporaryStore;

using Rows = std::vector<Row>;

/// While this lives no file of the process can be written to, as on a full disk.
class FullDisk {
public:
    FullDisk() : formerHandler_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &former_);
        const rlimit none{0, former_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &none);
    }
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &former_);
        std::signal(SIGXFSZ, formerHandler_);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    void (*formerHandler_)(int);
    rlimit former_{};
};

/// What an operation answers while nothing can be written.
template <class Operation>
HRESULT onAFullDisk(Operation&& operation) {
    const FullDisk full;
    return operation();
}

TEST(SpeedDialUnits, AnOperationThatCannotBeKeptLeavesStoreAndCacheAsBefore) {
    const TemporaryStore store;
    OpenPhoneBook book;
    const DWORD kim = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")));
    SpeedDialInfo kept = dial(5).of(kim).name(TEXT("Kim")).mobile(TEXT("010-1"));
    ASSERT_EQ(S_OK, book->insertSpeedDialInfo(5, &kept));
    SpeedDialInfo marked = dial(7).of(kim).mobile(TEXT("010-7"));
    ASSERT_EQ(S_OK, book->writeSDialInfoCache(7, &marked));
    std::vector<SpeedDialInfo> before;
    for (DWORD slot = 0; slot < PhoneBookDBMgr::nSDialCacheSize_; ++slot)
        before.push_back(book->getSDialInfoCache(slot));

    const auto expectNothingKept = [&](const char* what, auto operation) {
        SCOPED_TRACE(what);
        SpeedDialInfo info = dial(6).of(kim).mobile(TEXT("010-1"));
        EXPECT_EQ(E_FAIL, onAFullDisk([&] { return operation(info); }));
        EXPECT_EQ((Rows{{5, mobileType, TEXT("0101")}}), rows());
        EXPECT_EQ(0x05u, wordOf(book.manager(), kim));
        for (DWORD slot = 0; slot < before.size(); ++slot)
            EXPECT_EQ(before[slot], book->getSDialInfoCache(slot)) << slot;
    };
    expectNothingKept("insert", [&](SpeedDialInfo& info) { return book->insertSpeedDialInfo(6, &info); });
    expectNothingKept("write", [&](SpeedDialInfo& info) { return book->writeSpeedDialInfo(5, &info); });
    expectNothingKept("delete", [&](SpeedDialInfo& info) { return book->deleteSpeedDialInfo(5, &info); });
    expectNothingKept("move", [&](SpeedDialInfo& info) { return book->moveSpeedDialInfo(5, 6, &info); });
    expectNothingKept("delete all", [&](SpeedDialInfo&) { return book->deleteAllSpeedDialInfos(); });
    expectNothingKept("flush", [&](SpeedDialInfo&) { return book->flushSDialInfoCache(); });
    expectNothingKept("delete the contact", [&](SpeedDialInfo&) { return book->deletePBRecord(kim); });
    expectNothingKept("delete all contacts", [&](SpeedDialInfo&) { return book->deleteAllPBRecords(); });

    EXPECT_EQ(S_OK, book->flushSDialInfoCache()) << "once there is room again";
    EXPECT_EQ((Rows{{5, mobileType, TEXT("0101")}, {7, mobileType, TEXT("0107")}}), rows());
}

}  // namespace
}  // namespace PhoneBook
