// A store that an earlier version has written opens in this one, with all that is in it, and serves on.

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tessera/platform/objectstore/ObjectStore.h"
#include "tessera/platform/objectstore/ObjectStoreFile.h"
#include "tests/phonebook/Calls.h"
#include "tests/phonebook/SpeedDialBuilders.h"
#include "tests/support/Builders.h"
#include "tests/support/Environment.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryStore.h"
#include "tests/upgrade/StoreText.h"

namespace upgrade_test {
namespace {

using namespace PhoneBook;
using testing::IsEmpty;
using testing_support::contact;
using testing_support::OpenPhoneBook;

/// The version of the format that this program writes.
constexpr int currentFormat = 2;
/// The identifier that was to be given next when the store was closed; the one before it is a deleted record's.
constexpr CEOID nextIdentifier = 41;

std::string kept(int format, const std::string& extension) {
    const std::string file = "store-format-" + std::to_string(format) + extension;
    return testing_support::readFile(std::filesystem::path(UPGRADE_FILES) / file);
}
std::string storeOf(int format) {
    return kept(format, ".db");
}

/// The kept store, or what became of its bytes, as a file of its own.
class CopiedStore {
public:
    explicit CopiedStore(const std::string& bytes) { testing_support::writeFile(path(), bytes); }
    ~CopiedStore() { ObjectStore::unmount(); }
    CopiedStore(const CopiedStore&) = delete;
    CopiedStore& operator=(const CopiedStore&) = delete;

