#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "tessera/platform/contacts/ContactProperties.h"
#include "tessera/platform/objectstore/ObjectStore.h"
#include "tests/platform/contacts/CollationOracle.h"
#include "tests/platform/contacts/ContactsFixture.h"
#include "tests/support/TemporaryStore.h"

using namespace testing_support;

namespace {

const std::vector<WString> names = {TEXT(""),  TEXT("a"), TEXT("B"), TEXT("b"),      TEXT("ba"),     TEXT("c"),
                                    TEXT("m"), TEXT("M"), TEXT("z"), TEXT("\u00e9"), TEXT("\uac00"), TEXT("\uae40")};

/// What the folder holds, kept beside it: the name of each contact.
using Model = std::map<CEOID, WString>;

/// The contacts with a name from "b" on, or all of them, sorted plainly.
std::vector<CEOID> expected(const Model& model, bool narrowed, bool descending) {
    const CollationOracle oracle(ContactProperty::fileAs);
    std::vector<std::pair<std::string, CEOID>> sorted;
    for (const auto& [oid, name] : model) {
        const bool fromB = !name.empty() && name != TEXT("a");
        if (!narrowed || fromB) sorted.emplace_back(oracle.keyOf(name), oid);
    }
    std::ranges::sort(sorted);
    if (descending) std::ranges::reverse(sorted);
    std::vector<CEOID> oids;
    for (const auto& [key, oid] : sorted)
        oids.push_back(oid);
    return oids;
}

/// One collection over the folder, and what it is to hold.
struct Watched {
    ComPtr<IPOutlookItemCollection> items;
    bool narrowed;
    bool descending;
};

std::vector<Watched> watchEveryWay(const ContactsSession& session) {
    std::vector<Watched> watched;
    for (int way = 0; way < 8; ++way) {
        auto items = session.items();
        const bool narrowed = (way & 1) != 0;
        const bool descending = (way & 2) != 0;
        if ((way & 4) != 0) hinted(items, TEXT("FileAs"));
        if (descending) require(items->Sort(bstr(TEXT("FileAs")).get(), TRUE));
        if (narrowed) items = restricted(items, TEXT("[FileAs] >= \"b\""));
        watched.push_back({items, narrowed, descending});
    }
    return watched;
}

void writeSomething(const ContactsSession& session, Model& model) {
    const WString name = *rc::gen::elementOf(names);
    const int kind = model.empty() ? 0 : *rc::gen::inRange(0, 4);
    if (kind == 0) {
        model[session.add(name)] = name;
        return;
    }
    const auto chosen = std::next(model.begin(), *rc::gen::inRange<std::ptrdiff_t>(0, std::ssize(model)));
    if (kind == 1) {
        session.rename(chosen->first, name);
        chosen->second = name;
    } else if (kind == 2) {
        session.remove(chosen->first);
        model.erase(chosen);
    } else {
        const auto changed = session.contact(chosen->first);
        require(changed->put_Body(bstr(name + TEXT("!")).get()));
        require(changed->Save());
    }
}

void checkAgainstTheModel(const std::vector<Watched>& watched, const Model& model) {
    for (const Watched& one : watched) {
        if (*rc::gen::arbitrary<bool>()) continue;  // some fall behind by several changes
        const std::vector<CEOID> wanted = expected(model, one.narrowed, one.descending);
        RC_ASSERT(countOf(one.items) == static_cast<int>(wanted.size()));
        RC_ASSERT(oidsOf(one.items) == wanted);
        for (int i = 0; i < std::ssize(wanted); ++i) {
            RC_ASSERT(nameOf(itemOf(one.items, i + 1)) == model.at(wanted[static_cast<std::size_t>(i)]));
        }
    }
}

}  // namespace

RC_GTEST_PROP(LiveCollection, HoldsWhatAPlainModelSaysAfterEveryWrite, ()) {
    const MemoryStoreMount mount;
    const ContactsSession session;
    Model model;
    const std::vector<Watched> watched = watchEveryWay(session);

    for (int round = *rc::gen::inRange(1, 12); round > 0; --round) {
        const int writes = *rc::gen::inRange(0, 6);
        if (*rc::gen::inRange(0, 4) == 0) {
            ObjectStoreBatch batch;
            for (int i = 0; i < writes; ++i)
                writeSomething(session, model);
            checkAgainstTheModel(watched, model);
            RC_ASSERT(batch.end());
        } else {
            for (int i = 0; i < writes; ++i)
                writeSomething(session, model);
        }
        checkAgainstTheModel(watched, model);
    }
}
