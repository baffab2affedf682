#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "tessera/database/POlDBIterator.h"
#include "tessera/database/POlDBTable.h"
#include "tests/support/Builders.h"
#include "tests/support/TemporaryStore.h"
#include "tests/support/Values.h"

namespace Database {
namespace {

using testing_support::contact;
using testing_support::MemoryStoreMount;
using testing_support::OpenPhoneBook;

/// Three contacts, Ann, Bob and Carl, and a cursor over them.
class ThreeContacts : public testing::Test {
protected:
    ThreeContacts() {
        ann = book.add(contact().name(TEXT("Ann")).mobile(TEXT("010-1")));
        bob = book.add(contact().name(TEXT("Bob")));
        carl = book.add(contact().name(TEXT("Carl")));
        cursor.reset(contacts().getIterator(nullptr, nullptr));
    }

    POlDBTable& contacts() { return *static_cast<POlDBTable*>(book->getTable(0)); }
    std::unique_ptr<Iterator> between(const WCHAR* from, const WCHAR* to) {
        lower = CCeDBProp::ofText(0, from);
        upper = CCeDBProp::ofText(0, to);
        return std::unique_ptr<Iterator>(contacts().getIterator(&lower, &upper));
    }

    MemoryStoreMount store;
    OpenPhoneBook book;
    CCeDBProp lower;
    CCeDBProp upper;
    DWORD ann = 0;
    DWORD bob = 0;
    DWORD carl = 0;
    std::unique_ptr<Iterator> cursor;
};

TEST_F(ThreeContacts, ACursorStandsBeforeTheFirstContactUntilItIsMoved) {
    ASSERT_NE(nullptr, cursor);
    EXPECT_TRUE(cursor->isOpened());
    EXPECT_EQ(0u, cursor->getCur());
    EXPECT_EQ(S_OK, cursor->next());
    EXPECT_EQ(ann, cursor->getCur());
}

TEST_F(ThreeContacts, AFailedMoveStandsBeyondTheEnd) {
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(S_OK, cursor->next());
    EXPECT_EQ(S_FALSE, cursor->next());
    EXPECT_EQ(0u, cursor->getCur());
    EXPECT_EQ(S_OK, cursor->prev()) << "from behind the last back onto it";
    EXPECT_EQ(carl, cursor->getCur());

    EXPECT_EQ(ann, cursor->getAt(0));
    EXPECT_EQ(S_FALSE, cursor->prev());
    EXPECT_EQ(0u, cursor->getCur());
    EXPECT_EQ(S_OK, cursor->next()) << "from before the first onto it";
    EXPECT_EQ(ann, cursor->getCur());
}

TEST_F(ThreeContacts, TwoStepsBackFromBeforeTheFirstCloseTheCursor) {
    EXPECT_EQ(S_FALSE, cursor->prev());
    EXPECT_FALSE(cursor->isOpened());
    EXPECT_EQ(E_ACCESSDENIED, cursor->prev());
    EXPECT_EQ(S_OK, cursor->next()) << "it takes no cursor that is open to step on";
}

TEST_F(ThreeContacts, OverNothingACursorStepsOnceToNobody) {
    IPOutlookItemCollection* items = nullptr;
    ASSERT_EQ(S_OK, contacts().getItems(&items));
    POlDBIterator none(&contacts(), items, CString(TEXT("[FileAs] = \"Nobody\"")));

    EXPECT_FALSE(none.isOpened());
    EXPECT_EQ(S_OK, none.next()) << "from one before the place before the first";
    EXPECT_EQ(0u, none.getCur());
    EXPECT_EQ(S_FALSE, none.next());
}

TEST_F(ThreeContacts, WithoutACollectionThereIsNoStep) {
    POlDBIterator none(&contacts(), nullptr, nullptr, nullptr);

    EXPECT_EQ(E_FAIL, none.next());
    EXPECT_EQ(0u, none.getCur());
}

TEST_F(ThreeContacts, ATableThatWasClosedNarrowsNothing) {
    contacts().close();

    EXPECT_EQ(nullptr, contacts().getIterator(static_cast<POlDBIterator*>(cursor.get()), 0, nullptr, nullptr));
}

TEST_F(ThreeContacts, LastStandsOnTheLast) {
    EXPECT_EQ(S_OK, cursor->last());
    EXPECT_EQ(carl, cursor->getCur());
}

TEST_F(ThreeContacts, IndexesCountFromZeroAndTheCountItselfAnswersNothing) {
    EXPECT_EQ(ann, cursor->getAt(0));
    EXPECT_EQ(carl, cursor->getAt(2));
    EXPECT_EQ(0u, cursor->getAt(3));
    EXPECT_EQ(0u, cursor->getAt(4));
    EXPECT_EQ(0u, cursor->getAt(-1));
    EXPECT_EQ(CString(TEXT("Bob")), cursor->getStringAt(1, 0));
    EXPECT_EQ(CString(TEXT("")), cursor->getStringAt(3, 0));
    EXPECT_EQ(CString(TEXT("")), cursor->getStringAt(4, 0));
}

TEST_F(ThreeContacts, FieldsAreReadAsTextOnly) {
    EXPECT_EQ(CString(TEXT("010-1")), cursor->getStringAt(0, 2));
    EXPECT_EQ(CString(TEXT("")), cursor->getStringAt(1, 2));
    EXPECT_EQ(CString(TEXT("")), cursor->getStringAt(0, 99)) << "no such attribute";
    EXPECT_TRUE(cursor->getPropAt(0, 0).isEmpty());
    EXPECT_TRUE(cursor->getProp(0).isEmpty());
    EXPECT_EQ(E_NOTIMPL, cursor->getRecord(nullptr));
}

TEST_F(ThreeContacts, TheUpperOfTwoBoundsIsExclusive) {
    const auto found = between(TEXT("Ann"), TEXT("Carl"));
    ASSERT_NE(nullptr, found);
    EXPECT_EQ(2, found->getNumItems());
}

TEST_F(ThreeContacts, ALoneUpperBoundIsInclusive) {
    upper = CCeDBProp::ofText(0, TEXT("Bob"));
    const std::unique_ptr<Iterator> found(contacts().getIterator(nullptr, &upper));
    ASSERT_NE(nullptr, found);
    EXPECT_EQ(2, found->getNumItems());
}

TEST_F(ThreeContacts, OneObjectAsBothBoundsMeansEqualityAndTwoEqualOnesNothing) {
    lower = CCeDBProp::ofText(0, TEXT("Bob"));
    const std::unique_ptr<Iterator> equal(contacts().getIterator(&lower, &lower));
    ASSERT_NE(nullptr, equal);
    EXPECT_EQ(1, equal->getNumItems());
    EXPECT_EQ(nullptr, between(TEXT("Bob"), TEXT("Bob")));
}

TEST_F(ThreeContacts, BoundsMayBeOfAnotherAttribute) {
    lower = CCeDBProp::ofText(0, TEXT("010-1"));
    const std::unique_ptr<Iterator> found(contacts().getIterator(2, &lower, &lower));
    ASSERT_NE(nullptr, found);
    EXPECT_EQ(1, found->getNumItems());
    EXPECT_EQ(ann, found->getAt(0));
}

TEST_F(ThreeContacts, ABoundWithAQuoteFindsNothing) {
    lower = CCeDBProp::ofText(0, TEXT("\" or [FileAs] >= \""));
    EXPECT_EQ(nullptr, contacts().getIterator(&lower, nullptr));
}

TEST_F(ThreeContacts, DeletingTheCurrentContactDeletesItFromTheStore) {
    cursor->getAt(1);
    EXPECT_EQ(S_OK, cursor->deleteCur());
    EXPECT_EQ(2, cursor->getNumItems());
    EXPECT_EQ(2u, book->getNumRecords());
    EXPECT_EQ(carl, cursor->getAt(1));
}

TEST_F(ThreeContacts, DeletingByIndexTakesTheIndexForAPositionAndReadsTheResultAnew) {
    // The position it deletes at counts from 1: index 1 is the first contact.
    EXPECT_EQ(S_OK, cursor->deleteAt(1, false));
    EXPECT_EQ(2, cursor->getNumItems());
    EXPECT_EQ(bob, cursor->getAt(0));
    EXPECT_EQ(E_FAIL, cursor->deleteAt(3, false));
    EXPECT_EQ(E_FAIL, cursor->deleteAt(-1, true));
}

TEST_F(ThreeContacts, DeletingByIndexForThePositionOnlyDeletesNothing) {
    EXPECT_EQ(S_OK, cursor->deleteAt(2, true));
    EXPECT_EQ(bob, cursor->getCur());
    EXPECT_EQ(3u, book->getNumRecords());
}

TEST_F(ThreeContacts, BeforeTheFirstThereIsNothingToDelete) {
    EXPECT_EQ(S_OK, cursor->deleteCur());
    EXPECT_EQ(S_OK, cursor->deleteAt(0, false));
    EXPECT_EQ(3u, book->getNumRecords());
}

TEST_F(ThreeContacts, ACursorWhoseLastContactWasDeletedIsNotOpenedAnyMore) {
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(S_OK, cursor->deleteAt(1, false));
    EXPECT_EQ(0u, book->getNumRecords());
    EXPECT_FALSE(cursor->isOpened());
    EXPECT_EQ(E_ACCESSDENIED, cursor->last());
    EXPECT_EQ(E_ACCESSDENIED, cursor->prev());
    EXPECT_EQ(E_ACCESSDENIED, cursor->deleteAt(0, true));
    EXPECT_EQ(S_OK, cursor->deleteCur());
    EXPECT_EQ(0u, cursor->getCur());
    EXPECT_EQ(S_FALSE, cursor->next());
}

TEST_F(ThreeContacts, ANewResultWithinARestrictionIsReadAfterADeletion) {
    const std::unique_ptr<Iterator> found(contacts().getIterator(nullptr, CString(TEXT("[FileAs] >= \"B\""))));
    ASSERT_NE(nullptr, found);
    EXPECT_EQ(S_OK, found->deleteAt(1, false));
    EXPECT_EQ(1, found->getNumItems());
    EXPECT_EQ(carl, found->getAt(0));
}

TEST_F(ThreeContacts, AnEmptyResultIsNoCursor) {
    EXPECT_EQ(nullptr, between(TEXT("X"), TEXT("Z")));
    EXPECT_EQ(nullptr, contacts().getIterator(nullptr, CString(TEXT("[FileAs] = \"Nobody\""))));
    EXPECT_EQ(nullptr, contacts().getIterator(nullptr, CString(TEXT("nonsense"))));
}

/// Keeps the restrictions that it is asked for, and has nothing to give. Lives as long as its test.
class RecordingItems final : public IPOutlookItemCollection {
public:
    HRESULT QueryInterface(const IID&, void**) override { return E_NOINTERFACE; }
    ULONG AddRef() override { return 1; }
    ULONG Release() override { return 1; }
    HRESULT Add(IDispatch**) override { return E_FAIL; }
    HRESULT get_Count(int*) override { return E_FAIL; }
    HRESULT Item(int, IDispatch**) override { return E_FAIL; }
    HRESULT Find(BSTR, IDispatch**) override { return E_FAIL; }
    HRESULT Restrict(BSTR restriction, IPOutlookItemCollection**) override {
        asked.emplace_back(restriction);
        return E_FAIL;
    }
    HRESULT Remove(int) override { return E_FAIL; }
    HRESULT Sort(BSTR, BOOL) override { return E_FAIL; }

