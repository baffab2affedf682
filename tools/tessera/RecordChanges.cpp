#include "RecordChanges.h"

#include <algorithm>
#include <limits>

#include "tessera/platform/base/Results.h"
#include "tessera/platform/contacts/ContactProperties.h"

namespace Tool {

namespace {

using PhoneBook::PBDBTBL_CATEGORIES;
using PhoneBook::PhoneBookDBMgr;

CEPROPID nameOfCategory() {
    return makePropId(PhoneBookDBMgr::aRecDef_[PBDBTBL_CATEGORIES].getAttrIdent(0), CEVT_LPWSTR);
}

}  // namespace

RecordChanges::RecordChanges(const Store& store)
    : store_(store),
      sources_{{{RecordChange::Of::contact, ContactProperty::fileAs, {szContactsDatabase, ContactProperty::fileAs}},
                {RecordChange::Of::category,
                 nameOfCategory(),
                 {PhoneBookDBMgr::aszTableName_[PBDBTBL_CATEGORIES], nameOfCategory()}}}} {
    startFromNow();
}

void RecordChanges::startFromNow() {
    sequence_ = std::numeric_limits<std::uint64_t>::max();
    for (Source& source : sources_) {
        std::uint64_t newest = 0;
        store_.require(source.reader.readAll(newest, [](const RecordView&) {}));
        sequence_ = std::min(sequence_, newest);
    }
}

std::optional<std::vector<RecordChange>> RecordChanges::next() {
    std::vector<RecordChange> all;
    std::uint64_t last = std::numeric_limits<std::uint64_t>::max();
    for (Source& source : sources_) {
        std::uint64_t newest = sequence_;
        std::vector<StoreChange> changes;
        const ChangesResult result = source.reader.changesSince(newest, changes);
        if (result == ChangesResult::tooOld) {
            startFromNow();
            return std::nullopt;
        }
        store_.require(result == ChangesResult::complete);
        for (const StoreChange& change : changes)
            all.push_back({source.of, change});
        last = std::min(last, newest);
    }
    // What was committed between the two readings is read again: the first one has not seen its part of it.
    std::erase_if(all, [last](const RecordChange& changed) { return changed.change.sequence > last; });
    std::ranges::sort(all, {}, [](const RecordChange& changed) { return changed.change.sequence; });
    sequence_ = last;
    return all;
}

CString RecordChanges::nameOf(const RecordChange& changed) {
    Source& source = *std::ranges::find(sources_, changed.of, &Source::of);
    CString name;
    const bool found = source.reader.read(changed.change.oid, [&](const RecordView& record) {
        if (const auto text = record.text(source.name)) name = CString(*text);
    });
    store_.require(found || GetLastError() == ERROR_KEY_DELETED);
    return name;
}

}  // namespace Tool
