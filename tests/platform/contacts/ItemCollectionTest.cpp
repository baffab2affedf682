#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tessera/platform/contacts/ContactProperties.h"
#include "tessera/platform/objectstore/ObjectStore.h"
#include "tests/platform/contacts/ContactsFixture.h"
#include "tests/support/TemporaryStore.h"

using namespace testing_support;

namespace {

using Names = std::vector<WString>;

const Names someNames = {TEXT("Zoe"),      TEXT("\uae40\ubbfc\uc218"), TEXT("adam"), TEXT("Bea"),
                         TEXT("\u00c9va"), TEXT("\uac00\ub78c"),       TEXT("Adam")};

void addAll(const ContactsSession& session, const Names& names) {
    for (const auto& name : names)
        session.add(name);
}

HRESULT restrictResult(const ComPtr<IPOutlookItemCollection>& items, WStringView text) {
    IPOutlookItemCollection* made = nullptr;
    const HRESULT result = items->Restrict(bstr(text).get(), &made);
    EXPECT_EQ(result == S_OK, made != nullptr);
    if (made != nullptr) made->Release();
    return result;
}

HRESULT findResult(const ComPtr<IPOutlookItemCollection>& items, WStringView text, WString& name) {
    IDispatch* item = nullptr;
    const HRESULT result = items->Find(bstr(text).get(), &item);
    EXPECT_EQ(result == S_OK, item != nullptr);
    if (item != nullptr) name = nameOf(asContact(item));
    return result;
}

}  // namespace

TEST(ItemCollection, OfAnEmptyFolderIsEmpty) {
    const MemoryStoreMount mount;
    const auto items = ContactsSession().items();
    IDispatch* item = nullptr;

    EXPECT_EQ(countOf(items), 0);
    EXPECT_EQ(items->Item(1, &item), E_INVALIDARG);
    EXPECT_EQ(items->Remove(1), E_INVALIDARG);
    EXPECT_EQ(countOf(restricted(items, TEXT("[FileAs] >= \"\""))), 0);
}

TEST(ItemCollection, IndexesStartAtOneAndEndAtTheCount) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    addAll(session, {TEXT("Bea"), TEXT("Adam"), TEXT("Carl")});
    const auto whole = session.items();
    const auto narrowed = restricted(whole, TEXT("[FileAs] >= \"a\""));

    for (const auto& items : {whole, narrowed}) {
        IDispatch* item = nullptr;
        EXPECT_EQ(nameOf(itemOf(items, 1)), TEXT("Adam"));
        EXPECT_EQ(nameOf(itemOf(items, 3)), TEXT("Carl"));
        for (const int index : {-1, 0, 4, 5, 0x7FFFFFFF, -0x7FFFFFFF - 1}) {
            EXPECT_EQ(items->Item(index, &item), E_INVALIDARG) << index;
            EXPECT_EQ(item, nullptr);
            EXPECT_EQ(items->Remove(index), E_INVALIDARG) << index;
        }
    }
    EXPECT_EQ(countOf(whole), 3);
}

TEST(ItemCollection, ANullOutputIsAnError) {
    const MemoryStoreMount mount;
    const auto items = ContactsSession().items();

    EXPECT_EQ(items->Add(nullptr), E_POINTER);
    EXPECT_EQ(items->get_Count(nullptr), E_POINTER);
    EXPECT_EQ(items->Item(1, nullptr), E_POINTER);
    EXPECT_EQ(items->Find(bstr(TEXT("[FileAs] = \"x\"")).get(), nullptr), E_POINTER);
    EXPECT_EQ(items->Restrict(bstr(TEXT("[FileAs] = \"x\"")).get(), nullptr), E_POINTER);
}

TEST(ItemCollection, IsInTheOrderInWhichTheStoreSortsNames) {
    const TemporaryStore store;
    const ContactsSession session;
    addAll(session, someNames);

    const auto items = session.items();

    EXPECT_EQ(oidsOf(items), RawContacts(ContactProperty::fileAs).oids());
    const Names names = namesOf(items);
    EXPECT_LT(std::ranges::find(names, TEXT("Bea")), std::ranges::find(names, TEXT("Zoe")));
    EXPECT_LT(std::ranges::find(names, TEXT("\u00c9va")), std::ranges::find(names, TEXT("Zoe")))
        << "collated, not by code unit";
    EXPECT_LT(std::ranges::find(names, TEXT("\uac00\ub78c")), std::ranges::find(names, TEXT("\uae40\ubbfc\uc218")));
}

