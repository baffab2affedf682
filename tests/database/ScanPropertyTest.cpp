#include <memory>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "tessera/database/POlDBTable.h"
#include "tessera/database/ScanIterator.h"
#include "tests/support/Builders.h"
#include "tests/support/NaiveScan.h"
#include "tests/support/TemporaryStore.h"
#include "tests/support/Values.h"

// The fast searches against a plain reading of their definition, on random phone books that change.

namespace Database {
namespace {

using testing_support::contact;
using testing_support::MemoryStoreMount;
using testing_support::NaiveMatch;
using testing_support::OpenPhoneBook;
using testing_support::TemporaryStore;

/// Few characters, so that keys are found: Hangul with plain and tense initials, Latin in both cases, blanks.
rc::Gen<WString> nameText(std::size_t atMost) {
    const auto character = rc::gen::element<WCHAR>(u'김', u'까', u'민', u'수', u'이', u'각', u'A', u'a', u'b', u'K',
                                                   u' ', u',', u'\t', u'ㄱ', u'É', u'é');
    return rc::gen::mapcat(rc::gen::inRange<std::size_t>(0, atMost + 1),
                           [character](std::size_t length) { return rc::gen::container<WString>(length, character); });
}

rc::Gen<WString> keyText() {
    const auto consonant = rc::gen::element<WCHAR>(u'ㄱ', u'ㄲ', u'ㅁ', u'ㅅ', u'ㅇ', u'ㄳ', u'\u1100', u'\u1106');
    const auto consonants = rc::gen::container<WString>(consonant);
    return rc::gen::oneOf(nameText(3), rc::gen::resize(4, consonants));
}

rc::Gen<WString> numberText() {
    const auto character = rc::gen::element<WCHAR>(u'0', u'1', u'2', u'0', u'1', u'-', u' ', u'+', u'P', u'#', u'x');
    return rc::gen::resize(8, rc::gen::container<WString>(character));
}

rc::Gen<WString> groupText() {
    return rc::gen::element<WString>(TEXT(""), TEXT("A"), TEXT("a"), TEXT("A, a"), TEXT("가족"));
}

std::vector<NaiveMatch> matchesOf(Iterator* made) {
    const std::unique_ptr<Iterator> found(made);
    std::vector<NaiveMatch> matches;
    while (found != nullptr && found->next() == S_OK)
        matches.emplace_back(found->getCur(), found->getString(0));
    return matches;
}

/// 0 when nobody has the number.
DWORD callerOf(OpenPhoneBook& book, const CString& number) {
    PhoneBook::PBRecord caller;
    caller.dwCITypeMask = PhoneBook::aPBAttribute_[PhoneBook::PBDBATTR_PRIVATE].mask;  // told along with the identifier
    DWORD oid = 0;
    static_cast<void>(book->queryCallerInfo(number, &caller, &oid));
    return oid;
}

contact someContact() {
    contact built;
    if (*rc::gen::inRange(0, 10) != 0) built.name(*nameText(6));
    if (*rc::gen::arbitrary<bool>()) built.group(*groupText());
    if (*rc::gen::arbitrary<bool>()) built.mobile(*numberText());
    if (*rc::gen::arbitrary<bool>()) built.home(*numberText());
    if (*rc::gen::inRange(0, 4) == 0) built.business(*numberText()).pager(*numberText()).fax(*numberText());
    return built;
}

void changeSomething(OpenPhoneBook& book, std::vector<DWORD>& oids) {
    const bool remove = !oids.empty() && *rc::gen::inRange(0, 3) == 0;
    const bool change = !remove && !oids.empty() && *rc::gen::inRange(0, 2) == 0;
    POlDBTable& contacts = *static_cast<POlDBTable*>(book->getTable(0));
    if (!remove && !change) {
        oids.push_back(book.add(someContact()));
        return;
    }
    const auto at = *rc::gen::inRange<std::size_t>(0, oids.size());
    if (remove) {
        RC_ASSERT(contacts.deleteRecord(oids[at]) == S_OK);
        oids.erase(oids.begin() + static_cast<std::ptrdiff_t>(at));
        return;
    }
    PhoneBook::PBRecord record = someContact().categories(TEXT("")).record();
    CObArray props;
    book->getTableAttrsFromPBRecord(PhoneBook::PBDBTBL_POLCONTACTS, 0, record, props);
    CCeDBRecord row(props);
    book->clearObArray(props);
    RC_ASSERT(contacts.updateRecord(oids[at], &row, 0, nullptr) == S_OK);
}

/// Holds searches in between changes against the plain reading, on the mounted store.
void searchWhileChanging() {
    OpenPhoneBook book;
    POlDBTable& contacts = *static_cast<POlDBTable*>(book->getTable(0));
    std::vector<DWORD> oids;
    const int changes = *rc::gen::inRange(0, 40);
    for (int i = 0; i < changes; ++i) {
        changeSomething(book, oids);
        if (*rc::gen::inRange(0, 4) != 0) continue;  // several changes between two searches, too
        const CString nameKey(*keyText());
        const CString numberKey(*numberText());
        const CString group(*groupText());
        RC_LOG() << "name key " << nameKey << ", number key " << numberKey << ", group " << group << "\n";
        RC_ASSERT(matchesOf(contacts.getScanIterator(nullptr, 0, nameKey)) == testing_support::naiveNameScan(nameKey));
        RC_ASSERT(matchesOf(contacts.getScanIterator(nullptr, SCANATTR_TELNO, numberKey)) ==
                  testing_support::naiveNumberScan(numberKey));
        RC_ASSERT(matchesOf(book->searchPBRecordOfPBGroup(group)) == testing_support::naiveGroupScan(group));
        if (!numberKey.IsEmpty()) RC_ASSERT(callerOf(book, numberKey) == testing_support::naiveCaller(numberKey));
    }
}

RC_GTEST_PROP(ScanIterator, FindsWhatAPlainReadingFindsInItsOrder, ()) {
    const MemoryStoreMount store;
    searchWhileChanging();
}

RC_GTEST_PROP(ScanIterator, FindsWhatAPlainReadingFindsOnDisk, ()) {
    const TemporaryStore store;
    searchWhileChanging();
}

}  // namespace
}  // namespace Database
