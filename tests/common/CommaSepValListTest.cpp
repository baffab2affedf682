#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "tessera/common/CommaSepValList.h"
#include "tessera/platform/base/Unicode.h"

namespace common {
namespace {

using Texts = std::vector<std::string>;

CommaSepValList listOf(const WCHAR* text) {
    return CommaSepValList(CString(text));
}

std::string textOf(const CommaSepValList& list) {
    return utf8Of(list.getString().view());
}

Texts valuesOf(const CommaSepValList& list) {
    CStringArray values;
    const int count = list.getList(values);
    EXPECT_EQ(count, values.GetSize());
    Texts texts;
    for (const CString& value : values)
        texts.push_back(utf8Of(value.view()));
    return texts;
}

CStringArray arrayOf(const std::vector<WString>& texts) {
    CStringArray array;
    for (const WString& text : texts)
        array.Add(CString(text));
    return array;
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

// A value that a list gives back as it was put: no comma, nothing that is trimmed.
rc::Gen<WString> plainValue() {
    return rc::gen::nonEmpty(
        rc::gen::container<WString>(rc::gen::element(u'a', u'B', u'7', u'가', u'힣', u';', u'\r', u'-')));
}

RC_GTEST_PROP(CommaSepValList, GivesBackWhatWasSet, ()) {
    const auto values = *rc::gen::container<std::vector<WString>>(plainValue());

    const CommaSepValList list(arrayOf(values));

    CStringArray given;
    RC_ASSERT(list.getList(given) == static_cast<int>(values.size()));
    for (int i = 0; i < given.GetSize(); ++i)
        RC_ASSERT(given[i].view() == values[static_cast<std::size_t>(i)]);
}

RC_GTEST_PROP(CommaSepValList, AddedValuesAreThereOnceUnlessTheLastIsRepeated, ()) {
    const auto values = *rc::gen::container<std::vector<WString>>(plainValue());
    CommaSepValList list;
    std::vector<WString> model;

    for (const WString& value : values) {
        const auto compared = model.empty() ? model.end() : model.end() - 1;
        const bool isThere = std::find(model.begin(), compared, value) != compared;
        const int answer = list.addValue(CString(value));
        RC_ASSERT(answer == (isThere ? 0 : static_cast<int>(std::max<std::size_t>(model.size(), 1)) + 1));
        if (!isThere) model.push_back(value);
    }

    RC_ASSERT(list.getString() == CommaSepValList(arrayOf(model)).getString());
}

RC_GTEST_PROP(CommaSepValList, AnyTextSplitsAsItsDefinitionReadsCharacterByCharacter, ()) {
    const auto text = *rc::gen::container<WString>(rc::gen::element(u'a', u'b', u',', u'"', u' ', u'\t', u'가'));
    Texts expected;
    for (std::size_t p = 0; !text.empty();) {
        if (p < text.size() && text[p] == u' ') {
            ++p;
            continue;
        }
        std::size_t from = p;
        if (p < text.size() && text[p] == u'"') {
            const std::size_t closing = text.find(u'"', p + 1);
            if (closing != WString::npos) from = closing + 1;
        }
        const std::size_t comma = text.find(u',', from);
        WString item = text.substr(p, comma == WString::npos ? comma : comma - p);
        while (!item.empty() && WStringView(TEXT("\" \t")).find(item.back()) != WString::npos)
            item.pop_back();
        while (!item.empty() && item.front() == u'"')
            item.erase(item.begin());
        expected.push_back(utf8Of(item));
        if (comma == WString::npos) break;
        p = comma + 1;
    }

    RC_ASSERT(valuesOf(CommaSepValList(CString(text))) == expected);
}

}  // namespace
}  // namespace common
