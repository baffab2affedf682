#include <array>
#include <limits>

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "tessera/platform/base/TelephoneNumber.h"
#include "tests/conformance/EngineFactories.h"
#include "tests/conformance/EngineModel.h"
#include "tests/platform/engine/RecordBuilders.h"

// Random sequences of calls, on two engine objects of one store, against the model.

namespace engine_testing {
namespace {

using Platform::ChangeKind;
using Platform::Entry;
using Platform::Fetch;
using Platform::OrderId;
using Platform::Place;
using Platform::RecordEngine;

constexpr const char* locale = "ko_KR";
const WString contactsDatabase = TEXT("Contacts Database");

/// Two of those by which contacts are found.
constexpr CEPROPID mobileNumber = property(0x3A1C, Platform::kindText);
constexpr CEPROPID homeNumber = property(0x3A09, Platform::kindText);

constexpr std::array testProperties{property(1, Platform::kindI2),
                                    property(2, Platform::kindI4),
                                    property(3, Platform::kindR8),
                                    property(4, Platform::kindBool),
                                    property(5, Platform::kindUI2),
                                    property(6, Platform::kindUI4),
                                    property(7, Platform::kindText),
                                    property(8, Platform::kindFileTime),
                                    property(9, Platform::kindBlob),
                                    property(10, Platform::kindText),
                                    mobileNumber,
                                    homeNumber};

const std::array<WString, 12> texts{TEXT(""),
                                    TEXT("a"),
                                    TEXT("A"),
                                    TEXT("b"),
                                    TEXT("가"),
                                    TEXT("각"),
                                    TEXT("김민수"),
                                    TEXT("e\u0301"),
                                    TEXT("\u00e9"),
                                    TEXT("\xD800"),
                                    WString(TEXT("a\0b"), 3),
                                    TEXT("Zz")};

const std::array<WString, 8> telephoneNumbers{
    TEXT("010-1234-5678"), TEXT("+82 10 1234 5678"), TEXT("01012345678"),           TEXT("*23#"), TEXT(""),
    TEXT("none"),          TEXT("02 123"),           WString(TEXT("02\0") "123", 6)};

/// One of a few values of the property's kind, so that ties are common and extremes come up.
std::string valueFor(CEPROPID id, unsigned choice) {
    static constexpr std::array<std::int64_t, 8> numbers{0, 1, -1, 2, 256, -32'768, 32'767, 77};
    static constexpr std::array<double, 6> reals{0.0, -0.0, 1.5, -1.5, std::numeric_limits<double>::infinity(), -1e300};
    const std::int64_t number = numbers[choice % numbers.size()];
    switch (Platform::kindOf(id)) {
        case Platform::kindI2:
        case Platform::kindUI2:
        case Platform::kindBool:
            return bytesOf(static_cast<std::uint16_t>(number));
        case Platform::kindI4:
        case Platform::kindUI4:
            return bytesOf(static_cast<std::uint32_t>(number));
        case Platform::kindFileTime:
            return bytesOf(static_cast<std::uint64_t>(number));
        case Platform::kindR8:
            return bytesOf(reals[choice % reals.size()]);
        case Platform::kindText:
            if (id == mobileNumber || id == homeNumber) {
                return bytesOf(telephoneNumbers[choice % telephoneNumbers.size()]);
            }
            return bytesOf(texts[choice % texts.size()]);
        case Platform::kindBlob:
            return std::string(choice % 40, 'x');
    }
    return {};
}

std::string reduced(std::string_view value) {
    WString number;
    for (std::size_t i = 0; i + 1 < value.size(); i += 2)
        number.push_back(
            static_cast<WCHAR>(static_cast<unsigned char>(value[i]) | static_cast<unsigned char>(value[i + 1]) << 8));
    return Platform::reducedNumber(number.c_str());
}

/// What to do next; every number is reduced to the choices there are.
struct Command {
    unsigned action = 0;
    unsigned engine = 0;
    unsigned target = 0;
    unsigned choice = 0;
    unsigned amount = 0;
};

std::ostream& operator<<(std::ostream& out, const Command& command) {
    return out << '{' << command.action << ", " << command.engine << ", " << command.target << ", " << command.choice
               << ", " << command.amount << '}';
}

rc::Gen<std::vector<Command>> commands() {
    const auto number = rc::gen::inRange(0u, 10'000u);
    return rc::gen::scale(4, rc::gen::container<std::vector<Command>>(rc::gen::map(
                                 rc::gen::tuple(number, number, number, number, number), [](const auto& drawn) {
                                     return std::apply([](auto... each) { return Command{each...}; }, drawn);
                                 })));
}

/// Plays commands on a store and on the model, and compares all answers.
class Play {
public:
    explicit Play(bool onDisk) : store_(onDisk, quickOptions(), locale) {
        for (Side& side : sides_) {
            side.engine = store_.connect();
        }
        adoptSystemDatabases();
    }

    void run(const std::vector<Command>& sequence) {
        for (const Command& command : sequence) {
            play(command);
        }
        finish();
    }

private:
    struct Side {
        std::unique_ptr<RecordEngine> engine;
        std::optional<Model> unit;
        std::uint64_t version = 0;
        bool committedSince = false;
    };
    struct SeenPlace {
        OrderId order;
        CEOID database;
        SortOrder sorting;
        Place place;
        ModelPlace model;
    };
    using Action = void (Play::*)(Side&, const Command&);

    void play(const Command& command) {
        static constexpr std::array<Action, 21> actions{
            &Play::create,    &Play::create,    &Play::create,    &Play::create,       &Play::change,
            &Play::change,    &Play::erase,     &Play::openOrder, &Play::openOrder,    &Play::walk,
            &Play::stepFrom,  &Play::stepTo,    &Play::findEqual, &Play::findEqual,    &Play::readOne,
            &Play::readLog,   &Play::beginUnit, &Play::endUnit,   &Play::makeDatabase, &Play::dropOrAbandon,
            &Play::findNumber};
        Side& side = sides_[command.engine % sides_.size()];
        (this->*actions[command.action % actions.size()])(side, command);
        checkVersions(side);
    }

    void finish() {
        for (Side& side : sides_) {
            endUnit(side, {});
        }
        for (Side& side : sides_) {
            for (const auto& [id, database] : model(side).databases) {
                for (const auto& [order, kept] : database.orders) {
                    walkWhole(side, id, order, kept.order, Direction::forward, 7);
                    walkWhole(side, id, order, kept.order, Direction::backward, 1'000);
                }
            }
        }
    }

    Model& model(Side& side) { return side.unit ? *side.unit : committed_; }
    Side& other(const Side& side) { return &side == &sides_[0] ? sides_[1] : sides_[0]; }

    /// Runs a write that must succeed; or sees it refused because the other side has the store.
    template <typename Write>
    bool write(Side& side, Write&& call) {
        const DWORD error = call();
        if (other(side).unit) {
            RC_ASSERT(error == ERROR_LOCK_VIOLATION);
            return false;
        }
        RC_ASSERT(error == ERROR_SUCCESS);
        if (!side.unit) noteCommit();
        return true;
    }

    void noteCommit() {
        for (Side& side : sides_) {
            side.committedSince = true;
        }
    }

    std::pair<const CEOID, ModelDatabase>* pickDatabase(Side& side, unsigned choice) {
        auto& databases = model(side).databases;
        return databases.empty() ? nullptr
                                 : &*std::next(databases.begin(), static_cast<int>(choice % databases.size()));
    }

    Writing randomWriting(const Command& command, std::vector<std::pair<CEPROPID, std::optional<std::string>>>& plain) {
        Writing writing;
        unsigned bits = command.choice * 7'919 + command.amount;
        for (unsigned i = 0; i < 1 + command.amount % 4; ++i, bits = bits * 31 + 17) {
            const CEPROPID id = testProperties[bits % testProperties.size()];
            if (bits / 16 % 6 == 0) {
                writing.remove(id);
                plain.emplace_back(id, std::nullopt);
            } else {
                writing.setBytes(id, valueFor(id, bits / 64));
                plain.emplace_back(id, valueFor(id, bits / 64));
            }
        }
        return writing;
    }

    void create(Side& side, const Command& command) {
        auto* database = pickDatabase(side, command.target);
        if (database == nullptr) return;
        std::vector<std::pair<CEPROPID, std::optional<std::string>>> plain;
        const Writing writing = randomWriting(command, plain);
        CEOID record = 0;
        if (!write(side, [&] { return side.engine->put(database->first, record, writing.edits()); })) return;

        RC_ASSERT(record != 0u);
        RC_ASSERT(model(side).given.insert(record).second);
        ModelRecord made;
        for (const auto& [id, value] : plain) {
            writeProperty(made, id, value);
        }
        database->second.records[record] = made;
        for (auto& [id, order] : database->second.orders) {
            order.moved = true;
        }
        note(side, *database, record, ChangeKind::created);
    }

    void note(Side& side, std::pair<const CEOID, ModelDatabase>& database, CEOID record, ChangeKind kind) {
        database.second.written = true;
        model(side).log.push_back({database.first, record, kind, side.engine->origin()});
    }

    /// One of the database's records, or now and then one that is not there.
    CEOID pickRecord(const ModelDatabase& database, unsigned choice) {
        if (database.records.empty() || choice % 17 == 0) return 0x7FFF'0000 + choice;
        return std::next(database.records.begin(), static_cast<int>(choice % database.records.size()))->first;
    }

    void change(Side& side, const Command& command) {
        auto* database = pickDatabase(side, command.target);
        if (database == nullptr) return;
        CEOID record = pickRecord(database->second, command.choice);
        std::vector<std::pair<CEPROPID, std::optional<std::string>>> plain;
        const Writing writing = randomWriting(command, plain);
        if (!database->second.records.contains(record)) {
            const DWORD error = side.engine->put(database->first, record, writing.edits());
            RC_ASSERT(error == (other(side).unit ? ERROR_LOCK_VIOLATION : ERROR_KEY_DELETED));
            return;
        }
        if (!write(side, [&] { return side.engine->put(database->first, record, writing.edits()); })) return;

        ModelRecord& kept = database->second.records[record];
        const ModelRecord before = kept;
        for (const auto& [id, value] : plain) {
            writeProperty(kept, id, value);
        }
        for (auto& [id, order] : database->second.orders) {
            const std::string* was = valueOf(before, order.order.property);
            const std::string* is = valueOf(kept, order.order.property);
            const bool same = was == nullptr || is == nullptr ? was == is : *was == *is;
            if (!same) order.moved = true;
        }
        note(side, *database, record, ChangeKind::changed);
    }

    void erase(Side& side, const Command& command) {
        auto* database = pickDatabase(side, command.target);
        if (database == nullptr) return;
        const CEOID record = pickRecord(database->second, command.choice);
        if (!database->second.records.contains(record)) {
            const DWORD error = side.engine->erase(database->first, record);
            RC_ASSERT(error == (other(side).unit ? ERROR_LOCK_VIOLATION : ERROR_KEY_DELETED));
            return;
        }
        if (!write(side, [&] { return side.engine->erase(database->first, record); })) return;
        database->second.records.erase(record);
        for (auto& [id, order] : database->second.orders) {
            order.moved = true;
        }
        note(side, *database, record, ChangeKind::deleted);
    }

    static SortOrder randomOrder(const Command& command) {
        if (command.choice % 11 == 0) return {0, command.amount % 8};
        return {testProperties[command.choice % testProperties.size()], command.amount % 8};
    }

    /// What makes two orders one.
    static SortOrder telling(SortOrder order) {
        order.flags &= Platform::kindOf(order.property) == Platform::kindText ? 6u : 4u;
        if (order.property == 0) order.flags = 0;
        return order;
    }

    void openOrder(Side& side, const Command& command) {
        auto* database = pickDatabase(side, command.target);
        if (database == nullptr) return;
        const SortOrder order = randomOrder(command);
        OrderId id = 0;
        const DWORD error = side.engine->openOrder(database->first, order, id);
        if (Platform::kindOf(order.property) == Platform::kindBlob) {
            RC_ASSERT(error == ERROR_INVALID_PARAMETER);
            return;
        }
        if (error == ERROR_LOCK_VIOLATION) {  // to be built, while the other has the store
            RC_ASSERT(other(side).unit.has_value());
            return;
        }
        RC_ASSERT(error == ERROR_SUCCESS);
        for (const auto& [known, kept] : database->second.orders) {
            RC_ASSERT((known == id) == (telling(kept.order) == telling(order)));
        }
        auto [kept, isNew] = database->second.orders.try_emplace(id);
        if (!isNew) return;
        kept->second.order = telling(order);
        RC_ASSERT(side.engine->orderVersion(id, kept->second.version) == ERROR_SUCCESS);
    }

    struct Picked {
        std::pair<const CEOID, ModelDatabase>* database = nullptr;
        OrderId id = 0;
        SortOrder order;
    };

    std::optional<Picked> pickOrder(Side& side, unsigned target, unsigned choice) {
        auto* database = pickDatabase(side, target);
        if (database == nullptr || database->second.orders.empty()) return std::nullopt;
        const auto& orders = database->second.orders;
        const auto& [id, kept] = *std::next(orders.begin(), static_cast<int>(choice % orders.size()));
        return Picked{database, id, kept.order};
    }

    static Direction directionOf(const Command& command) {
        return command.amount % 2 == 0 ? Direction::forward : Direction::backward;
    }

    void walk(Side& side, const Command& command) {
        const auto picked = pickOrder(side, command.target, command.choice);
        if (!picked) return;
        walkWhole(side, picked->database->first, picked->id, picked->order, directionOf(command),
                  1 + command.amount % 9);
    }

    void walkWhole(Side& side, CEOID id, OrderId order, const SortOrder& sorting, Direction direction,
                   std::size_t limit) {
        const ModelDatabase& database = model(side).databases.at(id);
        const auto expected = sortedPlaces(database, sorting, direction, locale, [](auto&&...) { return true; });
        std::vector<Entry> entries;
        std::optional<Place> from;
        std::size_t met = 0;
        do {
            RC_ASSERT(side.engine->step(order, from ? &*from : nullptr, direction, limit, Fetch::records, entries) ==
                      ERROR_SUCCESS);
            for (const Entry& entry : entries) {
                RC_ASSERT(met < expected.size());
                RC_ASSERT(entry.place.record == expected[met].record);
                RC_ASSERT(unpacked(entry.packed) == database.records.at(entry.place.record));
                remember({order, id, sorting, entry.place, expected[met++]});
                from = entry.place;
            }
        } while (!entries.empty());
        RC_ASSERT(met == expected.size());
    }

    void remember(const SeenPlace& place) {
        if (seen_.size() < 500) seen_.push_back(place);
    }

    static ModelRecord unpacked(std::string_view packed) {
        ModelRecord record;
        Platform::RecordReader reader(packed);
        while (const auto each = reader.next()) {
            record.emplace_back(each->id, std::string(each->bytes));
        }
        RC_ASSERT(!reader.damaged());
        return record;
    }

    /// From a place whose record may have moved or gone since.
    void stepFrom(Side& side, const Command& command) {
        if (seen_.empty()) return;
        const SeenPlace& start = seen_[command.choice % seen_.size()];
        auto& databases = model(side).databases;
        const auto database = databases.find(start.database);
        if (database == databases.end() || !database->second.orders.contains(start.order)) return;
        const SortOrder order = database->second.orders.at(start.order).order;
        if (order != start.sorting) return;  // the identifier was that of an order in a unit given up
        const Direction direction = directionOf(command);
        const PlaceComparison comparison(order, locale);
        const auto expected =
            sortedPlaces(database->second, order, direction, locale, [&](const ModelPlace& place, auto&&) {
                const int compared = comparison.compare(place, start.model);
                return direction == Direction::forward ? compared > 0 : compared < 0;
            });
        std::vector<Entry> entries;
        const std::size_t limit = command.target % 5;
        RC_ASSERT(side.engine->step(start.order, &start.place, direction, limit, Fetch::placesOnly, entries) ==
                  ERROR_SUCCESS);
        RC_ASSERT(entries.size() == std::min(limit, expected.size()));
        for (std::size_t i = 0; i < entries.size(); ++i) {
            RC_ASSERT(entries[i].place.record == expected[i].record);
        }
    }

    void stepTo(Side& side, const Command& command) {
        const auto picked = pickOrder(side, command.target, command.choice);
        if (!picked) return;
        const auto expected = sortedPlaces(picked->database->second, picked->order, directionOf(command), locale,
                                           [](auto&&...) { return true; });
        Entry entry;
        const std::uint64_t index = command.target % (expected.size() + 2);
        const DWORD error = side.engine->stepTo(picked->id, index, directionOf(command), entry);
        RC_ASSERT(error == (index < expected.size() ? ERROR_SUCCESS : ERROR_NO_MORE_ITEMS));
        if (error == ERROR_SUCCESS) RC_ASSERT(entry.place.record == expected[index].record);
    }

    void findEqual(Side& side, const Command& command) {
        const auto by = pickOrder(side, command.target, command.choice);
        const auto along = pickOrder(side, command.target, command.amount);
        if (!by || by->order.property == 0) return;
        std::optional<std::string> value = valueFor(by->order.property, command.choice / 8);
        std::string key = *side.engine->sortKeys().keyOf(by->order, *value);
        if (command.choice % 5 == 0) {  // those that lack the property
            value.reset();
            key = side.engine->sortKeys().keyOfRecord(by->order, {});
        }
        const PlaceComparison comparison(by->order, locale);
        const auto expected = sortedPlaces(
            by->database->second, along->order, directionOf(command), locale, [&](auto&&, const ModelRecord& record) {
                return comparison.compareValues(placeIn(by->order, 1, record).value, value) == 0;
            });
        Place found;
        const DWORD error = side.engine->findEqual(by->id, key, along->id, directionOf(command), found);
        RC_ASSERT(error == (expected.empty() ? ERROR_NO_MORE_ITEMS : ERROR_SUCCESS));
        if (expected.empty()) return;
        RC_ASSERT(found.record == expected.front().record);
        Place place;
        RC_ASSERT(side.engine->placeOf(along->id, found.record, place) == ERROR_SUCCESS);
        RC_ASSERT(place == found);
    }

    /// The first contact, in the order of any property, that has the number, however it is written.
    void findNumber(Side& side, const Command& command) {
        const std::string number = reduced(bytesOf(telephoneNumbers[command.choice % telephoneNumbers.size()]));
        const SortOrder along{testProperties[command.amount % 8], 0};
        const auto has = [&](const ModelRecord& record, CEPROPID property) {
            const std::string* value = valueOf(record, property);
            return value != nullptr && reduced(*value) == number;
        };
        std::vector<ModelPlace> holders;
        for (const auto& [id, database] : model(side).databases) {
            if (database.name != contactsDatabase) continue;
            holders = sortedPlaces(database, along, Direction::forward, locale, [&](auto&&, const ModelRecord& record) {
                return !number.empty() && (has(record, mobileNumber) || has(record, homeNumber));
            });
        }
        CEOID found = 0;
        const DWORD error = side.engine->findNumber(number, along, found);
        RC_ASSERT(error == (holders.empty() ? ERROR_NO_MORE_ITEMS : ERROR_SUCCESS));
        if (!holders.empty()) RC_ASSERT(found == holders.front().record);
    }

    void readOne(Side& side, const Command& command) {
        auto* database = pickDatabase(side, command.target);
        if (database == nullptr) return;
        const CEOID record = pickRecord(database->second, command.choice);
        std::string packed;
        const DWORD error = side.engine->get(database->first, record, packed);
        if (!database->second.records.contains(record)) {
            RC_ASSERT(error == ERROR_KEY_DELETED);
            return;
        }
        RC_ASSERT(error == ERROR_SUCCESS);
        RC_ASSERT(unpacked(packed) == database->second.records.at(record));
    }

    void readLog(Side& side, const Command& command) {
        const std::vector<ModelChange>& log = model(side).log;
        std::uint64_t last = 0;
        RC_ASSERT(side.engine->lastChange(last) == ERROR_SUCCESS);
        RC_ASSERT(last == log.size());
        const std::uint64_t after = command.choice % (log.size() + 1);
        const std::size_t limit = 1 + command.amount % 50;
        std::vector<Platform::Change> changes;
        RC_ASSERT(side.engine->changesAfter(after, limit, changes) == ERROR_SUCCESS);
        RC_ASSERT(changes.size() == std::min(limit, log.size() - after));
        for (std::size_t i = 0; i < changes.size(); ++i) {
            const ModelChange& expected = log[after + i];
            RC_ASSERT(changes[i].sequence == after + i + 1);
            RC_ASSERT(changes[i].database == expected.database);
            RC_ASSERT(changes[i].record == expected.record);
            RC_ASSERT(changes[i].kind == expected.kind);
            RC_ASSERT(changes[i].origin == expected.origin);
        }
    }

    void beginUnit(Side& side, const Command&) {
        const DWORD error = side.engine->beginUnit();
        if (side.unit) {
            RC_ASSERT(error == ERROR_NOT_READY);
        } else if (other(side).unit) {
            RC_ASSERT(error == ERROR_LOCK_VIOLATION);
        } else {
            RC_ASSERT(error == ERROR_SUCCESS);
            side.unit = committed_;
        }
    }

    void endUnit(Side& side, const Command&) {
        const DWORD error = side.engine->endUnit();
        RC_ASSERT(error == (side.unit ? ERROR_SUCCESS : ERROR_NOT_READY));
        if (!side.unit) return;
        const bool wrote = side.unit->log.size() != committed_.log.size();
        committed_ = std::move(*side.unit);
        side.unit.reset();
        if (wrote) noteCommit();
    }

    void makeDatabase(Side& side, const Command& command) {
        const bool contacts = command.choice % 6 == 5;  // which may have been dropped
        const WString name =
            contacts ? contactsDatabase : TEXT("Db") + WString(1, static_cast<WCHAR>(u'a' + command.choice % 6));
        std::vector<SortOrder> declared;
        for (unsigned i = 0; i < command.amount % 4; ++i) {
            const SortOrder order{testProperties[(command.amount + i) % testProperties.size()], command.choice % 8};
            if (Platform::kindOf(order.property) != Platform::kindBlob) declared.push_back(order);
        }
        auto& databases = model(side).databases;
        const bool taken =
            std::any_of(databases.begin(), databases.end(), [&](const auto& each) { return each.second.name == name; });
        CEOID id = 0;
        if (taken && !other(side).unit) {
            const WString shouted = contacts ? TEXT("CONTACTS DATABASE") : TEXT("DB") + name.substr(2);
            RC_ASSERT(side.engine->createDatabase(shouted, 1, declared, id) == ERROR_ALREADY_EXISTS);
            return;
        }
        if (!write(side, [&] { return side.engine->createDatabase(name, 1, declared, id); })) return;
        RC_ASSERT(model(side).given.insert(id).second);
        databases[id] = {name, declared, {}, {}, 0, true};
    }

    /// Drops a database; or, in a unit, gives the unit up with its engine object, as a dying program would.
    void dropOrAbandon(Side& side, const Command& command) {
        if (side.unit && command.amount % 2 == 0) {
            side.engine = store_.connect();
            side.unit.reset();
            return;
        }
        auto* database = pickDatabase(side, command.target);
        if (database == nullptr || command.amount % 4 != 0) return;
        const CEOID id = database->first;
        if (!write(side, [&] { return side.engine->dropDatabase(id); })) return;
        for (const auto& [record, properties] : database->second.records) {
            model(side).log.push_back({id, record, ChangeKind::deleted, side.engine->origin()});
        }
        const auto orders = database->second.orders;
        model(side).databases.erase(id);
        std::vector<Entry> entries;
        for (const auto& [order, kept] : orders) {
            RC_ASSERT(side.engine->step(order, nullptr, Direction::forward, 1, Fetch::placesOnly, entries) ==
                      ERROR_FILE_NOT_FOUND);
        }
    }

    void adoptSystemDatabases() {
        for (const WString& name : {contactsDatabase, WString(TEXT("\\Categories Database"))}) {
            CEOID id = 0;
            RC_ASSERT(sides_[0].engine->findDatabase(name, id) == ERROR_SUCCESS);
            Platform::DatabaseInfo info;
            RC_ASSERT(sides_[0].engine->databaseInfo(id, info) == ERROR_SUCCESS);
            committed_.given.insert(id);
            committed_.databases[id] = {name, info.declaredOrders, {}, {}, 0, true};
        }
    }

    void checkVersions(Side& side) {
        const std::uint64_t version = side.engine->storeVersion();
        if (side.committedSince) RC_ASSERT(version != side.version);
        side.version = version;
        side.committedSince = false;
        for (auto& [id, database] : model(side).databases) {
            checkInfo(side, id, database);
            for (auto& [orderId, order] : database.orders) {
                std::uint64_t now = 0;
                RC_ASSERT(side.engine->orderVersion(orderId, now) == ERROR_SUCCESS);
                RC_ASSERT((order.moved ? now > order.version : now == order.version));
                order.version = now;
                order.moved = false;
            }
        }
    }

    void checkInfo(Side& side, CEOID id, ModelDatabase& database) {
        Platform::DatabaseInfo info;
        RC_ASSERT(side.engine->databaseInfo(id, info) == ERROR_SUCCESS);
        RC_ASSERT(info.id == id);
        RC_ASSERT(info.name == database.name);
        RC_ASSERT(info.declaredOrders == database.declared);
        RC_ASSERT(info.records == database.records.size());
        std::uint64_t bytes = 0;
        for (const auto& [record, properties] : database.records) {
            for (const auto& [property, value] : properties) {
                bytes += 6 + value.size();
            }
        }
        RC_ASSERT(info.bytes == bytes);
        RC_ASSERT((database.written ? info.modified > database.modified : info.modified == database.modified));
        database.modified = info.modified;
        database.written = false;
    }

    FreshStore store_;
    Model committed_;
    std::array<Side, 2> sides_;
    std::vector<SeenPlace> seen_;
};

class EngineSequence : public testing::TestWithParam<EngineKind> {};

TEST_P(EngineSequence, AnswersAsThePlainModelDoes) {
    const bool held = rc::check("an engine answers as the plain model does", [&] {
        const auto sequence = *commands();
        Play(GetParam().onDisk).run(sequence);
    });
    EXPECT_TRUE(held);
}

INSTANTIATE_TEST_SUITE_P(Engines, EngineSequence, testing::ValuesIn(engineKinds), nameOf);

}  // namespace
}  // namespace engine_testing
