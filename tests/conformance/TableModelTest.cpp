// Every table against a plain map of rows, under any sequence of operations.

#include <algorithm>
#include <map>
#include <memory>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/state.h>

#include "tests/conformance/TableRows.h"
#include "tests/conformance/TablesUnderTest.h"

namespace conformance {
namespace {

/// The rows by the order in which they were added.
struct Model {
    std::map<int, Row> rows;
    int nextKey = 0;
};

/// The table, and which of its identifiers is which row of the model.
struct System {
    explicit System(const TableKind& kind) : made(kind.make()) { RC_ASSERT(made->open() != FALSE); }
    Database::Table& table() { return made->table(); }

    std::unique_ptr<TableUnderTest> made;
    std::map<int, DWORD> oids;
};

using Command = rc::state::Command<Model, System>;

// Names that every collation puts into the order of their characters.
rc::Gen<WString> anyName() {
    return rc::gen::container<WString>(2, rc::gen::element(u'a', u'b', u'c'));
}

rc::Gen<WString> anyText() {
    return rc::gen::container<WString>(rc::gen::element(u'0', u'7', u'-', u'가', u'"', u'Z', u' '));
}

rc::Gen<Row> anyRow() {
    return rc::gen::build<Row>(rc::gen::set(&Row::name, anyName()), rc::gen::set(&Row::mobile, anyText()),
                               rc::gen::set(&Row::email, anyText()));
}

int anyKey(const Model& model) {
    RC_PRE(!model.rows.empty());
    std::vector<int> keys;
    for (const auto& [key, row] : model.rows)
        keys.push_back(key);
    return *rc::gen::elementOf(keys);
}

// By name, then by identifier.
Rows expectedRows(const Model& model, const System& system) {
    Rows rows;
    for (const auto& [key, row] : model.rows)
        rows.emplace_back(system.oids.at(key), row);
    std::ranges::sort(rows, {}, [](const auto& row) { return std::tie(row.second.name, row.first); });
    return rows;
}

/// A command that changes the table; behind it the table must be what the model says it is.
class Change : public Command {
public:
    void run(const Model& before, System& system) const override {
        change(before, system);
        Model after = before;
        this->apply(after);
        RC_ASSERT(system.table().getNumRecords() == after.rows.size());
        RC_ASSERT(rowsOf(system.table()) == expectedRows(after, system));
    }

protected:
    virtual void change(const Model& before, System& system) const = 0;
};

class InsertRecord : public Change {
public:
    void apply(Model& model) const override { model.rows.emplace(model.nextKey++, row); }
    void show(std::ostream& out) const override { out << "insert record " << row; }

protected:
    void change(const Model& before, System& system) const override {
        CCeDBRecord record = recordOf(system.table(), row);
        DWORD oid = 0;
        RC_ASSERT(system.table().insertRecord(&record, oid) == S_OK);
        RC_ASSERT(oid != 0u);
        system.oids[before.nextKey] = oid;
    }

private:
    Row row = *anyRow();
};

class InsertArray : public Change {
public:
    void apply(Model& model) const override { model.rows.emplace(model.nextKey++, row); }
    void show(std::ostream& out) const override { out << "insert array " << row; }

protected:
    void change(const Model& before, System& system) const override {
        std::vector<CCeDBProp> props = propsOf(system.table(), row);
        DWORD oid = 0;
        RC_ASSERT(system.table().insertRecord(props.data(), oid) == S_OK);
        RC_ASSERT(oid != 0u);
        system.oids[before.nextKey] = oid;
    }

private:
    Row row = *anyRow();
};

class Update : public Change {
public:
    explicit Update(const Model& model) : key(anyKey(model)) {}
    void checkPreconditions(const Model& model) const override { RC_PRE(model.rows.contains(key)); }
    void apply(Model& model) const override { model.rows[key] = row; }
    void show(std::ostream& out) const override { out << "update " << key << " to " << row; }

protected:
    void change(const Model&, System& system) const override {
        CCeDBRecord record = recordOf(system.table(), row);
        RC_ASSERT(system.table().updateRecord(system.oids.at(key), &record, 0, nullptr) == S_OK);
    }

private:
    int key;
    Row row = *anyRow();
};

class Delete : public Change {
public:
    explicit Delete(const Model& model) : key(anyKey(model)) {}
    void checkPreconditions(const Model& model) const override { RC_PRE(model.rows.contains(key)); }
    void apply(Model& model) const override { model.rows.erase(key); }
    void show(std::ostream& out) const override { out << "delete " << key; }

protected:
    void change(const Model&, System& system) const override {
        DWORD oid = system.oids.at(key);
        RC_ASSERT(system.table().deleteRecord(oid) == S_OK);
        RC_ASSERT(oid == system.oids.at(key));
        RC_ASSERT(FAILED(system.table().deleteRecord(oid)));
    }

private:
    int key;
};

class DeleteAll : public Change {
public:
    void apply(Model& model) const override { model.rows.clear(); }
    void show(std::ostream& out) const override { out << "delete all"; }

protected:
    void change(const Model&, System& system) const override { RC_ASSERT(system.table().deleteAllRecords() == S_OK); }
};

class Reopen : public Change {
public:
    void show(std::ostream& out) const override { out << "reopen"; }

protected:
    void change(const Model&, System& system) const override {
        RC_ASSERT(system.table().close() != FALSE);
        RC_ASSERT(system.made->open() != FALSE);
    }
};

class WalkOtherwise : public Command {
public:
    void run(const Model& model, System& system) const override {
        Rows expected = expectedRows(model, system);
        RC_ASSERT(rowsByIndex(system.table()) == expected);
        std::ranges::reverse(expected);
        RC_ASSERT(rowsBackward(system.table()) == expected);
    }
    void show(std::ostream& out) const override { out << "walk by index and backward"; }
};

/// Deletes what it walks over, as the users of an iterator do.
class DeleteWhileWalking : public Change {
public:
    void apply(Model& model) const override {
        std::erase_if(model.rows, [&](const auto& entry) { return entry.second.name == doomed; });
    }
    void show(std::ostream& out) const override { out << "walk and delete " << utf8Of(doomed); }

protected:
    void change(const Model&, System& system) const override {
        std::vector<DWORD> found;
        for (const auto& [oid, row] : rowsOf(system.table())) {
            if (row.name == doomed) found.push_back(oid);
        }
        for (DWORD oid : found)
            RC_ASSERT(system.table().deleteRecord(oid) == S_OK);
    }

private:
    WString doomed = *anyName();
};

class TableModel : public testing::TestWithParam<TableKind> {};

TEST_P(TableModel, BehavesAsAMapOfRowsUnderAnySequenceOfOperations) {
    EXPECT_TRUE(rc::check([&] {
        System system(GetParam());
        rc::state::check(Model(), system,
                         rc::state::gen::execOneOfWithArgs<InsertRecord, InsertArray, InsertRecord, Update, Delete,
                                                           DeleteAll, Reopen, WalkOtherwise, DeleteWhileWalking>());
    }));
}

INSTANTIATE_TEST_SUITE_P(EveryTable, TableModel, testing::ValuesIn(tableKinds),
                         [](const auto& kind) { return std::string(kind.param.name); });

}  // namespace
}  // namespace conformance
