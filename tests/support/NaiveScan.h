#pragma once

#include <algorithm>
#include <cwctype>
#include <utility>
#include <vector>

#include "tessera/database/UnicodeHandler.h"
#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tessera/platform/contacts/ContactProperties.h"
#include "tessera/platform/objectstore/CCeDBDatabase.h"

// The searches as they are defined: every record of the contacts database read in name order for each key.
// Slow and plain, to hold the fast ones against.

namespace testing_support {

using NaiveMatch = std::pair<DWORD, CString>;  // identifier and name

template <class Visit>
void readContactsInNameOrder(Visit visit) {
    CCeDBDatabase contacts;
    const CCeDBProp byName(CCeDBProp::typeText, identOf(ContactProperty::fileAs));
    contacts.open(szContactsDatabase, &byName, nullptr);
    const int count = static_cast<int>(contacts.getNumRecords());
    for (int i = 0; i < count; ++i) {
        const CEOID oid = contacts.seekToIndex(i);
        CCeDBRecord record;
        contacts.readCurrent(record);
        visit(oid, record);
    }
}

inline CString naiveName(const CCeDBRecord& record) {
    const CCeDBProp* name = record.findProp(identOf(ContactProperty::fileAs));
    return name == nullptr ? CString() : name->getText();
}

inline bool naiveIsConsonant(WCHAR ch) {
    return ch >= 0x3131 && ch <= 0x314E;
}

/// One key consonant a name syllable, from the first on.
inline bool naiveInitialsMatch(const CString& name, const CString& key) {
    int k = 0;
    int at = 0;
    while (k < key.GetLength()) {
        int initial = 0;
        while (at < name.GetLength()) {
            initial = Database::UnicodeHandler::getLIndex(name[at++]);
            if (initial != u' ' && initial != u'\t' && initial != u',') break;
            initial = 0;
        }
        if (initial == 0) break;
        if (initial != key[k] && initial != Database::UnicodeHandler::getRelatedJa(key[k])) break;
        ++k;
    }
    return k == key.GetLength();
}

inline bool naiveNameMatches(CString name, const CString& key) {
    const WCHAR first = key.IsEmpty() ? u'\0' : key[0];
    const bool byInitials = naiveIsConsonant(first) || (first >= 0x1100 && first <= 0x1159);
    name.MakeLower();
    CString lowerKey = key;
    lowerKey.MakeLower();
    if (!byInitials) return name.Find(lowerKey) >= 0;
    if (naiveIsConsonant(first)) {
        lowerKey.Empty();
        for (int i = 0; i < key.GetLength(); ++i) {
            const int initial = naiveIsConsonant(key[i]) ? Database::UnicodeHandler::getLIndex(key[i]) : key[i];
            if (initial != key[i]) lowerKey += static_cast<WCHAR>(initial);
        }
    }
    return naiveInitialsMatch(name, lowerKey);
}

inline std::vector<NaiveMatch> naiveNameScan(const CString& key) {
    std::vector<NaiveMatch> matches;
    readContactsInNameOrder([&](CEOID oid, const CCeDBRecord& record) {
        if (naiveNameMatches(naiveName(record), key)) matches.emplace_back(oid, naiveName(record));
    });
    return matches;
}

/// The members of a group; for the empty one the contacts without the property.
inline std::vector<NaiveMatch> naiveGroupScan(const CString& group) {
    std::vector<NaiveMatch> matches;
    readContactsInNameOrder([&](CEOID oid, const CCeDBRecord& record) {
        const CCeDBProp* categories = record.findProp(identOf(ContactProperty::categories));
        const bool member =
            group.IsEmpty() ? categories == nullptr : categories != nullptr && categories->getText() == group;
        if (member) matches.emplace_back(oid, naiveName(record));
    });
    return matches;
}

inline bool naiveIsNumber(const CCeDBProp& prop) {
    static constexpr CEPROPID numbers[] = {ContactProperty::mobileTelephoneNumber, ContactProperty::homeTelephoneNumber,
                                           ContactProperty::businessTelephoneNumber, ContactProperty::pagerNumber,
                                           ContactProperty::businessFaxNumber};
    return std::ranges::find(numbers, prop.getPropId()) != std::end(numbers) && !prop.getText().IsEmpty();
}

inline std::vector<NaiveMatch> naiveNumberScan(const CString& key) {
    std::vector<NaiveMatch> matches;
    readContactsInNameOrder([&](CEOID oid, const CCeDBRecord& record) {
        CString name;
        for (int i = 0; i < record.getNumProps(); ++i) {
            const CCeDBProp& prop = record.getPropAt(i);
            if (prop.getPropId() == ContactProperty::fileAs) name = prop.getText();
            if (!naiveIsNumber(prop)) continue;
            if (PhoneBook::PhoneBookDBMgr::makeCNIP(prop.getText()).Find(key) < 0) continue;
            matches.emplace_back(oid, name);
            return;
        }
    });
    return matches;
}

/// The first contact that has exactly this number; 0 when nobody has.
inline DWORD naiveCaller(const CString& number) {
    DWORD caller = 0;
    readContactsInNameOrder([&](CEOID oid, const CCeDBRecord& record) {
        for (int i = 0; caller == 0 && i < record.getNumProps(); ++i) {
            const CCeDBProp& prop = record.getPropAt(i);
            if (naiveIsNumber(prop) && PhoneBook::PhoneBookDBMgr::makeCNIP(prop.getText()) == number) caller = oid;
        }
    });
    return caller;
}

}  // namespace testing_support
