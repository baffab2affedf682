#pragma once

#include <string>
#include <vector>

#include "tessera/database/ContactsImage.h"

namespace Database {

inline ScannedContact scanned(DWORD oid, const std::string& key, const std::string& number = "010") {
    return {.oid = oid, .sortKey = key, .name = WString(key.begin(), key.end()), .numbers = {number}};
}

inline std::vector<DWORD> oidsOf(const std::vector<ScanMatch>& matches) {
    std::vector<DWORD> oids;
    for (const ScanMatch& match : matches)
        oids.push_back(match.oid);
    return oids;
}

/// All contacts of an image, in name order.
inline std::vector<DWORD> everybody(const ContactsImage& image) {
    return oidsOf(image.matchingName(CString()));
}

}  // namespace Database