    std::vector<CString> asked;
};

TEST_F(ThreeContacts, BoundsBecomeARestriction) {
    RecordingItems items;
    lower = CCeDBProp::ofText(0, TEXT("A"));
    upper = CCeDBProp::ofText(0, TEXT("B"));

    const POlDBIterator both(&contacts(), &items, &lower, &upper);
    const POlDBIterator fromOnly(&contacts(), &items, &lower, nullptr);
    const POlDBIterator toOnly(&contacts(), &items, nullptr, &upper);
    const POlDBIterator equal(&contacts(), &items, &lower, &lower);
    const POlDBIterator ofMobile(&contacts(), &items, 2, &lower, &upper);

    EXPECT_EQ(items.asked, (std::vector<CString>{
                               TEXT("[FileAs] >= \"A\" and [FileAs] < \"B\""),
                               TEXT("[FileAs] >= \"A\""),
                               TEXT("[FileAs] <= \"B\""),
                               TEXT("[FileAs] = \"A\""),
                               TEXT("[MobileTelephoneNumber] >= \"A\" and [MobileTelephoneNumber] < \"B\""),
                           }));
}

TEST_F(ThreeContacts, ACollectionThatCannotBeRestrictedIsKeptAndIsNothingToWalk) {
    RecordingItems items;

    POlDBIterator restricted(&contacts(), &items, CString(TEXT("[FileAs] >= \"A\"")));

    EXPECT_EQ(restricted.getItemCol(), &items);
    EXPECT_FALSE(restricted.isOpened());
}

}  // namespace
}  // namespace Database
