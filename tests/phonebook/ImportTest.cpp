#include <chrono>
#include <fstream>
#include <stdexcept>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tests/support/Builders.h"
#include "tests/support/TemporaryStore.h"
#include "tests/support/Values.h"

namespace PhoneBook {
namespace {

using testing_support::MemoryStoreMount;
using testing_support::OpenPhoneBook;
using testing_support::TemporaryFolder;

class Import : public testing::Test {
protected:
    /// Writes the text as UTF-16LE; answers the path.
    CString file(const std::string& name, WStringView text) {
        std::ofstream out(folder / name, std::ios::binary);
        for (const WCHAR unit : text)
            out.put(static_cast<char>(unit)).put(static_cast<char>(unit >> 8));
        return path(name);
    }
    CString path(const std::string& name) { return (folder / name).generic_string<WCHAR>().c_str(); }

    HRESULT import(CString from, int mode = 0, ImportListener* listener = nullptr) {
        return book->buildDBFromFile(from, mode, listener);
    }
    /// All contacts in name order.
    std::vector<PBRecord> contacts() {
        std::vector<PBRecord> records;
        const std::unique_ptr<Database::Iterator> all(book->getIterator(UINT{PBDBATTR_NAME}, nullptr, nullptr));
        while (all != nullptr && all->next() == S_OK) {
            PBRecord record;
            record.dwCITypeMask = 0x007F0FFF;
            EXPECT_GE(book->queryCallerInfo(all->getCur(), &record), 0);
            records.push_back(record);
        }
        return records;
    }

