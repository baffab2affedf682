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

/// All reduced mobile numbers behind one another, a zero after each.
std::string packedNumbers(int people);
/// All names in lower case, packed the same way.
std::u16string packedNames(int people);

}  // namespace benchmarks
