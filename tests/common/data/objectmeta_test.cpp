#include "data/objectmeta.h"

#include "data/datapointerbox.h"
#include "support/shelfbuilder.h"
#include "support/shelfcases.h"
#include <gtest/gtest.h>

namespace {

using namespace TestDocument;
using namespace Orv::Data;
using TestSupport::caseName;

// Two further names for one class, and a list of it.
struct AtticMeta_
{
    static constexpr ObjectMeta record = makeMeta("attic", Optional);
};
struct CellarMeta_
{
    static constexpr ObjectMeta record = makeMeta("cellar", Required);
};
using Attic = MetaBinder<Shelf, AtticMeta_>;
using Cellar = MetaBinder<Shelf, CellarMeta_>;

// --- the record of a declaration

TEST(ObjectMeta, HasTheNameOfTheElement)
{
    EXPECT_EQ(makeMeta("book", Required).name, "book");
}

TEST(ObjectMeta, IsNotOptionalWhenRequired)
{
    EXPECT_FALSE(makeMeta("book", Required).isOptional);
}

TEST(ObjectMeta, IsOptionalWhenDeclaredSo)
{
    EXPECT_TRUE(makeMeta("book", Optional | FilePath | Presentation).isOptional);
}

TEST(ObjectMeta, SendsAllMessageBits)
{
    EXPECT_EQ(makeMeta("book", Optional | FilePath).messageMask, 0xFFFFFFFFu);
}

TEST(ObjectMeta, SendsOneMessageBitForPresentation)
{
    EXPECT_EQ(makeMeta("gpos", Required | Presentation).messageMask, 1u);
}

TEST(ObjectMeta, HasNoValueFlags)
{
    EXPECT_EQ(makeMeta("book", Optional | Presentation).valueFlags, 0u);
}

TEST(ObjectMeta, HasOneValueFlagForAFilePath)
{
    EXPECT_EQ(makeMeta("filepath", Required | FilePath).valueFlags, 1u);
}

TEST(ObjectMeta, HasNoUserData)
{
    EXPECT_EQ(makeMeta("book", Required).userData, nullptr);
}

// --- binders

TEST(MetaBinder, GivesAMemberItsElementName)
{
    EXPECT_EQ(Shelf().books().getMeta().name, "books");
}

TEST(MetaBinder, GivesAClassItsElementName)
{
    EXPECT_EQ(Shelf().getMeta().name, "shelf");
}

TEST(MetaBinder, GivesTheSameRecordForEveryObjectOfADeclaration)
{
    EXPECT_EQ(&Shelf().uid().getMeta(), &Shelf().uid().getMeta());
}

TEST(MetaBinder, GivesTwoMembersOfOneTypeTwoRecords)
{
    EXPECT_NE(&Shelf().uid().getMeta(), &Book().pages().getMeta());
}

TEST(MetaBinder, GivesMembersOfOneTypeTheirOwnFlags)
{
    EXPECT_NE(Shelf().uid().getMeta().isOptional, Candle().wicks().getMeta().isOptional);
}

TEST(MetaBinder, GivesAClassAnotherNameWhereItIsUsed)
{
    EXPECT_EQ(Shelf().cover().getMeta().name, "cover");
}

TEST(MetaBinder, LeavesTheNameOfTheClassItself)
{
    EXPECT_EQ(Cover().getMeta().name, "coverClass");
}

TEST(MetaBinder, GivesOneClassTwoNames)
{
    EXPECT_NE(Attic().getMeta().name, Cellar().getMeta().name);
}

TEST(MetaBinder, LeavesTheMembersOfAClassUnderAnotherName)
{
    Attic attic;
    attic.books().pushBack(std::make_unique<Book>());
    EXPECT_EQ(written(attic.books()), written(aShelf().withBook("").build()->books()));
}

TEST(MetaBinder, AddsNoField)
{
    EXPECT_EQ(sizeof(Attic), sizeof(Shelf));
}

TEST(DefaultValueBinder, AddsNoField)
{
    EXPECT_EQ(sizeof(decltype(Shelf().level())), sizeof(decltype(Shelf().uid())));
}

TEST(DefaultValueBinder, AnswersTheDefaultOfTheDeclaration)
{
    EXPECT_EQ(Shelf().level().getDefaultValue(), 7u);
}

TEST(DefaultValueBinder, IsNotModifiedAtTheDefault)
{
    EXPECT_FALSE(Shelf().level().isModified());
}

TEST(DefaultValueBinder, IsModifiedByZero)
{
    EXPECT_TRUE(aShelf().atLevel(0).build()->level().isModified());
}

TEST(DefaultValueBinder, KeepsTheRecordOfTheMember)
{
    EXPECT_EQ(Shelf().level().getMeta().name, "level");
}

// --- the types of children

TEST(ChildrenTypesBinder, MakesTheFirstAlternative)
{
    EXPECT_NE(dynamic_cast<Candle*>(Shelf().lamp().createChild("candle").get()), nullptr);
}

TEST(ChildrenTypesBinder, MakesTheLastAlternative)
{
    EXPECT_NE(dynamic_cast<Bulb*>(Shelf().lamp().createChild("bulb").get()), nullptr);
}

TEST(ChildrenTypesBinder, MakesAChildWithoutParent)
{
    EXPECT_EQ(Shelf().lamp().createChild("bulb")->getParent(), nullptr);
}

TEST(ChildrenTypesBinder, LeavesTheUnionEmpty)
{
    const Shelf shelf;
    static_cast<void>(shelf.lamp().createChild("bulb"));
    EXPECT_TRUE(shelf.lamp().isEmpty());
}

struct NameCase
{
    const char* name;
    std::string_view element;
};
class ChildrenTypesBinderUnknown : public testing::TestWithParam<NameCase>
{};
TEST_P(ChildrenTypesBinderUnknown, GivesNull)
{
    EXPECT_EQ(Shelf().lamp().createChild(GetParam().element), nullptr);
}
INSTANTIATE_TEST_SUITE_P(Names, ChildrenTypesBinderUnknown,
                         testing::Values(NameCase{"Unknown", "unknown"}, NameCase{"Empty", ""},
                                         NameCase{"OtherCase", "Candle"},
                                         NameCase{"Beginning", "cand"},
                                         NameCase{"Longer", "candles"},
                                         NameCase{"OwnName", "lamp"}),
                         caseName<NameCase>);

TEST(ChildrenTypesBinder, TakesTheFirstMatchInTheOrderOfDeclaration)
{
    using OtherShelf = MetaBinder<Shelf, AtticMeta_>;
    using OtherCover = MetaBinder<Cover, AtticMeta_>;
    EXPECT_NE(dynamic_cast<Shelf*>(createFirstMatch<OtherShelf, OtherCover>("attic").get()),
              nullptr);
}

TEST(ChildValueTypeBinder, MakesTheItemTypeOfTheList)
{
    EXPECT_NE(dynamic_cast<Book*>(Shelf().books().createChild("book").get()), nullptr);
}

TEST(ChildValueTypeBinder, GivesNullForAnotherName)
{
    EXPECT_EQ(Shelf().books().createChild("shelf"), nullptr);
}

TEST(DelayedTypesBinder, MakesAClassThatWasIncompleteInTheDeclaration)
{
    EXPECT_NE(dynamic_cast<Shelf*>(Shelf().shelves().createChild("shelf").get()), nullptr);
}

TEST(DelayedTypesBinder, GivesNullForAnotherName)
{
    EXPECT_EQ(Shelf().shelves().createChild("book"), nullptr);
}

} // namespace
