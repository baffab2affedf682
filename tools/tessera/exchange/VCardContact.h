#pragma once

#include "ContactDraft.h"
#include "SourceText.h"
#include "VCardReader.h"
#include "VCardValue.h"

namespace Tool {

/// Makes of a card what the phone book can hold of it. `fileEncoding` is that of texts that do not name theirs.
ContactDraft draftOfVCard(const VCard& card, const FileEncoding& fileEncoding);

/// All cards of a file. Throws a Failure that names the file when there are none in it.
DraftedFile draftsOfVCards(const SourceText& source);

}  // namespace Tool
