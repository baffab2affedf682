#include "tessera/platform/base/CString.h"

#include <algorithm>

#include "tessera/platform/port/Locale.h"

namespace port = Platform::port;

namespace {

WStringView viewOf(const WCHAR* text) {
    return text != nullptr ? WStringView(text) : WStringView();
}

std::size_t cutTo(int value, std::size_t limit) {
    return value < 0 ? 0 : std::min(static_cast<std::size_t>(value), limit);
}

int positionOf(std::size_t found) {
    return found == WString::npos ? -1 : static_cast<int>(found);
}

// Most text is ASCII, whose letters need no table.
WCHAR lowered(WCHAR ch) {
    if (ch >= 0x80) return port::lowerCase(ch);
    return ch >= u'A' && ch <= u'Z' ? static_cast<WCHAR>(ch + (u'a' - u'A')) : ch;
}

WCHAR uppered(WCHAR ch) {
    if (ch >= 0x80) return port::upperCase(ch);
    return ch >= u'a' && ch <= u'z' ? static_cast<WCHAR>(ch - (u'a' - u'A')) : ch;
}

}  // namespace

CString::CString(const WCHAR* text) : text_(viewOf(text)) {}

CString::CString(const WCHAR* text, int length) {
    if (text != nullptr && length > 0) text_.assign(text, static_cast<std::size_t>(length));
}

CString::CString(WCHAR ch, int repeat) : text_(static_cast<std::size_t>(std::max(repeat, 0)), ch) {}

CString& CString::operator=(const WCHAR* text) {
    text_ = viewOf(text);
    return *this;
}

int CString::Compare(const WCHAR* other) const {
    return text_.compare(viewOf(other));
}

int CString::Find(WCHAR ch, int start) const {
    return positionOf(text_.find(ch, static_cast<std::size_t>(std::max(start, 0))));
}

int CString::Find(const WCHAR* text, int start) const {
    return positionOf(text_.find(viewOf(text), static_cast<std::size_t>(std::max(start, 0))));
}

int CString::ReverseFind(WCHAR ch) const {
    return positionOf(text_.rfind(ch));
}

CString CString::Left(int count) const {
    return Mid(0, count);
}

CString CString::Mid(int first) const {
    return CString(view().substr(cutTo(first, text_.size())));
}

CString CString::Mid(int first, int count) const {
    return CString(view().substr(cutTo(first, text_.size()), cutTo(count, text_.size())));
}

CString CString::Right(int count) const {
    return CString(view().substr(text_.size() - cutTo(count, text_.size())));
}

int CString::Insert(int index, const WCHAR* text) {
    text_.insert(cutTo(index, text_.size()), viewOf(text));
    return GetLength();
}

int CString::Insert(int index, WCHAR ch) {
    text_.insert(cutTo(index, text_.size()), 1, ch);
    return GetLength();
}

int CString::Delete(int index, int count) {
    text_.erase(cutTo(index, text_.size()), cutTo(count, text_.size()));
    return GetLength();
}

int CString::Replace(WCHAR from, WCHAR to) {
    const auto found = std::count(text_.begin(), text_.end(), from);
    std::replace(text_.begin(), text_.end(), from, to);
    return static_cast<int>(found);
}

void CString::TrimLeft(WCHAR ch) {
    text_.erase(0, std::min(text_.find_first_not_of(ch), text_.size()));
}

void CString::TrimRight(const WCHAR* anyOf) {
    text_.erase(text_.find_last_not_of(viewOf(anyOf)) + 1);
}

void CString::MakeLower() {
    std::transform(text_.begin(), text_.end(), text_.begin(), lowered);
}

void CString::MakeUpper() {
    std::transform(text_.begin(), text_.end(), text_.begin(), uppered);
}

CString& CString::operator+=(const CString& text) {
    text_ += text.text_;
    return *this;
}

CString& CString::operator+=(const WCHAR* text) {
    text_ += viewOf(text);
    return *this;
}

CString& CString::operator+=(WCHAR ch) {
    text_ += ch;
    return *this;
}
