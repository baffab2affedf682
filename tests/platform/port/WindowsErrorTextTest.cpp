#include <array>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "tessera/platform/port/ErrorText.h"
#include "tessera/platform/port/WindowsSystem.h"

using Platform::port::messageOf;

namespace {

/// What the system says, in its own characters.
std::u8string sentenceOf(SystemDword error) {
    std::array<wchar_t, 512> text{};
    EXPECT_NE(FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0, text.data(),
                             static_cast<SystemDword>(text.size()), nullptr),
              0u);
    return std::filesystem::path(text.data()).u8string();
}

}  // namespace

TEST(ErrorText, IsUtf8InWhateverLanguage) {
    const std::u8string expected = sentenceOf(ERROR_SHARING_VIOLATION);

    const std::string text = messageOf({ERROR_SHARING_VIOLATION, std::system_category()});

    ASSERT_FALSE(text.empty());
    EXPECT_EQ(expected.find(std::u8string(text.begin(), text.end())), 0u) << text;
}

TEST(ErrorText, IsPartOfALine) {
    const std::string text = messageOf({ERROR_SHARING_VIOLATION, std::system_category()});

    EXPECT_EQ(text.find_last_not_of("\r\n ."), text.size() - 1);
}

TEST(ErrorText, OfAnErrorWithoutAnyIsItsNumber) {
    constexpr int unknown = 0x2FFFFFFF;
    EXPECT_EQ(messageOf({unknown, std::system_category()}), "error " + std::to_string(unknown));
}

TEST(ErrorText, OfTheStandardLibraryIsItsOwn) {
    const std::error_code error = std::make_error_code(std::errc::no_such_file_or_directory);
    EXPECT_EQ(messageOf(error), error.message());
}
