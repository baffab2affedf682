#pragma once

#include <memory>
#include <ostream>
#include <set>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include "tests/conformance/IteratorsUnderTest.h"
#include "tests/support/Values.h"

namespace conformance {

inline void PrintTo(const IteratorKind& kind, std::ostream* out) {
    *out << kind.name;
}

inline void PrintTo(Place place, std::ostream* out) {
    constexpr const char* names[] = {"no row", "the first", "the added", "the second", "the third"};
    *out << names[static_cast<int>(place)];
}

/// An iterator of a kind over the three rows, not moved yet.
class ThreeRows : public testing::Test {
protected:
    static constexpr int count = 3;

    explicit ThreeRows(const IteratorKind& kind) : made(kind.make()), traits(kind.traits) {
        if (kind.selects) made->add(outsider);
        for (const Place place : {Place::third, Place::first, Place::second})
            addRow(place);
        rows = made->iterator();
        if (!rows) throw std::runtime_error("there is nothing to walk");
    }

    void addRow(Place place) {
        DWORD& oid = oidOf(place);
        oid = made->add(contentsOf[static_cast<int>(place)]);
        EXPECT_NE(oid, 0u);
    }
    DWORD& oidOf(Place place) { return oids[static_cast<std::size_t>(place)]; }
    void erase(Place place) {
        DWORD oid = oidOf(place);
        ASSERT_EQ(made->table().deleteRecord(oid), S_OK);
    }

    Place placeOf(DWORD oid) {
        for (const Place place : {Place::first, Place::added, Place::second, Place::third}) {
            if (oid != 0 && oidOf(place) == oid) return place;
        }
        EXPECT_EQ(oid, 0u) << "a row that is none of these";
        return Place::none;
    }
    Place current() { return placeOf(rows->getCur()); }
    /// The text of each attribute that the row holds; none of it when there is no row.
    void expectReads(Place place) {
        const RowContents& contents = contentsOf[static_cast<int>(place)];
        EXPECT_EQ(rows->getString(nameIdx), contents.name);
        EXPECT_EQ(rows->getString(mobileIdx), contents.mobile);
        EXPECT_TRUE(rows->getString(emailIdx).IsEmpty());
    }
    void expectStandsOn(Place place) {
        EXPECT_EQ(current(), place);
        expectReads(place);
    }
    void expectStep(HRESULT result, const Step& expected) {
        EXPECT_EQ(result, expected.result);
        EXPECT_EQ(current(), expected.current);
    }
    void standOn(Place place) {
        do
            ASSERT_EQ(rows->next(), S_OK);
        while (current() != place);
    }
    /// The rows on from here, and that the walk ends behind them.
    std::vector<Place> rest() {
        std::vector<Place> walked;
        HRESULT moved = rows->next();
        for (; moved == S_OK && walked.size() < oids.size(); moved = rows->next())
            walked.push_back(current());
        EXPECT_EQ(moved, S_FALSE);
        return walked;
    }
    /// Deletes by the iterator itself; it is not opened any more then.
    void empty() {
        for (int i = 0; i < count; ++i)
            ASSERT_EQ(rows->deleteAt(traits.deletionsCountFrom, false), S_OK);
        ASSERT_FALSE(rows->isOpened());
    }
    /// Which of the rows the store holds.
    std::set<Place> stored() {
        std::set<Place> places;
        for (const auto& [oid, row] : rowsOf(made->table())) {
            if (row.name != outsider.name) places.insert(placeOf(oid));
        }
        return places;
    }
    static std::set<Place> allBut(Place deleted) {
        std::set<Place> places{Place::first, Place::second, Place::third};
        places.erase(deleted);
        return places;
    }

    std::unique_ptr<IteratorUnderTest> made;
    IteratorTraits traits;
    std::vector<DWORD> oids = std::vector<DWORD>(5);
    std::unique_ptr<Database::Iterator> rows;
};

}  // namespace conformance
