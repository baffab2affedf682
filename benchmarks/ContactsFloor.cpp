#include "benchmarks/ContactsFloor.h"

#include <algorithm>

namespace benchmarks {

namespace {

constexpr const char* tables =
    "CREATE TABLE contact(id INTEGER PRIMARY KEY, name TEXT, categories TEXT, mobile TEXT, home TEXT, "
    "business TEXT, email TEXT, body TEXT, birthday REAL, pager TEXT, fax TEXT);"
    "CREATE INDEX by_name ON contact(name);"
    "CREATE TABLE extension(id INTEGER PRIMARY KEY, contact INTEGER, name TEXT, number TEXT, "
    "category TEXT, avatar TEXT, photo TEXT, bell TEXT, screen INTEGER, slots INTEGER, main INTEGER, flags INTEGER);"
    "CREATE INDEX by_contact ON extension(contact);"
    "CREATE TABLE number(number TEXT, contact INTEGER, PRIMARY KEY(number,contact)) WITHOUT ROWID";

}  // namespace

ContactsFloor::ContactsFloor(const std::filesystem::path& file)
    : isNew_(!std::filesystem::exists(file)),
      database_(file.string()),
      insertContact_(database_, "INSERT INTO contact VALUES(NULL,?,?,?,?,'','','',0,'','')"),
      insertExtension_(database_, "INSERT INTO extension VALUES(NULL,?,?,?,?,'','','',0,0,4,7)"),
      insertNumber_(database_, "INSERT INTO number VALUES(?,?)"),
      updateContact_(database_,
                     "UPDATE contact SET name=?2,categories=?3,mobile=?4,home=?5,business='',email='',body='',"
                     "birthday=0,pager='',fax='' WHERE id=?1"),
      updateExtension_(database_,
                       "UPDATE extension SET name=?2,number=?3,category=?4,avatar='',photo='',bell='',screen=0,"
                       "slots=?5,main=4,flags=7 WHERE contact=?1"),
      deleteContact_(database_, "DELETE FROM contact WHERE id=?"),
      deleteExtension_(database_, "DELETE FROM extension WHERE contact=?"),
      deleteNumber_(database_, "DELETE FROM number WHERE number=? AND contact=?"),
      lookUp_(database_,
              "SELECT c.id,c.name,c.categories,c.mobile,c.home,c.business,c.email,c.body,c.pager,c.fax,c.birthday,"
              "e.category,e.avatar,e.photo,e.bell,e.screen,e.slots,e.main "
              "FROM number n JOIN contact c ON c.id=n.contact LEFT JOIN extension e ON e.contact=c.id "
              "WHERE n.number=? ORDER BY c.name LIMIT 1"),
      namesLike_(database_, "SELECT id,name FROM contact WHERE name LIKE ? ORDER BY name"),
      namesBetween_(database_, "SELECT id,name FROM contact WHERE name>=? AND name<? ORDER BY name"),
      withCategories_(database_, "SELECT id,name FROM contact WHERE categories=? ORDER BY name") {
    if (isNew_) database_.run(tables);
}

std::vector<std::int64_t> ContactsFloor::import(const std::vector<Person>& people) {
    constexpr std::size_t perTransaction = 1'000;
    std::vector<std::int64_t> ids;
    ids.reserve(people.size());
    for (std::size_t begin = 0; begin < people.size(); begin += perTransaction) {
        SqlTransaction transaction(database_);
        for (std::size_t i = begin; i < std::min(people.size(), begin + perTransaction); ++i)
            ids.push_back(insertRows(people[i]));
        transaction.commit();
    }
    return ids;
}

std::int64_t ContactsFloor::insert(const Person& person) {
    SqlTransaction transaction(database_);
    const std::int64_t id = insertRows(person);
    transaction.commit();
    return id;
}

std::int64_t ContactsFloor::insertRows(const Person& person) {
    insertContact_.run(person.name, person.group, person.mobile, person.home);
    const std::int64_t id = database_.lastInserted();
    insertNumbers(id, person);
    if (!person.group.empty()) insertExtension_.run(id, person.name, person.reducedMobile, person.group);
    return id;
}

void ContactsFloor::insertNumbers(std::int64_t id, const Person& person) {
    for (const std::u16string* number : {&person.reducedMobile, &person.reducedHome})
        if (!number->empty()) insertNumber_.run(*number, id);
}

void ContactsFloor::deleteNumbers(std::int64_t id, const Person& person) {
    for (const std::u16string* number : {&person.reducedMobile, &person.reducedHome})
        if (!number->empty()) deleteNumber_.run(*number, id);
}

void ContactsFloor::update(std::int64_t id, const Person& person, const Person& before) {
    SqlTransaction transaction(database_);
    rewrite(id, person, 0);
    deleteNumbers(id, before);
    insertNumbers(id, person);
    transaction.commit();
}

void ContactsFloor::extend(std::int64_t id, const Person& person) {
    deleteExtension_.run(id);
    insertExtension_.run(id, person.name, person.reducedMobile, person.group);
}

void ContactsFloor::rewrite(std::int64_t id, const Person& person, int slots) {
    updateContact_.run(id, person.name, person.group, person.mobile, person.home);
    updateExtension_.run(id, person.name, person.reducedMobile, person.group, slots);
}

void ContactsFloor::remove(std::int64_t id, const Person& person) {
    SqlTransaction transaction(database_);
    removeRows(id, person);
    transaction.commit();
}

void ContactsFloor::removeRows(std::int64_t id, const Person& person) {
    deleteExtension_.run(id);
    deleteNumbers(id, person);
    deleteContact_.run(id);
}

void ContactsFloor::removeAll(const std::vector<std::pair<std::int64_t, Person>>& people) {
    SqlTransaction transaction(database_);
    for (const auto& [id, person] : people)
        removeRows(id, person);
    transaction.commit();
}

void ContactsFloor::removeAll() {
    SqlTransaction transaction(database_);
    database_.run("DELETE FROM extension; DELETE FROM number; DELETE FROM contact");
    transaction.commit();
}

FloorRecord ContactsFloor::lookUp(std::u16string_view reducedNumber) {
    FloorRecord record;
    lookUp_.ask(reducedNumber);
    if (!lookUp_.next()) return record;
    record.id = lookUp_.number(0);
    int column = 1;
    for (std::u16string* text : {&record.name, &record.categories, &record.mobile, &record.home, &record.business,
                                 &record.email, &record.body, &record.pager, &record.fax})
        *text = lookUp_.text(column++);
    record.birthday = lookUp_.real(column++);
    for (std::u16string* text : {&record.group, &record.avatar, &record.photo, &record.bell})
        *text = lookUp_.text(column++);
    for (std::int64_t* number : {&record.screen, &record.slots, &record.primary})
        *number = lookUp_.number(column++);
    lookUp_.reset();
    return record;
}

std::vector<FloorMatch> ContactsFloor::matches(SqlStatement& statement) {
    std::vector<FloorMatch> found;
    while (statement.next())
        found.push_back({statement.number(0), statement.text(1)});
    return found;
}

std::vector<FloorMatch> ContactsFloor::namesLike(std::u16string_view pattern) {
    namesLike_.ask(pattern);
    return matches(namesLike_);
}

std::vector<FloorMatch> ContactsFloor::namesBetween(std::u16string_view from, std::u16string_view to) {
    namesBetween_.ask(from, to);
    return matches(namesBetween_);
}

std::vector<FloorMatch> ContactsFloor::withCategories(std::u16string_view categories) {
    withCategories_.ask(categories);
    return matches(withCategories_);
}

}  // namespace benchmarks
