#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "benchmarks/People.h"
#include "benchmarks/Sql.h"

namespace benchmarks {

/// All that there is of a contact.
struct FloorRecord {
    std::int64_t id = 0;
    std::u16string name, categories, mobile, home, business, email, body, pager, fax;
    double birthday = 0;
    std::u16string group, avatar, photo, bell;
    std::int64_t screen = 0, slots = 0, primary = 0;
};

/// A name that was found, and whose it is.
struct FloorMatch {
    std::int64_t id;
    std::u16string name;
};

/// Hand-written SQL: contacts with an index on the name, their extension rows, and an index of reduced numbers, the
/// rows and indexes that the phone book has, and as durable.
class ContactsFloor {
public:
    /// Makes the tables when there are none.
    explicit ContactsFloor(const std::filesystem::path& file);

    /// Inserts people in transactions of 1,000, as an import does; answers the new contacts.
    std::vector<std::int64_t> import(const std::vector<Person>& people);
    /// Each in one transaction. An insertion answers the new contact.
    std::int64_t insert(const Person& person);
    void update(std::int64_t id, const Person& person, const Person& before);
    void remove(std::int64_t id, const Person& person);
    void removeAll(const std::vector<std::pair<std::int64_t, Person>>& people);
    void removeAll();
    /// Gives a contact an extension row.
    void extend(std::int64_t id, const Person& person);

    /// The contact with exactly that number; its `id` is 0 when there is none.
    FloorRecord lookUp(std::u16string_view reducedNumber);
    /// Those whose name is like the pattern (of LIKE), stands between the two, or who are in just these categories; in
    /// the order of their names.
    std::vector<FloorMatch> namesLike(std::u16string_view pattern);
    std::vector<FloorMatch> namesBetween(std::u16string_view from, std::u16string_view to);
    std::vector<FloorMatch> withCategories(std::u16string_view categories);

    SqlDatabase& database() { return database_; }
    /// Writes the rows of a contact over, its numbers being as they were; within a transaction.
    void rewrite(std::int64_t id, const Person& person, int slots);

private:
    std::int64_t insertRows(const Person& person);
    void removeRows(std::int64_t id, const Person& person);
    void insertNumbers(std::int64_t id, const Person& person);
    void deleteNumbers(std::int64_t id, const Person& person);
    static std::vector<FloorMatch> matches(SqlStatement& statement);

    bool isNew_;
    SqlDatabase database_;
    SqlStatement insertContact_;
    SqlStatement insertExtension_;
    SqlStatement insertNumber_;
    SqlStatement updateContact_;
    SqlStatement updateExtension_;
    SqlStatement deleteContact_;
    SqlStatement deleteExtension_;
    SqlStatement deleteNumber_;
    SqlStatement lookUp_;
    SqlStatement namesLike_;
    SqlStatement namesBetween_;
    SqlStatement withCategories_;
};

}  // namespace benchmarks
