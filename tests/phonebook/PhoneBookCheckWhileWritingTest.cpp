#include <chrono>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/phonebook/CheckedPhoneBook.h"
#include "tests/support/Forked.h"
#include "tests/support/TemporaryStore.h"

// A phone book that other processes write to while it is checked.

namespace PhoneBook::check_test {
namespace {

using testing::IsEmpty;
using testing_support::contact;
using testing_support::Forked;
using testing_support::Line;
using testing_support::TemporaryFolder;

void mountStoreIn(const TemporaryFolder& folder) {
    ObjectStore::Options options = testing_support::quickOptions();
    options.writerWait = std::chrono::milliseconds(30'000);
    if (!ObjectStore::mount((folder / "store.db").string(), options))
        throw std::runtime_error(ObjectStore::errorText());
}

/// So that reading them takes longer than writing one.
constexpr int otherContacts = 300;

/// Adds contacts with their rows and takes them away again, each as one unit, until the process is killed.
[[noreturn]] void addAndDelete(const TemporaryFolder& folder, Line& parent) {
    mountStoreIn(folder);
    testing_support::OpenPhoneBook book;
    for (int i = 0; i < otherContacts; ++i)
        book.add(contact().name(TEXT("Lee")).group(TEXT("회사")));
    parent.say(true);
    while (true) {
        const DWORD oid = book.add(contact().name(TEXT("Kim")).group(TEXT("친구")).mobile(TEXT("010-1")));
        if (book->deletePBRecord(oid) != S_OK) throw std::runtime_error("a contact was not deleted");
    }
}

TEST(PhoneBookCheckWhileWriting, SeesNoContactWithoutItsRow) {
    const TemporaryFolder folder;
    Forked writer([&](Line& parent) { addAndDelete(folder, parent); });
    writer.line().hear<bool>();
    mountStoreIn(folder);
    {
        CheckedPhoneBook book;
        for (int i = 0; i < 15; ++i)
            EXPECT_THAT(book.examine(), IsEmpty());
    }
    ObjectStore::unmount();
}

TEST(PhoneBookCheckWhileWriting, DoesNotMendWithoutTheTurnForWriting) {
    const TemporaryFolder folder;
    mountStoreIn(folder);
    { const testing_support::OpenPhoneBook made; }
    addExtensionRow(4711);
    ObjectStore::unmount();
    Forked writer([&](Line& parent) {
        mountStoreIn(folder);
        ObjectStoreBatch unit;
        parent.say(unit.begun());
        parent.hear<bool>();
    });
    ASSERT_TRUE(writer.line().hear<bool>());
    ObjectStore::Options options;
    options.writerWait = std::chrono::milliseconds(20);
    ASSERT_TRUE(ObjectStore::mount((folder / "store.db").string(), options));
    {
        PhoneBookDBMgr manager;
        ASSERT_EQ(S_OK, manager.openDB(nullptr));
        PhoneBookCheck check(manager);
        Findings mended(1);
        Findings left(1);
        EXPECT_EQ(E_FAIL, check.mend(mended, left));
        EXPECT_EQ(ERROR_LOCK_VIOLATION, GetLastError());
        EXPECT_THAT(mended, IsEmpty());
        EXPECT_THAT(left, IsEmpty());
        EXPECT_EQ(S_OK, check.examine(left)) << "to look takes no turn";
        EXPECT_EQ(1u, left.size());
    }
    ObjectStore::unmount();
    writer.line().say(true);
    EXPECT_EQ(0, writer.wait());
}

}  // namespace
}  // namespace PhoneBook::check_test