    TemporaryFolder folder;
    MemoryStoreMount store;
    OpenPhoneBook book;
};

TEST_F(Import, AnEntryLineMakesAContactAndItsExtensionRow) {
    EXPECT_EQ(S_OK, import(file("a.csv", TEXT("header\nKim,Friends,,0101234567\n"))));
    const auto all = contacts();
    ASSERT_EQ(1u, all.size());
    EXPECT_EQ(CString(TEXT("Kim")), all[0].strName);
    EXPECT_EQ(CString(TEXT("0101234567")), all[0].strMobileTelephoneNumber);
    EXPECT_EQ(CString(TEXT("Friends")), all[0].strCategories);
    EXPECT_EQ(CString(TEXT("Friends")), all[0].strGroup);
    EXPECT_EQ(1u, book->getTable(PBDBTBL_PHONEBOOKEXT)->getNumRecords());
}

TEST_F(Import, EachColumnFillsItsField) {
    EXPECT_EQ(S_OK, import(file("a.csv",
                                TEXT("header\n김민수,가족,ignored,010-1,02-2,031-3,k@x.kr,av,ph,ding,1990-03-05,0x1c,")
                                    TEXT("012-4,02-5,note,513,0x10,more,and more\n"))));
    const auto all = contacts();
    ASSERT_EQ(1u, all.size());
    const PBRecord& kim = all[0];
    EXPECT_EQ(CString(TEXT("가족")), kim.strCategories);
    EXPECT_EQ(CString(TEXT("02-2")), kim.strHomeTelephoneNumber);
    EXPECT_EQ(CString(TEXT("031-3")), kim.strBusinessTelephoneNumber);
    EXPECT_EQ(CString(TEXT("k@x.kr")), kim.strEmail1Address);
    EXPECT_EQ(CString(TEXT("av")), kim.strAvatar);
    EXPECT_EQ(CString(TEXT("ph")), kim.strPhoto);
    EXPECT_EQ(CString(TEXT("ding")), kim.strBell);
    EXPECT_EQ(32'937.0, kim.dtBirthday);
    EXPECT_EQ(0x1Cu, kim.dwCallingScreen);
    EXPECT_EQ(CString(TEXT("012-4")), kim.strPagerNumber);
    EXPECT_EQ(CString(TEXT("02-5")), kim.strBusinessFaxNumber);
    EXPECT_EQ(CString(TEXT("")), kim.strBody) << "the notes are never written";
    EXPECT_EQ(513u, kim.dwPrivate);
    EXPECT_EQ(0x10u, kim.dwPrimaryTelephoneNumber);
}

TEST_F(Import, TheHeaderAloneMakesNothing) {
    EXPECT_EQ(S_OK, import(file("a.csv", TEXT("name,group\n"))));
    EXPECT_EQ(S_OK, import(file("b.csv", TEXT("name,group"))));
    EXPECT_EQ(S_OK, import(file("c.csv", TEXT(""))));
    EXPECT_EQ(0u, book->getNumRecords());
}

TEST_F(Import, TheLastLineNeedsNoEnd) {
    EXPECT_EQ(S_OK, import(file("a.csv", TEXT("header\nKim\nLee"))));
    EXPECT_EQ(2u, book->getNumRecords());
}

TEST_F(Import, AnEmptyLineMakesAnEmptyContact) {
    EXPECT_EQ(S_OK, import(file("a.csv", TEXT("header\n\nKim\n"))));
    EXPECT_EQ(2u, book->getNumRecords());
}

TEST_F(Import, ACarriageReturnStaysInTheLastValue) {
    EXPECT_EQ(S_OK, import(file("a.csv", TEXT("header\r\nKim,Friends\r\nLee,,,,,,,,,,,28\r\n"))));
    const auto all = contacts();
    ASSERT_EQ(2u, all.size());
    EXPECT_EQ(CString(TEXT("Friends\r")), all[0].strGroup);
    EXPECT_EQ(28u, all[1].dwCallingScreen) << "a number does not mind it";
}

TEST_F(Import, ADateThatIsNoneIsNoBirthday) {
    EXPECT_EQ(S_OK, import(file("a.csv", TEXT("header\nKim,,,,,,,,,,some day\n"))));
    const auto all = contacts();
    ASSERT_EQ(1u, all.size());
    EXPECT_EQ(0u, all[0].dwCITypeMask & 0x200);
}

TEST_F(Import, AnEmptyValueIsNoField) {
    EXPECT_EQ(S_OK, import(file("a.csv", TEXT("header\nKim,,,,,,,,,,,,,,,,\n"))));
    const auto all = contacts();
    ASSERT_EQ(1u, all.size());
    EXPECT_EQ(PhoneBookDBMgr::getCITypeMaskFromPBDBAttrID(PBDBATTR_NAME), all[0].dwCITypeMask);
    EXPECT_EQ(0u, book->getTable(PBDBTBL_PHONEBOOKEXT)->getNumRecords()) << "nothing asks for an extension row";
}

TEST_F(Import, ANumberBeyondASignedOneIsHeldAtTheLargest) {
    EXPECT_EQ(S_OK, import(file("a.csv", TEXT("header\nKim,,,,,,,,,,,4294967295\nLee,,,,,,,,,,,-1\n"))));
    const auto all = contacts();
    ASSERT_EQ(2u, all.size());
    EXPECT_EQ(0x7FFFFFFFu, all[0].dwCallingScreen);
    EXPECT_EQ(0xFFFFFFFFu, all[1].dwCallingScreen);
}

TEST_F(Import, TheTextEndsAtItsFirstZero) {
    EXPECT_EQ(S_OK, import(file("a.csv", WStringView(TEXT("header\nKim\nLe\0e\nPark\n"), 20))));
    EXPECT_EQ(2u, book->getNumRecords());
}

TEST_F(Import, TheOddByteAtTheEndIsNoPartOfTheText) {
    file("a.csv", TEXT("header\nKim\n"));
    std::ofstream(folder / "a.csv", std::ios::binary | std::ios::app).put('x');
    EXPECT_EQ(S_OK, import(path("a.csv")));
    EXPECT_EQ(1u, book->getNumRecords());
}

TEST_F(Import, AFileThatCannotBeOpenedFails) {
    EXPECT_EQ(E_FAIL, import(path("missing.csv")));
    EXPECT_EQ(E_FAIL, import(path("")));
    std::filesystem::create_directory(folder / "folder.csv");
    EXPECT_EQ(E_FAIL, import(path("folder.csv")));
    EXPECT_EQ(0u, book->getNumRecords());
}

TEST_F(Import, RowsGoIntoTheTableThatTheFileIsNamedFor) {
    EXPECT_EQ(
        S_OK,
        import(file("QZ_SpeedDialNo.csv", TEXT("id,type,number,flags\n7,0x4,0101234,7\n010,8,02,7,more\n9,4\n")), 1));
    EXPECT_EQ(2u, book->getTable(PBDBTBL_SPEEDDIALNO)->getNumRecords()) << "a line with too few values is passed over";
    CString number;
    EXPECT_EQ(S_OK, book->queryCID(7, &number));
    EXPECT_EQ(CString(TEXT("0101234")), number);
    EXPECT_EQ(S_OK, book->queryCID(8, &number)) << "a leading zero means octal";
    EXPECT_EQ(0u, book->getNumRecords());
}

TEST_F(Import, RowsOfContactsAreWrittenByPosition) {
    EXPECT_EQ(S_OK, import(file("QZ_POlContacts.csv",
                                TEXT("h\nKim,A;B,010-1,02-2,031-3,k@x.kr,note,1990-03-05,012-4,02-5\nLee,too few\n")),
                           1));
    const auto all = contacts();
    ASSERT_EQ(1u, all.size());
    EXPECT_EQ(CString(TEXT("A,B")), all[0].strCategories);
    EXPECT_EQ(CString(TEXT("010-1")), all[0].strMobileTelephoneNumber);
    EXPECT_EQ(CString(TEXT("02-5")), all[0].strBusinessFaxNumber);
    EXPECT_EQ(0u, all[0].dwCITypeMask & 0x300) << "neither notes nor, as a number that is no text, a birthday";
    EXPECT_EQ(0u, book->getTable(PBDBTBL_PHONEBOOKEXT)->getNumRecords());
}

TEST_F(Import, RowsTakeTheirValuesByType) {
    EXPECT_EQ(S_OK, import(file("QZ_AvailablePBGroup.csv", TEXT("h\n4000000000,Family,1,cat,bell,sms,12\n")), 1));
    const std::unique_ptr<Database::Iterator> rows(
        book->getIterator(UINT{PBDBTBL_AVAILABLEPBGROUP}, 0, nullptr, nullptr));
    CCeDBRecord row;
    ASSERT_EQ(S_OK, rows->getRecordAt(0, &row));
    EXPECT_EQ(4'000'000'000u, row.findProp(768)->getUI4());
    EXPECT_EQ(CString(TEXT("Family")), row.findProp(769)->getText());
    EXPECT_TRUE(row.findProp(770)->getBool());
    EXPECT_EQ(0u, row.findProp(774)->getUI2()) << "an unsigned 16-bit column receives no value";
}

TEST_F(Import, NumbersThatNoColumnHoldsAreCut) {
    EXPECT_EQ(S_OK, import(file("QZ_SpeedDialNo.csv", TEXT("h\n2147483648,4,1,7\n")), 1));
    EXPECT_EQ(S_OK, import(file("QZ_AvailablePBGroup.csv", TEXT("h\n1,Family,-1,cat,bell,sms,12\n")), 1));
    const auto firstRowOf = [this](UINT table) {
        const std::unique_ptr<Database::Iterator> rows(book->getIterator(table, 0, nullptr, nullptr));
        CCeDBRecord row;
        EXPECT_EQ(S_OK, rows->getRecordAt(0, &row));
        return row;
    };
    EXPECT_EQ(-1, firstRowOf(PBDBTBL_SPEEDDIALNO).findProp(512)->getI2()) << "the low half of the largest signed one";
    EXPECT_TRUE(firstRowOf(PBDBTBL_AVAILABLEPBGROUP).findProp(770)->getBool()) << "whatever is not 0";
}

TEST_F(Import, OnlyAForwardSlashSeparatesTheFileName) {
    const CString text = file("QZ_SpeedDialNo.csv", TEXT("h\n7,4,1,7\n"));
    CString backslashes = TEXT("\\My Documents\\QZ_SpeedDialNo.csv");
    EXPECT_EQ(E_FAIL, book->buildDBFromFile(backslashes, 1));
    EXPECT_EQ(E_FAIL, import(file("qz_speeddialno.csv", TEXT("h\n7,4,1,7\n")), 1)) << "case counts";
    EXPECT_EQ(E_FAIL, import(file("QZ_PhoneBook.csv", TEXT("h\n")), 1));
    EXPECT_EQ(S_OK, import(text, 1));
}

TEST_F(Import, EveryModeButZeroWantsATablesName) {
    EXPECT_EQ(E_FAIL, import(file("people.csv", TEXT("h\nKim\n")), 2));
    EXPECT_EQ(0u, book->getNumRecords());
    EXPECT_EQ(S_OK, import(file("QZ_CallHistory.csv", TEXT("h\nKim\n")), 2));
    EXPECT_EQ(1u, book->getNumRecords()) << "entries all the same";
}

class Recorder : public ImportListener {
public:
    void lineTried(int line, HRESULT result, CEOID oid) override {
        lines.push_back(line);
        results.push_back(result);
        if (FAILED(result) || oid == 0) failed.push_back(line);
    }
    void linesCommitted(int line) override { committed.push_back(line); }

    std::vector<int> lines;
    std::vector<HRESULT> results;
    std::vector<int> failed;
    std::vector<int> committed;
};

TEST_F(Import, AListenerLearnsWhatBecameOfEachLine) {
    Recorder recorder;
    const WString huge(40'000, u'x');
    EXPECT_EQ(S_OK, import(file("a.csv", TEXT("header\nKim\n") + huge + TEXT("\nLee\n")), 0, &recorder));
    EXPECT_EQ((std::vector<int>{2, 3, 4}), recorder.lines);
    EXPECT_EQ((std::vector<int>{3}), recorder.failed);
    ASSERT_FALSE(recorder.committed.empty());
    EXPECT_EQ(4, recorder.committed.back());
    EXPECT_EQ(2u, book->getNumRecords());
}

TEST_F(Import, ALineWithTooFewValuesForItsTableIsInvalid) {
    Recorder recorder;
    EXPECT_EQ(S_OK, import(file("QZ_SpeedDialNo.csv", TEXT("h\n9,4,1\n7,4,1,7\n")), 1, &recorder));
    EXPECT_EQ((std::vector<HRESULT>{E_INVALIDARG, S_OK}), recorder.results);
}

TEST_F(Import, CommitsAtLeastEveryThousandLines) {
    WString text = TEXT("header\n");
    for (int i = 0; i < 2'500; ++i)
        text += TEXT("Kim\n");
    Recorder recorder;
    EXPECT_EQ(S_OK, import(file("a.csv", text), 0, &recorder));
    ASSERT_GE(recorder.committed.size(), 3u);
    EXPECT_LE(recorder.committed[0], 1'001);
    EXPECT_EQ(2'501, recorder.committed.back());
    EXPECT_EQ(2'500u, book->getNumRecords());
}

/// Takes its time over the first line.
class SlowRecorder : public Recorder {
public:
    void lineTried(int line, HRESULT result, CEOID oid) override {
        if (lines.empty()) std::this_thread::sleep_for(std::chrono::milliseconds(250));
        Recorder::lineTried(line, result, oid);
    }
};

TEST_F(Import, CommitsALineThatTookAQuarterOfASecondBeforeTheNext) {
    SlowRecorder recorder;
    EXPECT_EQ(S_OK, import(file("a.csv", TEXT("header\nKim\nLee\nPark\n")), 0, &recorder));
    ASSERT_GE(recorder.committed.size(), 2u);
    EXPECT_EQ(2, recorder.committed.front());
    EXPECT_EQ(4, recorder.committed.back());
}

class ThrowingRecorder : public Recorder {
public:
    void lineTried(int line, HRESULT result, CEOID oid) override {
        Recorder::lineTried(line, result, oid);
        throw std::runtime_error("the listener has had enough");
    }
};

TEST_F(Import, EndsWithAFailureWhenItsListenerThrows) {
    ThrowingRecorder recorder;
    EXPECT_EQ(E_FAIL, import(file("a.csv", TEXT("header\nKim\nLee\n")), 0, &recorder));
    EXPECT_EQ((std::vector<int>{2}), recorder.lines);
    EXPECT_TRUE(recorder.committed.empty());
}

/// Has the storage fail at the last of three lines.
class FailingRecorder : public Recorder {
public:
    void lineTried(int line, HRESULT result, CEOID oid) override {
        Recorder::lineTried(line, result, oid);
        if (line == 4) ObjectStoreBatch::giveUp();
    }
};

TEST_F(Import, FailsAndTellsOfNoCommitWhenItsLinesCouldNotBeMadeDurable) {
    FailingRecorder recorder;
    EXPECT_EQ(E_FAIL, import(file("a.csv", TEXT("header\nKim\nLee\nPark\n")), 0, &recorder));
    EXPECT_EQ((std::vector<int>{2, 3, 4}), recorder.lines);
    EXPECT_TRUE(recorder.failed.empty()) << "each line was written";
    const int committed = recorder.committed.empty() ? 1 : recorder.committed.back();
    EXPECT_LT(committed, 4);
    EXPECT_EQ(committed - 1, static_cast<int>(book->getNumRecords()));
}

}  // namespace
}  // namespace PhoneBook
