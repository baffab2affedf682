#pragma once

#include <functional>

#include "tessera/database/ContactsImage.h"

namespace Database {

/// Lets `search` see the contacts database as the calling thread sees it now, what its own open batch has
/// written included. There is one image a process, read when it is first wanted and brought up to date from
/// the store's change log. Any thread; searches run side by side. False when the database cannot be read.
bool withContactsImage(const std::function<void(const ContactsImage&)>& search);

}  // namespace Database
