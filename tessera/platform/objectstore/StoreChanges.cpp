#include "tessera/platform/objectstore/StoreChanges.h"

#include <cstring>
#include <string>

#include "tessera/platform/base/Results.h"
#include "tessera/platform/engine/Record.h"
#include "tessera/platform/objectstore/Boundary.h"
#include "tessera/platform/objectstore/MountedStore.h"
#include "tessera/platform/objectstore/RecordCursor.h"
#include "tessera/platform/objectstore/Session.h"

using namespace Platform;

namespace {

constexpr std::size_t changesAtOnce = 512;

/// The texts of one record after another, copied to where UTF-16 may stand, a zero behind each.
class TextBuffer {
public:
    std::span<const TextProperty> textsOf(std::string_view packed) {
        texts_.clear();
        characters_.resize(packed.size() / sizeof(WCHAR));  // what stands before a value is longer than a zero
        WCHAR* free = characters_.data();
        RecordReader reader(packed);
        while (const auto property = reader.next()) {
            if (kindOf(property->id) != kindText) continue;
            const std::size_t length = property->bytes.size() / sizeof(WCHAR);
            if (length != 0) std::memcpy(free, property->bytes.data(), length * sizeof(WCHAR));
            free[length] = u'\0';
            texts_.push_back({property->id, {free, length}});
            free += length + 1;
        }
        return texts_;
    }

private:
    std::vector<TextProperty> texts_;
    WString characters_;
};

StoreChange::Kind fateOf(ChangeKind kind) {
    switch (kind) {
        case ChangeKind::created:
            return StoreChange::Kind::created;
        case ChangeKind::deleted:
            return StoreChange::Kind::deleted;
        case ChangeKind::changed:
            break;
    }
    return StoreChange::Kind::changed;
}

StoreChange changeOf(const Change& change) {
    return {change.record, fateOf(change.kind), change.sequence, fileTimeOf(change.time)};
}

}  // namespace

struct DatabaseReader::Impl {
    WString name;
    SortOrder order;

    // What the last complete reading was made of.
    CEOID database = 0;
    std::uint64_t mountNumber = 0;
    std::uint64_t givenUpBatches = 0;

    TextBuffer texts;

    DWORD readAll(Session& session, std::uint64_t& sequence, const Visitor& visit);
    DWORD read(Session& session, CEOID oid, const Visitor& visit);
    /// Whether the session sees the database that was read, and nothing that was read has been undone.
    bool follows(Session& session) const;
    DWORD collectChanges(Session& session, std::uint64_t& sequence, std::vector<StoreChange>& changes) const;
};

DWORD DatabaseReader::Impl::readAll(Session& session, std::uint64_t& sequence, const Visitor& visit) {
    RecordCursor cursor(session);
    database = 0;
    givenUpBatches = MountedStore::givenUpBatches();
    if (const DWORD error = cursor.open(name, order); error != ERROR_SUCCESS) return error;
    if (const DWORD error = session.engine().lastChange(sequence); error != ERROR_SUCCESS) return error;
    std::span<const Entry> block;
    do {
        if (const DWORD error = cursor.nextBlock(block); error != ERROR_SUCCESS) return error;
        for (const Entry& entry : block) {
            visit({entry.place.record, entry.place.key, texts.textsOf(entry.packed)});
        }
    } while (!block.empty());
    database = cursor.database();
    mountNumber = session.mountNumber();
    return ERROR_SUCCESS;
}

DWORD DatabaseReader::Impl::read(Session& session, CEOID oid, const Visitor& visit) {
    std::string packed;
    if (const DWORD error = session.engine().get(database, oid, packed); error != ERROR_SUCCESS) return error;
    const std::string key = session.engine().sortKeys().keyOfRecord(order, packed);
    visit({oid, key, texts.textsOf(packed)});
    return ERROR_SUCCESS;
}

bool DatabaseReader::Impl::follows(Session& session) const {
    CEOID found = 0;
    return mountNumber == session.mountNumber() && givenUpBatches == MountedStore::givenUpBatches() &&
           session.engine().findDatabase(name, found) == ERROR_SUCCESS && found == database;
}

DWORD DatabaseReader::Impl::collectChanges(Session& session, std::uint64_t& sequence,
                                           std::vector<StoreChange>& changes) const {
    std::vector<Change> read;
    do {
        read.clear();
        const DWORD error = session.engine().changesAfter(sequence, changesAtOnce, read);
        if (error != ERROR_SUCCESS) return error;
        for (const Change& change : read) {
            if (change.database == database) changes.push_back(changeOf(change));
        }
        if (!read.empty()) sequence = read.back().sequence;
    } while (read.size() == changesAtOnce);
    return ERROR_SUCCESS;
}

DatabaseReader::DatabaseReader(const WCHAR* database, CEPROPID sortProperty) : impl_(std::make_unique<Impl>()) {
    impl_->name = database;
    impl_->order = {sortProperty, 0};
}

DatabaseReader::~DatabaseReader() = default;

StoreStamp DatabaseReader::stamp() const {
    return guarded(StoreStamp{}, [] {
        Session* session = Session::current();
        if (session == nullptr) return StoreStamp{};
        const StoreMoment moment = session->moment();
        return StoreStamp{moment.session, moment.commits, moment.writes, MountedStore::givenUpBatches()};
    });
}

bool DatabaseReader::inBatch() const {
    return guarded(false, [] {
        const Session* session = Session::current();
        return session != nullptr && session->inBatch();
    });
}

bool DatabaseReader::readAll(std::uint64_t& sequence, const Visitor& visit) {
    return guarded(false, [&] {
        Session* session = Session::current();
        if (session == nullptr) return false;
        const DWORD error = impl_->readAll(*session, sequence, visit);
        return error == ERROR_SUCCESS || failWith(error, false);
    });
}

bool DatabaseReader::read(CEOID oid, const Visitor& visit) {
    return guarded(false, [&] {
        Session* session = Session::current();
        if (session == nullptr) return false;
        const DWORD error = impl_->read(*session, oid, visit);
        return error == ERROR_SUCCESS || failWith(error, false);
    });
}

bool DatabaseReader::findNumber(std::string_view number, CEOID& oid) const {
    return guarded(false, [&] {
        Session* session = Session::current();
        if (session == nullptr) return false;
        const DWORD error = session->engine().findNumber(number, impl_->order, oid);
        return error == ERROR_SUCCESS || failWith(error, false);
    });
}

ChangesResult DatabaseReader::changesSince(std::uint64_t& sequence, std::vector<StoreChange>& changes) {
    return guarded(ChangesResult::failed, [&] {
        Session* session = Session::current();
        if (session == nullptr) return ChangesResult::failed;
        if (!impl_->follows(*session)) return ChangesResult::tooOld;
        const DWORD error = impl_->collectChanges(*session, sequence, changes);
        if (error == ERROR_SUCCESS) return ChangesResult::complete;
        return error == ERROR_NO_MORE_ITEMS ? ChangesResult::tooOld : failWith(error, ChangesResult::failed);
    });
}