TEST(ItemCollection, EqualNamesStandInTheOrderOfTheirIdentifiers) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    const CEOID first = session.add(TEXT("Kim"));
    const CEOID second = session.add(TEXT("Lee"));
    const CEOID third = session.add(TEXT("Kim"));

    EXPECT_EQ(oidsOf(session.items()), (std::vector{first, third, second}));
}

TEST(ItemCollection, ContactsWithoutANameComeLast) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    const CEOID nameless = session.add(TEXT(""));
    const CEOID named = session.add(TEXT("Zoe"));

    EXPECT_EQ(oidsOf(session.items()), (std::vector{named, nameless}));
}

TEST(ItemCollection, SortsByAnyPropertyInEitherDirection) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    std::vector<CEOID> oids;
    for (const DATE birthday : {32937.0, noBirthday, 10000.0, 32937.0}) {
        const auto contact = session.newContact();
        require(contact->put_FileAs(bstr(TEXT("Kim")).get()));
        require(contact->put_Birthday(birthday));
        require(contact->Save());
        oids.push_back(oidOf(contact));
    }
    const auto whole = session.items();
    const auto narrowed = restricted(whole, TEXT("[FileAs] = \"Kim\""));
    const std::vector ascending = {oids[2], oids[0], oids[3], oids[1]};
    const std::vector descending(ascending.rbegin(), ascending.rend());

    for (const auto& items : {whole, narrowed}) {
        ASSERT_EQ(items->Sort(bstr(TEXT("birthday")).get(), FALSE), S_OK);
        EXPECT_EQ(oidsOf(items), ascending);
        ASSERT_EQ(items->Sort(bstr(TEXT("[Birthday]")).get(), TRUE), S_OK);
        EXPECT_EQ(oidsOf(items), descending);
        EXPECT_EQ(oidsOf(restricted(items, TEXT("[FileAs] >= \"\""))), descending) << "the order is handed on";
    }
    EXPECT_EQ(oidsOf(session.items()), oids) << "other collections keep theirs";
}

TEST(ItemCollection, EveryPropertyIsOneToSortBy) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    session.add(TEXT("Kim"));
    const auto items = session.items();

    for (const WStringView name :
         {TEXT("FileAs"), TEXT("FirstName"), TEXT("LastName"), TEXT("Categories"), TEXT("MobileTelephoneNumber"),
          TEXT("HomeTelephoneNumber"), TEXT("BusinessTelephoneNumber"), TEXT("Email1Address"), TEXT("PagerNumber"),
          TEXT("BusinessFaxNumber"), TEXT("Body"), TEXT("Birthday")}) {
        EXPECT_EQ(items->Sort(bstr(name).get(), TRUE), S_OK) << std::string(name.begin(), name.end());
        EXPECT_EQ(countOf(items), 1);
    }
}

TEST(ItemCollection, SortingByWhatIsNoPropertyIsRefusedAndKeepsTheOrder) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    addAll(session, {TEXT("Bea"), TEXT("Adam")});
    const auto items = session.items();
    require(items->Sort(bstr(TEXT("FileAs")).get(), TRUE));

    for (const WStringView name :
         {TEXT(""), TEXT("Name"), TEXT("[FileAs"), TEXT("FileAs]"), TEXT("[]"), TEXT("FileAs,Body")}) {
        EXPECT_EQ(items->Sort(bstr(name).get(), FALSE), E_INVALIDARG);
    }
    EXPECT_EQ(items->Sort(nullptr, FALSE), E_INVALIDARG);
    EXPECT_EQ(namesOf(items), (Names{TEXT("Bea"), TEXT("Adam")}));
}

TEST(ItemCollection, RemoveDeletesTheContactAndTheCollectionClosesUp) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    addAll(session, {TEXT("Adam"), TEXT("Bea"), TEXT("Carl"), TEXT("Dora")});
    const auto whole = session.items();
    const auto narrowed = restricted(whole, TEXT("[FileAs] > \"b\""));

    ASSERT_EQ(whole->Remove(3), S_OK);
    EXPECT_EQ(namesOf(whole), (Names{TEXT("Adam"), TEXT("Bea"), TEXT("Dora")}));
    EXPECT_EQ(namesOf(narrowed), (Names{TEXT("Bea"), TEXT("Dora")}));
    ASSERT_EQ(narrowed->Remove(1), S_OK);
    EXPECT_EQ(namesOf(narrowed), (Names{TEXT("Dora")}));
    EXPECT_EQ(namesOf(whole), (Names{TEXT("Adam"), TEXT("Dora")}));
}

