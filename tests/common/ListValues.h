#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tessera/common/CommaSepValList.h"
#include "tessera/platform/base/Unicode.h"

namespace common {

using Texts = std::vector<std::string>;

/// The values of a list in UTF-8.
inline Texts valuesOf(const CommaSepValList& list) {
    CStringArray values;
    const int count = list.getList(values);
    EXPECT_EQ(count, values.GetSize());
    Texts texts;
    for (const CString& value : values)
        texts.push_back(utf8Of(value.view()));
    return texts;
}

inline CStringArray arrayOf(const std::vector<WString>& texts) {
    CStringArray array;
    for (const WString& text : texts)
        array.Add(CString(text));
    return array;
}

}  // namespace common
