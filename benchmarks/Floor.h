#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

// What the same work costs with nothing in between: hand-written SQL with the same durability, and a
// single pass over packed memory.

namespace benchmarks {

/// A table of contacts with an index on the reduced mobile number.
class SqlFloor {
public:
    /// With that many people, or empty.
    explicit SqlFloor(const std::string& file);
    ~SqlFloor();
    SqlFloor(const SqlFloor&) = delete;
    SqlFloor& operator=(const SqlFloor&) = delete;

    void fill(int people);
    /// Inserts people in transactions of 1,000, as an import does.
    void insertInBatches(int people);
    /// Fetches the contact with that reduced number; answers how long its texts are, 0 when there is none.
    std::size_t lookUp(std::string_view reducedMobile);

private:
    void run(const char* sql);
    void insert(int person);

    sqlite3* database_ = nullptr;
    sqlite3_stmt* insert_ = nullptr;
    sqlite3_stmt* lookUp_ = nullptr;
};

/// A call log that holds `calls` calls, with an index on their time.
class CallLogFloor {
public:
    CallLogFloor(const std::string& file, int calls);
    ~CallLogFloor();
    CallLogFloor(const CallLogFloor&) = delete;
    CallLogFloor& operator=(const CallLogFloor&) = delete;

    /// Deletes the oldest call and inserts one, in one transaction.
    void log(std::int64_t time, const std::u16string& number, const std::u16string& name);

private:
    void step(sqlite3_stmt* statement);

    sqlite3* database_ = nullptr;
    sqlite3_stmt* begin_ = nullptr;
    sqlite3_stmt* deleteOldest_ = nullptr;
    sqlite3_stmt* insert_ = nullptr;
    sqlite3_stmt* commit_ = nullptr;
};

/// Contacts, each with an extension row, and a table of speed-dial slots with an index on the slot.
class SpeedDialFloor {
public:
    SpeedDialFloor(const std::string& file, int people);
    ~SpeedDialFloor();
    SpeedDialFloor(const SpeedDialFloor&) = delete;
    SpeedDialFloor& operator=(const SpeedDialFloor&) = delete;

    /// Inserts the slot's row and writes the contact and its extension row, in one transaction.
    void set(int slot, int person);
    /// Deletes the slot's row and writes the contact and its extension row, in one transaction.
    void clear(int slot, int person);

private:
    void step(sqlite3_stmt* statement);
    void writePerson(int person, int slot);

    sqlite3* database_ = nullptr;
    sqlite3_stmt* begin_ = nullptr;
    sqlite3_stmt* insertSlot_ = nullptr;
    sqlite3_stmt* deleteSlot_ = nullptr;
    sqlite3_stmt* writeContact_ = nullptr;
    sqlite3_stmt* writeExtension_ = nullptr;
    sqlite3_stmt* commit_ = nullptr;
};

/// All reduced mobile numbers behind one another, a zero after each.
std::string packedNumbers(int people);
/// All names in lower case, packed the same way.
std::u16string packedNames(int people);

}  // namespace benchmarks
