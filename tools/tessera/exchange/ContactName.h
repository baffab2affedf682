#pragma once

#include <string>
#include <vector>

#include "ContactDraft.h"
#include "PersonName.h"
#include "tessera/platform/base/Types.h"

namespace Tool {

/// What a file calls somebody, in the several ways that there are for that.
class ContactName {
public:
    void takeWhole(const WString& name);
    void takeParts(const PersonName& parts);
    void takeOrganisation(const std::vector<WString>& parts);
    void takeNickname(const WString& name);
    /// A name that cannot be read; `problem` goes on a sentence about it.
    void takeUnreadable(const std::string& problem);

    /// The contact's name is the first there is of the whole name, that in parts, the organisation and the nickname.
    /// What is not in it is left out, and said to be.
    void putInto(ContactDraft& draft) const;

private:
    WString whole_;
    PersonName parts_;
    WString organisation_;
    std::vector<WString> nicknames_;
    std::string problem_;
    bool hasSeveral_ = false;  ///< Names of a kind, of which the first is taken.
};

}  // namespace Tool
