#pragma once

#include <cstdint>
#include <functional>

#include "tessera/platform/base/Bstr.h"
#include "tessera/platform/base/ComPtr.h"
#include "tessera/platform/contacts/OutlookInterfaces.h"
#include "tessera/platform/objectstore/CCeDBDatabase.h"
#include "tessera/platform/objectstore/ObjectStore.h"
#include "tests/platform/contacts/ContactsFixture.h"
#include "tests/tools/ToolTest.h"

namespace tool_test {

/// Does something to the tool's store as another program does that knows nothing of the phone book.
inline void asAnotherProgram(const Tool& tool, const std::function<void()>& act) {
    ASSERT_TRUE(ObjectStore::mount(tool.store().string())) << ObjectStore::errorText();
    act();
    ObjectStore::unmount();
}

/// The same to one contact, through the contacts model.
inline void visitContact(const Tool& tool, const Json& oid, const std::function<HRESULT(IContact&)>& visit) {
    asAnotherProgram(tool, [&] {
        const testing_support::ContactsSession session;
        const ComPtr<IContact> contact = session.contact(oid.get<CEOID>());
        ASSERT_TRUE(contact);
        ASSERT_EQ(visit(*contact.get()), S_OK);
    });
}

/// Adds a contact, but nothing of what the phone book adds to it. Answers its identifier.
inline Json addContactAlone(const Tool& tool, const CString& name, const CString& categories) {
    Json oid;
    asAnotherProgram(tool, [&] {
        const testing_support::ContactsSession session;
        const ComPtr<IContact> contact = session.newContact();
        contact->put_FileAs(Bstr(name).get());
        contact->put_Categories(Bstr(categories).get());
        ASSERT_EQ(contact->Save(), S_OK);
        oid = testing_support::oidOf(contact);
    });
    return oid;
}

inline void changeContact(const Tool& tool, const Json& oid, const std::function<void(IContact&)>& change) {
    visitContact(tool, oid, [&](IContact& contact) {
        change(contact);
        return contact.Save();
    });
}

/// Deletes the contact, but nothing of what the phone book adds to it.
inline void deleteContactAlone(const Tool& tool, const Json& oid) {
    visitContact(tool, oid, [](IContact& contact) { return contact.Delete(); });
}

inline void fileUnder(const Tool& tool, const Json& oid, const CString& categories) {
    changeContact(tool, oid, [&](IContact& contact) { contact.put_Categories(Bstr(categories).get()); });
}

inline void takeNotes(const Tool& tool, const Json& oid, const CString& notes) {
    changeContact(tool, oid, [&](IContact& contact) { contact.put_Body(Bstr(notes).get()); });
}

/// Adds a category, but no group. Answers its identifier.
inline CEOID addCategoryAlone(const Tool& tool, const CString& name, std::int16_t id) {
    CEOID oid = 0;
    asAnotherProgram(tool, [&] {
        CCeDBDatabase categories;
        ASSERT_TRUE(categories.open(TEXT("\\Categories Database"), nullptr, nullptr));
        CCeDBRecord record;
        record.addProp(CCeDBProp::ofText(0x4001, name));
        record.addProp(CCeDBProp::ofI2(0x4002, id));
        oid = categories.add(record);
        ASSERT_NE(oid, 0u);
    });
    return oid;
}

/// Deletes the category, and leaves its group and its contacts.
inline void deleteCategoryAlone(const Tool& tool, CEOID oid) {
    asAnotherProgram(tool, [&] {
        CEOID database = 0;
        const HANDLE categories = CeOpenDatabaseEx2(&database, TEXT("\\Categories Database"), 0, 0, 0, nullptr);
        EXPECT_TRUE(CeDeleteRecord(categories, oid));
        CloseHandle(categories);
    });
}

}  // namespace tool_test
