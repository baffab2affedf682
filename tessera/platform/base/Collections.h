#pragma once

#include <cstddef>
#include <unordered_map>
#include <vector>

#include "tessera/platform/base/CString.h"

// The platform's collections, with the members that the library uses. Indexes are not checked.

/// A growable array of values, addressed by int as an interface of the platform expects.
template <class Element>
class CArray {
public:
    int GetSize() const { return static_cast<int>(elements_.size()); }  ///< How many elements there are.
    bool IsEmpty() const { return elements_.empty(); }                  ///< True without elements.
    /// @{
    /// An element by its index.
    const Element& GetAt(int index) const { return elements_[static_cast<std::size_t>(index)]; }
    void SetAt(int index, Element element) { elements_[static_cast<std::size_t>(index)] = std::move(element); }
    /// @}
    /// Answers the index of the new element.
    int Add(Element element) {
        if (elements_.empty()) elements_.reserve(firstRoom);
        elements_.push_back(std::move(element));
        return GetSize() - 1;
    }
    void RemoveAt(int index) { elements_.erase(elements_.begin() + index); }  ///< Those behind it move up.
    void RemoveAll() { elements_.clear(); }                                   ///< Takes all elements away.
    /// @{
    /// An element by its index.
    const Element& operator[](int index) const { return GetAt(index); }
    Element& operator[](int index) { return elements_[static_cast<std::size_t>(index)]; }
    /// @}

    /// @{
    /// For loops over all elements.
    auto begin() const { return elements_.begin(); }
    auto end() const { return elements_.end(); }
    /// @}

private:
    static constexpr std::size_t firstRoom = 16;  // a row's values or properties mostly

    std::vector<Element> elements_;
};

/// An array of texts.
using CStringArray = CArray<CString>;

/// What an object array can hold.
class CObject {
public:
    virtual ~CObject() = default;

protected:
    CObject() = default;
    CObject(const CObject&) = default;
    CObject& operator=(const CObject&) = default;
};

/// An array of borrowed or owned pointers: whoever fills it says which.
using CObArray = CArray<CObject*>;

/// A hash map. KeyArg and ValueArg are how a key and a value are passed.
template <class Key, class KeyArg, class Value, class ValueArg>
class CMap {
public:
    /// The block size is how many entries to allocate at a time; allocation here needs no such advice.
    explicit CMap(int /*blockSize*/ = 10) {}

    /// Makes room for that many buckets.
    void InitHashTable(UINT buckets) { entries_.rehash(buckets); }
    int GetCount() const { return static_cast<int>(entries_.size()); }  ///< How many entries there are.
    /// Adds the entry, or changes its value.
    void SetAt(KeyArg key, ValueArg value) { entries_.insert_or_assign(key, value); }
    /// The value of a key, which is added when there is none.
    Value& operator[](KeyArg key) { return entries_[key]; }
    /// Copies the value of `key` into `value`; FALSE, and nothing copied, when there is none.
    BOOL Lookup(KeyArg key, Value& value) const {
        const auto found = entries_.find(key);
        if (found == entries_.end()) return FALSE;
        value = found->second;
        return TRUE;
    }
    /// FALSE when there is no such key.
    BOOL RemoveKey(KeyArg key) { return entries_.erase(key) != 0 ? TRUE : FALSE; }
    void RemoveAll() { entries_.clear(); }  ///< Takes all entries away.

private:
    std::unordered_map<Key, Value> entries_;
};
