#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "tests/tools/exchange/CsvRows.h"

using exchange_test::Rows;
using exchange_test::valuesOf;

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
