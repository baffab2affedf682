#pragma once

#include <algorithm>
#include <memory>
#include <ostream>
#include <utility>
#include <vector>

#include "tessera/database/Iterator.h"
#include "tessera/database/Table.h"
#include "tessera/platform/base/Unicode.h"

namespace conformance {

inline constexpr int nameIdx = 0;
inline constexpr int mobileIdx = 2;
inline constexpr int emailIdx = 5;

/// What the suite writes into a row, and expects to read of it.
struct Row {
    WString name;
    WString mobile;
    WString email;

    friend bool operator==(const Row&, const Row&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Row& row) {
        return out << '{' << utf8Of(row.name) << ", " << utf8Of(row.mobile) << ", " << utf8Of(row.email) << '}';
    }
};

/// Rows with their identifiers, in the order in which they are walked.
using Rows = std::vector<std::pair<DWORD, Row>>;

/// One property an attribute, by position; those that the suite does not use are empty or zero.
inline std::vector<CCeDBProp> propsOf(Database::Table& table, const Row& row) {
    std::vector<CCeDBProp> props;
    for (int i = 0; i < table.getNumAttrs(); ++i) {
        const Database::AttrDef& attribute = *table.getAttrDef(i);
        props.emplace_back(attribute.getType(), attribute.getIdent());
    }
    const auto setText = [&](int attrIdx, const WString& text) {
        props[static_cast<std::size_t>(attrIdx)] = CCeDBProp::ofText(table.getAttrIdent(attrIdx), CString(text));
    };
    setText(nameIdx, row.name);
    setText(mobileIdx, row.mobile);
    setText(emailIdx, row.email);
    return props;
}

inline CCeDBRecord recordOf(Database::Table& table, const Row& row) {
    const std::vector<CCeDBProp> props = propsOf(table, row);
    return {props.data(), static_cast<int>(props.size())};
}

/// A table with nothing to walk hands out either no iterator or one that is not opened.
inline bool isWalkable(Database::Iterator* rows) {
    return rows != nullptr && rows->isOpened();
}

inline Row currentRow(Database::Iterator& rows) {
    const auto text = [&](int attrIdx) { return WString(rows.getString(attrIdx).view()); };
    return {text(nameIdx), text(mobileIdx), text(emailIdx)};
}

/// The rows as a walk from the first to the last finds them.
inline Rows rowsOf(Database::Table& table) {
    Rows walked;
    const std::unique_ptr<Database::Iterator> rows(table.getIterator(nullptr, nullptr));
    if (!isWalkable(rows.get())) return walked;
    while (rows->next() == S_OK)
        walked.emplace_back(rows->getCur(), currentRow(*rows));
    return walked;
}

/// The same from the last to the first.
inline Rows rowsBackward(Database::Table& table) {
    Rows walked;
    const std::unique_ptr<Database::Iterator> rows(table.getIterator(nullptr, nullptr));
    if (!isWalkable(rows.get())) return walked;
    for (HRESULT moved = rows->last(); moved == S_OK; moved = rows->prev()) {
        walked.emplace_back(rows->getCur(), currentRow(*rows));
    }
    return walked;
}

/// The same by index.
inline Rows rowsByIndex(Database::Table& table) {
    Rows walked;
    const std::unique_ptr<Database::Iterator> rows(table.getIterator(nullptr, nullptr));
    if (!isWalkable(rows.get())) return walked;
    for (int i = 0; i < rows->getNumItems(); ++i) {
        const DWORD oid = rows->getAt(i);
        walked.emplace_back(oid, currentRow(*rows));
    }
    return walked;
}

}  // namespace conformance
