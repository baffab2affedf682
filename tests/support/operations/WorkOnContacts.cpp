#include <span>
#include <string>

#include "tessera/phonebook/model/FieldText.h"
#include "tessera/platform/base/Unicode.h"
#include "tests/phonebook/Following.h"
#include "tests/support/FileInMemory.h"
#include "tests/support/operations/Kinds.h"

namespace testing_support::work {

using namespace PhoneBook;

namespace {

PhoneBookOperation insert(Parameters& parameters) {
    const PBRecord record = parameters.record(true);
    return {described("insertPBRecord", record), [record](PhoneBookDBMgr& manager) {
                PBRecord given = record;
                DWORD oid = 0;
                return manager.insertPBRecord(given, &oid);
            }};
}

/// A contact that does not exist is not given an extension row: the manager would make it.
PhoneBookOperation update(Parameters& parameters) {
    const bool isMissing = parameters.oneIn(8);
    const CEOID found = isMissing ? 0 : parameters.existing(szContactsDatabase);
    const CEOID oid = found != 0 ? found : CEOID{0x7FFFFFFF};
    const PBRecord record = parameters.record(found != 0);
    return {described("updatePBRecord", oid, record), [=](PhoneBookDBMgr& manager) {
                PBRecord given = record;
                return manager.updatePBRecord(oid, given);
            }};
}

PhoneBookOperation erase(Parameters& parameters) {
    const CEOID oid = parameters.contact();
    return {described("deletePBRecord", oid), [oid](PhoneBookDBMgr& manager) { return manager.deletePBRecord(oid); }};
}

/// A row of a table by itself. Where that is a contact, its extension row is dropped as by who hears of it.
PhoneBookOperation eraseRow(Parameters& parameters) {
    const int tableId = static_cast<int>(parameters.below(nNumTables_));
    const bool isContact = tableId == PBDBTBL_POLCONTACTS;
    const CEOID oid =
        isContact ? parameters.contact() : parameters.recordOf(aszTableName_[static_cast<std::size_t>(tableId)]);
    return {described("deleteRecord", tableId, oid), [=](PhoneBookDBMgr& manager) {
                return asOneUnit([&] {
                    DWORD row = oid;
                    const HRESULT result = manager.deleteRecord(tableId, row);
                    const CENOTIFICATION gone = following::notificationOf(oid);
                    if (isContact && SUCCEEDED(result)) manager.onCEOIDRecordDeletedContacts(&gone);
                    return result;
                });
            }};
}

PhoneBookOperation eraseAll(Parameters& parameters) {
    if (!parameters.oneIn(3)) return erase(parameters);
    return {described("deleteAllPBRecords"), [](PhoneBookDBMgr& manager) { return manager.deleteAllPBRecords(); }};
}

PhoneBookOperation insertSample(Parameters&) {
    return {described("insertRecord"), [](PhoneBookDBMgr& manager) { return manager.insertRecord(); }};
}

/// A value of a list; quotes within are passed over.
WString listed(const CString& text) {
    WString value;
    for (const WCHAR unit : text.view()) {
        if (unit != u'"') value += unit;
    }
    return TEXT('"') + value + TEXT('"');
}

WString lineOf(const PBRecord& record) {
    WString line;
    for (const PBAttribute& attribute : aPBAttribute_) {
        if (attribute.mask != 0) line += listed(getPBRecordFieldStr(record, attribute.mask)) + TEXT(',');
    }
    return line;
}

/// An import commits now and then, by the clock: here it is one unit.
PhoneBookOperation import(Parameters& parameters) {
    WString text = TEXT("Name\n");
    std::string lines;
    for (unsigned count = parameters.below(4); count != 0; --count) {
        const PBRecord record = parameters.record(true);
        text += lineOf(record) + TEXT('\n');
        lines += described(" line", record);
    }
    return {described("buildDBFromFile") + lines, [text](PhoneBookDBMgr& manager) {
                const FileInMemory file(std::as_bytes(std::span(text)));
                CString path = *textOfUtf8(file.path());
                return asOneUnit([&] { return manager.buildDBFromFile(path, 0); });
            }};
}

HRESULT openedAnew(PhoneBookDBMgr& manager) {
    const HRESULT prepared = manager.initDB(false);
    const HRESULT opened = manager.openDB(nullptr);
    return FAILED(prepared) ? prepared : opened;
}

PhoneBookOperation reopen(Parameters&) {
    return {described("closeDB, initDB, openDB"), [](PhoneBookDBMgr& manager) {
                manager.closeDB();
                return openedAnew(manager);
            }};
}

PhoneBookOperation makeAnew(Parameters& parameters) {
    if (!parameters.oneIn(4)) return reopen(parameters);
    return {described("destroyDB, initDB, openDB"), [](PhoneBookDBMgr& manager) {
                return asOneUnit([&] {
                    const HRESULT destroyed = manager.destroyDB();
                    const HRESULT made = openedAnew(manager);
                    return FAILED(destroyed) ? destroyed : made;
                });
            }};
}

constexpr Kind kinds[] = {{14, insert},  {8, update},       {5, erase},  {4, eraseRow},
                          {1, eraseAll}, {1, insertSample}, {2, import}, {1, makeAnew}};

}  // namespace

std::span<const Kind> kindsOnContacts() {
    return kinds;
}

}  // namespace testing_support::work
