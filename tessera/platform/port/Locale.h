#pragma once

#include <memory>
#include <optional>
#include <string>

#include "tessera/platform/base/Types.h"

// Language: case, collation, the order of a date. What the operating system or ICU knows of it.

namespace Platform::port {

WCHAR lowerCase(WCHAR ch);
WCHAR upperCase(WCHAR ch);

/// The user's locale as the environment gives it (LC_ALL, LC_COLLATE, LANG), as an ICU name such as
/// "ko_KR"; "" for C and POSIX. When none is set it is what the system's settings say, and "" where it has none.
std::string userCollationLocale();

/// Orders text as people of a locale do.
class Collator {
public:
    /// Falls back to the root collation for a locale that is not known.
    Collator(const std::string& locale, bool ignoreCase);
    ~Collator();
    Collator(const Collator&) = delete;
    Collator& operator=(const Collator&) = delete;

    /// Bytes that compare, byte by byte, as the texts are ordered; they hold no zero byte.
    std::string sortKey(WStringView text) const {
        std::string key;
        appendSortKey(text, key);
        return key;
    }
    /// Puts the same behind what is there.
    void appendSortKey(WStringView text, std::string& bytes) const;
    /// Changes when the same text may give another key.
    std::string version() const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

/// The places of day, month and year in a date of the user's locale (LC_ALL, LC_TIME, LANG).
enum class DateOrder { yearMonthDay, dayMonthYear, monthDayYear };

struct DatePattern {
    DateOrder order = DateOrder::yearMonthDay;
    WString before;  ///< Text before the first number.
    WString separators[2];
    WString after;       ///< Text behind the last number, such as the dot of a Korean date.
    bool padded = true;  ///< Day and month have two digits.
};

/// The user locale's short date with a four-digit year; ISO (1990-03-05) in the C locale.
DatePattern userDatePattern();

}  // namespace Platform::port
