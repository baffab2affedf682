#include <algorithm>
#include <map>
#include <optional>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>
#include <rapidcheck/state.h>

#include "tests/phonebook/GroupRows.h"
#include "tests/phonebook/PlainGroups.h"
#include "tests/support/Builders.h"
#include "tests/support/TemporaryStore.h"

// The groups against plain maps of categories, groups and contacts: after any run of operations both hold the same.

namespace PhoneBook {
namespace {

using groups_test::Category;
using groups_test::Model;
using testing_support::contact;
using testing_support::MemoryStoreMount;
using testing_support::OpenPhoneBook;

struct System {
    MemoryStoreMount store;
    OpenPhoneBook book;
    std::map<int, DWORD> oids;  ///< Of categories, group rows and contacts.
};

/// The groups that were added, under the model's keys.
void learnNewRows(const Model& after, System& system) {
    const auto rows = groups_test::storedGroups(system.book.manager());
    auto row = rows.begin();
    for (const auto& [key, group] : after.groups) {
        RC_ASSERT(row != rows.end());
        system.oids.try_emplace(key, (row++)->first);  // identifiers grow as the keys do
    }
}

void holdAgainst(const Model& model, System& system) {
    std::map<DWORD, PBGroupInfo> groups;
    std::vector<CString> names;
    for (const auto& [key, group] : model.groups) {
        groups.emplace(system.oids.at(key), group);
        names.push_back(group.strName);
    }
    RC_ASSERT(groups_test::storedGroups(system.book.manager()) == groups);

    std::map<DWORD, CString> contacts;
    for (const auto& [key, group] : model.contacts)
        contacts.emplace(system.oids.at(key), group);
    RC_ASSERT(groups_test::groupsOfContacts(system.book.manager()) == contacts);

    DWORD next = 0;
    RC_ASSERT(system.book->getNextAvailablePBGroupID(&next) == S_OK);
    RC_ASSERT(next == model.nextId());
    CStringArray listed;
    RC_ASSERT(system.book->getAvailablePBGroups(listed) == S_OK);
    // Every collation has the names of this test in the order of their characters. (The sort of std::ranges would
    // take the texts for pointers.)
    std::sort(names.begin(), names.end());
    RC_ASSERT(std::vector<CString>(listed.begin(), listed.end()) == names);
}

rc::Gen<CString> anyName() {
    return rc::gen::map(rc::gen::element(TEXT(""), TEXT("A"), TEXT("B"), TEXT("가족"), TEXT("친구")),
                        [](const WCHAR* name) { return CString(name); });
}

rc::Gen<DWORD> anyId() {
    return rc::gen::element(DWORD{0}, DWORD{1}, DWORD{2}, DWORD{3}, DWORD{0xFFFFFFFE}, DWORD{0xFFFFFFFF});
}

PBGroupInfo anyGroup() {
    PBGroupInfo group;
    group.dwID = *anyId();
    group.strName = *anyName();
    group.bReject = *rc::gen::element(FALSE, TRUE);
    group.strBellCategory = *anyName();
    group.strBell = *anyName();
    group.strSMSBell = *anyName();
    group.dwFlags = *rc::gen::arbitrary<DWORD>();
    return group;
}

template <class Entries>
int anyKey(const Entries& entries) {
    RC_PRE(!entries.empty());
    std::vector<int> keys;
    for (const auto& [key, entry] : entries)
        keys.push_back(key);
    return *rc::gen::elementOf(keys);
}

/// After each command the store must hold what the model holds.
class Command : public rc::state::Command<Model, System> {
public:
    void run(const Model& before, System& system) const override {
        Model after = before;
        this->apply(after);
        act(before, system);
        learnNewRows(after, system);
        holdAgainst(after, system);
    }

protected:
    virtual void act(const Model& before, System& system) const = 0;
};

class AddCategory : public Command {
public:
    void apply(Model& model) const override { model.categories[model.nextKey++] = category; }
    void show(std::ostream& out) const override { out << "add category " << category.name << " " << category.id; }

protected:
    void act(const Model& before, System& system) const override {
        system.oids[before.nextKey] = groups_test::addCategory(category.name, category.id);
        RC_ASSERT(system.oids[before.nextKey] != 0u);
    }

private:
    Category category{*anyName(), *rc::gen::element<std::int16_t>(-2, 0, 1, 2, 3)};
};

class RenameCategory : public Command {
public:
    explicit RenameCategory(const Model& model) : key(anyKey(model.categories)) {}
    void checkPreconditions(const Model& model) const override { RC_PRE(model.categories.contains(key)); }
    void apply(Model& model) const override { model.categories[key].name = name; }
    void show(std::ostream& out) const override { out << "rename category " << key << " to " << name; }

protected:
    void act(const Model& before, System& system) const override {
        RC_ASSERT(groups_test::writeCategory(system.oids.at(key), name, before.categories.at(key).id));
    }

private:
    int key;
    CString name = *anyName();
};

class DeleteCategory : public Command {
public:
    explicit DeleteCategory(const Model& model) : key(anyKey(model.categories)) {}
    void checkPreconditions(const Model& model) const override { RC_PRE(model.categories.contains(key)); }
    void apply(Model& model) const override { model.categories.erase(key); }
    void show(std::ostream& out) const override { out << "delete category " << key; }

protected:
    void act(const Model&, System& system) const override {
        RC_ASSERT(groups_test::deleteCategory(system.oids.at(key)));
    }

private:
    int key;
};

class SetUp : public Command {
public:
    void apply(Model& model) const override { model.setUp(); }
    void show(std::ostream& out) const override { out << "set up"; }

protected:
    void act(const Model&, System& system) const override {
        RC_ASSERT(system.book->closeDB() == S_OK);
        RC_ASSERT(system.book->initDB(false) == S_OK);
        RC_ASSERT(system.book->openDB(nullptr) == S_OK);
    }
};

class Insert : public Command {
public:
    void apply(Model& model) const override { model.insert(group, newId); }
    void show(std::ostream& out) const override { out << "insert " << group << (newId ? " under a new ID" : ""); }

protected:
    void act(const Model&, System& system) const override {
        PBGroupInfo given = group;
        RC_ASSERT(system.book->insertAvailablePBGroup(&given, newId) == S_OK);
        PBGroupInfo expected = group;
        expected.dwFlags = 7;
        RC_ASSERT(given == expected);
    }

private:
    PBGroupInfo group = anyGroup();
    bool newId = *rc::gen::arbitrary<bool>();
};

class WriteById : public Command {
public:
    void apply(Model& model) const override { model.write(id, group, (flags & 1) != 0); }
    void show(std::ostream& out) const override { out << "write " << id << " " << group << " with " << flags; }

protected:
    void act(const Model& before, System& system) const override {
        Model after = before;
        const PBGroupInfo expected = after.write(id, group, (flags & 1) != 0);
        PBGroupInfo given = group;
        RC_ASSERT(system.book->writeAvailablePBGroup(id, &given, flags) == S_OK);
        RC_ASSERT(given == expected);
    }

private:
    DWORD id = *anyId();
    PBGroupInfo group = anyGroup();
    DWORD flags = *rc::gen::element(DWORD{0}, DWORD{1}, DWORD{2}, DWORD{3});
};

class WriteByName : public Command {
public:
    void apply(Model& model) const override { model.write(name, group); }
    void show(std::ostream& out) const override { out << "write " << name << " " << group; }

protected:
    void act(const Model&, System& system) const override {
        CString wanted = name;
        PBGroupInfo given = group;
        RC_ASSERT(system.book->writeAvailablePBGroup(wanted, &given) == S_OK);
        PBGroupInfo expected = group;
        expected.dwFlags = 7;
        RC_ASSERT(given == expected);
        RC_ASSERT(wanted == name);
    }

private:
    CString name = *anyName();
    PBGroupInfo group = anyGroup();
};

class Update : public Command {
public:
    explicit Update(const Model& model) : key(anyKey(model.groups)) {}
    void checkPreconditions(const Model& model) const override { RC_PRE(model.groups.contains(key)); }
    void apply(Model& model) const override { model.update(key, group); }
    void show(std::ostream& out) const override { out << "update row " << key << " to " << group; }

protected:
    void act(const Model&, System& system) const override {
        PBGroupInfo given = group;
        RC_ASSERT(system.book->updateAvailablePBGroup(system.oids.at(key), &given) == S_OK);
    }

private:
    int key;
    PBGroupInfo group = anyGroup();
};

class DeleteById : public Command {
public:
    void apply(Model& model) const override { model.remove(model.keyOf(id)); }
    void show(std::ostream& out) const override { out << "delete " << id; }

protected:
    void act(const Model& before, System& system) const override {
        RC_ASSERT(system.book->deleteAvailablePBGroup(id) == (before.keyOf(id) ? S_OK : E_FAIL));
    }

private:
    DWORD id = *anyId();
};

class DeleteByName : public Command {
public:
    void apply(Model& model) const override { model.remove(model.keyOf(name)); }
    void show(std::ostream& out) const override { out << "delete " << name; }

protected:
    void act(const Model& before, System& system) const override {
        RC_ASSERT(system.book->deleteAvailablePBGroup(name) == (before.keyOf(name) ? S_OK : S_FALSE));
    }

private:
    CString name = *anyName();
};

class Reject : public Command {
public:
    void apply(Model& model) const override {
        if (const auto key = model.keyOf(name)) {
            model.groups[*key].bReject = reject ? TRUE : FALSE;
            model.groups[*key].dwFlags = 7;
        }
    }
    void show(std::ostream& out) const override { out << "reject " << name << " " << reject; }

protected:
    void act(const Model& before, System& system) const override {
        RC_ASSERT(system.book->rejectPBGroup(name, reject) == (before.keyOf(name) ? S_OK : E_FAIL));
    }

private:
    CString name = *anyName();
    bool reject = *rc::gen::arbitrary<bool>();
};

/// Looks by ID and by name for what there may be or not.
class Query : public Command {
public:
    void show(std::ostream& out) const override { out << "query " << id << " and " << name; }

protected:
    void act(const Model& before, System& system) const override {
        const PBGroupInfo earlier = anything;
        const auto expected = [&](std::optional<int> key) { return key ? before.groups.at(*key) : earlier; };
        PBGroupInfo read = earlier;
        RC_ASSERT(system.book->getAvailablePBGroup(id, &read) == (before.keyOf(id) ? S_OK : E_FAIL));
        RC_ASSERT(read == expected(before.keyOf(id)));
        read = earlier;
        RC_ASSERT(system.book->queryAvailablePBGroup(name, &read) == (before.keyOf(name) ? S_OK : E_FAIL));
        RC_ASSERT(read == expected(before.keyOf(name)));
    }

private:
    DWORD id = *anyId();
    CString name = *anyName();
    PBGroupInfo anything = anyGroup();
};

class Move : public Command {
public:
    void apply(Model& model) const override { model.move(from, to); }
    void show(std::ostream& out) const override { out << "move from " << from << " to " << to; }

protected:
    void act(const Model&, System& system) const override {
        RC_ASSERT(system.book->modifyPBGroupInPBRecord(from, to) == S_OK);
    }

private:
    CString from = *anyName();
    CString to = *anyName();
};

class AddContact : public Command {
public:
    void apply(Model& model) const override { model.contacts[model.nextKey++] = group; }
    void show(std::ostream& out) const override { out << "add a contact of " << group; }

protected:
    void act(const Model& before, System& system) const override {
        // The bell makes it have an extension row, also without a group.
        system.oids[before.nextKey] =
            system.book.add(contact().name(TEXT("Kim")).group(group.view()).bell(TEXT("ding")));
    }

private:
    CString group = *anyName();
};

class DeleteContact : public Command {
public:
    explicit DeleteContact(const Model& model) : key(anyKey(model.contacts)) {}
    void checkPreconditions(const Model& model) const override { RC_PRE(model.contacts.contains(key)); }
    void apply(Model& model) const override { model.contacts.erase(key); }
    void show(std::ostream& out) const override { out << "delete contact " << key; }

protected:
    void act(const Model&, System& system) const override {
        RC_ASSERT(system.book->deletePBRecord(system.oids.at(key)) == S_OK);
    }

private:
    int key;
};

RC_GTEST_PROP(GroupsModel, FollowsCategoriesAndMovesContactsUnderAnySequenceOfOperations, ()) {
    System system;
    rc::state::check(
        Model(), system,
        rc::state::gen::execOneOfWithArgs<AddCategory, RenameCategory, DeleteCategory, SetUp, Insert, WriteById,
                                          WriteByName, WriteByName, Update, DeleteById, DeleteByName, Reject, Query,
                                          Move, AddContact, AddContact, AddContact, DeleteContact>());
}

}  // namespace
}  // namespace PhoneBook
