#include "data/securedobject.h"

#include "data/datapointerbox.h"
#include <gtest/gtest.h>
#include <memory>

namespace {

using Orv::SecuredObject;
using Box = Orv::Data::DataPointerBox<SecuredObject>;

TEST(SecuredObject, CostsOneWordBehindTheVirtualTable)
{
    EXPECT_EQ(sizeof(SecuredObject), 2 * sizeof(void*));
}

TEST(SecuredObject, BoxesStayWithTheOriginalOfACopy)
{
    auto original = std::make_unique<SecuredObject>();
    const Box box(original.get());
    const SecuredObject copy(*original);
    original.reset();
    EXPECT_EQ(box.get(), nullptr);
}

TEST(SecuredObject, DeathOfACopyLeavesTheBoxesOfTheOriginal)
{
    const SecuredObject original;
    const Box box(&original);
    auto copy = std::make_unique<SecuredObject>(original);
    copy.reset();
    EXPECT_EQ(box.get(), &original);
}

TEST(SecuredObject, KeepsItsOwnBoxesWhenAssignedTo)
{
    SecuredObject target;
    const SecuredObject other;
    const Box box(&target);
    target = other;
    EXPECT_EQ(box.get(), &target);
}

TEST(SecuredObject, TakesNoBoxesFromWhatIsAssigned)
{
    SecuredObject target;
    auto other = std::make_unique<SecuredObject>();
    const Box box(other.get());
    target = *other;
    other.reset();
    EXPECT_EQ(box.get(), nullptr);
}

TEST(BoxLink, KeepsNoTargetAfterUnlinking)
{
    SecuredObject target;
    Orv::BoxLink link;
    link.linkTo(&target);
    link.unlink();
    EXPECT_EQ(link.target(), nullptr);
}

} // namespace
