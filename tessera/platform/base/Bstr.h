#pragma once

#include <string_view>
#include <utility>

#include "tessera/Export.h"
#include "tessera/platform/base/CString.h"

/// A text that crosses an object interface: length-prefixed, zero-terminated, owned by whoever holds it.
using BSTR = WCHAR*;

/// Null when memory is short. A null BSTR stands for the empty text.
TESSERA_API BSTR SysAllocString(const WCHAR* text);
TESSERA_API BSTR SysAllocStringLen(const WCHAR* text, UINT length);
TESSERA_API void SysFreeString(BSTR text);
TESSERA_API UINT SysStringLen(BSTR text);

/// Owns one BSTR.
class Bstr {
public:
    Bstr() = default;
    explicit Bstr(const CString& text)
        : text_(SysAllocStringLen(text.view().data(), static_cast<UINT>(text.GetLength()))) {}
    Bstr(Bstr&& other) noexcept : text_(std::exchange(other.text_, nullptr)) {}
    Bstr& operator=(Bstr&& other) noexcept {
        std::swap(text_, other.text_);
        return *this;
    }
    ~Bstr() { SysFreeString(text_); }

    BSTR get() const { return text_; }
    /// Where an operation puts a text that this object then owns; frees the one held so far.
    BSTR* out() {
        SysFreeString(std::exchange(text_, nullptr));
        return &text_;
    }
    bool isEmpty() const { return SysStringLen(text_) == 0; }
    CString text() const { return CString(std::u16string_view(text_, SysStringLen(text_))); }

private:
    BSTR text_ = nullptr;
};
