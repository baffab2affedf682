#include <vector>

#include <gtest/gtest.h>

#include "tests/platform/contacts/ContactsFixture.h"
#include "tests/support/TemporaryStore.h"

using namespace testing_support;

namespace {

HRESULT create(const CLSID& classId, IUnknown* outer, DWORD context, const IID& iid, void** out) {
    return CoCreateInstance(classId, outer, context, iid, out);
}

bool answers(IUnknown* object, const IID& iid) {
    void* out = object;
    const HRESULT result = object->QueryInterface(iid, &out);
    EXPECT_EQ(result, out != nullptr ? S_OK : E_NOINTERFACE);
    if (out != nullptr) static_cast<IUnknown*>(out)->Release();
    return out != nullptr;
}

}  // namespace

TEST(Application, IsMadeByItsClass) {
    void* made = nullptr;

    ASSERT_EQ(create(CLSID_Application, nullptr, CLSCTX_INPROC_SERVER, IID_IPOutlookApp, &made), S_OK);

    EXPECT_EQ(static_cast<IPOutlookApp*>(made)->Release(), 0u);
}

TEST(Application, IsNotMadeInAnyOtherWay) {
    void* made = &made;
    const auto application = ContactsSession();

    EXPECT_EQ(create(IID_IContact, nullptr, CLSCTX_INPROC_SERVER, IID_IPOutlookApp, &made), E_INVALIDARG);
    EXPECT_EQ(made, nullptr);
    EXPECT_EQ(create(CLSID_Application, nullptr, 4, IID_IPOutlookApp, &made), E_INVALIDARG);
    EXPECT_EQ(create(CLSID_Application, &application.application(), 1, IID_IPOutlookApp, &made), E_INVALIDARG);
    EXPECT_EQ(create(CLSID_Application, nullptr, CLSCTX_INPROC_SERVER, IID_IContact, &made), E_NOINTERFACE);
    EXPECT_EQ(made, nullptr);
    EXPECT_EQ(create(CLSID_Application, nullptr, CLSCTX_INPROC_SERVER, IID_IPOutlookApp, nullptr), E_POINTER);
}

TEST(Application, EveryObjectAnswersItsInterfacesAndNoOther) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    ComPtr<IFolder> folder;
    require(session.application().GetDefaultFolder(10, folder.out()));
    const auto items = session.items();
    const auto contact = session.newContact();

    for (const IID& iid : {IID_IUnknown, IID_IDispatch, IID_IPOutlookApp, IID_IFolder, IID_IPOutlookItemCollection,
                           IID_IPOutlookItemCollection2, IID_IContact}) {
        const bool unknown = iid == IID_IUnknown;
        const bool dispatch = iid == IID_IDispatch;
        EXPECT_EQ(answers(&session.application(), iid), unknown || dispatch || iid == IID_IPOutlookApp);
        EXPECT_EQ(answers(folder.get(), iid), unknown || dispatch || iid == IID_IFolder);
        EXPECT_EQ(answers(items.get(), iid),
                  unknown || iid == IID_IPOutlookItemCollection || iid == IID_IPOutlookItemCollection2);
        EXPECT_EQ(answers(contact.get(), iid), unknown || dispatch || iid == IID_IContact);
    }
    EXPECT_EQ(contact->QueryInterface(IID_IContact, nullptr), E_POINTER);
}

TEST(Application, HasTheContactsFolderOnly) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    IFolder* folder = nullptr;

    for (const int id : {-1, 0, 9, 11, 13}) {
        EXPECT_EQ(session.application().GetDefaultFolder(id, &folder), E_FAIL);
        EXPECT_EQ(folder, nullptr);
    }
    ASSERT_EQ(session.application().GetDefaultFolder(10, &folder), S_OK);
    folder->Release();
    EXPECT_EQ(session.application().GetDefaultFolder(10, nullptr), E_POINTER);
}

TEST(Application, AnUnknownIdentifierIsAFailure) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    const CEOID oid = session.add(TEXT("Kim"));
    IDispatch* item = nullptr;

    for (const LONG other : {0, -1, static_cast<LONG>(oid) + 1, 0x7FFFFFFF}) {
        EXPECT_EQ(session.application().GetItemFromOid(other, &item), E_FAIL);
        EXPECT_EQ(item, nullptr);
    }
    EXPECT_EQ(session.application().GetItemFromOid(static_cast<LONG>(oid), nullptr), E_POINTER);
    session.remove(oid);
    EXPECT_EQ(session.application().GetItemFromOid(static_cast<LONG>(oid), &item), E_FAIL);
}

