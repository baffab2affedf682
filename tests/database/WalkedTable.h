#pragma once

#include <memory>
#include <stdexcept>
#include <thread>

#include "tessera/database/CeDBTable.h"
#include "tests/database/SampleTable.h"
#include "tests/support/MountKinds.h"

namespace testing_support {

/// Who writes while a table is walked.
enum class Writer { theTableItself, anotherTable, anotherThread };

inline constexpr const char* nameOf(Writer writer) {
    constexpr const char* names[] = {"TheTableItself", "AnotherTable", "AnotherThread"};
    return names[static_cast<int>(writer)];
}

/// A new table of named rows, open in the order of their names, and those who write to it. Another thread is
/// done when the write returns.
class WalkedTable {
public:
    static constexpr int nameIdx = 1;

    explicit WalkedTable(WORD sortFlags = 0) {
        if (table_.create() == 0 || !table_.open(nameIdx, sortFlags, nullptr) || !other_.open(nullptr)) {
            throw std::runtime_error("the table cannot be opened");
        }
    }
    ~WalkedTable() {
        other_.close();
        table_.drop();
    }
    WalkedTable(const WalkedTable&) = delete;
    WalkedTable& operator=(const WalkedTable&) = delete;

    std::unique_ptr<Database::Iterator> walk(CCeDBProp* equalTo = nullptr) {
        return std::unique_ptr<Database::Iterator>(table_.getIterator(equalTo, nullptr));
    }
    DWORD getNumRecords() { return table_.getNumRecords(); }

    DWORD insert(Writer writer, const WString& named) {
        DWORD oid = 0;
        write(writer, [&](Database::CeDBTable& table) {
            CCeDBRecord record = recordOf(rank(0), name(CString(named)), note(TEXT("-")));
            return table.insertRecord(&record, oid);
        });
        return oid;
    }
    /// The table itself goes to the row for this, as an update by identifier does.
    void rename(Writer writer, DWORD oid, const WString& named) {
        write(writer, [&](Database::CeDBTable& table) {
            CCeDBRecord change = recordOf(name(CString(named)));
            return table.updateRecord(oid, &change, 0, nullptr);
        });
    }
    void erase(Writer writer, DWORD oid) {
        write(writer, [&](Database::CeDBTable& table) { return table.deleteRecord(oid); });
    }

private:
    template <class Write>
    void write(Writer writer, Write change) {
        HRESULT result = E_FAIL;
        if (writer == Writer::anotherThread) {
            std::thread([&] {
                Database::CeDBTable threads(TEXT("QZ_Walked"), &sampleSchema);
                if (threads.open(nullptr)) result = change(threads);
            }).join();
        } else {
            result = change(writer == Writer::theTableItself ? table_ : other_);
        }
        if (result != S_OK) throw std::runtime_error("the table was not written to");
    }

    Database::CeDBTable table_{TEXT("QZ_Walked"), &sampleSchema};
    Database::CeDBTable other_{TEXT("QZ_Walked"), &sampleSchema};
};

}  // namespace testing_support
