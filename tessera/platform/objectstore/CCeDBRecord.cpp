#include "tessera/platform/objectstore/CCeDBRecord.h"

#include <algorithm>

CCeDBRecord::CCeDBRecord(const CObArray& props) {
    reserve(props.GetSize());
    for (const CObject* element : props) {
        const auto* prop = dynamic_cast<const CCeDBProp*>(element);
        if (prop != nullptr) props_.push_back(*prop);
    }
}

CCeDBRecord::CCeDBRecord(const CCeDBProp* props, int count) {
    if (props != nullptr && count > 0) props_.assign(props, props + count);
}

const CCeDBProp* CCeDBRecord::findProp(WORD ident) const {
    const auto found =
        std::find_if(props_.begin(), props_.end(), [ident](const CCeDBProp& prop) { return prop.getIdent() == ident; });
    return found == props_.end() ? nullptr : &*found;
}

const CCeDBProp& CCeDBRecord::getProp(WORD ident) const {
    static const CCeDBProp none;
    const CCeDBProp* prop = findProp(ident);
    return prop != nullptr ? *prop : none;
}

BOOL CCeDBRecord::replaceProp(const CCeDBProp& prop) {
    const auto found = std::find_if(props_.begin(), props_.end(),
                                    [&](const CCeDBProp& held) { return held.getIdent() == prop.getIdent(); });
    if (found == props_.end()) return FALSE;
    *found = prop;
    return TRUE;
}
