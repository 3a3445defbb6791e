#include "data/datapointerbox.h"

#include "support/shelfbuilder.h"
#include "support/shelfcases.h"
#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace {

using Orv::SecuredObject;
using Orv::Data::BaseObject;
using Orv::Data::DataPointerBox;
using Orv::Data::DataPointerBoxMasterKey;
using TestDocument::aShelf;
using TestDocument::Shelf;
using TestSupport::caseName;

class Target : public SecuredObject
{};

using Box = DataPointerBox<Target>;

TEST(DataPointerBox, TakesThreeWords)
{
    EXPECT_EQ(sizeof(Box), 3 * sizeof(void*));
}

TEST(DataPointerBox, IsNullAtFirst)
{
    const Box box;
    EXPECT_EQ(box.get(), nullptr);
}

TEST(DataPointerBox, IsFalseWhileItIsNull)
{
    EXPECT_FALSE(Box());
}

TEST(DataPointerBox, GivesItsTarget)
{
    const Target target;
    const Box box(&target);
    EXPECT_EQ(box.get(), &target);
}

TEST(DataPointerBox, IsTrueWhileItsTargetLives)
{
    const Target target;
    EXPECT_TRUE(Box(&target));
}

TEST(DataPointerBox, AcceptsANullTarget)
{
    const Box box(nullptr);
    EXPECT_EQ(box.get(), nullptr);
}

TEST(DataPointerBox, ReadsNullAfterItsTargetDied)
{
    auto target = std::make_unique<Target>();
    const Box box(target.get());
    target.reset();
    EXPECT_EQ(box.get(), nullptr);
}

TEST(DataPointerBox, ReadsNullAfterADocumentObjectDied)
{
    auto shelf = aShelf().withBook("atlas").build();
    const DataPointerBox<BaseObject> box(&shelf->books().front());
    shelf.reset();
    EXPECT_EQ(box.get(), nullptr);
}

// NOLINTBEGIN(performance-unnecessary-copy-initialization): the copies are what is tested
TEST(DataPointerBox, CopyPointsAtTheSameTarget)
{
    const Target target;
    const Box box(&target);
    const Box copy(box);
    EXPECT_EQ(copy.get(), &target);
}

TEST(DataPointerBox, CopyOfANullBoxIsNull)
{
    const Box box;
    const Box copy(box);
    EXPECT_EQ(copy.get(), nullptr);
}

TEST(DataPointerBox, CopyReadsNullAfterTheTargetDied)
{
    auto target = std::make_unique<Target>();
    const Box box(target.get());
    const Box copy(box);
    target.reset();
    EXPECT_EQ(copy.get(), nullptr);
}
// NOLINTEND(performance-unnecessary-copy-initialization)

TEST(DataPointerBox, CopyOutlivesTheBoxItWasMadeFrom)
{
    const Target target;
    auto box = std::make_unique<Box>(&target);
    const Box copy(*box);
    box.reset();
    EXPECT_EQ(copy.get(), &target);
}

TEST(DataPointerBox, HasNoPartInTheLifetimeOfItsTarget)
{
    const Target target;
    auto box = std::make_unique<Box>(&target);
    box.reset();
    EXPECT_EQ(Box(&target).get(), &target);
}

TEST(DataPointerBox, ResetLeavesTheFormerTarget)
{
    auto target = std::make_unique<Target>();
    const Target other;
    Box box(target.get());
    box.reset(&other);
    target.reset();
    EXPECT_EQ(box.get(), &other);
}

TEST(DataPointerBox, ResetWithoutATargetMakesItNull)
{
    const Target target;
    Box box(&target);
    box.reset();
    EXPECT_EQ(box.get(), nullptr);
}

TEST(DataPointerBox, CanBeResetTwice)
{
    const Target target;
    Box box(&target);
    box.reset();
    box.reset();
    EXPECT_EQ(box.get(), nullptr);
}

TEST(DataPointerBox, CanBeSetAgainAfterItsTargetDied)
{
    auto target = std::make_unique<Target>();
    const Target other;
    Box box(target.get());
    target.reset();
    box.reset(&other);
    EXPECT_EQ(box.get(), &other);
}

