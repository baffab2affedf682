#pragma once

#include <cstddef>

#include "tessera/Export.h"
#include "tessera/platform/base/Types.h"

namespace PhoneBook {

/// Learns how an import goes, line by line. The import calls it on its own thread.
class TESSERA_API ImportListener {
public:
    virtual ~ImportListener();

    /// A line was tried; it is not durable yet.
    /// @param line the line's number in the file; the header is line 1
    /// @param result what the insert answered; negative: the line made no entry
    /// @param oid the new contact, 0 for a row of a table and for a line that made none
    virtual void lineTried(int line, HRESULT result, CEOID oid) = 0;

    /// Everything up to and including `line` is durable.
    virtual void linesCommitted(int line) = 0;
};

}  // namespace PhoneBook
