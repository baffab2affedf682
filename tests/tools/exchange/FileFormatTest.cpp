// Which format a file is in, told by its content.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/exchange/Drafts.h"
#include "tools/tessera/Failure.h"
#include "tools/tessera/exchange/FileFormat.h"

using namespace exchange_test;
using ::testing::HasSubstr;
using Tool::FileFormat;

namespace {

FileFormat formatOf(const std::string& bytes) {
    return Tool::recogniseFormat(sourceOf(bytes));
}

std::string refusalOf(const std::string& bytes) {
    try {
        formatOf(bytes);
    } catch (const Tool::Failure& failure) {
        EXPECT_EQ(failure.status(), Tool::ExitStatus::failure);
        return failure.what();
    }
    return "not refused";
}

}  // namespace

TEST(FileFormat, OfCardsIsKnownByTheirFirstLines) {
    EXPECT_EQ(formatOf("From: somebody\n\nBEGIN:VCARD\nEND:VCARD\n"), FileFormat::vcard);
    EXPECT_EQ(formatOf("Name,Notes\nAnna,\"\nBEGIN:VCARD\n\"\n"), FileFormat::csv);
    EXPECT_EQ(formatOf("\xEF\xBB\xBF"
                       "BEGIN:VCARD\nEND:VCARD\n"),
              FileFormat::vcard);
}

TEST(FileFormat, OfOursIsKnownByItsHeader) {
    EXPECT_EQ(formatOf("Name,Group\nAnna,friends\n"), FileFormat::tessera);
    EXPECT_EQ(formatOf("Name\n"), FileFormat::tessera);
    EXPECT_EQ(
        formatOf("Name,Group,Categories,Mobile,Home,Business,E-mail,Avatar,Photo,Bell,Birthday,Calling screen,Pager,"
                 "Fax,Notes,Private,Primary\n"),
        FileFormat::tessera);
}

TEST(FileFormat, OfOursIsKnownByWhatStandsBelowAnyHeaderOfOneWord) {
    EXPECT_EQ(formatOf("whatever\n김민수,친구,,010-1234-5678,02-123-4567\n"), FileFormat::tessera);
    EXPECT_EQ(formatOf("whatever\nAnna\nPaul\n"), FileFormat::tessera);
}

TEST(FileFormat, OfOtherProgramsIsKnownByTheirHeadings) {
    EXPECT_EQ(formatOf("First Name,Last Name,Mobile Phone\n"), FileFormat::csv);
    EXPECT_EQ(formatOf("Name,Mobile Phone\n"), FileFormat::csv);
    EXPECT_EQ(formatOf("\"Name\",\"Group\"\n"), FileFormat::csv);
    EXPECT_EQ(formatOf("성;이름;휴대폰\n"), FileFormat::csv);
    EXPECT_EQ(formatOf("E-mail Address\tNotes\n"), FileFormat::csv);
}

TEST(FileFormat, ThatNobodyKnowsIsAnErrorThatSaysWhatToDo) {
    for (const std::string bytes :
         {"Nachname,Vorname,Handy\nKim,Anna,0170-1\n", "Wer;Was\nAnna;1\n", "whatever\nAnna,010-1234-5678\n",
          "whatever\nAnna,friends,,no number\n", "<html>\n<body>\n", "BEGIN:VCALENDAR\nVERSION:2.0\n", "key\na=1\n",
          "{\n\"name\": 1\n}\n", "\n\n", "sep=;\nWer;Was\n"}) {
        EXPECT_THAT(refusalOf(bytes), HasSubstr("people.file: is no file of contacts that can be recognised")) << bytes;
        EXPECT_THAT(refusalOf(bytes), HasSubstr("--map")) << bytes;
    }
    EXPECT_THAT(refusalOf("Wer;Was\n"), HasSubstr("\"Wer\", \"Was\""));
}
