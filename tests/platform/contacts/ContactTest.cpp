#include <cmath>
#include <limits>
#include <thread>

#include <gtest/gtest.h>

#include "tessera/platform/base/COleDateTime.h"
#include "tessera/platform/contacts/ContactProperties.h"
#include "tests/platform/contacts/ContactsFixture.h"
#include "tests/support/TemporaryStore.h"

using namespace testing_support;

namespace {

struct TextField {
    const char* name;
    HRESULT (IContact::*get)(BSTR*);
    HRESULT (IContact::*put)(BSTR);
    CEPROPID property;
};

constexpr TextField textFields[] = {
    {"FileAs", &IContact::get_FileAs, &IContact::put_FileAs, ContactProperty::fileAs},
    {"FirstName", &IContact::get_FirstName, &IContact::put_FirstName, ContactProperty::firstName},
    {"LastName", &IContact::get_LastName, &IContact::put_LastName, ContactProperty::lastName},
    {"Categories", &IContact::get_Categories, &IContact::put_Categories, ContactProperty::categories},
    {"MobileTelephoneNumber", &IContact::get_MobileTelephoneNumber, &IContact::put_MobileTelephoneNumber,
     ContactProperty::mobileTelephoneNumber},
    {"HomeTelephoneNumber", &IContact::get_HomeTelephoneNumber, &IContact::put_HomeTelephoneNumber,
     ContactProperty::homeTelephoneNumber},
    {"BusinessTelephoneNumber", &IContact::get_BusinessTelephoneNumber, &IContact::put_BusinessTelephoneNumber,
     ContactProperty::businessTelephoneNumber},
    {"Email1Address", &IContact::get_Email1Address, &IContact::put_Email1Address, ContactProperty::email1Address},
    {"PagerNumber", &IContact::get_PagerNumber, &IContact::put_PagerNumber, ContactProperty::pagerNumber},
    {"BusinessFaxNumber", &IContact::get_BusinessFaxNumber, &IContact::put_BusinessFaxNumber,
     ContactProperty::businessFaxNumber},
    {"Body", &IContact::get_Body, &IContact::put_Body, ContactProperty::body},
};

/// Different for every field, and with letters beyond one byte and one code unit.
WString valueFor(const TextField& field) {
    return TEXT("\uae40 \U0001F4DE ") + WString(1, static_cast<WCHAR>(u'A' + (&field - textFields)));
}

HRESULT put(const ComPtr<IContact>& contact, const TextField& field, WStringView text) {
    return (contact.get()->*field.put)(bstr(text).get());
}

DATE birthdayOf(const ComPtr<IContact>& contact) {
    DATE date = 0.0;
    require(contact->get_Birthday(&date));
    return date;
}

}  // namespace

TEST(Contact, IsInMemoryUntilItIsSaved) {
    const MemoryStoreMount mount;
    const ContactsSession session;

    const auto contact = session.newContact();

    EXPECT_EQ(oidOf(contact), 0u);
    EXPECT_EQ(countOf(session.items()), 0);
    require(contact->put_FileAs(bstr(TEXT("Kim")).get()));
    EXPECT_EQ(countOf(session.items()), 0);
    ASSERT_EQ(contact->Save(), S_OK);
    EXPECT_NE(oidOf(contact), 0u);
    EXPECT_EQ(oidsOf(session.items()), std::vector{oidOf(contact)});
}

TEST(Contact, KeepsEveryTextAndShowsItUnderItsProperty) {
    const TemporaryStore store;
    const ContactsSession session;
    const auto contact = session.newContact();
    for (const TextField& field : textFields)
        ASSERT_EQ(put(contact, field, valueFor(field)), S_OK);

    ASSERT_EQ(contact->Save(), S_OK);

    const auto reread = session.contact(oidOf(contact));
    const CCeDBRecord record = RawContacts().record(oidOf(contact));
    EXPECT_EQ(record.getNumProps(), static_cast<int>(std::size(textFields)));
    for (const TextField& field : textFields) {
        EXPECT_EQ(textOf(contact, field.get), valueFor(field)) << field.name;
        EXPECT_EQ(textOf(reread, field.get), valueFor(field)) << field.name;
        const CCeDBProp* property = record.findProp(identOf(field.property));
        ASSERT_NE(property, nullptr) << field.name;
        EXPECT_EQ(property->getPropId(), field.property) << field.name;
        EXPECT_EQ(property->getText().view(), valueFor(field)) << field.name;
    }
}

