#include <fstream>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tests/support/Builders.h"
#include "tests/support/TemporaryStore.h"
#include "tests/support/Values.h"

// As many people as a table can count, and a few more.

namespace PhoneBook {
namespace {

using testing_support::contact;
using testing_support::OpenPhoneBook;
using testing_support::TemporaryStore;

constexpr int fullTable = 65'535;

WString digitsOf(int number) {
    const std::string digits = std::to_string(10'000'000 + number);
    return {digits.begin(), digits.end()};
}

WString nameOf(int person) {
    return TEXT("김") + digitsOf(person);
}

WString numberOf(int person) {
    return TEXT("010-") + digitsOf(person);
}

CString importFile(const TemporaryStore& store, int people) {
    WString text = TEXT("header\n");
    for (int person = 0; person < people; ++person)
        text += nameOf(person) + TEXT(",친구,,") + numberOf(person) + TEXT("\n");
    const std::filesystem::path path = store.folder() / "people.csv";
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(text.data()), static_cast<std::streamsize>(text.size() * sizeof(WCHAR)));
    return *textOfUtf8(path.string());
}

void expectIdentified(OpenPhoneBook& book, int person) {
    PBRecord record;
    record.dwCITypeMask = 0x10001;
    DWORD oid = 0;
    EXPECT_EQ(S_FALSE, book->queryCallerInfo(PhoneBookDBMgr::makeCNIP(numberOf(person).c_str()), &record, &oid));
    EXPECT_NE(0u, oid);
    EXPECT_EQ(CString(nameOf(person)), record.strName);
    EXPECT_EQ(CString(TEXT("친구")), record.strGroup);
}

int countOf(Database::Iterator* iterator) {
    const std::unique_ptr<Database::Iterator> owned(iterator);
    int count = 0;
    while (owned != nullptr && owned->next() == S_OK)
        ++count;
    return count;
}

TEST(LargePhoneBook, HoldsAFullTableOfPeopleAndMore) {
    const TemporaryStore store;
    OpenPhoneBook book;
    CString file = importFile(store, fullTable);
    ASSERT_EQ(S_OK, book->buildDBFromFile(file, 0));

    Database::Table* extension = book->getTable(PBDBTBL_PHONEBOOKEXT);
    EXPECT_EQ(DWORD{fullTable}, book->getNumRecords());
    EXPECT_EQ(DWORD{fullTable}, extension->getNumRecords());
    EXPECT_EQ(fullTable, countOf(book->getIterator(UINT{PBDBATTR_NAME}, nullptr, nullptr)));
    EXPECT_EQ(fullTable, countOf(book->searchPBRecord(PBDBATTR_NAME, CString(TEXT("ㄱ")))));
    for (const int person : {0, 32'768, fullTable - 1})
        expectIdentified(book, person);

    book.add(contact().name(nameOf(fullTable)).group(TEXT("친구")).mobile(numberOf(fullTable)));
    book.add(contact().name(nameOf(fullTable + 1)).group(TEXT("친구")).mobile(numberOf(fullTable + 1)));

    EXPECT_EQ(1u, extension->getNumRecords()) << "a table's count has 16 bits";
    EXPECT_EQ(DWORD{fullTable + 2}, book->getNumRecords()) << "the contacts' has not";
    EXPECT_EQ(fullTable + 2, countOf(book->searchPBRecord(PBDBATTR_NAME, CString(TEXT("ㄱ")))));
    expectIdentified(book, 0);
    expectIdentified(book, fullTable);
    expectIdentified(book, fullTable + 1);
}

}  // namespace
}  // namespace PhoneBook
