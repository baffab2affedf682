#pragma once

#include <compare>
#include <cstddef>

#include "tessera/Export.h"
#include "tessera/platform/base/Types.h"

/// Growable UTF-16 text with value semantics. Positions and lengths count UTF-16 code units.
///
/// It may hold zero characters; `operator const WCHAR*` then shows the text up to the first one.
class TESSERA_API CString {
public:
    CString() = default;
    /// A null pointer gives the empty text.
    CString(const WCHAR* text);
    /// Copies that many characters.
    CString(const WCHAR* text, int length);
    /// One character, as often as said.
    explicit CString(WCHAR ch, int repeat = 1);
    /// Copies the text, zero characters too.
    explicit CString(WStringView text) : text_(text) {}

    /// A null pointer gives the empty text.
    CString& operator=(const WCHAR* text);

    int GetLength() const { return static_cast<int>(text_.size()); }  ///< In code units.
    bool IsEmpty() const { return text_.empty(); }                    ///< True for the text without characters.
    void Empty() { text_.clear(); }                                   ///< Takes all characters away.

    /// @{
    /// A code unit by its position, which is not checked.
    WCHAR GetAt(int index) const { return text_[static_cast<std::size_t>(index)]; }
    WCHAR operator[](int index) const { return GetAt(index); }
    void SetAt(int index, WCHAR ch) { text_[static_cast<std::size_t>(index)] = ch; }
    /// @}

    /// The zero-terminated text; valid until the text is next changed.
    operator const WCHAR*() const { return text_.c_str(); }
    WStringView view() const { return text_; }  ///< Valid until the text is next changed.

    /// Less than, equal to or greater than 0, comparing code units.
    int Compare(const WCHAR* other) const;

    /// @{
    /// The position of the first occurrence at or after `start`, -1 when there is none.
    int Find(WCHAR ch, int start = 0) const;
    int Find(const WCHAR* text, int start = 0) const;
    /// @}
    /// The position of the last occurrence, -1 when there is none.
    int ReverseFind(WCHAR ch) const;

    /// @{
    /// Parts of the text; a count or position outside the text is cut to it.
    CString Left(int count) const;
    CString Mid(int first) const;
    CString Mid(int first, int count) const;
    CString Right(int count) const;
    /// @}

    /// @{
    /// Insert before `index` (past the end appends); answers the new length.
    int Insert(int index, const WCHAR* text);
    int Insert(int index, WCHAR ch);
    /// @}
    /// Removes up to `count` characters from `index`; answers the new length.
    int Delete(int index, int count = 1);
    /// Answers how many characters were replaced.
    int Replace(WCHAR from, WCHAR to);

    /// Takes that character away from the beginning, as often as it stands there.
    void TrimLeft(WCHAR ch);
    /// Takes all characters of `anyOf` away from the end.
    void TrimRight(const WCHAR* anyOf);

    /// @{
    /// Maps each code unit by itself, so that positions stay the same.
    void MakeLower();
    void MakeUpper();
    /// @}

    /// @{
    /// Appends; a null pointer is the empty text.
    CString& operator+=(const CString& text);
    CString& operator+=(const WCHAR* text);
    CString& operator+=(WCHAR ch);
    /// @}

    /// @{
    /// One text behind the other.
    friend CString operator+(CString left, const CString& right) { return left += right; }
    friend CString operator+(CString left, const WCHAR* right) { return left += right; }
    friend CString operator+(const WCHAR* left, const CString& right) { return CString(left) += right; }
    /// @}

    /// @{
    /// Exactly the same code units.
    friend bool operator==(const CString& left, const CString& right) = default;
    friend bool operator==(const CString& left, const WCHAR* right) { return left.Compare(right) == 0; }
    /// @}
    /// By code units.
    friend std::strong_ordering operator<=>(const CString& left, const CString& right) {
        return left.text_ <=> right.text_;
    }
    /// For std::less and what sorts by it: a type without this operator that turns into a pointer is compared as one.
    friend bool operator<(const CString& left, const CString& right) { return left.text_ < right.text_; }

private:
    WString text_;
};
