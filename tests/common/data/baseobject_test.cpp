#include "data/baseobject.h"

#include "data/datapointerbox.h"
#include "data/shadowobject.h"
#include "support/shelfbuilder.h"
#include "support/shelfcases.h"
#include <gtest/gtest.h>

namespace {

using namespace TestDocument;
using Orv::Data::DataMessage;
using Orv::Data::DataPointerBox;
using Orv::Data::isAttached;
using Orv::Data::ListenerBase;
using Orv::Data::ListenerFilter;
using Orv::Data::ObjectKind;
using Orv::Data::rootOf;
using Orv::Data::ShadowObject;
using TestSupport::caseName;

TEST(BaseObject, HasNoParentAtTheRoot)
{
    EXPECT_EQ(Shelf().getParent(), nullptr);
}

TEST(BaseObject, HasItsContainerForParent)
{
    const auto shelf = aShelf().withBook("atlas").build();
    EXPECT_EQ(shelf->books().front().getParent(), &shelf->books());
}

TEST(BaseObject, CannotBeCopied)
{
    EXPECT_FALSE(std::is_copy_constructible_v<Shelf>);
}

TEST(BaseObject, CannotBeAssigned)
{
    EXPECT_FALSE(std::is_copy_assignable_v<Shelf>);
}

TEST(BaseObject, RootIsTheLastOnTheParentChain)
{
    const auto shelf = nestedShelves(3);
    const auto& middle = static_cast<const Shelf&>(shelf->shelves().front());
    const auto& inner = static_cast<const Shelf&>(middle.shelves().front());
    EXPECT_EQ(&rootOf(inner.name()), shelf.get());
}

TEST(BaseObject, IsItsOwnRootWithoutAParent)
{
    const Shelf shelf;
    EXPECT_EQ(&rootOf(shelf), &shelf);
}

TEST(BaseObject, IsNoTreeRoot)
{
    EXPECT_FALSE(Shelf().isTreeRoot());
}

TEST(BaseObject, IsAttachedWhenItsRootIsTheTreeRoot)
{
    Root root;
    root.shelves().pushBack(nestedShelves(2));
    EXPECT_TRUE(isAttached(static_cast<const Shelf&>(root.shelves().front()).name()));
}

TEST(BaseObject, IsDetachedWhenItsRootIsAnother)
{
    EXPECT_FALSE(isAttached(nestedShelves(2)->shelves().front()));
}

// Every kind of object, by the parts of one document.
struct KindCase
{
    const char* name;
    const BaseObject& (*partOf)(const Shelf&);
    ObjectKind kind;
    bool isContainer;
};
class BaseObjectOfKind : public testing::TestWithParam<KindCase>
{
protected:
    Shelf m_shelf;
    const BaseObject& m_part = GetParam().partOf(m_shelf);
};

TEST_P(BaseObjectOfKind, AnswersItsKind)
{
    EXPECT_EQ(m_part.kind(), GetParam().kind);
}

TEST_P(BaseObjectOfKind, IsAContainerUnlessItIsALeaf)
{
    EXPECT_EQ(m_part.asContainer() == &m_part, GetParam().isContainer);
}

TEST_P(BaseObjectOfKind, IsALeafUnlessItIsAContainer)
{
    EXPECT_EQ(m_part.asLeaf() == &m_part, !GetParam().isContainer);
}

TEST_P(BaseObjectOfKind, AnswersTheSameWhenMutable)
{
    auto& part = const_cast<BaseObject&>(m_part);
    EXPECT_EQ(part.asContainer() == &part && part.asLeaf() == nullptr, GetParam().isContainer);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, BaseObjectOfKind,
    testing::Values(
        KindCase{"Attribute", [](const Shelf& shelf) -> const BaseObject& { return shelf.name(); },
                 ObjectKind::Attribute, false},
        KindCase{"Struct", [](const Shelf& shelf) -> const BaseObject& { return shelf.cover(); },
                 ObjectKind::Struct, true},
        KindCase{"List", [](const Shelf& shelf) -> const BaseObject& { return shelf.books(); },
                 ObjectKind::List, true},
        KindCase{"Union", [](const Shelf& shelf) -> const BaseObject& { return shelf.lamp(); },
                 ObjectKind::Union, true}),
    caseName<KindCase>);

// --- the shadow, and the boxes beside it

// Records whether a box still had its target when the listener died.
class LastListener final : public ListenerBase
{
public:
    LastListener(DataPointerBox<BaseObject>& box, bool& hadTarget)
        : m_box(box), m_hadTarget(hadTarget)
    {}
    ~LastListener() override { m_hadTarget = static_cast<bool>(m_box); }
    bool isOwnedByShadow() const override { return true; }
    std::uint16_t getPriority() const override { return 0; }
    const ListenerFilter& getFilter() const override { return m_filter; }
    void deliver(const DataMessage&) override {}

private:
    ListenerFilter m_filter{0, 0, 0};
    DataPointerBox<BaseObject>& m_box;
    bool& m_hadTarget;
};

TEST(BaseObjectShadow, IsNullUntilAListenerComes)
{
    EXPECT_EQ(Shelf().shadow(), nullptr);
}

TEST(BaseObjectShadow, IsFoundAfterItWasMade)
{
    Shelf shelf;
    const ShadowObject& shadow = ShadowObject::of(shelf);
    EXPECT_EQ(shelf.shadow(), &shadow);
}

TEST(BaseObjectShadow, IsFoundBesideBoxes)
{
    Shelf shelf;
    const DataPointerBox<BaseObject> before(&shelf);
    const ShadowObject& shadow = ShadowObject::of(shelf);
    const DataPointerBox<BaseObject> after(&shelf);
    EXPECT_EQ(shelf.shadow(), &shadow);
}

TEST(BaseObjectShadow, LeavesTheBoxesThatWereThere)
{
    Shelf shelf;
    const DataPointerBox<BaseObject> box(&shelf);
    ShadowObject::of(shelf);
    EXPECT_EQ(box.get(), &shelf);
}

TEST(BaseObjectShadow, LeavesBoxesThatReadNullAfterTheDeathOfBoth)
{
    auto shelf = std::make_unique<Shelf>();
    const DataPointerBox<BaseObject> before(shelf.get());
    ShadowObject::of(*shelf);
    const DataPointerBox<BaseObject> after(shelf.get());
    shelf.reset();
    EXPECT_TRUE(before == nullptr && after == nullptr);
}

TEST(BaseObjectShadow, DiesBeforeTheBoxesReadNull)
{
    bool hadTarget = false;
    auto shelf = std::make_unique<Shelf>();
    DataPointerBox<BaseObject> box(shelf.get());
    ShadowObject::of(*shelf).addListener(*new LastListener(box, hadTarget));
    shelf.reset();
    EXPECT_TRUE(hadTarget);
}

} // namespace
