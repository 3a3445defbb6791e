#include "data/containerstruct.h"

#include "support/shelfbuilder.h"
#include <gtest/gtest.h>
#include <algorithm>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using namespace TestDocument;
using Orv::Data::Container;
using Orv::Data::ContainerStruct;
using Orv::Data::makeMeta;
using Orv::Data::MemberRow;
using Orv::Data::MetaBinder;
using Orv::Data::ObjectMeta;

// A structure without members.
struct NoMembers
{
    explicit NoMembers(ContainerStructBase&) {}
    static constexpr const MemberRow* rows = nullptr;
    static constexpr std::size_t rowCount = 0;
};
struct EmptyMeta_
{
    static constexpr ObjectMeta record = makeMeta("empty", Required);
};
class Empty final : public MetaBinder<ContainerStruct<NoMembers>, EmptyMeta_>
{};

std::vector<std::string> memberNames(const Container& container)
{
    std::vector<std::string> names;
    for (std::size_t i = 0; i < container.childCount(); ++i)
        names.emplace_back(container.childAt(i)->getMeta().name);
    return names;
}

bool isParentOfAllMembers(const Container& container)
{
    std::vector<const BaseObject*> members;
    for (std::size_t i = 0; i < container.childCount(); ++i)
        members.push_back(container.childAt(i));
    return std::all_of(members.begin(), members.end(),
                       [&](const BaseObject* member) { return member->getParent() == &container; });
}

TEST(ContainerStruct, HasItsMembersInTheOrderOfDeclaration)
{
    const std::vector<std::string> names = {"name", "uid",  "level", "path", "spot",  "weight",
                                            "size", "open", "books", "lamp", "cover", "shelves"};
    EXPECT_EQ(memberNames(Shelf()), names);
}

TEST(ContainerStruct, IsTheParentOfItsMembers)
{
    EXPECT_TRUE(isParentOfAllMembers(Shelf()));
}

TEST(ContainerStruct, GivesTheMemberThatItsGetterGives)
{
    const Shelf shelf;
    EXPECT_EQ(shelf.childAt(1), &shelf.uid());
}

TEST(ContainerStruct, GivesTheDeclarationOfEachMemberWithIt)
{
    const Shelf shelf;
    EXPECT_EQ(shelf.members().rows[10].meta, &shelf.cover().getMeta());
}

TEST(ContainerStruct, IsNotModifiedWithAllMembersAtTheirDefaults)
{
    EXPECT_FALSE(Shelf().isModified());
}

TEST(ContainerStruct, IsNotModifiedWithoutMembers)
{
    EXPECT_FALSE(Empty().isModified());
}

TEST(ContainerStruct, HasNoChildrenWithoutMembers)
{
    EXPECT_EQ(Empty().childCount(), 0u);
}

TEST(ContainerStruct, IsModifiedByItsFirstMember)
{
    EXPECT_TRUE(aShelf().named("hall").build()->isModified());
}

TEST(ContainerStruct, IsModifiedByItsLastMember)
{
    EXPECT_TRUE(aShelf().withShelf(aShelf().build()).build()->isModified());
}

TEST(ContainerStruct, IsModifiedByAMemberOfAMember)
{
    EXPECT_TRUE(aShelf().coloured("red").build()->isModified());
}

TEST(ContainerStruct, IsModifiedByAMemberThatLeftItsDeclaredDefault)
{
    EXPECT_TRUE(aShelf().atLevel(0).build()->isModified());
}

TEST(ContainerStruct, IsNotModifiedByAMemberAtItsDeclaredDefault)
{
    EXPECT_FALSE(aShelf().atLevel(7).build()->isModified());
}

TEST(ContainerStruct, CannotBeCopied)
{
    EXPECT_FALSE(std::is_copy_constructible_v<Empty>);
}

} // namespace
