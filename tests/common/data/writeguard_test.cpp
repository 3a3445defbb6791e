// What the compiler refuses, so that an attached tree changes through manipulators only.
#include "core/manipulatorcontext.h"
#include "data/datapointerbox.h"
#include "data/shadowobject.h"
#include "support/testdocument.h"
#include <gtest/gtest.h>
#include <type_traits>

namespace {

using Orv::SecuredObject;
using Orv::Core::ManipulatorContext;
using Orv::Data::BaseObject;
using Orv::Data::DataPointerBox;
using Orv::Data::DataPointerBoxMasterKey;
using Orv::Data::ListenerBase;
using Orv::Data::ShadowObject;
using TestDocument::Shelf;

// Each is true when the expression in its second line compiles.
template <class T, class = void>
constexpr bool GivesMutableAccess = false;
template <class T>
constexpr bool
    GivesMutableAccess<T, std::void_t<decltype(std::declval<DataPointerBox<T>>().access())>> = true;

template <class T, class = void>
constexpr bool GivesItsHistory = false;
template <class T>
constexpr bool GivesItsHistory<T, std::void_t<decltype(std::declval<T&>().scratch())>> = true;

template <class T, class = void>
constexpr bool CanBeRolledBack = false;
template <class T>
constexpr bool CanBeRolledBack<T, std::void_t<decltype(std::declval<T&>().setRollback())>> = true;

template <class T, class = void>
constexpr bool PostsEvents = false;
template <class T>
constexpr bool PostsEvents<
    T, std::void_t<decltype(std::declval<T&>().notifyRemoved(std::declval<BaseObject&>()))>> = true;

template <class T, class = void>
constexpr bool InsertsRawItems = false;
template <class T>
constexpr bool InsertsRawItems<T, std::void_t<decltype(std::declval<T&>().insertOwned(0u, {}))>> =
    true;

template <class T, class = void>
constexpr bool TakesRawItems = false;
template <class T>
constexpr bool TakesRawItems<T, std::void_t<decltype(std::declval<T&>().takeOwned(0u, 1u))>> = true;

TEST(WriteGuard, BoxesOfDocumentObjectsGiveConstAccessOnly)
{
    EXPECT_FALSE(GivesMutableAccess<BaseObject>);
    EXPECT_FALSE(GivesMutableAccess<Shelf>);
}

TEST(WriteGuard, BoxesOfWhatMayBeADocumentObjectGiveConstAccessOnly)
{
    EXPECT_FALSE(GivesMutableAccess<SecuredObject>);
}

TEST(WriteGuard, BoxesOfListenersGiveMutableAccess)
{
    EXPECT_TRUE(GivesMutableAccess<ListenerBase>);
}

TEST(WriteGuard, AShadowGivesItsOwnerAsConst)
{
    using Owner = decltype(std::declval<ShadowObject&>().owner());
    static_assert(std::is_same_v<Owner, const BaseObject*>);
}

TEST(WriteGuard, NobodyElseMakesOrCopiesTheKey)
{
    static_assert(!std::is_default_constructible_v<DataPointerBoxMasterKey>);
    static_assert(!std::is_aggregate_v<DataPointerBoxMasterKey>);
    static_assert(!std::is_copy_constructible_v<DataPointerBoxMasterKey>);
    static_assert(!std::is_copy_assignable_v<DataPointerBoxMasterKey>);
}

TEST(WriteGuard, OnlyTheCommandLayerMakesContexts)
{
    using History = std::shared_ptr<Orv::Core::HistoryScratch>;
    static_assert(!std::is_constructible_v<ManipulatorContext, History>);
    static_assert(!std::is_copy_constructible_v<ManipulatorContext>);
}

TEST(WriteGuard, OnlyTheCommandLayerSeesTheHistoryOfAContext)
{
    EXPECT_FALSE(GivesItsHistory<ManipulatorContext>);
}

TEST(WriteGuard, OnlyTheCommandLayerRefusesAnEdit)
{
    EXPECT_FALSE(CanBeRolledBack<ManipulatorContext>);
}

TEST(WriteGuard, OnlyManipulatorsPostEvents)
{
    EXPECT_FALSE(PostsEvents<ManipulatorContext>);
}

TEST(WriteGuard, OnlyManipulatorsWriteTheItemsOfAList)
{
    EXPECT_FALSE(InsertsRawItems<Orv::Data::ContainerListBase>);
    EXPECT_FALSE(TakesRawItems<Orv::Data::ContainerListBase>);
}

} // namespace
