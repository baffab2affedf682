// Tables taken apart into rows and values.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "tools/tessera/exchange/CsvReader.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Tool::CsvReader;
using Tool::CsvRow;

namespace {

using Rows = std::vector<std::vector<std::string>>;

std::vector<CsvRow> rowsOf(std::string_view text, char separator = ',') {
    CsvReader reader(text, separator);
    std::vector<CsvRow> rows;
    for (CsvRow row; reader.next(row);)
        rows.push_back(row);
    return rows;
}

Rows valuesOf(std::string_view text, char separator = ',') {
    Rows values;
    for (const CsvRow& row : rowsOf(text, separator))
        values.push_back(row.isUnclosed ? std::vector<std::string>{"unclosed"} : row.values);
    return values;
}

}  // namespace

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

RC_GTEST_PROP(CsvReader, ReadsWhatWasWritten, ()) {
    const auto value =
        rc::gen::container<std::string>(rc::gen::element('a', ' ', ',', '"', '\n', '\r', ';', '\t', '\0', '\xEA'));
    const auto row = rc::gen::nonEmpty(rc::gen::container<std::vector<std::string>>(value));
    constexpr int size = 15;
    const auto rows = *rc::gen::resize(size, rc::gen::nonEmpty(rc::gen::container<Rows>(row)));
    std::string text;
    for (const auto& written : rows) {
        std::string line;
        for (const std::string& each : written)
            Tool::appendCsvValue(line, each);
        text += line + "\r\n";
    }
    RC_ASSERT(valuesOf(text) == rows);
}
