#include <algorithm>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tessera/database/ScanIterator.h"
#include "tessera/platform/base/Unicode.h"
#include "tests/database/FailingAllocation.h"
#include "tests/support/Builders.h"
#include "tests/support/TemporaryStore.h"
#include "tests/support/Values.h"

namespace Database {
namespace {

using PhoneBook::PBRecord;
using testing_support::contact;
using testing_support::FailingAllocation;
using testing_support::NoAllocation;
using testing_support::OpenPhoneBook;

constexpr DWORD nameMobileAndBell = 0x00100005;
constexpr const WCHAR* longName = TEXT("Kim with a name that needs memory of its own");
constexpr const WCHAR* longNumber = TEXT("010-1234-5678 and a tail");
constexpr const WCHAR* bell = TEXT("a bell of some length");
constexpr const WCHAR* reducedNumber = TEXT("01012345678");

/// A phone book with three contacts, each with an extension row.
class OutOfMemory : public testing::Test {
protected:
    OutOfMemory() {
        for (const WCHAR* name :
             {TEXT("Ann with a name that needs memory"), longName, TEXT("Lee with a name that needs memory")})
            oids.push_back(book.add(full(name)));
    }

    static contact full(const WCHAR* name) {
        return contact().name(name).group(TEXT("Friends and family")).mobile(longNumber).bell(bell);
    }
    POlDBTable& contacts() { return *static_cast<POlDBTable*>(book->getTable(PhoneBook::PBDBTBL_POLCONTACTS)); }

    /// Runs the operation with its first allocation failing, then with its second, and so on until it meets
    /// none that fails. Nothing may be thrown, and after each run the store must be sound.
    /// @param succeeded judges the run, and prepares the next; it allocates freely
    void failEachAllocation(const std::function<void()>& operation, const std::function<bool()>& succeeded) {
        for (long n = 1;; ++n) {
            SCOPED_TRACE("allocation " + std::to_string(n));
            bool failed = false;
            {
                const FailingAllocation failing(n);
                EXPECT_TRUE(returns(operation));
                failed = failing.happened();
            }
            const bool whole = succeeded();
            checkSound();
            if (HasFailure()) return;
            if (failed) continue;
            EXPECT_TRUE(whole) << "with all the memory that it wanted";
            EXPECT_GT(n, 1) << "nothing was allocated";
            return;
        }
    }

    /// The same for an operation that answers an iterator, or null.
    void failEachAllocationOf(const std::function<Iterator*()>& search, int expectedItems) {
        std::unique_ptr<Iterator> found;
        failEachAllocation([&] { found.reset(search()); },
                           [&] {
                               if (found == nullptr) return false;
                               EXPECT_EQ(expectedItems, found->getNumItems());
                               return true;
                           });
    }

    static bool returns(const std::function<void()>& operation) {
        try {
            operation();
        } catch (...) {
            return false;
        }
        return true;
    }

    /// Deletes the contacts from that name on.
    void removeFrom(const WCHAR* name) {
        CCeDBProp from = CCeDBProp::ofText(0, name);
        const std::unique_ptr<Iterator> doomed(contacts().getIterator(&from, nullptr));
        while (doomed != nullptr && doomed->getAt(0) != 0)
            doomed->deleteCur();
    }

    /// Every way to the contacts leads to the same ones, each with a name and a number.
    void checkSound() {
        const std::unique_ptr<Iterator> walked(contacts().getIterator(nullptr, nullptr));
        const std::unique_ptr<Iterator> scanned(contacts().getScanIterator(nullptr, 0, TEXT("")));
        ASSERT_NE(nullptr, walked);
        ASSERT_NE(nullptr, scanned);
        ASSERT_EQ(static_cast<int>(book->getNumRecords()), walked->getNumItems());
        ASSERT_EQ(walked->getNumItems(), scanned->getNumItems());
        while (walked->next() == S_OK) {
            ASSERT_EQ(S_OK, scanned->next());
            ASSERT_EQ(walked->getCur(), scanned->getCur());
            ASSERT_EQ(walked->getString(0), scanned->getString(0));
            ASSERT_FALSE(walked->getString(0).IsEmpty());
            ASSERT_EQ(CString(longNumber), walked->getString(2));
        }
    }

