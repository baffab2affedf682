#pragma once

#include <set>
#include <string>
#include <vector>

#include "tessera/phonebook/model/PBAttributes.h"
#include "tessera/phonebook/model/PBRecord.h"

namespace Tool {

/// What of an e-mail address has no place in a contact: whether it is somebody's at home or at work.
inline constexpr const char* emailLabelText = "label of an e-mail address";

/// A contact as some file describes it: what every reader makes, and what is put into the phone book.
struct ContactDraft {
    int number = 0;  ///< Of the card in the file; 0 where a line is enough.
    int line = 0;    ///< Of the file, where it begins.
    PhoneBook::PBRecord record;
    std::vector<std::string> remarks;  ///< What of it has no place, or not the one that it had; sentences without end.
    std::set<std::string> leftOut;     ///< Kinds of things for which no contact has a place.
    std::string problem;               ///< Why it can be no contact; empty when it can.

    /// An empty text is left out, and so is one of blanks.
    void put(PhoneBook::PBDBAttrID field, WStringView text);
    void put(PhoneBook::PBDBAttrID field, DWORD value);
    /// The same of a day as a card or a table writes it; one that is none, or cannot be kept, becomes a remark.
    void putBirthday(WStringView text);
    /// The first address is the contact's; any other becomes a remark.
    void putEmail(WStringView address);
    bool has(PhoneBook::PBDBAttrID field) const;
    void remark(const std::string& sentence) { remarks.push_back(sentence); }

    /// All remarks in one line; empty when there are none.
    std::string remarksLine() const;
    /// The same with what is left out.
    std::string note() const;
};

/// All that a reader has made of a file.
struct DraftedFile {
    std::vector<ContactDraft> drafts;
    std::vector<std::string> remarks;  ///< On what belongs to no one contact.
    std::string units;                 ///< What the drafts were made of: "cards" or "lines".

    /// Whether there are drafts, and none of them can be a contact.
    bool isAllBad() const;
};

bool isBlank(WStringView text);

/// A text in quotes for a remark, not all of it when it is long.
std::string quoted(WStringView text);

}  // namespace Tool
