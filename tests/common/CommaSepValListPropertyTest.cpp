#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "tests/common/ListValues.h"

namespace common {
namespace {

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
