#include <string>

#include <gtest/gtest.h>

#include "tests/common/ListValues.h"

namespace common {
namespace {

CommaSepValList listOf(const WCHAR* text) {
    return CommaSepValList(CString(text));
}

std::string textOf(const CommaSepValList& list) {
    return utf8Of(list.getString().view());
}

TEST(CommaSepValList, IsEmptyToBeginWith) {
    EXPECT_EQ(textOf(CommaSepValList()), "");
}

TEST(CommaSepValList, TakesAGivenTextAsItIs) {
    EXPECT_EQ(textOf(listOf(TEXT(" a,,\"b "))), " a,,\"b ");

    CommaSepValList list;
    list.setString(TEXT("x , y"));
    EXPECT_EQ(textOf(list), "x , y");
}

TEST(CommaSepValList, CopiesAreIndependent) {
    CommaSepValList original = listOf(TEXT("a"));
    CommaSepValList assigned;

    CommaSepValList copied = original;
    assigned = original;
    original.addValue(TEXT("b"));
    copied.addValue(TEXT("c"));

    EXPECT_EQ(textOf(assigned), "a");
    EXPECT_EQ(textOf(copied), "a,c");
}

TEST(CommaSepValListAdd, AppendsAndAnswersOneMoreThanTheItemsWalked) {
    CommaSepValList list = listOf(TEXT("a,b"));

    EXPECT_EQ(list.addValue(TEXT("c")), 3);
    EXPECT_EQ(textOf(list), "a,b,c");
}

TEST(CommaSepValListAdd, AnswersZeroForAValueThatIsThere) {
    CommaSepValList list = listOf(TEXT("a,b"));

    EXPECT_EQ(list.addValue(TEXT("a")), 0);
    EXPECT_EQ(textOf(list), "a,b");
}

TEST(CommaSepValListAdd, DoesNotCompareTheLastItem) {
    CommaSepValList list = listOf(TEXT("a,b"));

    EXPECT_EQ(list.addValue(TEXT("b")), 3);
    EXPECT_EQ(textOf(list), "a,b,b");
}

TEST(CommaSepValListAdd, FindsTheSecondToLastItem) {
    CommaSepValList list = listOf(TEXT("a,b,c"));

    EXPECT_EQ(list.addValue(TEXT("b")), 0);
    EXPECT_EQ(textOf(list), "a,b,c");
}

TEST(CommaSepValListAdd, CountsTheEmptyListAsOneItem) {
    CommaSepValList list;

    EXPECT_EQ(list.addValue(TEXT("x")), 2);
    EXPECT_EQ(textOf(list), "x");
}

TEST(CommaSepValListAdd, JoinsTheTextEmptyWithoutASeparator) {
    CommaSepValList list = listOf(TEXT("Empty"));
    CommaSepValList longer = listOf(TEXT("Empty,a"));

    EXPECT_EQ(list.addValue(TEXT("x")), 2);
    EXPECT_EQ(textOf(list), "Emptyx");
    EXPECT_EQ(longer.addValue(TEXT("x")), 3);
    EXPECT_EQ(textOf(longer), "Empty,a,x");
}

TEST(CommaSepValListAdd, TakesTheLastItemForAnEmptyValue) {
    CommaSepValList empty;
    CommaSepValList list = listOf(TEXT("a"));

    EXPECT_EQ(empty.addValue(TEXT("")), 0);
    EXPECT_EQ(list.addValue(TEXT("")), 0);
    EXPECT_EQ(textOf(list), "a");
}

TEST(CommaSepValListAdd, ComparesWithCaseAndSpaces) {
    CommaSepValList list = listOf(TEXT("a, b,c"));

    EXPECT_EQ(list.addValue(TEXT("A")), 4);
    EXPECT_EQ(list.addValue(TEXT("b")), 5);
    EXPECT_EQ(list.addValue(TEXT(" b")), 0);
    EXPECT_EQ(textOf(list), "a, b,c,A,b");
}

TEST(CommaSepValListDelete, TakesTheSeparatorBeforeTheValue) {
    CommaSepValList list = listOf(TEXT("a,b,c"));

    EXPECT_EQ(list.deleteValue(TEXT("b")), 3);
    EXPECT_EQ(textOf(list), "a,c");
}

TEST(CommaSepValListDelete, TakesTheSeparatorAfterTheFirstValue) {
    CommaSepValList list = listOf(TEXT("a,b"));

    EXPECT_EQ(list.deleteValue(TEXT("a")), 1);
    EXPECT_EQ(textOf(list), "b");
}

TEST(CommaSepValListDelete, MatchesInsideAnItem) {
    CommaSepValList list = listOf(TEXT("11,1"));

    EXPECT_EQ(list.deleteValue(TEXT("1")), 2);
    EXPECT_EQ(textOf(list), ",1");
}

TEST(CommaSepValListDelete, TakesTheLastAndTheOnlyValue) {
    CommaSepValList list = listOf(TEXT("ab,cd"));

    EXPECT_EQ(list.deleteValue(TEXT("cd")), 2);
    EXPECT_EQ(textOf(list), "ab");
    EXPECT_EQ(list.deleteValue(TEXT("ab")), 0);
    EXPECT_EQ(textOf(list), "");
}

TEST(CommaSepValListDelete, AnswersZeroForAValueThatIsNotThere) {
    CommaSepValList list = listOf(TEXT("a,b"));

    EXPECT_EQ(list.deleteValue(TEXT("c")), 0);
    EXPECT_EQ(list.deleteValue(TEXT("A")), 0);
    EXPECT_EQ(textOf(list), "a,b");
}

TEST(CommaSepValListGet, AnEmptyTextHoldsNoValues) {
    CStringArray values;
    values.Add(TEXT("left over"));

    EXPECT_EQ(CommaSepValList().getList(values), 0);
    EXPECT_TRUE(values.IsEmpty());
}

TEST(CommaSepValListGet, KeepsEmptyItems) {
    EXPECT_EQ(valuesOf(listOf(TEXT("a,,b"))), (Texts{"a", "", "b"}));
    EXPECT_EQ(valuesOf(listOf(TEXT("a,"))), (Texts{"a", ""}));
    EXPECT_EQ(valuesOf(listOf(TEXT(","))), (Texts{"", ""}));
    EXPECT_EQ(valuesOf(listOf(TEXT("  "))), (Texts{""}));
}

TEST(CommaSepValListGet, ACommaInsideQuotesDoesNotSplit) {
    EXPECT_EQ(valuesOf(listOf(TEXT(" \"a, b\" , c"))), (Texts{"a, b", "c"}));
    EXPECT_EQ(valuesOf(listOf(TEXT("x,\"a,b,c\",\"d\""))), (Texts{"x", "a,b,c", "d"}));
}

TEST(CommaSepValListGet, AQuoteThatIsNeverClosedQuotesNothing) {
    EXPECT_EQ(valuesOf(listOf(TEXT("\"a,b"))), (Texts{"a", "b"}));
}

TEST(CommaSepValListGet, AQuoteWithinAnItemDoesNotQuote) {
    EXPECT_EQ(valuesOf(listOf(TEXT("a\"b,c\"d"))), (Texts{"a\"b", "c\"d"}));
}

TEST(CommaSepValListGet, TrimsQuotesSpacesAndTabsOnTheRightAndQuotesOnTheLeft) {
    EXPECT_EQ(valuesOf(listOf(TEXT("  a \t , \"\"b\"\" "))), (Texts{"a", "b"}));
    EXPECT_EQ(valuesOf(listOf(TEXT("\ta"))), (Texts{"\ta"}));
    EXPECT_EQ(valuesOf(listOf(TEXT("\" a\""))), (Texts{" a"}));
    EXPECT_EQ(valuesOf(listOf(TEXT("a b\r"))), (Texts{"a b\r"}));
}

TEST(CommaSepValListSet, JoinsWithoutQuoting) {
    CommaSepValList list = listOf(TEXT("before"));

    EXPECT_EQ(list.setList(arrayOf({TEXT("a,b"), TEXT(""), TEXT("c")})), 3);
    EXPECT_EQ(textOf(list), "a,b,,c");
    EXPECT_EQ(valuesOf(list), (Texts{"a", "b", "", "c"}));
}

TEST(CommaSepValListSet, OfNothingEmptiesTheText) {
    CommaSepValList list = listOf(TEXT("before"));

    EXPECT_EQ(list.setList(CStringArray()), 0);
    EXPECT_EQ(textOf(list), "");
}

}  // namespace
}  // namespace common
