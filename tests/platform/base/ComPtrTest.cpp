#include <utility>

#include <gtest/gtest.h>

#include "tessera/platform/base/ComPtr.h"

namespace {

/// Counts its references and is never freed: the test looks at it to the end.
class Counted : public IUnknown {
public:
    virtual ~Counted() = default;
    HRESULT QueryInterface(const IID& iid, void** out) override {
        if (!(iid == IID_IUnknown)) return E_NOINTERFACE;
        AddRef();
        *out = static_cast<IUnknown*>(this);
        return S_OK;
    }
    ULONG AddRef() override { return ++references; }
    ULONG Release() override { return --references; }

    ULONG references = 1;
};

}  // namespace

TEST(ComPtr, AdoptingTakesTheReferenceOver) {
    Counted object;
    { const auto owner = ComPtr<IUnknown>::adopt(&object); }

    EXPECT_EQ(object.references, 0U);
}

TEST(ComPtr, SharingAddsAReference) {
    Counted object;
    {
        const auto owner = ComPtr<IUnknown>::share(&object);
        EXPECT_EQ(object.references, 2U);
    }

    EXPECT_EQ(object.references, 1U);
}

TEST(ComPtr, CopiesCountAndMovesDoNot) {
    Counted object;
    {
        auto first = ComPtr<IUnknown>::adopt(&object);
        const ComPtr<IUnknown> second = first;
        EXPECT_EQ(object.references, 2U);
        const ComPtr<IUnknown> third = std::move(first);
        EXPECT_EQ(object.references, 2U);
    }

    EXPECT_EQ(object.references, 0U);
}

TEST(ComPtr, AskingForAPlaceReleasesWhatWasHeld) {
    Counted object;
    auto owner = ComPtr<IUnknown>::adopt(&object);
    IUnknown** place = owner.out();

    EXPECT_EQ(object.references, 0U);
    EXPECT_EQ(*place, nullptr);
}

TEST(ComPtr, AssigningReleasesWhatWasHeld) {
    Counted old;
    Counted next;
    auto owner = ComPtr<IUnknown>::adopt(&old);

    owner = ComPtr<IUnknown>::adopt(&next);

    EXPECT_EQ(old.references, 0U);
    EXPECT_EQ(owner.get(), &next);
}

TEST(ComPtr, OutTakesOverWhatIsPutThere) {
    Counted object;
    ComPtr<IUnknown> owner;

    ASSERT_EQ(object.QueryInterface(IID_IUnknown, reinterpret_cast<void**>(owner.out())), S_OK);

    EXPECT_EQ(object.references, 2U);
    owner.reset();
    EXPECT_EQ(object.references, 1U);
    EXPECT_FALSE(owner);
}

TEST(ComPtr, DetachingGivesTheReferenceAway) {
    Counted object;
    auto owner = ComPtr<IUnknown>::adopt(&object);

    EXPECT_EQ(owner.detach(), &object);

    EXPECT_EQ(owner.get(), nullptr);
    EXPECT_EQ(object.references, 1U);
}
