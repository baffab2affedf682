#include <cstdio>
#include <tessera/phonebook/PhoneBookDBMgr.h>
#include <tessera/platform/objectstore/ObjectStore.h>

// A program of somebody else's: it opens a phone book in memory and asks it who is calling.

namespace {

bool answers() {
    PhoneBook::PhoneBookDBMgr manager;
    if (manager.initDB(false) != S_OK || manager.openDB(nullptr) != S_OK) return false;

    const CString number = PhoneBook::PhoneBookDBMgr::makeCNIP(TEXT("+82 10-1234-5678"));
    PhoneBook::PBRecord caller;
    const bool isUnknown = manager.queryCallerInfo(number, &caller, nullptr) == E_FAIL;
    return number == TEXT("01012345678") && isUnknown && manager.getNumRecords() == 0;
}

}  // namespace

int main() {
    if (!ObjectStore::mountMemory()) {
        std::puts(ObjectStore::errorText().c_str());
        return 1;
    }
    const bool isWorking = answers();
    ObjectStore::unmount();
    std::puts(isWorking ? "the phone book answers" : "the phone book does not answer as it should");
    return isWorking ? 0 : 1;
}