TEST(Application, ARecordOfAnotherDatabaseIsNoContact) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    CEOID database = 0;
    const HANDLE categories = CeOpenDatabaseEx2(&database, TEXT("\\Categories Database"), 0, 0, 0, nullptr);
    const CCeDBProp name = CCeDBProp::ofText(0x4001, TEXT("Family"));
    const CEPROPVAL value = name.propVal();
    const CEOID category = CeWriteRecordProps(categories, 0, 1, &value);
    CloseHandle(categories);
    ASSERT_NE(category, 0u);

    EXPECT_FALSE(session.contact(category));
}

TEST(Application, ItsObjectsAreReleasedInAnyOrder) {
    const MemoryStoreMount mount;
    ComPtr<IContact> contact;
    ComPtr<IPOutlookItemCollection> narrowed;
    {
        const ContactsSession session;
        session.add(TEXT("Kim"));
        ComPtr<IFolder> folder;
        require(session.application().GetDefaultFolder(10, folder.out()));
        ComPtr<IPOutlookItemCollection> items;
        require(folder->get_Items(items.out()));
        narrowed = restricted(items, TEXT("[FileAs] = \"kim\""));
        contact = itemOf(narrowed, 1);
        require(session.application().Logoff());
    }

    EXPECT_EQ(nameOf(contact), TEXT("Kim"));
    EXPECT_EQ(countOf(narrowed), 1);
    narrowed.reset();
    EXPECT_EQ(contact->put_FileAs(bstr(TEXT("Lee")).get()), S_OK);
    EXPECT_EQ(contact->Save(), S_OK);
}

TEST(Application, CountsReferencesExactly) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    IDispatch* item = nullptr;
    require(session.items()->Add(&item));

    EXPECT_EQ(item->AddRef(), 2u);
    void* asked = nullptr;
    EXPECT_EQ(item->QueryInterface(IID_IContact, &asked), S_OK);
    EXPECT_EQ(asked, static_cast<IContact*>(item)) << "both ways from an item to its contact are one";
    EXPECT_EQ(item->Release(), 2u);
    EXPECT_EQ(item->Release(), 1u);
    EXPECT_EQ(static_cast<IContact*>(asked)->Release(), 0u);
}

TEST(Application, WorksWithoutALogonAndAfterALogoff) {
    const MemoryStoreMount mount;
    void* made = nullptr;
    require(create(CLSID_Application, nullptr, CLSCTX_INPROC_SERVER, IID_IPOutlookApp, &made));
    const auto application = ComPtr<IPOutlookApp>::adopt(static_cast<IPOutlookApp*>(made));
    ComPtr<IFolder> folder;

    EXPECT_EQ(application->GetDefaultFolder(10, folder.out()), S_OK);
    EXPECT_EQ(application->Logoff(), S_OK);
    EXPECT_EQ(application->GetDefaultFolder(10, folder.out()), S_OK);
}

TEST(Application, ObjectsOfAStoreNoLongerMountedFailAndANewLogonMeansTheNewStore) {
    const MemoryStoreMount first;
    const ContactsSession session;
    session.add(TEXT("Kim"));
    const auto items = session.items();
    const auto contact = itemOf(items, 1);
    const auto narrowed = restricted(items, TEXT("[FileAs] = \"Kim\""));
    ASSERT_EQ(countOf(narrowed), 1);

    const MemoryStoreMount second;
    int count = -1;
    IDispatch* item = nullptr;

    EXPECT_EQ(items->get_Count(&count), E_FAIL);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(narrowed->get_Count(&count), E_FAIL);
    EXPECT_EQ(items->Item(1, &item), E_FAIL);
    EXPECT_EQ(contact->put_FileAs(bstr(TEXT("Lee")).get()), S_OK);
    EXPECT_EQ(contact->Save(), E_FAIL);
    EXPECT_EQ(contact->Delete(), E_FAIL);
    ASSERT_EQ(session.application().Logon(0), S_OK);
    EXPECT_EQ(countOf(session.items()), 0);
}

TEST(Application, LogonFailsWhereThereIsNoStoreToBeHad) {
    const MemoryStoreMount mount;
    CEOID database = 0;
    const HANDLE handle = CeOpenDatabaseEx2(&database, TEXT("Contacts Database"), 0, 0, 0, nullptr);
    CloseHandle(handle);
    ASSERT_TRUE(CeDeleteDatabaseEx(database));
    void* made = nullptr;
    require(create(CLSID_Application, nullptr, CLSCTX_INPROC_SERVER, IID_IPOutlookApp, &made));
    const auto application = ComPtr<IPOutlookApp>::adopt(static_cast<IPOutlookApp*>(made));
    ComPtr<IFolder> folder;

    EXPECT_EQ(application->Logon(0), E_FAIL);
    EXPECT_EQ(application->GetDefaultFolder(10, folder.out()), E_FAIL);
}
