// A walk against a sorted set of places, under any sequence of steps and writes, whoever writes.

#include <map>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "tessera/platform/base/Unicode.h"
#include "tests/database/WalkedTable.h"

namespace Database {
namespace {

using testing_support::MountKind;
using testing_support::mountKinds;
using testing_support::WalkedTable;
using testing_support::Writer;

/// Where a row stands in the order of names.
using Place = std::pair<WString, DWORD>;

/// The rows of a table in the order it was opened in, and the table's own place there.
class TableModel {
public:
    explicit TableModel(bool descending) : descending_(descending) {}

    void insert(DWORD oid, const WString& name) {
        names_[oid] = name;
        places_.emplace(name, oid);
    }
    void erase(DWORD oid) {
        places_.erase({names_.at(oid), oid});
        names_.erase(oid);
    }
    void rename(DWORD oid, const WString& name) {
        erase(oid);
        insert(oid, name);
    }

    // The seeks answer the row reached, 0 when there is none; the place is at the end then.
    DWORD toIndex(std::size_t index) {
        if (index >= places_.size()) return reach(std::nullopt);
        return reach(descending_ ? *std::next(places_.rbegin(), static_cast<std::ptrdiff_t>(index))
                                 : *std::next(places_.begin(), static_cast<std::ptrdiff_t>(index)));
    }
    DWORD toEnd() { return places_.empty() ? reach(std::nullopt) : toIndex(places_.size() - 1); }
    DWORD next() { return place_ ? reach(descending_ ? below(*place_) : above(*place_)) : 0; }
    DWORD prev() { return place_ ? reach(descending_ ? above(*place_) : below(*place_)) : toEnd(); }
    DWORD firstEqual(const WString& name) {
        for (std::size_t i = 0; i < places_.size(); ++i) {
            if (toIndex(i) != 0 && place_->first == name) return place_->second;
        }
        return reach(std::nullopt);
    }
    DWORD nextEqual(const WString& name) {
        const DWORD reached = next();
        return reached != 0 && place_->first == name ? reached : reach(std::nullopt);
    }
    /// A row that is gone is not reached, and the place stays.
    void toRow(DWORD oid) {
        if (names_.contains(oid)) place_ = {names_.at(oid), oid};
    }

    WString nameOf(DWORD oid) const { return names_.contains(oid) ? names_.at(oid) : WString(); }
    std::size_t size() const { return places_.size(); }
    DWORD anyRow(std::size_t pick) const {
        return std::next(places_.begin(), static_cast<std::ptrdiff_t>(pick % places_.size()))->second;
    }

private:
    std::optional<Place> above(const Place& place) const {
        const auto found = places_.upper_bound(place);
        return found == places_.end() ? std::nullopt : std::optional(*found);
    }
    std::optional<Place> below(const Place& place) const {
        const auto found = places_.lower_bound(place);
        return found == places_.begin() ? std::nullopt : std::optional(*std::prev(found));
    }
    DWORD reach(const std::optional<Place>& place) {
        place_ = place;
        return place ? place->second : 0;
    }

    bool descending_;
    std::set<Place> places_;
    std::map<DWORD, WString> names_;
    std::optional<Place> place_;  ///< None: at the end.
};

/// What an iterator makes of its table: an index that counts the moves, and the row last reached.
class WalkModel {
public:
    WalkModel(TableModel& table, std::optional<WString> equalTo)
        : table_(table), equalTo_(std::move(equalTo)), count_(static_cast<int>(table.size())) {
        table_.toIndex(0);
    }

    HRESULT next() {
        const bool isFirst = index_ == Iterator::nInvalidItemIdx_;
        if (!equalTo_) return moved(isFirst ? table_.toIndex(0) : table_.next(), +1);
        return moved(isFirst ? table_.firstEqual(*equalTo_) : table_.nextEqual(*equalTo_), +1);
    }
    HRESULT prev() { return moved(index_ == Iterator::nInvalidItemIdx_ ? table_.toEnd() : table_.prev(), -1); }
    HRESULT last() { return moved(table_.toEnd(), -1); }
    DWORD getAt(int idx) {
        if (idx > count_) return 0;
        const DWORD reached = table_.toIndex(static_cast<std::size_t>(idx));
        if (reached != 0) std::tie(index_, current_) = std::pair(idx, reached);
        return reached;
    }
    WString getName() {
        table_.toRow(current_);
        return table_.nameOf(current_);
    }
    DWORD current() const { return current_; }

private:
    HRESULT moved(DWORD reached, int steps) {
        if (reached == 0) return S_FALSE;
        index_ += steps;
        current_ = reached;
        return S_OK;
    }

