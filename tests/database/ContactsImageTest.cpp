#include <algorithm>
#include <atomic>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tessera/database/POlDBTable.h"
#include "tests/database/ScannedContacts.h"
#include "tests/support/Builders.h"
#include "tests/support/TemporaryStore.h"
#include "tests/support/Values.h"

namespace Database {
namespace {

using testing_support::contact;
using testing_support::OpenPhoneBook;
using testing_support::TemporaryStore;

TEST(ContactsImage, AContactThatMovedWhileAllWereReadIsRemovedWhole) {
    ContactsImage image;
    image.append(scanned(7, "a", "1"));
    image.append(scanned(3, "b", "2"));
    image.append(scanned(7, "c", "3"));  // read at its old place and then at its new one

    image.remove(7);

    EXPECT_EQ(everybody(image), std::vector<DWORD>{3});
    EXPECT_TRUE(image.matchingNumber(TEXT("1")).empty());
    EXPECT_TRUE(image.matchingNumber(TEXT("3")).empty());
    EXPECT_EQ(image.size(), 1u);
}

TEST(ContactsImage, AContactThatMovedWhileAllWereReadIsPutOnce) {
    ContactsImage image;
    image.append(scanned(7, "a"));
    image.append(scanned(3, "b"));
    image.append(scanned(7, "c"));

    image.put(scanned(7, "d"));

    EXPECT_EQ(everybody(image), (std::vector<DWORD>{3, 7}));
}

TEST(ContactsImage, AKeyWithAZeroFindsNothing) {
    ContactsImage image;
    image.append(scanned(1, "kim"));
    image.append(scanned(2, "lee"));
    EXPECT_TRUE(image.matchingName(CString(TEXT("\0"), 1)).empty());
    EXPECT_TRUE(image.matchingName(CString(TEXT("m\0l"), 3)).empty());
    EXPECT_TRUE(image.matchingNumber(CString(TEXT("\0"), 1)).empty());
}

/// Renames contacts over and over, a few in each batch, so that they change places in name order.
void renameUntil(const std::atomic<bool>& finished, const std::vector<DWORD>& oids) {
    OpenPhoneBook book;
    auto& contacts = *static_cast<POlDBTable*>(book->getTable(0));
    for (std::size_t round = 0; !finished; ++round) {
        ObjectStoreBatch batch;
        for (std::size_t i = 0; i < 20; ++i) {
            const std::size_t turn = round * 20 + i;
            CCeDBRecord row;
            row.addProp(CCeDBProp::ofText(0, (turn / oids.size()) % 2 == 0 ? TEXT("Zoe") : TEXT("Ann")));
            static_cast<void>(contacts.updateRecord(oids[turn * 7 % oids.size()], &row, 0, nullptr));
        }
    }
}

TEST(SharedContactsImage, ASearchMeetsEveryContactOnceWhoeverRenamesThemMeanwhile) {
    const TemporaryStore store;
    OpenPhoneBook book;
    std::vector<DWORD> oids;
    {
        ObjectStoreBatch batch;
        for (int i = 0; i < 1'501; ++i)
            oids.push_back(book.add(contact().name(TEXT("Ann"))));
    }
    std::atomic<bool> finished = false;
    std::thread writer([&] { renameUntil(finished, oids); });

    for (int search = 0; search < 60; ++search) {
        const std::unique_ptr<Iterator> all(book->searchPBRecord(PhoneBook::PBDBATTR_NAME, CString()));
        std::multiset<DWORD> met;
        while (all != nullptr && all->next() == S_OK)
            met.insert(all->getCur());
        EXPECT_EQ(met, std::multiset<DWORD>(oids.begin(), oids.end())) << "search " << search;
        if (testing::Test::HasFailure()) break;
    }
    finished = true;
    writer.join();
}

}  // namespace
}  // namespace Database