TEST(Contact, WhatWasNeverPutIsEmptyAndNotInTheRecord) {
    const MemoryStoreMount mount;
    const ContactsSession session;

    const auto contact = session.contact(session.add(TEXT("Kim")));

    for (const TextField& field : textFields) {
        if (field.property == ContactProperty::fileAs) continue;
        Bstr text;
        EXPECT_EQ((contact.get()->*field.get)(text.out()), S_OK) << field.name;
        EXPECT_NE(text.get(), nullptr) << field.name;
        EXPECT_TRUE(text.isEmpty()) << field.name;
    }
    EXPECT_EQ(birthdayOf(contact), 949998.0);
    EXPECT_EQ(RawContacts().record(oidOf(contact)).getNumProps(), 1);
}

TEST(Contact, EmptyingATextRemovesItsProperty) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    const auto contact = session.newContact();
    for (const TextField& field : textFields)
        require(put(contact, field, valueFor(field)));
    require(contact->Save());
    const auto reread = session.contact(oidOf(contact));

    for (const TextField& field : textFields) {
        ASSERT_EQ(put(reread, field, TEXT("")), S_OK);
        ASSERT_EQ(reread->Save(), S_OK);

        EXPECT_EQ(textOf(session.contact(oidOf(contact)), field.get), TEXT("")) << field.name;
        EXPECT_EQ(RawContacts().record(oidOf(contact)).findProp(identOf(field.property)), nullptr) << field.name;
    }
    EXPECT_EQ(RawContacts().record(oidOf(contact)).getNumProps(), 0);
    EXPECT_EQ(countOf(session.items()), 1) << "a contact without anything is still one";
}

TEST(Contact, ANewOneWithNothingInItCanBeSaved) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    const auto contact = session.newContact();
    require(contact->put_FileAs(bstr(TEXT("Kim")).get()));
    require(contact->put_FileAs(nullptr));

    ASSERT_EQ(contact->Save(), S_OK);

    EXPECT_NE(oidOf(contact), 0u);
    EXPECT_EQ(RawContacts().record(oidOf(contact)).getNumProps(), 0);
}

TEST(Contact, CategoriesAreKeptExactlyAsPut) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    const auto contact = session.newContact();

    for (const WString text : {TEXT("Family,Work"), TEXT(" Work , Family;, "), TEXT("b,a,b"), TEXT(",")}) {
        require(contact->put_Categories(bstr(text).get()));
        require(contact->Save());
        EXPECT_EQ(textOf(session.contact(oidOf(contact)), &IContact::get_Categories), text);
    }
}

TEST(Contact, ATextEndsAtItsFirstZeroCharacterBeforeAndAfterSaving) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    const auto contact = session.newContact();

    require(contact->put_FileAs(bstr(WStringView(TEXT("Kim\0 Minsu"), 10)).get()));

    EXPECT_EQ(nameOf(contact), TEXT("Kim"));
    require(contact->Save());
    EXPECT_EQ(nameOf(session.contact(oidOf(contact))), TEXT("Kim"));
}

TEST(Contact, TheTextHandedOutIsTheCallersAndTheTextPutIsCopied) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    auto contact = session.newContact();
    {
        const Bstr lent = bstr(TEXT("Kim"));
        require(contact->put_FileAs(lent.get()));
        lent.get()[0] = u'T';
    }
    Bstr handedOut;
    require(contact->get_FileAs(handedOut.out()));
    contact.reset();

    EXPECT_EQ(handedOut.text(), TEXT("Kim"));
}

TEST(Contact, ANullOutputIsAnError) {
    const MemoryStoreMount mount;
    const auto contact = ContactsSession().newContact();

    for (const TextField& field : textFields)
        EXPECT_EQ((contact.get()->*field.get)(nullptr), E_POINTER);
    EXPECT_EQ(contact->get_Birthday(nullptr), E_POINTER);
    EXPECT_EQ(contact->get_Oid(nullptr), E_POINTER);
}

