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

void runOn(sqlite3* database, const char* sql) {
    if (sqlite3_exec(database, sql, nullptr, nullptr, nullptr) != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(database));
    }
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
    runOn(database_, sql);
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

CallLogFloor::CallLogFloor(const std::string& file, int calls) {
    if (sqlite3_open(file.c_str(), &database_) != SQLITE_OK) throw std::runtime_error(sqlite3_errmsg(database_));
    runOn(database_,
          "PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL;"
          "CREATE TABLE call(id INTEGER PRIMARY KEY, time INTEGER, number TEXT, name TEXT, type INTEGER, duration "
          "INTEGER,"
          "kind INTEGER, network_name TEXT, dialled TEXT, hint INTEGER, flags INTEGER);"
          "CREATE INDEX by_time ON call(time DESC);");
    begin_ = prepare(database_, "BEGIN IMMEDIATE");
    deleteOldest_ = prepare(database_, "DELETE FROM call WHERE id=(SELECT id FROM call ORDER BY time,id LIMIT 1)");
    insert_ = prepare(database_,
                      "INSERT INTO call(time,number,name,type,duration,kind,network_name,dialled,hint,flags) "
                      "VALUES(?,?,?,4,60,1,'','',0,7)");
    commit_ = prepare(database_, "COMMIT");
    for (int call = 0; call < calls; ++call)
        runOn(database_, "INSERT INTO call(time,number,name) VALUES(0,'01020000000','Anna Smith')");
}

CallLogFloor::~CallLogFloor() {
    for (sqlite3_stmt* statement : {begin_, deleteOldest_, insert_, commit_})
        sqlite3_finalize(statement);
    sqlite3_close(database_);
}

void CallLogFloor::step(sqlite3_stmt* statement) {
    if (sqlite3_step(statement) != SQLITE_DONE) throw std::runtime_error(sqlite3_errmsg(database_));
    sqlite3_reset(statement);
}

void CallLogFloor::log(std::int64_t time, const std::u16string& number, const std::u16string& name) {
    step(begin_);
    step(deleteOldest_);
    sqlite3_bind_int64(insert_, 1, time);
    bindText(insert_, 2, number);
    bindText(insert_, 3, name);
    step(insert_);
    step(commit_);
}

SpeedDialFloor::SpeedDialFloor(const std::string& file, int people) {
    SqlFloor(file).fill(people);
    if (sqlite3_open(file.c_str(), &database_) != SQLITE_OK) throw std::runtime_error(sqlite3_errmsg(database_));
    runOn(database_,
          "PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL;"
          "CREATE TABLE slot(id INTEGER PRIMARY KEY, slot INTEGER, type INTEGER, number TEXT, flags INTEGER);"
          "CREATE INDEX by_slot ON slot(slot);"
          "ALTER TABLE extension ADD COLUMN slots INTEGER;"
          "DELETE FROM extension; INSERT INTO extension(contact,name,number) SELECT id,name,reduced FROM contact;");
    begin_ = prepare(database_, "BEGIN IMMEDIATE");
    insertSlot_ = prepare(database_, "INSERT INTO slot(slot,type,number,flags) VALUES(?,4,?,7)");
    deleteSlot_ = prepare(database_, "DELETE FROM slot WHERE slot=?");
    writeContact_ =
        prepare(database_, "UPDATE contact SET name=?2,category='',mobile=?3,home='',reduced=?4 WHERE id=?1");
    writeExtension_ =
        prepare(database_, "UPDATE extension SET name=?2,number=?3,category='',slots=?4 WHERE contact=?1");
    commit_ = prepare(database_, "COMMIT");
}

SpeedDialFloor::~SpeedDialFloor() {
    for (sqlite3_stmt* statement : {begin_, insertSlot_, deleteSlot_, writeContact_, writeExtension_, commit_})
        sqlite3_finalize(statement);
    sqlite3_close(database_);
}

void SpeedDialFloor::step(sqlite3_stmt* statement) {
    if (sqlite3_step(statement) != SQLITE_DONE) throw std::runtime_error(sqlite3_errmsg(database_));
    sqlite3_reset(statement);
}

void SpeedDialFloor::writePerson(int person, int slot) {
    sqlite3_bind_int(writeContact_, 1, person + 1);
    bindText(writeContact_, 2, nameOf(person));
    bindText(writeContact_, 3, mobileOf(person));
    bindText(writeContact_, 4, reducedMobileOf(person));
    step(writeContact_);
    sqlite3_bind_int(writeExtension_, 1, person + 1);
    bindText(writeExtension_, 2, nameOf(person));
    bindText(writeExtension_, 3, reducedMobileOf(person));
    sqlite3_bind_int(writeExtension_, 4, slot);
    step(writeExtension_);
}

void SpeedDialFloor::set(int slot, int person) {
    step(begin_);
    sqlite3_bind_int(insertSlot_, 1, slot);
    bindText(insertSlot_, 2, reducedMobileOf(person));
    step(insertSlot_);
    writePerson(person, slot);
    step(commit_);
}

void SpeedDialFloor::clear(int slot, int person) {
    step(begin_);
    sqlite3_bind_int(deleteSlot_, 1, slot);
    step(deleteSlot_);
    writePerson(person, 0);
    step(commit_);
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
