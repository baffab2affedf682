#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <utility>
#include <vector>

#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tessera/platform/windows/Messages.h"
#include "tests/phonebook/GroupRows.h"
#include "tests/platform/contacts/ContactsFixture.h"
#include "tests/support/Values.h"

// What tests of following others' changes share: the other programs, the receiver, and the rows that come of it.

namespace following {

enum Event : UINT { created = 0x401, deleted = 0x403, changed = 0x406 };

/// Lets a test reach the steps that derived managers may use.
class Manager : public PhoneBook::PhoneBookDBMgr {
public:
    using PhoneBookDBMgr::createTable;
    using PhoneBookDBMgr::dropTable;
    using PhoneBookDBMgr::onDBNotification;

    bool isOpen(UINT tableId) { return getTable(tableId) != nullptr && getTable(tableId)->isOpen(); }
};

inline CENOTIFICATION notificationOf(CEOID record, DWORD database = 0, UINT event = 0) {
    return {sizeof(CENOTIFICATION), database, event, record, 0};
}

/// The contacts as any other program changes them.
class OtherProgram : public testing_support::ContactsSession {
public:
    CEOID addFiled(WStringView name, WStringView categories, WStringView mobile = TEXT("")) const {
        const ComPtr<IContact> made = newContact();
        testing_support::require(made->put_FileAs(testing_support::bstr(name).get()));
        testing_support::require(made->put_Categories(testing_support::bstr(categories).get()));
        testing_support::require(made->put_MobileTelephoneNumber(testing_support::bstr(mobile).get()));
        testing_support::require(made->Save());
        return testing_support::oidOf(made);
    }
    /// @return whether it was not filed there before: else there was nothing to write
    bool file(CEOID oid, WStringView categories) const {
        const ComPtr<IContact> found = contact(oid);
        const bool isElsewhere = testing_support::textOf(found, &IContact::get_Categories) != categories;
        testing_support::require(found->put_Categories(testing_support::bstr(categories).get()));
        testing_support::require(found->Save());
        return isElsewhere;
    }
};

/// An extension row, in the order in which its attributes stand.
struct ExtensionRow {
    DWORD contact = 0;
    CString name = {};
    CString telNo = {};
    CString group = {};
    CString bell = {};
    DWORD slots = 0;
    DWORD primary = 0;
    WORD flags = 7;

    friend bool operator==(const ExtensionRow&, const ExtensionRow&) = default;
    friend std::ostream& operator<<(std::ostream& out, const ExtensionRow& row) {
        return out << "{contact " << row.contact << ' ' << row.name << ' ' << row.telNo << ", group " << row.group
                   << ", bell " << row.bell << ", slots " << std::hex << row.slots << ", primary " << row.primary
                   << ", flags " << row.flags << std::dec << '}';
    }
};

/// A table of the mounted store, open beside the manager's own.
inline std::unique_ptr<Database::CeDBTable> openBeside(UINT tableId) {
    auto table =
        std::make_unique<Database::CeDBTable>(PhoneBook::aszTableName_[tableId], &PhoneBook::aRecDef_[tableId]);
    if (!table->open(nullptr)) throw std::runtime_error("the table cannot be opened");
    return table;
}

/// Every extension row of the mounted store, by the contact's identifier.
inline std::vector<ExtensionRow> extensionRows() {
    const auto table = openBeside(PhoneBook::PBDBTBL_PHONEBOOKEXT);
    const std::unique_ptr<Database::Iterator> each(table->getIterator(0, nullptr, nullptr));
    std::vector<ExtensionRow> rows;
    while (each->next() == S_OK) {
        rows.push_back({each->getProp(0).getUI4(), each->getProp(1).getText(), each->getProp(2).getText(),
                        each->getProp(3).getText(), each->getProp(6).getText(), each->getProp(8).getUI4(),
                        each->getProp(9).getUI4(), each->getProp(10).getUI2()});
    }
    return rows;
}

/// Nothing when the contact has no row, or more than one.
inline std::optional<ExtensionRow> extensionRowOf(CEOID contact) {
    std::optional<ExtensionRow> found;
    for (const ExtensionRow& row : extensionRows()) {
        if (row.contact != contact) continue;
        if (found) return std::nullopt;
        found = row;
    }
    return found;
}

/// A group as its row says: ID and name.
using Group = std::pair<DWORD, CString>;

/// Every group of the mounted store, by its ID.
inline std::vector<Group> groups() {
    const auto table = openBeside(PhoneBook::PBDBTBL_AVAILABLEPBGROUP);
    const std::unique_ptr<Database::Iterator> each(table->getIterator(0, nullptr, nullptr));
    std::vector<Group> found;
    while (each->next() == S_OK)
        found.emplace_back(each->getProp(0).getUI4(), each->getProp(1).getText());
    return found;
}

/// Grows with every change to a table.
inline std::pair<DWORD, DWORD> lastChangeOf(UINT tableId) {
    const auto table = openBeside(tableId);
    CEOIDINFOEX info{};
    if (!CeOidGetInfoEx2(table->getCEOID(), &info)) throw std::runtime_error("no information");
    return {info.ftLastModified.dwHighDateTime, info.ftLastModified.dwLowDateTime};
}

/// The window of a client that wants to hear when the set of groups has changed.
class Receiver : public CWnd {
public:
    Receiver() { CreateEx(0, AfxRegisterWndClass(0), TEXT("receiver"), 0, 0, 0, 0, 0, 0, 0, nullptr); }
    ~Receiver() override { DestroyWindow(); }

    /// What it was sent: each message with its two parameters.
    using Heard = std::vector<std::pair<WPARAM, LPARAM>>;
    /// Since the last call.
    Heard heard() { return std::exchange(heard_, {}); }
    /// Called with each message.
    std::function<void()> whenHeard = [] {};

protected:
    const MessageEntry* findHandler(UINT message) const override {
        static const MessageEntry groupsChanged{0x8778, [](CWnd& window, WPARAM wParam, LPARAM lParam) -> LRESULT {
                                                    auto& self = static_cast<Receiver&>(window);
                                                    self.heard_.emplace_back(wParam, lParam);
                                                    self.whenHeard();
                                                    return 0;
                                                }};
        return message == groupsChanged.message ? &groupsChanged : CWnd::findHandler(message);
    }

private:
    Heard heard_;
};

/// What a receiver hears of one change.
inline const Receiver::Heard once = {{0, 0}};
inline const Receiver::Heard nothing;

/// Dispatches what there is to pump.
inline void pumpAll() {
    MSG message;
    while (PeekMessage(&message))
        DispatchMessage(&message);
}

/// Waits for that many notifications, and dispatches them.
inline void pump(int notifications) {
    MSG message;
    while (notifications > 0 && GetMessage(&message)) {
        if (message.message == WM_DBNOTIFICATION) --notifications;
        DispatchMessage(&message);
    }
}

}  // namespace following