TEST(ItemCollection, RemovingTheFirstTimeAfterTimeEmptiesIt) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    for (int i = 0; i < 300; ++i)
        session.add(TEXT("Kim ") + WString(static_cast<std::size_t>(i % 7), u'x'));
    const auto narrowed = restricted(session.items(), TEXT("[FileAs] > \"kim x\""));
    const int matching = countOf(narrowed);

    for (int i = 0; i < matching; ++i)
        ASSERT_EQ(narrowed->Remove(1), S_OK);
    EXPECT_EQ(countOf(narrowed), 0);
    const auto whole = session.items();
    for (int left = 300 - matching; left > 0; --left)
        ASSERT_EQ(whole->Remove(1), S_OK);
    EXPECT_EQ(whole->Remove(1), E_INVALIDARG);
}

TEST(ItemCollection, RestrictionsOfARestrictedCollectionNarrowIt) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    addAll(session, {TEXT("Adam"), TEXT("Bea"), TEXT("Carl"), TEXT("Dora")});

    const auto narrowed = restricted(session.items(), TEXT("[FileAs] >= \"b\""));
    const auto narrower = restricted(narrowed, TEXT("[FileAs] < \"d\" or [FileAs] = \"adam\""));

    EXPECT_EQ(namesOf(narrowed), (Names{TEXT("Bea"), TEXT("Carl"), TEXT("Dora")}));
    EXPECT_EQ(namesOf(narrower), (Names{TEXT("Bea"), TEXT("Carl")}));
}

TEST(ItemCollection, FindAnswersTheFirstInItsOwnOrder) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    addAll(session, {TEXT("Adam"), TEXT("Bea"), TEXT("Carl"), TEXT("Dora")});
    const auto items = session.items();
    WString name;

    EXPECT_EQ(findResult(items, TEXT("[FileAs] > \"b\""), name), S_OK);
    EXPECT_EQ(name, TEXT("Bea"));
    require(items->Sort(bstr(TEXT("FileAs")).get(), TRUE));
    EXPECT_EQ(findResult(items, TEXT("[FileAs] > \"b\""), name), S_OK);
    EXPECT_EQ(name, TEXT("Dora"));
    EXPECT_EQ(findResult(restricted(items, TEXT("[FileAs] < \"d\"")), TEXT("[FileAs] > \"b\""), name), S_OK);
    EXPECT_EQ(name, TEXT("Carl"));
}

TEST(ItemCollection, FindingNothingIsNoFailure) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    addAll(session, {TEXT("Adam"), TEXT("Bea")});
    WString name;

    EXPECT_EQ(findResult(session.items(), TEXT("[FileAs] = \"Carl\""), name), S_FALSE);
    const auto narrowed = restricted(session.items(), TEXT("[FileAs] = \"Adam\""));
    EXPECT_EQ(findResult(narrowed, TEXT("[FileAs] = \"Bea\""), name), S_FALSE);
}

TEST(ItemCollection, WhatIsFoundIsTheContactItself) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    const CEOID oid = session.add(TEXT("Kim"));
    IDispatch* item = nullptr;
    require(session.items()->Find(bstr(TEXT("[FileAs] = \"KIM\"")).get(), &item));

    const auto found = asContact(item);
    require(found->put_FileAs(bstr(TEXT("Lee")).get()));
    require(found->Save());

    EXPECT_EQ(nameOf(session.contact(oid)), TEXT("Lee"));
}

TEST(ItemCollection, MalformedRestrictionsAreRefused) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    addAll(session, {TEXT("Adam"), TEXT("Bea")});
    const auto items = session.items();
    WString name;

    for (const WStringView text : {TEXT(""), TEXT("FileAs"), TEXT("[FileAs] = \"Adam"), TEXT("[FileAs] = \"A\"dam\""),
                                   TEXT("[FileAs] = \"x\" or \"\" = \"\""), TEXT("[Birthday] = \"someday\"")}) {
        EXPECT_EQ(restrictResult(items, text), E_INVALIDARG);
        EXPECT_EQ(findResult(items, text, name), E_INVALIDARG);
    }
    IDispatch* item = nullptr;
    EXPECT_EQ(items->Find(nullptr, &item), E_INVALIDARG);
    EXPECT_EQ(countOf(items), 2);
}

TEST(ItemCollection, ARestrictionEndsAtItsFirstZeroCharacter) {
    const MemoryStoreMount mount;
    const auto items = ContactsSession().items();

    EXPECT_EQ(restrictResult(items, WStringView(TEXT("[FileAs] = \"x\0\""), 14)), E_INVALIDARG);
}

