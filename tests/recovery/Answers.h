#pragma once

#include <memory>
#include <sstream>
#include <string>
#include <utility>

#include "tests/phonebook/Calls.h"
#include "tests/phonebook/GroupRows.h"
#include "tests/phonebook/SpeedDialBuilders.h"
#include "tests/recovery/ManagerOperations.h"

// What operations put out, as text.

namespace recovery {

inline Answer saying(BOOL succeeded) {
    return {succeeded ? S_OK : E_FAIL};
}

/// The result, and each of the values behind it.
template <class... Values>
Answer answerOf(HRESULT result, const Values&... values) {
    std::ostringstream shown;
    ((shown << values << ' '), ...);
    return {result, shown.str()};
}

/// Walks what is made to its end. E_FAIL when there is no iterator, a move fails, or a record was not read: it
/// then shows as none, or its text as empty.
template <class Make>
Answer walked(OperationBench& bench, Make&& make, int textAttr) {
    const std::unique_ptr<Database::Iterator> each(bench.during(std::forward<Make>(make)));
    if (each == nullptr) return {E_FAIL};
    std::ostringstream shown;
    shown << each->getNumItems() << " items:";
    const auto move = [&](auto&) { return each->next(); };
    HRESULT moved = bench.during(move);
    for (; moved == S_OK; moved = bench.during(move)) {
        const DWORD oid = bench.during([&](auto&) { return each->getCur(); });
        const CString text = bench.during([&](auto&) { return each->getString(textAttr); });
        if (oid == 0 || text.IsEmpty()) return {E_FAIL};
        shown << ' ' << oid << ' ' << text;
    }
    return {moved == S_FALSE ? S_OK : moved, shown.str()};
}

/// What there is of an operation that has nothing to prepare, and answers its result alone.
template <auto call>
Answer does(OperationBench& bench) {
    return {bench.during([&](auto& manager) { return call(manager, bench.cast()); })};
}

}  // namespace recovery

namespace PhoneBook {

inline std::ostream& operator<<(std::ostream& out, const PBRecord& record) {
    out << std::hex << record.dwCITypeMask << std::dec;
    for (const PBAttribute& attribute : aPBAttribute_) {
        if (attribute.text != nullptr) out << ", " << record.*attribute.text;
        if (attribute.number != nullptr) out << ", " << record.*attribute.number;
        if (attribute.date != nullptr) out << ", " << record.*attribute.date;
    }
    return out;
}

}  // namespace PhoneBook
