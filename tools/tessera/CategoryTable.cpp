#include "CategoryTable.h"

#include <algorithm>
#include <cstdint>
#include <memory>

#include "tessera/platform/base/Results.h"

namespace Tool {

namespace {

using PhoneBook::PBDBTBL_CATEGORIES;
using PhoneBook::PhoneBookDBMgr;

enum CategoryAttribute : WORD { categoryName = 0, categoryId = 1 };

WORD identOfCategory(CategoryAttribute attribute) {
    return PhoneBookDBMgr::aRecDef_[PBDBTBL_CATEGORIES].getAttrIdent(attribute);
}

}  // namespace

CategoryTable::CategoryTable(const Store& store)
    : store_(store),
      table_(PhoneBookDBMgr::aszTableName_[PBDBTBL_CATEGORIES], &PhoneBookDBMgr::aRecDef_[PBDBTBL_CATEGORIES]) {
    store_.require(table_.open(categoryName, 0, nullptr) != FALSE);
}

std::vector<Category> CategoryTable::inNameOrder() {
    std::vector<Category> categories;
    const std::unique_ptr<Database::Iterator> each(table_.getIterator(nullptr, nullptr));
    while (each && each->next() == S_OK) {
        categories.push_back(
            {each->getCur(), each->getProp(categoryId).getI2(), each->getProp(categoryName).getText()});
    }
    return categories;
}

std::optional<Category> CategoryTable::named(const CString& name) {
    for (const Category& category : inNameOrder()) {
        if (category.name == name) return category;
    }
    return std::nullopt;
}

std::optional<Category> CategoryTable::withId(int id) {
    for (const Category& category : inNameOrder()) {
        if (category.id == id) return category;
    }
    return std::nullopt;
}

DWORD CategoryTable::add(const CString& name, int id) {
    CCeDBRecord record;
    record.addProp(CCeDBProp::ofText(identOfCategory(categoryName), name));
    record.addProp(CCeDBProp::ofI2(identOfCategory(categoryId), static_cast<std::int16_t>(id)));
    DWORD oid = 0;
    store_.require(table_.insertRecord(&record, oid) == S_OK);
    return oid;
}

void CategoryTable::rename(DWORD oid, const CString& name) {
    CCeDBRecord record;
    record.addProp(CCeDBProp::ofText(identOfCategory(categoryName), name));
    store_.require(table_.updateRecord(oid, &record, 0, nullptr) == S_OK);
}

void CategoryTable::remove(DWORD oid) {
    store_.require(table_.deleteRecord(oid) == S_OK);
}

}  // namespace Tool