TEST(Contact, TheBirthdayIsADateHereAndATimeInTheRecord) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    const auto contact = session.newContact();

    // 1601-01-01, the day before the platform's epoch of dates, that epoch, 1990-03-05, 9999-12-31
    for (const DATE date : {-109205.0, -1.0, 0.0, 32937.0, 2958465.0}) {
        ASSERT_EQ(contact->put_Birthday(date), S_OK) << date;
        EXPECT_EQ(birthdayOf(contact), date);
        ASSERT_EQ(contact->Save(), S_OK);

        EXPECT_EQ(birthdayOf(session.contact(oidOf(contact))), date);
        const CCeDBRecord record = RawContacts().record(oidOf(contact));
        ASSERT_EQ(record.getNumProps(), 1);
        EXPECT_EQ(record.getPropAt(0).getPropId(), ContactProperty::birthday);
        EXPECT_EQ(dateOfFileTime(record.getPropAt(0).getFileTime()), date);
    }
}

TEST(Contact, ATimeOfDayOfTheBirthdayIsKept) {
    const MemoryStoreMount mount;
    const auto contact = ContactsSession().newContact();

    require(contact->put_Birthday(32937.75));

    EXPECT_NEAR(birthdayOf(contact), 32937.75, 1e-8);
}

TEST(Contact, TheDateForNoBirthdayRemovesIt) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    const auto contact = session.newContact();
    require(contact->put_FileAs(bstr(TEXT("Kim")).get()));
    require(contact->put_Birthday(32937.0));
    require(contact->Save());

    ASSERT_EQ(contact->put_Birthday(949998.0), S_OK);
    ASSERT_EQ(contact->Save(), S_OK);

    EXPECT_EQ(birthdayOf(session.contact(oidOf(contact))), 949998.0);
    EXPECT_EQ(RawContacts().record(oidOf(contact)).findProp(identOf(ContactProperty::birthday)), nullptr);
}

TEST(Contact, ABirthdayThatNoRecordCanHoldIsRefusedAndChangesNothing) {
    const MemoryStoreMount mount;
    const auto contact = ContactsSession().newContact();
    require(contact->put_Birthday(32937.0));

    for (const DATE date : {-109206.0, -1e300, 2958466.0, 1e300, std::numeric_limits<DATE>::infinity(),
                            -std::numeric_limits<DATE>::infinity(), std::nan("")}) {
        EXPECT_EQ(contact->put_Birthday(date), E_INVALIDARG) << date;
        EXPECT_EQ(birthdayOf(contact), 32937.0);
    }
}

TEST(Contact, SavingWritesOnlyWhatWasChanged) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    const CEOID oid = session.add(TEXT("Kim"));
    const auto mine = session.contact(oid);
    const auto theirs = session.contact(oid);
    require(theirs->put_FileAs(bstr(TEXT("Lee")).get()));
    require(theirs->put_Email1Address(bstr(TEXT("lee@example.com")).get()));
    require(theirs->Save());

    require(mine->put_MobileTelephoneNumber(bstr(TEXT("010")).get()));
    require(mine->Save());

    const auto now = session.contact(oid);
    EXPECT_EQ(nameOf(now), TEXT("Lee"));
    EXPECT_EQ(textOf(now, &IContact::get_Email1Address), TEXT("lee@example.com"));
    EXPECT_EQ(textOf(now, &IContact::get_MobileTelephoneNumber), TEXT("010"));
    EXPECT_EQ(nameOf(mine), TEXT("Kim")) << "an item does not follow what others write";
}

TEST(Contact, SavingWithoutAChangeWritesNothing) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    const auto contact = session.contact(session.add(TEXT("Kim")));
    const CEOIDINFOEX before = RawContacts().info();

    require(contact->put_FileAs(bstr(TEXT("Kim")).get()));
    EXPECT_EQ(contact->Save(), S_OK);

    EXPECT_EQ(RawContacts().info().ftLastModified, before.ftLastModified);
}

