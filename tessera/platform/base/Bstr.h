#pragma once

#include <utility>

#include "tessera/Export.h"
#include "tessera/platform/base/CString.h"

/// A text that crosses an object interface: length-prefixed, zero-terminated, owned by whoever holds it.
using BSTR = WCHAR*;

/// Copies a text, up to its zero or that many characters. The caller frees it with SysFreeString. Null when memory is
/// short. A null BSTR stands for the empty text.
/// @{
TESSERA_API BSTR SysAllocString(const WCHAR* text);
TESSERA_API BSTR SysAllocStringLen(const WCHAR* text, UINT length);
/// @}
/// Frees a text; null is nothing to free.
TESSERA_API void SysFreeString(BSTR text);
/// How many characters a text has; 0 for null.
TESSERA_API UINT SysStringLen(BSTR text);

/// Owns one BSTR.
class Bstr {
public:
    Bstr() = default;
    /// Copies the text.
    explicit Bstr(const CString& text)
        : text_(SysAllocStringLen(text.view().data(), static_cast<UINT>(text.GetLength()))) {}
    /// Takes over the text.
    Bstr(Bstr&& other) noexcept : text_(std::exchange(other.text_, nullptr)) {}
    /// Exchanges the texts.
    Bstr& operator=(Bstr&& other) noexcept {
        std::swap(text_, other.text_);
        return *this;
    }
    ~Bstr() { SysFreeString(text_); }

    BSTR get() const { return text_; }  ///< Lent; null for the empty text.
    /// Where an operation puts a text that this object then owns; frees the one held so far.
    BSTR* out() {
        SysFreeString(std::exchange(text_, nullptr));
        return &text_;
    }
    bool isEmpty() const { return SysStringLen(text_) == 0; }  ///< True without characters.
    /// A copy.
    CString text() const { return CString(WStringView(text_, SysStringLen(text_))); }

private:
    BSTR text_ = nullptr;
};
