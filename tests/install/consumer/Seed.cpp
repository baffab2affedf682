#include <tessera/phonebook/PhoneBookDBMgr.h>

// Puts one person into the store that the environment names, for the examples to find.

int main() {
    PhoneBook::PhoneBookDBMgr phoneBook;
    if (FAILED(phoneBook.initDB(false)) || FAILED(phoneBook.openDB(nullptr))) return 1;
    PhoneBook::PBRecord person;
    person.strName = TEXT("김민수");
    person.strGroup = TEXT("친구");
    person.strMobileTelephoneNumber = TEXT("010-2345-6789");
    person.strBell = TEXT("waltz.mid");
    person.dwCITypeMask = 0x110005;  // these four
    return FAILED(phoneBook.insertPBRecord(person, nullptr)) ? 1 : 0;
}
