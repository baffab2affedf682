#include "WindowsText.h"

#include "WindowsSystem.h"

namespace Tool::port {

std::string narrowed(std::wstring_view text) {
    const auto units = static_cast<int>(text.size());
    std::string utf8(text.size() * 3, '\0');
    const int length = WideCharToMultiByte(CP_UTF8, 0, text.data(), units, utf8.data(), static_cast<int>(utf8.size()),
                                           nullptr, nullptr);
    utf8.resize(static_cast<std::size_t>(length));
    return utf8;
}

std::wstring widened(std::string_view utf8) {
    const auto bytes = static_cast<int>(utf8.size());
    std::wstring text(utf8.size(), L'\0');
    text.resize(static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, text.data(), bytes)));
    return text;
}

}  // namespace Tool::port