TEST(ItemCollection, FollowsWhatIsWrittenByWhateverWay) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    const auto whole = session.items();
    const auto narrowed = restricted(whole, TEXT("[FileAs] >= \"m\""));
    ASSERT_EQ(countOf(narrowed), 0);

    const CEOID oid = session.add(TEXT("Nora"));
    EXPECT_EQ(namesOf(narrowed), (Names{TEXT("Nora")}));
    session.rename(oid, TEXT("Adam"));
    EXPECT_EQ(namesOf(narrowed), Names{});
    EXPECT_EQ(namesOf(whole), (Names{TEXT("Adam")}));
    const RawContacts raw;
    const CEOID direct = raw.write(0, CCeDBProp::ofText(0x4013, TEXT("Otto")));
    ASSERT_NE(direct, 0u);
    EXPECT_EQ(namesOf(narrowed), (Names{TEXT("Otto")}));
    EXPECT_EQ(namesOf(whole), (Names{TEXT("Adam"), TEXT("Otto")}));
    session.remove(direct);
    EXPECT_EQ(namesOf(narrowed), Names{});
}

TEST(ItemCollection, SeesWhatItsOwnBatchWroteBeforeItEnds) {
    const TemporaryStore store;
    const ContactsSession session;
    const auto whole = session.items();
    const auto narrowed = restricted(whole, TEXT("[FileAs] >= \"m\""));
    ASSERT_EQ(countOf(narrowed), 0);

    ObjectStoreBatch batch;
    addAll(session, {TEXT("Nora"), TEXT("Adam")});

    EXPECT_EQ(namesOf(narrowed), (Names{TEXT("Nora")}));
    EXPECT_EQ(namesOf(whole), (Names{TEXT("Adam"), TEXT("Nora")}));
    EXPECT_TRUE(batch.end());
    EXPECT_EQ(namesOf(narrowed), (Names{TEXT("Nora")}));
}

TEST(ItemCollection, FollowsMoreChangesThanItJudgesOneByOne) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    const auto narrowed = restricted(session.items(), TEXT("[FileAs] >= \"m\""));
    session.add(TEXT("Nora"));
    ASSERT_EQ(countOf(narrowed), 1);

    for (int i = 0; i < 2'500; ++i)
        session.add(i % 2 == 0 ? TEXT("Adam") : TEXT("Otto"));

    EXPECT_EQ(countOf(narrowed), 1'251);
}

TEST(ItemCollection, ChangesOfOtherDatabasesLeaveItAlone) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    const CEOID oid = session.add(TEXT("Nora"));
    const auto narrowed = restricted(session.items(), TEXT("[FileAs] >= \"m\""));
    ASSERT_EQ(countOf(narrowed), 1);
    CEOID database = 0;
    const HANDLE categories = CeOpenDatabaseEx2(&database, TEXT("\\Categories Database"), 0, 0, 0, nullptr);
    const CCeDBProp name = CCeDBProp::ofText(0x4013, TEXT("Otto"));
    const CEPROPVAL value = name.propVal();

    ASSERT_NE(CeWriteRecordProps(categories, 0, 1, &value), 0u);
    session.add(TEXT("Adam"));

    EXPECT_EQ(oidsOf(narrowed), std::vector{oid});
    CloseHandle(categories);
}

TEST(ItemCollection, TheColumnHintChangesNoResult) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    addAll(session, someNames);
    const auto plain = session.items();
    const auto items = session.items();
    const WString restriction = TEXT("[FileAs] >= \"b\"");

    for (const WStringView columns :
         {TEXT("FileAs"), TEXT("FileAs,MobileTelephoneNumber"), TEXT("Unknown,,x"), TEXT("")}) {
        const auto second = hinted(items, columns);
        EXPECT_EQ(namesOf(items), namesOf(plain));
        const auto narrowed = restricted(items, restriction);
        EXPECT_EQ(namesOf(narrowed), namesOf(restricted(plain, restriction)));
        const CEOID oid = session.add(TEXT("Xaver"));
        EXPECT_EQ(namesOf(narrowed), namesOf(restricted(plain, restriction)));
        session.rename(oid, TEXT("Yves"));
        EXPECT_EQ(namesOf(narrowed), namesOf(restricted(plain, restriction))) << "what was read ahead is not kept";
        session.remove(oid);
        EXPECT_EQ(namesOf(narrowed), namesOf(restricted(plain, restriction)));
    }
}

TEST(ItemCollection, ItemsOfARestrictedCollectionHaveAllTheirProperties) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    const auto contact = session.newContact();
    require(contact->put_FileAs(bstr(TEXT("Kim")).get()));
    require(contact->put_Body(bstr(TEXT("notes")).get()));
    require(contact->Save());
    const auto items = session.items();
    const auto second = hinted(items, TEXT("FileAs"));

    const auto found = itemOf(restricted(items, TEXT("[FileAs] = \"Kim\"")), 1);

    EXPECT_EQ(textOf(found, &IContact::get_Body), TEXT("notes")) << "also those that were not in the hint";
}
