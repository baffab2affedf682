#include "tests/phonebook/Following.h"
#include "tests/support/operations/Kinds.h"

namespace testing_support::work {

using namespace PhoneBook;

namespace {

using Follower = HRESULT (PhoneBookDBMgr::*)(const CENOTIFICATION*);

/// Another program's step, and the manager's following of it: the step answers which record it was.
template <class Step>
HRESULT followed(PhoneBookDBMgr& manager, Follower follow, Step step) {
    return asOneUnit([&] {
        const CENOTIFICATION notification = following::notificationOf(step());
        return (manager.*follow)(&notification);
    });
}

PhoneBookOperation addContact(Parameters& parameters) {
    const CString name = parameters.name();
    const CString categories = parameters.categories();
    const CString mobile = parameters.number();
    return {described("another program adds a contact", name, categories, mobile), [=](PhoneBookDBMgr& manager) {
                return followed(manager, &PhoneBookDBMgr::onCEOIDCreatedContacts, [&] {
                    return following::OtherProgram().addFiled(name.view(), categories.view(), mobile.view());
                });
            }};
}

ComPtr<IContact> contactOrThrow(const ContactsSession& session, CEOID oid) {
    ComPtr<IContact> contact = session.contact(oid);
    if (contact.get() == nullptr) throw std::runtime_error("no such contact");
    return contact;
}

PhoneBookOperation fileContact(Parameters& parameters) {
    const CEOID oid = parameters.existing(szContactsDatabase);
    const CString categories = parameters.categories();
    const Follower follow =
        parameters.oneIn(3) ? &PhoneBookDBMgr::onContactsCategoriesChanged : &PhoneBookDBMgr::onCEOIDChangedContacts;
    return {described("another program files a contact", oid, categories), [=](PhoneBookDBMgr& manager) {
                return followed(manager, follow, [&] {
                    const ContactsSession session;
                    const ComPtr<IContact> contact = contactOrThrow(session, oid);
                    require(contact->put_Categories(bstr(categories.view()).get()));
                    require(contact->Save());
                    return oid;
                });
            }};
}

PhoneBookOperation removeContact(Parameters& parameters) {
    const CEOID oid = parameters.existing(szContactsDatabase);
    return {described("another program removes a contact", oid), [=](PhoneBookDBMgr& manager) {
                return followed(manager, &PhoneBookDBMgr::onCEOIDRecordDeletedContacts, [&] {
                    const ContactsSession session;
                    require(contactOrThrow(session, oid)->Delete());
                    return oid;
                });
            }};
}

PhoneBookOperation addCategory(Parameters& parameters) {
    const CString name = parameters.groupName();
    const auto id = static_cast<std::int16_t>(parameters.groupId());
    return {described("another program adds a category", name, id), [=](PhoneBookDBMgr& manager) {
                return followed(manager, &PhoneBookDBMgr::onCEOIDCreatedCategories, [&] {
                    CCeDBRecord row = groups_test::categoryRow(name, id);
                    CEOID oid = 0;
                    require(following::openBeside(PBDBTBL_CATEGORIES)->insertRecord(&row, oid));
                    return oid;
                });
            }};
}

/// Nobody follows it: a renamed category leaves its group's name until the groups are made anew.
PhoneBookOperation renameCategory(Parameters& parameters) {
    const StoredRecord row = parameters.row(PBDBTBL_CATEGORIES);
    const CString name = parameters.groupName();
    return {described("another program renames a category", row.oid, name), [=](PhoneBookDBMgr&) -> HRESULT {
                if (row.oid == 0) return E_FAIL;
                CCeDBRecord renamed = row.properties;
                renamed.replaceProp(CCeDBProp::ofText(0x4001, name));
                return following::openBeside(PBDBTBL_CATEGORIES)->updateRecord(row.oid, &renamed, 0, nullptr);
            }};
}

PhoneBookOperation removeCategory(Parameters& parameters) {
    const CEOID oid = parameters.existing(aszTableName_[PBDBTBL_CATEGORIES]);
    return {described("another program removes a category", oid), [=](PhoneBookDBMgr& manager) {
                if (oid == 0) return E_FAIL;
                return followed(manager, &PhoneBookDBMgr::onCEOIDRecordDeletedCategories, [&] {
                    CEOID removed = oid;
                    require(following::openBeside(PBDBTBL_CATEGORIES)->deleteRecord(removed));
                    return oid;
                });
            }};
}

/// A notification that nothing was behind, or that comes a second time.
PhoneBookOperation hear(Parameters& parameters) {
    struct Heard {
        const char* name;
        Follower follow;
        const WCHAR* database;
    };
    const WCHAR* const categories = aszTableName_[PBDBTBL_CATEGORIES];
    const Heard all[] = {
        {"onCEOIDCreatedContacts", &PhoneBookDBMgr::onCEOIDCreatedContacts, szContactsDatabase},
        {"onCEOIDChangedContacts", &PhoneBookDBMgr::onCEOIDChangedContacts, szContactsDatabase},
        {"onCEOIDRecordDeletedContacts", &PhoneBookDBMgr::onCEOIDRecordDeletedContacts, szContactsDatabase},
        {"onContactsCategoriesChanged", &PhoneBookDBMgr::onContactsCategoriesChanged, szContactsDatabase},
        {"onCEOIDCreatedCategories", &PhoneBookDBMgr::onCEOIDCreatedCategories, categories},
        {"onCEOIDRecordDeletedCategories", &PhoneBookDBMgr::onCEOIDRecordDeletedCategories, categories},
    };
    const Heard heard = parameters.oneOf(all);
    const CEOID oid = parameters.recordOf(heard.database);
    return {described(heard.name, oid), [=](PhoneBookDBMgr& manager) {
                const CENOTIFICATION notification = following::notificationOf(oid);
                return (manager.*heard.follow)(&notification);
            }};
}

constexpr Kind kinds[] = {{4, addContact},     {4, fileContact},    {2, removeContact}, {2, addCategory},
                          {1, renameCategory}, {1, removeCategory}, {6, hear}};

}  // namespace

std::span<const Kind> kindsOfOthers() {
    return kinds;
}

}  // namespace testing_support::work