TEST(DataPointerBox, KeepsItsTargetWhenAssignedToItself)
{
    const Target target;
    Box box(&target);
    const Box& same = box;
    box = same;
    EXPECT_EQ(box.get(), &target);
}

TEST(DataPointerBox, TakesTheTargetOfAnAssignedBox)
{
    const Target target;
    const Target other;
    Box box(&target);
    box = Box(&other);
    EXPECT_EQ(box.get(), &other);
}

TEST(DataPointerBox, IsNullAfterANullBoxWasAssigned)
{
    const Target target;
    Box box(&target);
    box = Box();
    EXPECT_EQ(box.get(), nullptr);
}

TEST(DataPointerBox, BoxesOnOneTargetAreEqual)
{
    const Target target;
    EXPECT_EQ(Box(&target), Box(&target));
}

TEST(DataPointerBox, BoxesOnTwoTargetsDiffer)
{
    const Target target;
    const Target other;
    EXPECT_NE(Box(&target), Box(&other));
}

TEST(DataPointerBox, IsEqualToItsTarget)
{
    const Target target;
    EXPECT_TRUE(Box(&target) == &target);
}

TEST(DataPointerBox, GivesAMutableTargetThatIsNoPartOfADocument)
{
    Target target;
    EXPECT_EQ(Box(&target).access(), &target);
}

TEST(DataPointerBox, GivesConstAccessToADocumentWithoutTheKey)
{
    EXPECT_TRUE((std::is_same_v<decltype(DataPointerBox<Shelf>().get()), const Shelf*>));
}

TEST(DataPointerBox, GivesMutableAccessToADocumentForTheKey)
{
    using Result =
        decltype(DataPointerBox<Shelf>().get(std::declval<const DataPointerBoxMasterKey&>()));
    EXPECT_TRUE((std::is_same_v<Result, Shelf*>));
}

TEST(DataPointerBoxMasterKey, CannotBeMadeOutsideTheCommandLayer)
{
    EXPECT_FALSE(std::is_default_constructible_v<DataPointerBoxMasterKey>);
}

TEST(DataPointerBoxMasterKey, IsEmpty)
{
    EXPECT_TRUE(std::is_empty_v<DataPointerBoxMasterKey>);
}

// Four boxes on one target, of which one goes first: the list must stay well formed for the rest.
struct RemovalCase
{
    const char* name;
    std::ptrdiff_t removed;
};
class DataPointerBoxRemoval : public testing::TestWithParam<RemovalCase>
{
protected:
    std::unique_ptr<Target> m_target = std::make_unique<Target>();
    std::vector<std::unique_ptr<Box>> m_boxes = fourBoxes();

    std::vector<std::unique_ptr<Box>> fourBoxes()
    {
        std::vector<std::unique_ptr<Box>> boxes;
        boxes.reserve(4);
        for (int i = 0; i < 4; ++i)
            boxes.push_back(std::make_unique<Box>(m_target.get()));
        return boxes;
    }
    std::ptrdiff_t countOn(const Target* target) const
    {
        return std::count_if(m_boxes.begin(), m_boxes.end(),
                             [&](const auto& box) { return *box == target; });
    }
};

TEST_P(DataPointerBoxRemoval, LeavesTheOtherBoxesOnTheTarget)
{
    m_boxes.erase(m_boxes.begin() + GetParam().removed);
    EXPECT_EQ(countOn(m_target.get()), 3);
}

TEST_P(DataPointerBoxRemoval, LeavesBoxesThatReadNullAfterTheTargetDied)
{
    m_boxes.erase(m_boxes.begin() + GetParam().removed);
    m_target.reset();
    EXPECT_EQ(countOn(nullptr), 3);
}

INSTANTIATE_TEST_SUITE_P(Places, DataPointerBoxRemoval,
                         testing::Values(RemovalCase{"First", 0}, RemovalCase{"Second", 1},
                                         RemovalCase{"Third", 2}, RemovalCase{"Last", 3}),
                         caseName<RemovalCase>);

TEST(DataPointerBox, SurvivesBeingMovedInMemory)
{
    auto target = std::make_unique<Target>();
    std::vector<Box> boxes(1, Box(target.get()));
    boxes.resize(100, boxes.front());
    target.reset();
    EXPECT_EQ(std::count(boxes.begin(), boxes.end(), nullptr), 100);
}

} // namespace
