// Which encoding bytes are in, and their text.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/ToolRunner.h"
#include "tools/tessera/Failure.h"
#include "tools/tessera/exchange/Encoding.h"
#include "tools/tessera/exchange/SourceText.h"

using ::testing::HasSubstr;
using testing_support::utf16Bytes;
using Tool::SourceText;

namespace {

std::string recognised(std::string_view bytes) {
    const auto encoding = Tool::recogniseEncoding(bytes);
    return encoding ? encoding->name : "";
}

std::string swapped(std::string bytes) {
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
        std::swap(bytes[i], bytes[i + 1]);
    return bytes;
}

std::string failureOf(const std::string& bytes, const std::string& encoding = {}) {
    try {
        return SourceText("people.csv", bytes, encoding).utf8();
    } catch (const Tool::Failure& failure) {
        EXPECT_EQ(failure.status(), Tool::ExitStatus::failure);
        return failure.what();
    }
}

}  // namespace

TEST(Encoding, IsRecognisedByItsMark) {
    EXPECT_EQ(recognised("\xEF\xBB\xBFName"), "UTF-8");
    EXPECT_EQ(recognised("\xFF\xFEN"), "UTF-16LE");
    EXPECT_EQ(recognised("\xFE\xFFN"), "UTF-16BE");
}

TEST(Encoding, IsRecognisedWithoutAMarkWhereThatIsSure) {
    EXPECT_EQ(recognised("Name\nAnna\n"), "UTF-8");
    EXPECT_EQ(recognised("이름\n김민수\n"), "UTF-8");
    const std::string little = utf16Bytes(TEXT("이름\n김민수\n"));
    EXPECT_EQ(recognised(little), "UTF-16LE");
    EXPECT_EQ(recognised(swapped(little)), "UTF-16BE");
    const std::string latin = utf16Bytes(TEXT("Name\nAnna\n"));
    EXPECT_EQ(recognised(latin), "UTF-16LE");
    EXPECT_EQ(recognised(swapped(latin)), "UTF-16BE");
    // The first byte of this character is that of a line feed.
    EXPECT_EQ(recognised(swapped(utf16Bytes(TEXT("上\n上가\n")))), "UTF-16BE");
}

TEST(Encoding, OfKoreanTextIsRecognisedAlsoWhereASyllableIsRare) {
    EXPECT_EQ(recognised("\xB1\xE8\xB9\xCE\xBC\xF6\n"), "CP949");                  // 김민수
    EXPECT_EQ(recognised("\xB3\xB2\xB1\xC3\x8C\x63\xB9\xE6\xB0\xA2\n"), "CP949");  // 남궁똠방각
}

TEST(Encoding, OfLatinLettersWithAccentsIsNoGuess) {
    EXPECT_EQ(recognised("P\xE9ter\n"), "");
    EXPECT_EQ(recognised("\xC5ngstr\xF6m\n"), "");    // its first two bytes are a syllable in CP949
    EXPECT_EQ(recognised("\x8E\x52\x93\x63\n"), "");  // 山田 in Shift_JIS
}

TEST(Encoding, ASingleZeroDoesNotMakeUtf8SomethingElse) {
    EXPECT_EQ(recognised(std::string("Name\nNu\0ll\n", 11)), "UTF-8");
}

TEST(Encoding, IsReadUnderTheNamesThatFilesGiveIt) {
    for (const std::string name : {"EUC-KR", "euc-kr", "KS_C_5601-1987", "CP949", "UHC", "ms949", "windows-949"})
        EXPECT_EQ(Tool::decodeWhole("\x8C\x63", name), TEXT("똠")) << name;
    EXPECT_EQ(Tool::decodeWhole("\x8E\x52\x93\x63", "SHIFT_JIS"), TEXT("山田"));
    EXPECT_EQ(Tool::decodeWhole("M\xFCller", "ISO-8859-1"), TEXT("Müller"));
    EXPECT_EQ(Tool::decodeWhole("\xEA\xB9\x80", "utf-8"), TEXT("김"));
}

TEST(Encoding, IsKnownOrNot) {
    EXPECT_TRUE(Tool::isKnownEncoding("CP949"));
    EXPECT_FALSE(Tool::isKnownEncoding("no such thing"));
    EXPECT_FALSE(Tool::isKnownEncoding(""));
}

TEST(Encoding, TextIsReadUpToWhatMeansNothing) {
    const Tool::Decoded decoded = Tool::decode(
        "ab\nc\xFF"
        "d",
        "UTF-8");
    EXPECT_FALSE(decoded.whole);
    EXPECT_EQ(decoded.text, TEXT("ab\nc"));
}

TEST(SourceText, IsUtf8WhateverItWas) {
    EXPECT_EQ(SourceText("", "\xFF\xFE" + utf16Bytes(TEXT("김\n")), "").utf8(), "김\n");
    EXPECT_EQ(SourceText("", swapped("\xFF\xFE" + utf16Bytes(TEXT("김\n"))), "").utf8(), "김\n");
    EXPECT_EQ(SourceText("", "\xEF\xBB\xBF김\n", "").utf8(), "김\n");
    EXPECT_EQ(SourceText("", "\xB1\xE8\n", "").utf8(), "김\n");
    EXPECT_EQ(SourceText("", "M\xFCller\n", "ISO-8859-1").utf8(), "Müller\n");
    EXPECT_EQ(SourceText("", "\xEF\xBB\xBF김\n", "UTF-8").utf8(), "김\n");
    EXPECT_EQ(SourceText("", "\xFF\xFE" + utf16Bytes(TEXT("김\n")), "UTF-16LE").utf8(), "김\n");
}

TEST(SourceText, SaysWhichLineIsNoText) {
    EXPECT_THAT(failureOf("a\nb\nP\xE9ter\n"), HasSubstr("people.csv: line 3 is neither UTF-8, UTF-16 nor CP949 text"));
    EXPECT_THAT(failureOf("a\nb\nP\xE9ter\n"), HasSubstr("--encoding"));
    EXPECT_THAT(failureOf("a\rb\r\nP\xE9ter\r"), HasSubstr("line 3 is neither"));
    EXPECT_THAT(failureOf("a\nP\xE9ter\n", "UTF-8"), HasSubstr("line 2 is no UTF-8 text"));
    EXPECT_THAT(failureOf("\xEF\xBB\xBF"
                          "a\nP\xE9ter\n"),
                HasSubstr("line 2 is neither"));
    EXPECT_THAT(failureOf("\xFF\xFE" + utf16Bytes(TEXT("a\n")) + std::string("\x3D\xD8 \0", 4)),
                HasSubstr("line 2 is no UTF-16LE text"));
    EXPECT_THAT(failureOf("\xFF\xFE"
                          "a"),
                HasSubstr("even number of bytes, not 3"));
    EXPECT_THAT(failureOf(""), HasSubstr("is empty"));
    EXPECT_THAT(failureOf("\xFE\xFF"), HasSubstr("is empty"));
}