    testing_support::TemporaryStore store;
    OpenPhoneBook book;
    std::vector<DWORD> oids;
};

TEST_F(OutOfMemory, IteratorsOverAllContactsAreNullOrWhole) {
    failEachAllocationOf([&] { return contacts().getIterator(nullptr, nullptr); }, 3);
    failEachAllocationOf([&] { return book->getIterator(UINT{PhoneBook::PBDBATTR_NAME}, nullptr, nullptr); }, 3);
}

TEST_F(OutOfMemory, IteratorsBetweenBoundsAreNullOrWhole) {
    CCeDBProp from = CCeDBProp::ofText(0, TEXT("Kim with a name"));
    CCeDBProp to = CCeDBProp::ofText(0, TEXT("Kim with a name that needs memory of its own at last"));
    failEachAllocationOf([&] { return contacts().getIterator(0, &from, &to); }, 1);
    failEachAllocationOf([&] { return contacts().getIterator(0, &from, nullptr); }, 2);
    CCeDBProp number = CCeDBProp::ofText(0, longNumber);
    failEachAllocationOf([&] { return contacts().getIterator(2, &number, &number); }, 3);
}

TEST_F(OutOfMemory, IteratorsWithinAnEarlierResultAreNullOrWhole) {
    CCeDBProp from = CCeDBProp::ofText(0, TEXT("Kim with a name"));
    const std::unique_ptr<Iterator> all(contacts().getIterator(nullptr, nullptr));
    auto* within = static_cast<POlDBIterator*>(all.get());
    const CString restriction = TEXT("[FileAs] > \"Kim with a name that needs memory\"");
    failEachAllocationOf([&] { return contacts().getIterator(within, 0, &from, nullptr); }, 2);
    failEachAllocationOf([&] { return contacts().getIterator(within, restriction); }, 2);
    failEachAllocationOf([&] { return contacts().getIterator(nullptr, restriction); }, 2);
    failEachAllocationOf([&] { return book->searchPBRecord(within, 0, &from, nullptr); }, 2);
    failEachAllocationOf([&] { return book->searchPBRecord(restriction); }, 2);
    EXPECT_EQ(3, all->getNumItems());
}

TEST_F(OutOfMemory, SearchesAreNullOrWhole) {
    const CString name = TEXT("a name that needs memory of");
    const CString number = reducedNumber;
    failEachAllocationOf([&] { return contacts().getScanIterator(nullptr, 0, name); }, 1);
    failEachAllocationOf([&] { return contacts().getScanIterator(nullptr, SCANATTR_TELNO, number); }, 3);
    failEachAllocationOf([&] { return book->searchPBRecord(PhoneBook::PBDBATTR_NAME, name); }, 1);
    failEachAllocationOf([&] { return book->searchPBRecordOfTelNo(nullptr, number); }, 3);
}

TEST_F(OutOfMemory, ASearchThatFirstReadsAllContactsIsNullOrWhole) {
    const CString name = TEXT("with a name that needs memory");
    std::unique_ptr<Iterator> found;
    failEachAllocation([&] { found.reset(contacts().getScanIterator(nullptr, 0, name)); },
                       [&] {
                           const bool whole = found != nullptr;
                           EXPECT_EQ(whole ? 3 : 0, whole ? found->getNumItems() : 0);
                           found.reset();
                           book->closeDB();
                           store.remount();  // what was kept of the contacts is void
                           EXPECT_EQ(S_OK, book->openDB(nullptr));
                           return whole;
                       });
}

TEST_F(OutOfMemory, FieldsOfAnIteratorAreEmptyOrWhole) {
    const std::unique_ptr<Iterator> walked(contacts().getIterator(nullptr, nullptr));
    const std::unique_ptr<Iterator> scanned(contacts().getScanIterator(nullptr, 0, TEXT("")));
    for (Iterator* each : {walked.get(), scanned.get()}) {
        for (const int attr : {0, 2}) {
            CString text;
            const CString expected = attr == 0 ? longName : longNumber;
            failEachAllocation([&] { text = each->getStringAt(1, attr); },
                               [&] {
                                   EXPECT_TRUE(text.IsEmpty() || text == expected);
                                   return text == expected;
                               });
        }
    }
}

TEST_F(OutOfMemory, MovesOfAnIteratorAnswerACode) {
    const std::unique_ptr<Iterator> walked(
        contacts().getIterator(nullptr, CString(TEXT("[FileAs] > \"Ann with a nice\""))));
    ASSERT_NE(nullptr, walked);
    DWORD reached = 0;
    failEachAllocation([&] { reached = walked->getAt(0); },
                       [&] {
                           EXPECT_TRUE(reached == 0 || reached == oids[1]);
                           return reached != 0;
                       });
    HRESULT result = S_OK;
    failEachAllocation([&] { result = walked->deleteAt(0, true); }, [&] { return result == S_OK; });
    EXPECT_EQ(2, walked->getNumItems());
}

TEST_F(OutOfMemory, ARowIsInsertedWholeOrNotAtAll) {
    CObArray props;
    PBRecord record = full(TEXT("Park with a name that needs memory")).record();
    ASSERT_EQ(S_OK, book->getTableAttrsFromPBRecord(0, 0, record, props));
    CCeDBRecord row(props);
    book->clearObArray(props);
    DWORD count = contacts().getNumRecords();
    DWORD oid = 0;
    HRESULT result = S_OK;

    failEachAllocation([&] { result = contacts().insertRecord(&row, oid); },
                       [&] {
                           if (result == S_OK) ++count;
                           EXPECT_EQ(count, contacts().getNumRecords());
                           EXPECT_EQ(result == S_OK, std::exchange(oid, 0) != 0);
                           return result == S_OK;
                       });
}

TEST_F(OutOfMemory, ARowIsUpdatedWholeOrNotAtAll) {
    const auto rowNamed = [](const CString& name) {
        CCeDBRecord row;
        row.addProp(CCeDBProp::ofText(0, name));
        row.addProp(CCeDBProp::ofText(0, TEXT("Some categories;of some length")));
        row.addProp(CCeDBProp::ofText(0, longNumber));
        return row;
    };
    const auto storedName = [&] {
        const std::unique_ptr<Iterator> all(contacts().getIterator(nullptr, nullptr));
        return all->getStringAt(1, 0);
    };
    const CString wanted = TEXT("Kim with another name that needs memory");
    CCeDBRecord row = rowNamed(wanted);
    CCeDBRecord original = rowNamed(longName);
    HRESULT result = S_OK;

    failEachAllocation([&] { result = contacts().updateRecord(oids[1], &row, 0, nullptr); },
                       [&] {
                           EXPECT_EQ(result == S_OK ? wanted : CString(longName), storedName());
                           EXPECT_EQ(S_OK, contacts().updateRecord(oids[1], &original, 0, nullptr));
                           return result == S_OK;
                       });
}

TEST_F(OutOfMemory, CallerInfoIsWholeOrSaysThatItIsNot) {
    const CString number = reducedNumber;
    PBRecord record;
    record.dwCITypeMask = nameMobileAndBell;
    DWORD oid = 0;
    HRESULT result = S_OK;
    const auto isWhole = [&] {
        // What it is said to hold, it holds.
        const bool whole = SUCCEEDED(result) && record.dwCITypeMask == nameMobileAndBell;
        EXPECT_TRUE(!whole || record.strMobileTelephoneNumber == CString(longNumber));
        EXPECT_TRUE(!whole || record.strBell == CString(bell));
        record = PBRecord();
        record.dwCITypeMask = nameMobileAndBell;
        return whole;
    };
    failEachAllocation([&] { result = book->queryCallerInfo(number, &record, &oid); }, isWhole);
    failEachAllocation([&] { result = book->queryCallerInfo(oids[0], &record); }, isWhole);
}

TEST_F(OutOfMemory, AFindAnswersACode) {
    ComPtr<IDispatch> item;
    HRESULT result = S_OK;
    failEachAllocation([&] { result = contacts().find(TEXT("[FileAs] > \"Kim with a name\""), item.out()); },
                       [&] {
                           EXPECT_EQ(result == S_OK, bool{item});
                           return result == S_OK;
                       });
}

TEST_F(OutOfMemory, AnEntryIsInsertedOrItsIdentifierIsZero) {
    const PBRecord given = full(TEXT("Park with a name that needs memory")).record();
    PBRecord record = given;
    DWORD oid = 0;
    HRESULT result = S_OK;
    DWORD count = book->getNumRecords();
    failEachAllocation([&] { result = book->insertPBRecord(record, &oid); },
                       [&] {
                           const bool made = std::exchange(oid, 0) != 0;
                           if (made) ++count;
                           EXPECT_EQ(count, book->getNumRecords());
                           record = given;
                           return made && result == S_OK;
                       });
}

TEST_F(OutOfMemory, PropertiesOfARecordAreAllThereOrShowThatTheyAreNot) {
    const PBRecord given = full(longName).record();
    PBRecord record = given;
    CObArray props;
    HRESULT result = S_OK;
    failEachAllocation([&] { result = book->getTableAttrsFromPBRecord(0, oids[0], record, props); },
                       [&] {
                           const bool gap = std::ranges::find(props, nullptr) != props.end();
                           EXPECT_EQ(result == S_OK, props.GetSize() == 10);
                           book->clearObArray(props);
                           record = given;
                           return result == S_OK && !gap;
                       });
}

/// Counts the lines that became an entry.
class CountingListener : public PhoneBook::ImportListener {
public:
    void lineTried(int /*line*/, HRESULT /*result*/, DWORD oid) override { entries += oid != 0 ? 1 : 0; }
    void linesCommitted(int /*line*/) override {}