    std::string path() const { return (folder_ / "store.db").string(); }
    bool mount() const { return ObjectStore::mount(path(), testing_support::quickOptions()) != FALSE; }
    const testing_support::TemporaryFolder& folder() const { return folder_; }

private:
    testing_support::TemporaryFolder folder_;
};

/// The store is of "en_US": whoever opens it, and wherever.
void liveIn(const char* locale) {
    testing_support::setVariable("LC_ALL", locale);
}

/// As of a program with another ICU, whose keys are not ours.
std::string withOtherCollation(std::string bytes) {
    const std::string locale = "en_US";
    const std::size_t version = bytes.find(locale) + locale.size();
    if (bytes.compare(version + 1, 1, ";") != 0) throw std::runtime_error("the collation is not where it was");
    bytes[version] = '0';
    return bytes;
}

constexpr std::size_t lastByteOfVersion = 63;

std::string ofNewerFormat(std::string bytes) {
    bytes[lastByteOfVersion] = currentFormat + 1;
    return bytes;
}

void requireDone(HRESULT result) {
    if (result != S_OK) throw std::runtime_error("result code " + std::to_string(result));
}

CString nameOfCaller(PhoneBookDBMgr& manager, const WCHAR* number) {
    PBRecord caller;
    caller.dwCITypeMask = aPBAttribute_[PBDBATTR_NAME].mask;
    return manager.queryCallerInfo(PhoneBookDBMgr::makeCNIP(number), &caller, nullptr) == S_OK ? caller.strName
                                                                                               : CString();
}

std::vector<std::string> findingsIn(const CopiedStore& store) {
    std::vector<std::string> findings;
    EXPECT_TRUE(ObjectStoreFile::check(store.path(), ObjectStoreFile::Depth::full, findings))
        << ObjectStore::errorText();
    return findings;
}

class StoreOfFormat : public testing::TestWithParam<int> {};

TEST_P(StoreOfFormat, HoldsAllThatItHeld) {
    liveIn("C.UTF-8");
    const CopiedStore store(storeOf(GetParam()));
    ASSERT_TRUE(store.mount()) << ObjectStore::errorText();

    EXPECT_EQ(textOfStore(), kept(GetParam(), ".txt"));
}

TEST_P(StoreOfFormat, KeepsItsOrderWhereverItIsOpened) {
    liveIn("ko_KR.UTF-8");  // Hangul comes before Latin letters
    const CopiedStore store(storeOf(GetParam()));
    ASSERT_TRUE(store.mount()) << ObjectStore::errorText();

    EXPECT_EQ(textOfStore(), kept(GetParam(), ".txt"));
}

TEST_P(StoreOfFormat, GetsItsKeysMadeAnewForAnotherCollation) {
    liveIn("C.UTF-8");
    const CopiedStore store(withOtherCollation(storeOf(GetParam())));
    ASSERT_TRUE(store.mount()) << ObjectStore::errorText();

    EXPECT_EQ(textOfStore(), kept(GetParam(), ".txt"));
    ObjectStore::unmount();
    EXPECT_NE(testing_support::readFile(store.path()).find("en_US2;"), std::string::npos);
}

TEST_P(StoreOfFormat, IsExaminedAsItIs) {
    const CopiedStore store(storeOf(GetParam()));

    EXPECT_THAT(findingsIn(store), IsEmpty());

    EXPECT_TRUE(testing_support::readFile(store.path()) == storeOf(GetParam()));
}

TEST_P(StoreOfFormat, IsOfThisFormatOnceItWasOpened) {
    const CopiedStore store(storeOf(GetParam()));
    ASSERT_TRUE(store.mount()) << ObjectStore::errorText();
    ObjectStore::unmount();

    EXPECT_EQ(testing_support::readFile(store.path()).at(lastByteOfVersion), currentFormat);
    EXPECT_THAT(findingsIn(store), IsEmpty());
}

TEST_P(StoreOfFormat, ServesOn) {
    liveIn("C.UTF-8");
    const CopiedStore store(storeOf(GetParam()));
    ASSERT_TRUE(store.mount()) << ObjectStore::errorText();
    DWORD oid = 0;
    {
        OpenPhoneBook book;
        EXPECT_EQ(nameOfCaller(book.manager(), TEXT("+82 10-2345-6789")), TEXT("김민수"));
        oid = book.add(contact().name(TEXT("newcomer")).mobile(TEXT("010-9999-0000")).group(TEXT("친구")));
        SpeedDialInfo slot = speed_dial::dial(3).of(oid).mobile(TEXT("010-9999-0000"));
        requireDone(book->writeSpeedDialInfo(3, &slot));
        CallEntry call = calls_test::call(200'000'000'000'000'000, TEXT("01099990000"));
        requireDone(book->insertCallEntry(&call));
        requireDone(book->deletePBRecord(17));
        requireDone(book->rejectPBGroup(TEXT("회사"), true));
    }
    ASSERT_TRUE(store.mount()) << ObjectStore::errorText();

    OpenPhoneBook book;
    EXPECT_EQ(oid, nextIdentifier);
    EXPECT_EQ(book->getNumRecords(), 8u);
    EXPECT_EQ(nameOfCaller(book.manager(), TEXT("010-9999-0000")), TEXT("newcomer"));
    EXPECT_EQ(nameOfCaller(book.manager(), TEXT("010-2345-6789")), TEXT(""));
    SpeedDialInfo slot;
    EXPECT_EQ(book->querySpeedDialInfo(3, &slot, true), S_OK);
    EXPECT_EQ(slot.strName, TEXT("newcomer"));
    EXPECT_EQ(book->querySpeedDialInfo(1, &slot, false), E_FAIL);  // went with its contact
    CallEntry call;
    EXPECT_EQ(book->getMRUCallEntry(&call), S_OK);
    EXPECT_EQ(call.strName, TEXT("newcomer"));
    PBGroupInfo group;
    EXPECT_EQ(book->queryAvailablePBGroup(TEXT("회사"), &group), S_OK);
    EXPECT_TRUE(group.bReject);
}

INSTANTIATE_TEST_SUITE_P(Versions, StoreOfFormat, testing::Range(1, currentFormat + 1),
                         [](const auto& version) { return std::to_string(version.param); });

TEST(StoreOfANewerFormat, IsRefusedAndStaysAsItWas) {
    const std::string newer = ofNewerFormat(storeOf(currentFormat));
    const CopiedStore store(newer);

    EXPECT_FALSE(store.mount());

    EXPECT_EQ(GetLastError(), ERROR_REVISION_MISMATCH);
    EXPECT_EQ(ObjectStore::errorText(), store.path() + ": it is a store of a newer version of Tessera");
    EXPECT_TRUE(testing_support::readFile(store.path()) == newer);
    const std::filesystem::directory_iterator files(store.folder().path());
    EXPECT_EQ(std::distance(begin(files), end(files)), 1);
}

}  // namespace
}  // namespace upgrade_test
