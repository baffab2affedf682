#pragma once

#include <string>
#include <vector>

#include "ContactDraft.h"
#include "PersonName.h"

namespace Tool {

/// What a file calls somebody, in the several ways that there are for that.
class ContactName {
public:
    void takeWhole(const std::u16string& name);
    void takeParts(const PersonName& parts);
    void takeOrganisation(const std::vector<std::u16string>& parts);
    void takeNickname(const std::u16string& name);
    /// A name that cannot be read; `problem` goes on a sentence about it.
    void takeUnreadable(const std::string& problem);

    /// The contact's name is the first there is of the whole name, that in parts, the organisation and the nickname.
    /// What is not in it is left out, and said to be.
    void putInto(ContactDraft& draft) const;

private:
    std::u16string whole_;
    PersonName parts_;
    std::u16string organisation_;
    std::vector<std::u16string> nicknames_;
    std::string problem_;
    bool hasSeveral_ = false;  ///< Names of a kind, of which the first is taken.
};

}  // namespace Tool
