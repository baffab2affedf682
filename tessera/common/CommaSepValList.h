#pragma once

#include "tessera/Export.h"
#include "tessera/platform/base/CString.h"
#include "tessera/platform/base/Collections.h"

/// What the parts of the library share.
namespace common {

/// A list of short texts kept as one text, its values joined by commas: the form in which a contact's
/// categories are stored. Values are compared exactly, case included. Value semantics.
class TESSERA_API CommaSepValList {
public:
    CommaSepValList() = default;
    /// Takes the list text as it is.
    explicit CommaSepValList(const CString& text) : str(text) {}
    /// Joins the values, as setList does.
    explicit CommaSepValList(const CStringArray& values) { setList(values); }

    /// @{
    /// The whole list as one text, for whoever stores it.
    CString& getString() { return str; }
    const CString& getString() const { return str; }
    /// @}
    /// Takes the list text as it is.
    void setString(const CString& text) { str = text; }

    /// Appends a value, unless one that is followed by a comma equals it.
    /// @return 0 when the list has it; else one more than the number of values there were, where an empty
    ///         list counts as one value.
    int addValue(const CString& value);

    /// Takes away the first occurrence of these characters, wherever in the list they stand, with one
    /// character before it, or after it at the start.
    /// @return the new length of the text; 0 when they do not occur.
    int deleteValue(const CString& value);

    /// Splits the text into `values`, which is emptied first: a value in double quotes may hold commas,
    /// and loses the quotes. Leading spaces, and trailing spaces and tabs, are no part of a value.
    /// @return how many values there are; none in an empty text.
    int getList(CStringArray& values) const;

    /// Joins the values, quoting nothing: one that holds a comma becomes two.
    /// @return how many values were given.
    int setList(const CStringArray& values);

private:
    CString str;
    const WCHAR* sep = TEXT(",");
};

}  // namespace common