    TableModel& table_;
    std::optional<WString> equalTo_;
    int count_;
    int index_ = Iterator::nInvalidItemIdx_;
    DWORD current_ = 0;
};

enum class Act { next, prev, last, getAt, getRecordAt, read, insert, rename, renameCurrent, erase, eraseCurrent };

/// One step or write. Which row or index it is about is drawn as a number, to fit what there is by then.
struct Action {
    Act act = Act::next;
    std::size_t pick = 0;
    WString name;
    Writer writer = Writer::theTableItself;
};

std::ostream& operator<<(std::ostream& out, const Action& action) {
    constexpr const char* names[] = {"next",   "prev",   "last",          "getAt", "getRecordAt", "read",
                                     "insert", "rename", "renameCurrent", "erase", "eraseCurrent"};
    return out << names[static_cast<int>(action.act)] << ' ' << action.pick << ' ' << utf8Of(action.name) << " by "
               << nameOf(action.writer);
}

/// A table and a walk over it, each with its model beside it.
class Walk {
public:
    Walk(const std::vector<WString>& names, bool descending, const std::optional<WString>& equalTo)
        : table_(descending ? CEDB_SORT_DESCENDING : 0), model_(descending) {
        for (const WString& named : names)
            model_.insert(table_.insert(Writer::theTableItself, named), named);
        if (equalTo) bound_ = testing_support::name(CString(*equalTo));
        rows_ = table_.walk(equalTo ? &bound_ : nullptr);
        walk_.emplace(model_, equalTo);
    }

    void perform(const Action& action) {
        step(action);
        if (model_.size() != 0) write(action);
        if (action.act == Act::insert) model_.insert(table_.insert(action.writer, action.name), action.name);
        RC_ASSERT(rows_->getCur() == walk_->current());
    }

private:
    void step(const Action& action) {
        const int idx = static_cast<int>(action.pick % (model_.size() + 2));
        switch (action.act) {
            case Act::next:
                return RC_ASSERT(rows_->next() == walk_->next());
            case Act::prev:
                return RC_ASSERT(rows_->prev() == walk_->prev());
            case Act::last:
                return RC_ASSERT(rows_->last() == walk_->last());
            case Act::getAt:
                return RC_ASSERT(rows_->getAt(idx) == walk_->getAt(idx));
            case Act::getRecordAt:
                return expectRecordAt(idx);
            case Act::read:
                return RC_ASSERT(rows_->getString(WalkedTable::nameIdx).view() == walk_->getName());
            default:
                return;
        }
    }
    void expectRecordAt(int idx) {
        CCeDBRecord record;
        const DWORD expected = walk_->getAt(idx);
        RC_ASSERT(rows_->getRecordAt(idx, &record) == (expected != 0 ? S_OK : E_FAIL));
        if (expected == 0) return;
        RC_ASSERT(record.findProp(testing_support::nameIdent)->getText().view() == model_.nameOf(expected));
    }
    void write(const Action& action) {
        const bool isCurrent = action.act == Act::renameCurrent || action.act == Act::eraseCurrent;
        const DWORD oid = isCurrent ? walk_->current() : model_.anyRow(action.pick);
        if (isCurrent && model_.nameOf(oid).empty()) return;  // it stands on none, or on one that is gone
        if (action.act == Act::rename || action.act == Act::renameCurrent) {
            table_.rename(action.writer, oid, action.name);
            if (action.writer == Writer::theTableItself) model_.toRow(oid);
            model_.rename(oid, action.name);
        }
        if (action.act == Act::erase || action.act == Act::eraseCurrent) {
            table_.erase(action.writer, oid);
            model_.erase(oid);
        }
    }

    WalkedTable table_;
    TableModel model_;
    CCeDBProp bound_;
    std::unique_ptr<Iterator> rows_;
    std::optional<WalkModel> walk_;
};

// Names that every collation puts into the order of their characters.
rc::Gen<WString> anyName() {
    return rc::gen::container<WString>(2, rc::gen::element(u'a', u'b', u'c'));
}

rc::Gen<Action> anyAction() {
    return rc::gen::build<Action>(
        rc::gen::set(&Action::act, rc::gen::weightedElement<Act>({{6, Act::next},
                                                                  {4, Act::prev},
                                                                  {1, Act::last},
                                                                  {1, Act::getAt},
                                                                  {1, Act::getRecordAt},
                                                                  {1, Act::read},
                                                                  {2, Act::insert},
                                                                  {1, Act::rename},
                                                                  {2, Act::renameCurrent},
                                                                  {1, Act::erase},
                                                                  {2, Act::eraseCurrent}})),
        rc::gen::set(&Action::pick, rc::gen::inRange<std::size_t>(0, 50)), rc::gen::set(&Action::name, anyName()),
        rc::gen::set(&Action::writer,
                     rc::gen::element(Writer::theTableItself, Writer::anotherTable, Writer::anotherThread)));
}

class WalkProperty : public testing::TestWithParam<MountKind> {};

TEST_P(WalkProperty, GoesAsOverASortedSetOfPlacesWhoeverWritesBetweenItsSteps) {
    const std::shared_ptr<void> store = GetParam().mount();
    EXPECT_TRUE(rc::check([&] {
        const auto names = *rc::gen::nonEmpty(rc::gen::container<std::vector<WString>>(anyName()));
        const auto group = *anyName();
        const bool descending = *rc::gen::arbitrary<bool>();
        const bool bounded = *rc::gen::arbitrary<bool>();
        Walk walk(names, descending, bounded ? std::optional(group) : std::nullopt);
        for (const Action& action : *rc::gen::container<std::vector<Action>>(anyAction()))
            walk.perform(action);
    }));
}

INSTANTIATE_TEST_SUITE_P(EitherStore, WalkProperty, testing::ValuesIn(mountKinds),
                         [](const auto& kind) { return std::string(kind.param.name); });

}  // namespace
}  // namespace Database
