#pragma once

#include <vector>

#include "tessera/Export.h"
#include "tessera/platform/base/Collections.h"
#include "tessera/platform/objectstore/CCeDBProp.h"

/// An ordered set of properties: a row on its way to or from a table. Value semantics.
class TESSERA_API CCeDBRecord {
public:
    CCeDBRecord() = default;
    /// Copies the properties of an array of CCeDBProp; null elements are passed over.
    explicit CCeDBRecord(const CObArray& props);
    /// Copies that many properties.
    CCeDBRecord(const CCeDBProp* props, int count);

    int getNumProps() const { return static_cast<int>(props_.size()); }  ///< How many properties there are.
    /// A property by its place, which is not checked.
    const CCeDBProp& getPropAt(int index) const { return props_[static_cast<std::size_t>(index)]; }
    /// The property of that ident, whatever its type; null when there is none.
    const CCeDBProp* findProp(WORD ident) const;
    /// The same, or the empty property when there is none.
    const CCeDBProp& getProp(WORD ident) const;
    /// Appends a property, whatever idents there are.
    void addProp(CCeDBProp prop) { props_.push_back(std::move(prop)); }
    /// Replaces the property of the same ident where it stands; FALSE when there is none.
    BOOL replaceProp(const CCeDBProp& prop);
    /// Makes room for that many properties ahead.
    void reserve(int count) { props_.reserve(static_cast<std::size_t>(count)); }
    /// Takes all properties away.
    void removeAll() { props_.clear(); }

private:
    std::vector<CCeDBProp> props_;
};
