#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <variant>
#include <vector>

#include "tessera/platform/engine/SqliteConnection.h"

namespace Platform {

/// A value of a row, as the file has it.
struct SqliteText {
    std::string bytes;
};
using SqliteValue = std::variant<std::monostate, std::int64_t, SqliteText, std::string>;  // the last a BLOB

/// The rows of a damaged file, of whatever tables, read page by page with no trust in any of them: neither the way
/// from page to page nor the schema has to be whole. For the layout see SQLite's description of its file format,
/// "B-tree Pages", "Record Format", "The Freelist" and "The Write-Ahead Log".
class SqlitePages {
public:
    explicit SqlitePages(SqliteConnection& connection);

    using Visit = std::function<void(std::int64_t id, const std::vector<SqliteValue>& values)>;
    /// Calls with each row, and each entry of an index (whose `id` is 0), that can be read, but for those of pages that
    /// are no longer used.
    void forEachRow(const Visit& visit);
    /// How many pages the disk did not give.
    std::uint64_t unreadable() const { return unreadable_.size(); }

private:
    void readLog();
    void readFreeList();
    std::string page(std::uint32_t number);
    void rowsOfPage(std::uint32_t number, const Visit& visit);
    void rowAt(const std::string& page, std::size_t at, bool ofTable, const Visit& visit);
    bool appendOverflow(std::uint32_t number, std::uint64_t size, std::string& payload);

    SqliteConnection& connection_;
    std::size_t pageSize_ = 0;
    std::size_t usable_ = 0;  ///< Of a page: without what is reserved at its end.
    std::uint32_t count_ = 0;
    std::string log_;
    std::unordered_map<std::uint32_t, std::size_t> logged_;  ///< Where in the log a page's newest state is.
    std::set<std::uint32_t> free_;
    std::set<std::uint32_t> unreadable_;
};

}  // namespace Platform
