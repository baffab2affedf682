#include "benchmarks/Floor.h"

#include <stdexcept>

#include <sqlite3.h>

#include "benchmarks/PhoneBooks.h"

namespace benchmarks {

namespace {

sqlite3_stmt* prepare(sqlite3* database, const char* sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v3(database, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr) != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(database));
    }
    return statement;
}

std::string ascii(const std::u16string& digits) {
    return {digits.begin(), digits.end()};
}

void bindText(sqlite3_stmt* statement, int index, const std::u16string& text) {
    sqlite3_bind_text16(statement, index, text.data(), static_cast<int>(text.size() * 2), SQLITE_TRANSIENT);
}

}  // namespace

SqlFloor::SqlFloor(const std::string& file) {
    if (sqlite3_open(file.c_str(), &database_) != SQLITE_OK) throw std::runtime_error(sqlite3_errmsg(database_));
    run("PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL;"
        "CREATE TABLE contact(id INTEGER PRIMARY KEY, name TEXT, category TEXT, mobile TEXT, home TEXT, reduced TEXT);"
        "CREATE TABLE extension(id INTEGER PRIMARY KEY, contact INTEGER, name TEXT, number TEXT, category TEXT);"
        "CREATE INDEX by_name ON contact(name); CREATE INDEX by_number ON contact(reduced);"
        "CREATE INDEX by_contact ON extension(contact);");
    insert_ = prepare(database_, "INSERT INTO contact(name,category,mobile,reduced) VALUES(?,?,?,?)");
    lookUp_ = prepare(database_,
                      "SELECT c.name,c.category,c.mobile,c.home,e.category FROM contact c "
                      "LEFT JOIN extension e ON e.contact=c.id WHERE c.reduced=?");
}

SqlFloor::~SqlFloor() {
    sqlite3_finalize(insert_);
    sqlite3_finalize(lookUp_);
    sqlite3_close(database_);
}

void SqlFloor::run(const char* sql) {
    if (sqlite3_exec(database_, sql, nullptr, nullptr, nullptr) != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(database_));
    }
}

void SqlFloor::insert(int person) {
    bindText(insert_, 1, nameOf(person));
    bindText(insert_, 2, person % 3 == 0 ? u"친구" : u"");
    bindText(insert_, 3, mobileOf(person));
    const std::string reduced = ascii(reducedMobileOf(person));
    sqlite3_bind_text(insert_, 4, reduced.data(), static_cast<int>(reduced.size()), SQLITE_TRANSIENT);
    sqlite3_step(insert_);
    sqlite3_reset(insert_);
    if (person % 3 == 0) {
        run("INSERT INTO extension(contact,name,number,category) "
            "SELECT id,name,reduced,category FROM contact WHERE id=last_insert_rowid()");
    }
}

void SqlFloor::insertInBatches(int people) {
    for (int person = 0; person < people; ++person) {
        if (person % 1'000 == 0) run(person == 0 ? "BEGIN IMMEDIATE" : "COMMIT; BEGIN IMMEDIATE");
        insert(person);
    }
    run("COMMIT");
}

void SqlFloor::fill(int people) {
    run("BEGIN IMMEDIATE");
    for (int person = 0; person < people; ++person)
        insert(person);
    run("COMMIT");
}

std::size_t SqlFloor::lookUp(std::string_view reducedMobile) {
    sqlite3_bind_text(lookUp_, 1, reducedMobile.data(), static_cast<int>(reducedMobile.size()), SQLITE_STATIC);
    std::size_t length = 0;
    if (sqlite3_step(lookUp_) == SQLITE_ROW) {
        for (int column = 0; column < 5; ++column) {
            const auto* text = static_cast<const char16_t*>(sqlite3_column_text16(lookUp_, column));
            if (text != nullptr) length += std::u16string(text).size();
        }
    }
    sqlite3_reset(lookUp_);
    return length;
}

std::string packedNumbers(int people) {
    std::string packed;
    for (int person = 0; person < people; ++person)
        packed.append(ascii(reducedMobileOf(person))).push_back('\0');
    return packed;
}

std::u16string packedNames(int people) {
    std::u16string packed;
    for (int person = 0; person < people; ++person) {
        CString name(nameOf(person));
        name.MakeLower();
        packed.append(name.view()).push_back(u'\0');
    }
    return packed;
}

}  // namespace benchmarks