    DWORD entries = 0;
};

TEST_F(OutOfMemory, AnImportTellsWhichLinesBecameEntries) {
    const testing_support::TemporaryFolder folder;
    {
        std::ofstream out(folder / "three.csv", std::ios::binary);
        const WString line = TEXT("Park with a long name,Friends and family,,010-1234-5678 and a tail\n");
        for (const WCHAR unit : TEXT("header\n") + line + line + line)
            out.put(static_cast<char>(unit)).put(static_cast<char>(unit >> 8));
    }
    CString path = *textOfUtf8((folder / "three.csv").string());
    const DWORD before = book->getNumRecords();
    CountingListener listener;
    HRESULT result = S_OK;

    failEachAllocation([&] { result = book->buildDBFromFile(path, 0, &listener); },
                       [&] {
                           const DWORD added = book->getNumRecords() - before;
                           const DWORD told = std::exchange(listener.entries, 0);
                           EXPECT_TRUE(result != S_OK || added == told);
                           removeFrom(TEXT("Park"));
                           return result == S_OK && added == 3;
                       });
}

TEST_F(OutOfMemory, AThreadThatHasNothingYetIsTold) {
    bool begun = true;
    DWORD error = ERROR_SUCCESS;
    std::thread([&] {
        const NoAllocation none;
        ObjectStoreBatch batch;
        begun = batch.begun();
        error = GetLastError();
    }).join();

    EXPECT_FALSE(begun);
    EXPECT_EQ(ERROR_NOT_ENOUGH_MEMORY, error);
}

}  // namespace
}  // namespace Database