TEST(Contact, PropertiesOfOthersInTheRecordStay) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    const CEOID oid = session.add(TEXT("Kim"));
    const RawContacts raw;
    ASSERT_EQ(raw.write(oid, CCeDBProp::ofI4(0x7001, 42)), oid);

    session.rename(oid, TEXT("Lee"));

    const CCeDBRecord record = raw.record(oid);
    ASSERT_NE(record.findProp(0x7001), nullptr);
    EXPECT_EQ(record.findProp(0x7001)->getI4(), 42);
    EXPECT_EQ(nameOf(session.contact(oid)), TEXT("Lee"));
}

TEST(Contact, OneDeletedMeanwhileCannotBeSaved) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    const CEOID oid = session.add(TEXT("Kim"));
    const auto changed = session.contact(oid);
    const auto unchanged = session.contact(oid);
    require(changed->put_FileAs(bstr(TEXT("Lee")).get()));
    session.remove(oid);

    EXPECT_EQ(changed->Save(), E_FAIL);
    EXPECT_EQ(unchanged->Save(), E_FAIL);
    EXPECT_EQ(countOf(session.items()), 0);
    EXPECT_EQ(nameOf(changed), TEXT("Lee")) << "it can still be read";
}

TEST(Contact, DeletingTakesTheRecordAway) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    const CEOID oid = session.add(TEXT("Kim"));
    session.add(TEXT("Lee"));
    const auto contact = session.contact(oid);

    EXPECT_EQ(contact->Delete(), S_OK);

    EXPECT_FALSE(session.contact(oid));
    EXPECT_EQ(namesOf(session.items()), std::vector<WString>{TEXT("Lee")});
    EXPECT_EQ(contact->Delete(), E_FAIL);
    EXPECT_EQ(session.newContact()->Delete(), E_FAIL) << "one that was never saved";
}

TEST(Contact, ATextOverTheLimitIsRefusedAndNothingIsWritten) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    const WString longest(65'471 / 2, u'x');
    const auto contact = session.newContact();
    require(contact->put_FileAs(bstr(TEXT("Kim")).get()));
    require(contact->put_Body(bstr(longest + TEXT("x")).get()));

    EXPECT_EQ(contact->Save(), E_INVALIDARG);
    EXPECT_EQ(oidOf(contact), 0u);
    EXPECT_EQ(countOf(session.items()), 0);

    require(contact->put_Body(bstr(longest).get()));
    ASSERT_EQ(contact->Save(), S_OK);
    const CEOIDINFOEX before = RawContacts().info();
    require(contact->put_FileAs(bstr(TEXT("Lee")).get()));
    require(contact->put_Body(bstr(longest + TEXT("y")).get()));

    EXPECT_EQ(contact->Save(), E_INVALIDARG);
    EXPECT_EQ(RawContacts().info().ftLastModified, before.ftLastModified);
    EXPECT_EQ(nameOf(session.contact(oidOf(contact))), TEXT("Kim"));

    require(contact->put_Body(bstr(TEXT("short")).get()));
    ASSERT_EQ(contact->Save(), S_OK) << "what could not be saved is not lost";
    EXPECT_EQ(nameOf(session.contact(oidOf(contact))), TEXT("Lee"));
}

TEST(Contact, TextsTogetherOverTheLimitOfARecordAreRefused) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    const WString longest(65'471 / 2, u'x');
    const auto contact = session.newContact();
    for (const auto putter : {&IContact::put_FileAs, &IContact::put_Body, &IContact::put_Categories}) {
        require((contact.get()->*putter)(bstr(longest).get()));
    }

    EXPECT_EQ(contact->Save(), E_INVALIDARG);
    EXPECT_EQ(countOf(session.items()), 0);
}

TEST(Contact, OneSavedByAnotherThreadIsReadHere) {
    const TemporaryStore store;
    const ContactsSession session;
    CEOID oid = 0;

    std::thread([&] { oid = ContactsSession().add(TEXT("Kim")); }).join();

    ASSERT_NE(oid, 0u);
    EXPECT_EQ(nameOf(session.contact(oid)), TEXT("Kim"));
    EXPECT_EQ(namesOf(session.items()), std::vector<WString>{TEXT("Kim")});
}
