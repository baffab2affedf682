// Writes the store that the upgrade tests open, and the text of what is in it: upgrade_store FOLDER
//
// Run once for each version of the format, by the last program that has it, and the two files kept for ever:
//   build/dev/bin/upgrade_store tests/upgrade

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>

#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tessera/platform/objectstore/ObjectStore.h"
#include "tests/phonebook/Calls.h"
#include "tests/phonebook/GroupRows.h"
#include "tests/phonebook/SpeedDialBuilders.h"
#include "tests/platform/contacts/ContactsFixture.h"
#include "tests/support/Builders.h"
#include "tests/support/Environment.h"
#include "tests/upgrade/StoreText.h"

namespace {

using namespace PhoneBook;
using calls_test::call;
using speed_dial::dial;
using testing_support::contact;
using testing_support::OpenPhoneBook;
using testing_support::require;

constexpr std::uint64_t dayInTicks = 864'000'000'000;
constexpr std::uint64_t firstDay = 150'000 * dayInTicks;  // in 2011

/// Answers the record of the last one.
CEOID addCategories() {
    std::int16_t id = 0;
    CEOID oid = 0;
    for (const WCHAR* name : {TEXT("가족"), TEXT("친구"), TEXT("회사"), TEXT("choir")}) {
        oid = groups_test::addCategory(name, ++id);
        if (oid == 0) throw std::runtime_error("a category was not added");
    }
    return oid;
}

void addGroups(PhoneBookDBMgr& manager, CEOID choir) {
    PBGroupInfo friends;
    require(manager.getAvailablePBGroup(2, &friends));
    friends.bReject = TRUE;
    friends.strBellCategory = TEXT("melodies");
    friends.strBell = TEXT("friends.mid");
    friends.strSMSBell = TEXT("ping.mid");
    require(manager.writeAvailablePBGroup(2, &friends, 0));

    PBGroupInfo alone;
    alone.strName = TEXT("without a category 🎺");
    require(manager.insertAvailablePBGroup(&alone, true));
    require(manager.deleteAvailablePBGroup(4));
    if (!groups_test::deleteCategory(choir)) throw std::runtime_error("the category was not deleted");
}

DWORD addContactWithEveryField(OpenPhoneBook& book) {
    PBRecord record = contact()
                          .name(TEXT("김민수"))
                          .group(TEXT("친구"))
                          .mobile(TEXT("010-2345-6789"))
                          .home(TEXT("02-312-4567"))
                          .business(TEXT("+82 31-222-3333"))
                          .email(TEXT("minsu@example.com"))
                          .pager(TEXT("015-1234-5678"))
                          .fax(TEXT("02-999-8888"))
                          .birthday(32'937.0)
                          .bell(TEXT("waltz.mid"))
                          .primary(8)
                          .record();
    record.strAvatar = TEXT("avatar.png");
    record.strPhoto = TEXT("사진.jpg");
    record.dwCallingScreen = 7;
    record.dwCITypeMask |= aPBAttribute_[PBDBATTR_AVATAR].mask | aPBAttribute_[PBDBATTR_PHOTO].mask |
                           aPBAttribute_[PBDBATTR_CALLINGSCREEN].mask;
    DWORD oid = 0;
    require(book->insertPBRecord(record, &oid));
    return oid;
}

/// What the phone book itself does not write: notes, and several categories.
void addNotes(DWORD oid) {
    const auto item = testing_support::ContactsSession().contact(oid);
    require(item->put_Body(testing_support::bstr(TEXT("met in 부산,\n\"the harbour\"\t☂")).get()));
    require(item->put_Categories(testing_support::bstr(TEXT("친구, 회사, \"odd, one\"")).get()));
    require(item->Save());
}

void give(OpenPhoneBook& book, SpeedDialInfo slot) {
    require(book->writeSpeedDialInfo(slot.dwSDialID, &slot));
}

void logCalls(OpenPhoneBook& book) {
    DWORD index = 0;
    for (const WCHAR* number : {TEXT("01023456789"), TEXT("0212345678"), TEXT("01011112222"), TEXT(""), szWithheldCID_,
                                TEXT("01011112222")}) {
        // The last is of the same moment as the first, which is deleted.
        CallEntry entry = call(firstDay + index % 5 * dayInTicks, number);
        entry.dwCallType = index % 3 + 1;
        entry.dwCallingTime = index * 61;
        entry.strCNAP = TEXT("network's name");
        entry.strCDNIP = TEXT("0100");
        require(book->insertCallEntry(&entry));
        ++index;
    }
    DWORD oldest = 0;
    require(book->getLRUCallEntry(&oldest, nullptr));
    require(book->deleteCallEntry(oldest));
}

void fill(OpenPhoneBook& book) {
    const DWORD deletedFirst = book.add(contact().name(TEXT("deleted first")).mobile(TEXT("010-0000-0001")));
    const DWORD minsu = addContactWithEveryField(book);
    addNotes(minsu);
    const DWORD anna = book.add(contact().name(TEXT("Anna")).mobile(TEXT("010-1111-2222")).group(TEXT("회사")));
    book.add(contact().name(TEXT("anna")).home(TEXT("+49 89 12345")));
    book.add(contact().name(TEXT("ANNA")).birthday(-1'000.25));
    book.add(contact().name(TEXT("고민정")).business(TEXT("031-444-5555")).group(TEXT("without a category 🎺")));
    book.add(contact().name(TEXT("ㄱㅁㅅ")));
    book.add(contact().name(TEXT("Zoë 😀👩‍👩‍👧 e\u0301")).email(TEXT("zoë@example.com")));
    book.add(contact().mobile(TEXT("*#06#")));
    const DWORD deletedLast =
        book.add(contact().name(TEXT("deleted last")).mobile(TEXT("010-0000-0002")).group(TEXT("친구")));

    give(book, dial(1).of(minsu).mobile(TEXT("010-2345-6789")));
    give(book, dial(2).of(deletedLast).mobile(TEXT("010-0000-0002")));
    give(book, dial(50).of(minsu).business(TEXT("+82 31-222-3333")));
    give(book, dial(99).of(anna).mobile(TEXT("010-1111-2222")));

    logCalls(book);
    require(book->deletePBRecord(deletedFirst));
    require(book->deletePBRecord(deletedLast));
    require(book->deletePBRecord(book.add(contact().name(TEXT("gone at once")))));
}

void writeStore(const std::filesystem::path& folder) {
    const std::filesystem::path store = folder / "store-format-2.db";
    if (std::filesystem::exists(store)) throw std::runtime_error(store.string() + " is there, and is not replaced");
    testing_support::setVariable("LC_ALL", "en_US.UTF-8");  // the store keeps it
    if (ObjectStore::mount(store.string()) == FALSE) throw std::runtime_error(ObjectStore::errorText());
    const CEOID choir = addCategories();
    {
        OpenPhoneBook book;
        addGroups(book.manager(), choir);
        fill(book);
    }
    std::ofstream(folder / "store-format-2.txt", std::ios::binary) << upgrade_test::textOfStore();
    ObjectStore::unmount();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: upgrade_store FOLDER\n";
        return 2;
    }
    try {
        writeStore(argv[1]);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "upgrade_store: " << error.what() << '\n';
        return 1;
    }
}
