// Rows, slot words and cache against plain containers, under any sequence of operations.

#include <array>

#include <gtest/gtest.h>

#include "tests/phonebook/SpeedDialOperation.h"
#include "tests/support/TemporaryStore.h"

namespace speed_dial {
namespace {

class Insert : public Operation {
public:
    explicit Insert(const Model& model) : entry(anyEntryOrNull(model)) {}
    void show(std::ostream& out) const override { out << "insert " << id << ": " << entry; }

protected:
    Answer onModel(Model& model) const override { return model.insert(id, entry); }
    HRESULT onBook(const Model&, System& system, SpeedDialInfo* info) const override {
        return system.manager().insertSpeedDialInfo(id, info);
    }
    std::optional<Entry> given() const override { return entry; }

private:
    DWORD id = anySlot();
    std::optional<Entry> entry;
};

class Write : public Operation {
public:
    explicit Write(const Model& model) : entry(anyEntryOrNull(model)) {}
    void show(std::ostream& out) const override { out << "write " << id << ": " << entry; }

protected:
    Answer onModel(Model& model) const override { return model.write(id, entry); }
    HRESULT onBook(const Model&, System& system, SpeedDialInfo* info) const override {
        return system.manager().writeSpeedDialInfo(id, info);
    }
    std::optional<Entry> given() const override { return entry; }

private:
    DWORD id = anySlot();
    std::optional<Entry> entry;
};

/// Updates the row at a place in the order of the rows, or one that is not there.
class Update : public Operation {
public:
    explicit Update(const Model& model)
        : place(*rc::gen::inRange<std::size_t>(0, model.rows.size() + 1)), entry(anyEntryOrNull(model)) {}
    void show(std::ostream& out) const override { out << "update the row at " << place << ": " << entry; }

protected:
    Answer onModel(Model& model) const override {
        if (place >= model.rows.size()) return model.update(std::nullopt, entry);
        return model.update(std::next(model.rows.begin(), static_cast<std::ptrdiff_t>(place))->first, entry);
    }
    HRESULT onBook(const Model&, System& system, SpeedDialInfo* info) const override {
        const std::vector<StoredRow> stored = storedRows();
        return system.manager().updateSpeedDialInfo(place < stored.size() ? stored[place].oid : 0xFFFFFF, info);
    }
    std::optional<Entry> given() const override { return entry; }

private:
    std::size_t place;
    std::optional<Entry> entry;
};

class Delete : public Operation {
public:
    explicit Delete(const Model& model) : entry(anyEntryOrNull(model)) {}
    void show(std::ostream& out) const override { out << "delete " << id << ": " << entry; }

protected:
    Answer onModel(Model& model) const override { return model.erase(id, entry); }
    HRESULT onBook(const Model&, System& system, SpeedDialInfo* info) const override {
        return system.manager().deleteSpeedDialInfo(id, info);
    }
    std::optional<Entry> given() const override { return entry; }

private:
    DWORD id = anySlot();
    std::optional<Entry> entry;
};

class Move : public Operation {
public:
    explicit Move(const Model& model) : entry(anyEntryOrNull(model)) {}
    void show(std::ostream& out) const override { out << "move " << from << " to " << to << ": " << entry; }

protected:
    Answer onModel(Model& model) const override { return model.move(from, to, entry); }
    HRESULT onBook(const Model&, System& system, SpeedDialInfo* info) const override {
        return system.manager().moveSpeedDialInfo(from, to, info);
    }
    std::optional<Entry> given() const override { return entry; }

private:
    DWORD from = anySlot();
    DWORD to = anySlot();
    std::optional<Entry> entry;
};

class DeleteAll : public Operation {
public:
    void show(std::ostream& out) const override { out << "delete all slots"; }

protected:
    Answer onModel(Model& model) const override { return model.eraseAll(); }
    HRESULT onBook(const Model&, System& system, SpeedDialInfo*) const override {
        return system.manager().deleteAllSpeedDialInfos();
    }
};

class WriteCache : public Operation {
public:
    explicit WriteCache(const Model& model) : entry(anyEntryOrNull(model)) {}
    void show(std::ostream& out) const override { out << "write to the cache " << id << ": " << entry; }

protected:
    Answer onModel(Model& model) const override { return model.writeCache(id, entry); }
    HRESULT onBook(const Model&, System& system, SpeedDialInfo* info) const override {
        return system.manager().writeSDialInfoCache(id, info);
    }
    std::optional<Entry> given() const override { return entry; }

private:
    DWORD id = anySlot();
    std::optional<Entry> entry;
};

class DeleteFromCache : public Operation {
public:
    void show(std::ostream& out) const override { out << "delete from the cache " << id; }

protected:
    Answer onModel(Model& model) const override { return model.eraseCache(id); }
    HRESULT onBook(const Model&, System& system, SpeedDialInfo*) const override {
        return system.manager().deleteSDialInfoCache(id, nullptr);
    }

private:
    DWORD id = anySlot();
};

class MoveInCache : public Operation {
public:
    void show(std::ostream& out) const override { out << "move in the cache " << from << " to " << to; }

protected:
    Answer onModel(Model& model) const override { return model.moveCache(from, to); }
    HRESULT onBook(const Model&, System& system, SpeedDialInfo*) const override {
        return system.manager().moveSDialInfoCache(from, to);
    }

private:
    DWORD from = anySlot();
    DWORD to = anySlot();
};

class Flush : public Operation {
public:
    void show(std::ostream& out) const override { out << "flush"; }

protected:
    Answer onModel(Model& model) const override { return model.flush(); }
    HRESULT onBook(const Model&, System& system, SpeedDialInfo*) const override {
        return system.manager().flushSDialInfoCache();
    }
};

class Fill : public Operation {
public:
    void show(std::ostream& out) const override { out << "fill"; }

protected:
    Answer onModel(Model& model) const override { return model.fill(); }
    HRESULT onBook(const Model&, System& system, SpeedDialInfo*) const override {
        return system.manager().fillSDialInfoCache();
    }
};

class FillAnother : public Operation {
public:
    void show(std::ostream& out) const override { out << "fill another array"; }

protected:
    Answer onModel(Model& model) const override {
        Cache other;
        return model.fill(other);
    }
    HRESULT onBook(const Model& before, System& system, SpeedDialInfo*) const override {
        Model model = before;
        Cache expected;
        model.fill(expected);
        std::array<SpeedDialInfo, PhoneBookDBMgr::nSDialCacheSize_> other;
        const HRESULT result = system.manager().fillSDialInfoCache(other.data());
        requireSameCache(expected, system, other.data());
        return result;
    }
};

class AddContact : public Operation {
public:
    void show(std::ostream& out) const override {
        out << "add contact " << CString(contact.name);
        for (const WString& number : contact.numbers)
            out << ' ' << CString(number);
        if (contact.word) out << " with slots " << std::hex << *contact.word << std::dec;
    }

protected:
    Answer onModel(Model& model) const override {
        model.addContact(contact);
        return {};
    }
    HRESULT onBook(const Model& before, System& system, SpeedDialInfo*) const override {
        testing_support::contact built;
        built.name(contact.name).mobile(contact.numbers[0]).home(contact.numbers[1]).business(contact.numbers[2]);
        if (contact.word) built.slots(*contact.word);
        system.contacts[before.nextContact] = system.book->add(built);
        return S_OK;
    }

private:
    ModelContact contact{*rc::gen::element<WString>(TEXT("ann"), TEXT("bob"), TEXT("carl")),
                         {anyNumber(), anyNumber(), anyNumber()},
                         *rc::gen::element<std::optional<DWORD>>(std::nullopt, 0, 0x030201, 0xFF0063FF)};
};

class DeleteContact : public Operation {
public:
    explicit DeleteContact(const Model& model) {
        RC_PRE(!model.contacts.empty());
        std::vector<int> keys;
        for (const auto& [each, contact] : model.contacts)
            keys.push_back(each);
        key = *rc::gen::elementOf(keys);
    }
    void checkPreconditions(const Model& model) const override { RC_PRE(model.contacts.contains(key)); }
    void show(std::ostream& out) const override { out << "delete contact " << key; }

protected:
    Answer onModel(Model& model) const override { return model.eraseContact(key); }
    HRESULT onBook(const Model&, System& system, SpeedDialInfo*) const override {
        return system.manager().deletePBRecord(system.contacts.at(key));
    }

private:
    int key = 0;
};

class QuerySlot : public Operation {
public:
    explicit QuerySlot(const Model& model) : entry(anyEntry(model)) {}
    void show(std::ostream& out) const override {
        out << "query slot " << id << (withContact ? " with contact: " : ": ") << entry;
    }

protected:
    Answer onModel(Model& model) const override { return model.query(id, entry, withContact); }
    HRESULT onBook(const Model&, System& system, SpeedDialInfo* info) const override {
        return system.manager().querySpeedDialInfo(id, info, withContact);
    }
    std::optional<Entry> given() const override { return entry; }

private:
    DWORD id = anySlot();
    bool withContact = *rc::gen::arbitrary<bool>();
    Entry entry;
};

class QueryNumber : public Operation {
public:
    explicit QueryNumber(const Model& model) : entry(anyEntry(model)) {}
    void show(std::ostream& out) const override { out << "query number " << CString(number) << ": " << entry; }

protected:
    Answer onModel(Model& model) const override { return model.queryNumber(number, entry); }
    HRESULT onBook(const Model&, System& system, SpeedDialInfo* info) const override {
        DWORD rowOid = 0;
        const HRESULT result = system.manager().querySpeedDialInfo(CString(number), rowOid, info);
        const std::vector<StoredRow> stored = storedRows();
        const auto found = std::ranges::find(stored, rowOid, &StoredRow::oid);
        RC_ASSERT((result == S_OK) == (found != stored.end()));
        if (result == S_OK) RC_ASSERT(found->row.number == withoutDashes(number));
        return result;
    }
    std::optional<Entry> given() const override { return entry; }

private:
    WString number = anyNumber();
    Entry entry;
};

class QueryCache : public Operation {
public:
    void show(std::ostream& out) const override { out << "query cache " << CString(number); }

protected:
    Answer onModel(Model& model) const override { return model.queryCache(number); }
    HRESULT onBook(const Model&, System& system, SpeedDialInfo* info) const override {
        return system.manager().querySDialInfoCache(CString(number), info);
    }
    std::optional<Entry> given() const override { return Entry(); }

private:
    WString number = anyNumber();
};

class ProposeSlot : public Operation {
public:
    void show(std::ostream& out) const override { out << "propose a slot from " << start; }

protected:
    Answer onModel(Model&) const override { return {}; }
    HRESULT onBook(const Model& before, System& system, SpeedDialInfo*) const override {
        DWORD id = 0;
        const HRESULT result = system.manager().findFirstEmptySDialID(start, &id);
        RC_ASSERT(id == before.proposedSlot(start));
        return result;
    }

private:
    DWORD start = anySlot();
};

class NameSlots : public Operation {
public:
    void show(std::ostream& out) const override { out << "name the slots"; }

protected:
    Answer onModel(Model&) const override { return {}; }
    HRESULT onBook(const Model& before, System& system, SpeedDialInfo*) const override {
        CMap<DWORD, DWORD&, CString, CString&> names;
        const HRESULT result = system.manager().fillSDialInfoCache(names);
        const std::map<DWORD, WString> expected = before.names();
        RC_ASSERT(static_cast<std::size_t>(names.GetCount()) == expected.size());
        for (const auto& [slot, name] : expected) {
            DWORD key = slot;
            RC_ASSERT(names[key] == CString(name));
        }
        return result;
    }
};

/// A new manager, as after a restart of the program.
class Restart : public Operation {
public:
    void show(std::ostream& out) const override { out << "restart"; }

protected:
    Answer onModel(Model& model) const override {
        model.cache = Cache();
        return {};
    }
    HRESULT onBook(const Model&, System& system, SpeedDialInfo*) const override {
        system.book = std::make_unique<testing_support::OpenPhoneBook>();
        return S_OK;
    }
};

template <class Store>
void checkAgainstModel() {
    const Store store;
    System system;
    rc::state::check(
        Model(), system,
        rc::state::gen::execOneOfWithArgs<AddContact, AddContact, DeleteContact, Insert, Insert, Update, Write, Write,
                                          Delete, Move, Move, DeleteAll, WriteCache, WriteCache, DeleteFromCache,
                                          MoveInCache, Flush, Flush, Fill, FillAnother, QuerySlot, QueryNumber,
                                          QueryCache, ProposeSlot, NameSlots, Restart>());
}

TEST(SpeedDialModel, BehavesAsPlainContainersInMemory) {
    EXPECT_TRUE(rc::check(checkAgainstModel<testing_support::MemoryStoreMount>));
}

TEST(SpeedDialModel, BehavesAsPlainContainersOnDisk) {
    EXPECT_TRUE(rc::check(checkAgainstModel<testing_support::TemporaryStore>));
}

}  // namespace
}  // namespace speed_dial
