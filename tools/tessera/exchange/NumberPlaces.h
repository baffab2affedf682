#pragma once

#include <optional>
#include <vector>

#include "ContactDraft.h"
#include "tessera/platform/base/Types.h"

namespace Tool {

/// What a file calls a number.
enum class NumberKind { mobile, home, business, pager, fax, other };

/// The kind that a word for a number means: of a card's types, of a label, of the heading of a column; in any case
/// and any spelling. Nothing for a word that says nothing of the kind.
std::optional<NumberKind> numberKindOf(WStringView word);

struct FoundNumber {
    NumberKind kind = NumberKind::other;
    WString text;
    int preference = notPreferred;  ///< 1 is the most preferred.

    static constexpr int notPreferred = 101;
};

/// Gives a contact's numbers their places among the five that it can have, the most preferred first. A number for voice
/// whose place is taken goes to another free one, so that its caller is recognised; a remark says so, or that there is
/// no place left. The most preferred number that has a place becomes the primary one.
void placeNumbers(ContactDraft& draft, std::vector<FoundNumber> numbers);

/// Letters and digits alone, in lower case: how words of files are compared.
WString spelledPlainly(WStringView word);

}  // namespace Tool
