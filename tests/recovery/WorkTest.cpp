// The work that the recovery tests do, and what they look at behind it: the same on every engine, and sound.

#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/phonebook/Following.h"
#include "tests/support/Builders.h"
#include "tests/support/MountKinds.h"
#include "tests/support/PhoneBookWork.h"
#include "tests/support/Seed.h"
#include "tests/support/StoreContents.h"

using namespace testing_support;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr unsigned operations = 400;

/// What work left: its deeds, and the store behind every so many of them.
struct Left {
    std::vector<PhoneBookDeed> deeds;
    std::vector<StoreContents> contents;
};

Left workOn(const MountKind& kind, unsigned seed) {
    const std::shared_ptr<void> store = kind.mount();
    OpenPhoneBook book;
    RandomChoices choices(seed);
    Left left;
    for (unsigned i = 0; i < operations; ++i) {
        left.deeds.push_back(doAnyPhoneBookOperation(book.manager(), choices));
        if (i % 50 == 49) left.contents.push_back(contentsOfStore());
    }
    return left;
}

std::string nameOf(const PhoneBookDeed& deed) {
    return deed.description.substr(0, deed.description.find('('));
}

class Work : public testing::TestWithParam<MountKind> {
protected:
    Work() : store_(GetParam().mount()) {}

    std::shared_ptr<void> store_;
};

INSTANTIATE_TEST_SUITE_P(Engines, Work, testing::ValuesIn(mountKinds),
                         [](const auto& kind) { return std::string(kind.param.name); });

void addRow(int tableId, CCeDBRecord row) {
    DWORD oid = 0;
    require(following::openBeside(static_cast<UINT>(tableId))->insertRecord(&row, oid));
}

CCeDBRecord extensionRowOf(CEOID contact) {
    for (const StoredRecord& row : contentsOfDatabase(PhoneBook::aszTableName_[1]).records) {
        if (row.properties.getProp(0x100).getUI4() == contact) return row.properties;
    }
    return {};
}

}  // namespace

TEST(PhoneBookWork, LeavesTheSameInAStoreInMemoryAndOnDisk) {
    const unsigned seed = seedOfTest();
    SCOPED_TRACE("seed " + std::to_string(seed));
    const Left inMemory = workOn(mountKinds[0], seed);
    const Left onDisk = workOn(mountKinds[1], seed);
    for (std::size_t i = 0; i < operations; ++i) {
        ASSERT_EQ(inMemory.deeds[i].description, onDisk.deeds[i].description) << "operation " << i;
        ASSERT_EQ(inMemory.deeds[i].result, onDisk.deeds[i].result) << i << ": " << inMemory.deeds[i].description;
    }
    for (std::size_t i = 0; i < inMemory.contents.size(); ++i)
        EXPECT_EQ("", differencesBetween(inMemory.contents[i], onDisk.contents[i]));
    EXPECT_TRUE(inMemory.contents == onDisk.contents);
}

TEST_P(Work, KeepsWhatMustHoldOfEveryPhoneBook) {
    const unsigned seed = seedOfTest();
    SCOPED_TRACE("seed " + std::to_string(seed));
    OpenPhoneBook book;
    RandomChoices choices(seed);
    for (unsigned i = 0; i < operations; ++i) {
        const PhoneBookDeed deed = doAnyPhoneBookOperation(book.manager(), choices);
        ASSERT_THAT(faultsOf(contentsOfStore()), IsEmpty()) << "operation " << i << ": " << deed.description;
    }
}

TEST(PhoneBookWork, SucceedsAtEveryKindOfOperationSoonerOrLater) {
    constexpr std::size_t kinds = 45;
    const unsigned seed = seedOfTest();
    SCOPED_TRACE("seed " + std::to_string(seed));
    const MemoryStoreMount store;
    OpenPhoneBook book;
    RandomChoices choices(seed);
    std::set<std::string> succeeded;
    for (unsigned i = 0; succeeded.size() < kinds && i < 100 * operations; ++i) {
        const PhoneBookDeed deed = doAnyPhoneBookOperation(book.manager(), choices);
        if (deed.result == S_OK) succeeded.insert(nameOf(deed));
    }
    EXPECT_EQ(kinds, succeeded.size()) << testing::PrintToString(succeeded);
}

TEST_P(Work, FindsRowsThatBreakTheRules) {
    OpenPhoneBook book;
    const CEOID kim = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")).group(TEXT("Family")));
    ASSERT_THAT(faultsOf(contentsOfStore()), IsEmpty());

    CCeDBRecord second = extensionRowOf(kim);
    addRow(PhoneBook::PBDBTBL_PHONEBOOKEXT, second);
    EXPECT_THAT(faultsOf(contentsOfStore()), ElementsAre(HasSubstr("a second extension row")));

    require(book->deletePBRecord(kim));
    EXPECT_THAT(faultsOf(contentsOfStore()), ElementsAre(HasSubstr("without its contact")));
}

TEST_P(Work, FindsMoreCallsThanTheHistoryKeeps) {
    OpenPhoneBook book;
    PhoneBook::CallEntry call;
    for (DWORD i = 0; i < PhoneBook::nMaxCallEntries_; ++i)
        require(book->insertCallEntry(&call));
    ASSERT_THAT(faultsOf(contentsOfStore()), IsEmpty());
    const StoredDatabase calls = contentsOfDatabase(PhoneBook::aszTableName_[PhoneBook::PBDBTBL_CALLHISTORY]);
    addRow(PhoneBook::PBDBTBL_CALLHISTORY, calls.records.front().properties);
    EXPECT_THAT(faultsOf(contentsOfStore()), ElementsAre(HasSubstr("too many calls")));
}

TEST_P(Work, FindsADifferenceInASingleProperty) {
    OpenPhoneBook book;
    const CEOID kim = book.add(contact().name(TEXT("Kim")).group(TEXT("Family")));
    const StoreContents before = contentsOfStore();
    EXPECT_EQ("", differencesBetween(before, contentsOfStore()));
    EXPECT_TRUE(before == contentsOfStore());
    PhoneBook::PBRecord renamed = contact().name(TEXT("Lim")).record();
    require(book->updatePBRecord(kim, renamed));
    EXPECT_FALSE(before == contentsOfStore());
    EXPECT_THAT(differencesBetween(before, contentsOfStore()), HasSubstr("\"Lim\""));
}
