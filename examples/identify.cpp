// Says who has a telephone number: identify 010-1234-5678

#include <iostream>
#include <tessera/phonebook/PhoneBookDBMgr.h>
#include <tessera/platform/base/Unicode.h>

int main(int argc, char** argv) {
    const auto number = textOfUtf8(argc > 1 ? argv[1] : "");
    PhoneBook::PhoneBookDBMgr phoneBook;
    if (!number || FAILED(phoneBook.initDB(false)) || FAILED(phoneBook.openDB(nullptr))) return 2;

    PhoneBook::PBRecord caller;
    caller.dwCITypeMask = 0x10001;  // the name, and the group: a field of the phone book's own
    DWORD contact = 0;
    const auto result = phoneBook.queryCallerInfo(phoneBook.makeCNIP(*number), &caller, &contact);
    if (FAILED(result) || contact == 0) return 1;

    std::cout << utf8Of(caller.strName.view()) << " (" << utf8Of(caller.strGroup.view()) << ")\n";
    return 0;
}
