#pragma once

#include <string>

#include "tests/support/Builders.h"
#include "tests/tools/ContactsOf.h"
#include "tests/tools/ToolTest.h"

namespace tool_test {

/// What a contact may hold to get hold of who looks at it: sequences for the terminal in all their forms, movements
/// of the cursor, turned directions, ends of lines, half a character, and words for a shell, a printer and SQL.
inline const WString hostileText = TEXT("\u001B[31mred\u001B]")
    TEXT("0\u0007\u009B31m\u009D0\u009C\u007F\b\r\n\t\u202E\u2066\u061C\u200F\u2028\u2029\uFEFF\uFFF9\u206A")
        TEXT("'; DROP TABLE record; -- \", %s%n $(id) \\ \xD800 김😀");

/// The same as far as the name of a group can be it.
inline const WString hostileName = TEXT("\u001B[31mred\u001B]")
    TEXT("0\u0007\u009B31m\u009D0\u009C\u007F\b\r\n\t\u202E\u2066\u061C\u200F\u2028\u2029\uFEFF\uFFF9\u206A")
        TEXT("' DROP TABLE record -- %s%n $(id) \\ 김😀");

/// A phone book in which everything that can have a name has such a one, the store's file too.
class HostilePhoneBook : public Tool {
public:
    HostilePhoneBook() {
        if (ObjectStore::mount(path(), testing_support::quickOptions()) == FALSE)
            throw std::runtime_error(ObjectStore::errorText());
        addCategory();
        fill();
        ObjectStore::unmount();
        bytes_ = testing_support::readFile(path());
    }

    /// Makes the store again what it was at first.
    void restore() const {
        for (const char* beside : {"-wal", "-shm"})
            std::filesystem::remove(path() + beside);
        testing_support::writeFile(path(), bytes_);
    }

    std::string path() const { return (*this / "\x1B[31mred\xC2\x9B\n\u202E'; --.db").string(); }
    std::string contact() const { return std::to_string(contact_); }
    std::string call() const { return std::to_string(call_); }

private:
    static constexpr std::int16_t groupId = 40;

    static void addCategory() {
        CCeDBDatabase categories;
        CCeDBRecord record;
        record.addProp(CCeDBProp::ofText(0x4001, CString(hostileName)));
        record.addProp(CCeDBProp::ofI2(0x4002, groupId));
        if (!categories.open(TEXT("\\Categories Database"), nullptr, nullptr) || categories.add(record) == 0)
            throw std::runtime_error("the category was not added");
    }

    void fill() {
        testing_support::OpenPhoneBook book;  // makes the category's group
        PhoneBook::PBGroupInfo group;
        testing_support::require(book->getAvailablePBGroup(groupId, &group));
        group.strBell = group.strSMSBell = group.strBellCategory = CString(hostileText);
        testing_support::require(book->writeAvailablePBGroup(groupId, &group, 0));

        contact_ = book.add(testing_support::contact()
                                .name(hostileText)
                                .group(hostileName)
                                .mobile(TEXT("010\u001B[31m-1\u009B-2\n"))
                                .home(hostileText)
                                .business(hostileText)
                                .email(hostileText)
                                .pager(hostileText)
                                .fax(hostileText)
                                .bell(hostileText));
        // The slot will add to the first one's categories.
        book.add(testing_support::contact().name(hostileText).group(hostileName));
        PhoneBook::SpeedDialInfo slot;
        slot.dwOID = contact_;
        slot.dwTelType = PhoneBook::aPBAttribute_[PhoneBook::PBDBATTR_MOBILETEL].mask;
        slot.strTelNo = CString(hostileText);
        testing_support::require(book->writeSpeedDialInfo(5, &slot));

        PhoneBook::CallEntry call;
        call.strCID = call.strCNAP = call.strCDNIP = CString(hostileText);
        testing_support::require(book->insertCallEntry(&call));
        testing_support::require(book->getLRUCallEntry(&call_, nullptr));
    }

    std::string bytes_;
    DWORD contact_ = 0;
    DWORD call_ = 0;
};

}  // namespace tool_test
