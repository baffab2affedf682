#include "tessera/platform/engine/ContactNumbers.h"
#include "tessera/platform/engine/SqliteEngine.h"
#include "tessera/platform/engine/StoreRules.h"

// Contacts by their telephone numbers.

namespace Platform {

DWORD SqliteEngine::findNumber(std::string_view number, const SortOrder& along, CEOID& record) {
    return reading([&]() -> DWORD {
        const SqliteSnapshot snapshot(*connection_);
        CEOID database = 0;  // that of contacts: only these have numbers
        std::vector<CEOID> holders;
        for (SqliteQuery row(*connection_, Sql::recordsOfNumber, number); row.step();) {
            database = static_cast<CEOID>(row.integer(0) >> 32);
            holders.push_back(recordOfRow(row.integer(0)));
        }
        if (holders.empty()) return nothingFurther();
        record = holders.size() == 1 ? holders.front() : firstOf(database, holders, along, Direction::forward).record;
        return ERROR_SUCCESS;
    });
}

void SqliteEngine::addNumbers(const DatabaseState& database, CEOID record, std::string_view packed) {
    if (!database.keepsNumbers) return;
    for (const std::string& number : reducedNumbers(packed))
        runSql(*connection_, Sql::insertNumber, number, rowOf(database.info.id, record));
}

void SqliteEngine::removeNumbers(const DatabaseState& database, CEOID record, std::string_view packed) {
    if (!database.keepsNumbers) return;
    for (const std::string& number : reducedNumbers(packed))
        runSql(*connection_, Sql::deleteNumber, number, rowOf(database.info.id, record));
}

void SqliteEngine::fillNumbers() {
    CEOID contacts = 0;
    if (findDatabase(systemDatabases[0].name, contacts) != ERROR_SUCCESS) return;
    const DatabaseState& database = *counters_.find(contacts);
    SqliteQuery row(*connection_, Sql::recordsOfDatabase, rowOf(contacts, noRecordBefore),
                    rowOf(contacts, noRecordAfter));
    while (row.step()) {
        if (!wholeRecord(row.bytes(1))) throw connection_->damage();
        addNumbers(database, recordOfRow(row.integer(0)), row.bytes(1));
    }
}

}  // namespace Platform
