#pragma once

#include <array>
#include <map>
#include <optional>

#include "tessera/platform/base/Results.h"

// The speed dial as plain containers: rows, contacts with their slot words, and the cache.

namespace speed_dial {

/// An entry, its contact by key: 0 is none, and one that was deleted keeps its key.
struct Entry {
    DWORD slot = 0;
    int contact = 0;
    WString name;
    DWORD telType = 0;
    WString number;
    DWORD flags = 0;

    friend bool operator==(const Entry&, const Entry&) = default;
};

struct ModelRow {
    int slot = 0;
    DWORD telType = 0;
    WString number;  ///< Without dashes.

    friend bool operator==(const ModelRow&, const ModelRow&) = default;
};

struct ModelContact {
    WString name;
    std::array<WString, 3> numbers;  ///< Mobile, home, business; as they were typed.
    std::optional<DWORD> word = {};  ///< None without an extension row.
};

/// What an operation answered, and the entry that it filled, if any.
struct Answer {
    HRESULT result = S_OK;
    std::optional<Entry> filled = {};

    friend bool operator==(const Answer&, const Answer&) = default;
};

using Cache = std::array<Entry, 100>;

struct Model {
    std::map<int, ModelRow> rows;          ///< By the order in which they were added.
    std::map<int, ModelContact> contacts;  ///< By the order in which they were added, from 1 on.
    /// The slot word of the extension row of contact 0, which is made when a number is looked up that somebody
    /// holds within a longer one only.
    std::optional<DWORD> nobodysWord;
    Cache cache;
    int nextRow = 0;
    int nextContact = 1;

    Answer insert(DWORD id, std::optional<Entry> entry);
    Answer update(std::optional<int> row, std::optional<Entry> entry);
    Answer write(DWORD id, std::optional<Entry> entry);
    Answer erase(DWORD id, const std::optional<Entry>& entry);
    Answer move(DWORD from, DWORD to, std::optional<Entry> entry);
    Answer eraseAll();
    Answer query(DWORD id, Entry entry, bool withContact) const;
    Answer queryNumber(const WString& number, Entry entry) const;
    DWORD proposedSlot(DWORD start) const;

    void addContact(const ModelContact& contact);
    Answer eraseContact(int key);

    Answer fill();
    Answer fill(Cache& other);
    std::map<DWORD, WString> names() const;
    Answer writeCache(DWORD id, std::optional<Entry> entry);
    Answer eraseCache(DWORD id);
    Answer moveCache(DWORD from, DWORD to);
    Answer queryCache(const WString& number) const;
    Answer flush();

private:
    std::map<int, ModelRow>::iterator firstRowOf(DWORD id);
    void complete();
    HRESULT link(DWORD id, int contact, DWORD telType);
    HRESULT link(DWORD id, const WString& number, DWORD telType);
    struct Caller {
        HRESULT result = S_OK;
        int contact = 0;  ///< 0 also when the number was found within a longer one only.
    };
    Caller callerWith(const WString& number) const;
};

/// How a number is stored.
WString withoutDashes(const WString& number);

}  // namespace speed_dial
