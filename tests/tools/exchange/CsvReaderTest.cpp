// Tables taken apart into rows and values.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/exchange/CsvRows.h"

using exchange_test::Rows;
using exchange_test::rowsOf;
using exchange_test::valuesOf;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Tool::CsvReader;
using Tool::CsvRow;

TEST(CsvReader, SplitsAtTheSeparator) {
    EXPECT_EQ(valuesOf("a,b;c\nd\n"), (Rows{{"a", "b;c"}, {"d"}}));
    EXPECT_EQ(valuesOf("a;b,c\n", ';'), (Rows{{"a", "b,c"}}));
    EXPECT_EQ(valuesOf("a\tb c\t\n", '\t'), (Rows{{"a", "b c", ""}}));
    EXPECT_EQ(valuesOf("\t\tx\n", '\t'), (Rows{{"", "", "x"}}));
}

TEST(CsvReader, TakesEndsOfLinesOfAnySystem) {
    EXPECT_EQ(valuesOf("a\nb\r\nc\rd"), (Rows{{"a"}, {"b"}, {"c"}, {"d"}}));
}

TEST(CsvReader, KeepsWhatStandsInQuotes) {
    EXPECT_EQ(valuesOf("\"a, b\",\"say \"\"hi\"\"\",\" c \", d \n"), (Rows{{"a, b", "say \"hi\"", " c ", "d"}}));
    EXPECT_EQ(valuesOf("\"one\r\ntwo\n\nthree\",x\ny\n"), (Rows{{"one\r\ntwo\n\nthree", "x"}, {"y"}}));
    EXPECT_EQ(valuesOf("Anna \"Annie\" Kim,x\n"), (Rows{{"Anna \"Annie\" Kim", "x"}}));
}

TEST(CsvReader, KeepsZerosAndEmptyValues) {
    EXPECT_EQ(valuesOf(std::string_view("a\0b,,\n", 6)), (Rows{{std::string("a\0b", 3), "", ""}}));
}

TEST(CsvReader, TellsOnWhichLineARowBegins) {
    const auto rows = rowsOf("a\n\n  \n\"b\nb\"\nc\n");
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0].line, 1);
    EXPECT_EQ(rows[1].line, 4);
    EXPECT_EQ(rows[2].line, 6);
}

TEST(CsvReader, GoesOnBehindAQuoteThatNothingCloses) {
    EXPECT_EQ(valuesOf("a,b\nc,\"d\ne,f\n"), (Rows{{"a", "b"}, {"unclosed"}, {"e", "f"}}));
    const auto rows = rowsOf("\"a\n\"b\nc");
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[1].line, 2);
    EXPECT_THAT(rows[2].values, ElementsAre("c"));
}

TEST(CsvReader, GivesUpOnATextOfUnclosedQuotes) {
    std::string text;
    for (int i = 0; i < 1'000; ++i)
        text += "\"a\n";
    CsvReader reader(text, ',');
    int rows = 0;
    for (CsvRow row; reader.next(row); ++rows)
        EXPECT_TRUE(row.isUnclosed);
    EXPECT_EQ(rows, 101);
    EXPECT_TRUE(reader.hasGivenUp());
}

TEST(CsvReader, TakesAnEndlessLine) {
    const std::string value(2'000'000, 'x');
    EXPECT_EQ(valuesOf(value + "," + value).front().size(), 2u);
}

TEST(CsvReader, OfNothingGivesNothing) {
    EXPECT_THAT(rowsOf(""), IsEmpty());
    EXPECT_THAT(rowsOf("\n\r\n  \n"), IsEmpty());
}
