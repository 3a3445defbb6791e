#include "ksx/core/uidsource.h"

#include <QUuid>
#include <gtest/gtest.h>
#include <cstdlib>
#include <iostream>
#include <set>

using Ksx::Core::NoUid;
using Ksx::Core::Uid;
using Ksx::Core::UidSource;

namespace {

void leaveSaying(Uid uid)
{
    std::cerr << uid << '\n';
    std::_Exit(0);
}

// A clock that stands, unless a test sets it.
class UidSourceTest : public testing::Test
{
protected:
    UidSourceTest()
    {
        UidSource::setClock([this] {
            ++readings;
            return now;
        });
    }
    ~UidSourceTest() override { UidSource::setClock({}); }
    static UidSource::IsTaken isOneOf(const std::set<Uid>& uids)
    {
        return [uids](Uid uid) { return uids.count(uid) != 0; };
    }

    std::time_t now = 1000;
    int readings = 0;
    UidSource source{0};
};

TEST_F(UidSourceTest, GivesTheTimePlusACounter)
{
    EXPECT_EQ(source.next({}), 1000u);
    EXPECT_EQ(source.next({}), 1001u);
    now = 5000;
    EXPECT_EQ(source.next({}), 5002u);
}

TEST_F(UidSourceTest, BeginsWithItsFirstCount)
{
    UidSource other(0xF39AC68Fu);

    EXPECT_EQ(other.next({}), 0xF39AC68Fu + 1000u);
}

TEST_F(UidSourceTest, WrapsAround)
{
    source.setCounter(0xFFFFFFFFu);

    EXPECT_EQ(source.next({}), 999u);
    EXPECT_EQ(source.next({}), 1000u);
}

TEST_F(UidSourceTest, TakesTheLowBitsOfTheTime)
{
    now = (std::time_t{1} << 32) + 7;

    EXPECT_EQ(source.next({}), 7u);
}

TEST_F(UidSourceTest, StepsByTheNextDrawsLastByteWhenTaken)
{
    // The second draw is 1001, the last byte of which is 233.
    EXPECT_EQ(source.next(isOneOf({1000})), 1000u + (1001u & 0xFFu));
    EXPECT_EQ(source.next({}), 1002u);
}

TEST_F(UidSourceTest, StepsUntilOneIsFree)
{
    EXPECT_EQ(source.next(isOneOf({1000, 1233})), 1233u + (1002u & 0xFFu));
}

TEST_F(UidSourceTest, AStepMayLeadAround)
{
    source.setCounter(0xFFFFFFF0u - 1000u);

    EXPECT_EQ(source.next(isOneOf({0xFFFFFFF0u})), 0xFFFFFFF0u + 0xF1u);
}

TEST_F(UidSourceTest, AStepOfNothingIsFollowedByAnother)
{
    now = 0;
    source.setCounter(0xFF);

    // The draws are 255, then 256 whose last byte is 0, then 257 whose last byte is 1.
    EXPECT_EQ(source.next(isOneOf({0xFF})), 0x100u);
}

TEST_F(UidSourceTest, ReadsTheClockAtEachStep)
{
    source.next(isOneOf({1000, 1233}));

    EXPECT_EQ(readings, 3);
}

TEST_F(UidSourceTest, TellsItsFollowerOfEachUidThatItGives)
{
    std::vector<Uid> told;
    UidSource::setFollower([&told](Uid uid) { told.push_back(uid); });

    const Uid first = source.next(isOneOf({1000}));
    const Uid second = UidSource(0).next({});
    UidSource::setFollower({});
    source.next({});

    EXPECT_EQ(told, (std::vector<Uid>{first, second}));
}

TEST_F(UidSourceTest, NeverGivesTheUidThatStandsForNone)
{
    source.setCounter(NoUid - 1000u);

    // The second draw is 0, whose last byte leads nowhere; the third is 1.
    EXPECT_EQ(source.next({}), 0u);
}

TEST_F(UidSourceTest, TheSharedSourcesAreTwo)
{
    EXPECT_EQ(&UidSource::shared(), &UidSource::shared());
    EXPECT_EQ(&UidSource::ofUpdater(), &UidSource::ofUpdater());
    EXPECT_NE(&UidSource::shared(), &UidSource::ofUpdater());
}

// In a process of its own, in which nothing has asked for a uid before.
TEST_F(UidSourceTest, TheSharedSourcesBeginWithTheirOwnCounts)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";

    EXPECT_EXIT(leaveSaying(UidSource::shared().next({})), testing::ExitedWithCode(0),
                "^4087007863\n$"); // 0xF39AC68F and 1000
    EXPECT_EXIT(leaveSaying(UidSource::ofUpdater().next({})), testing::ExitedWithCode(0),
                "^1000\n$");
}

TEST_F(UidSourceTest, TheCounterCanBeSet)
{
    UidSource::shared().setCounter(1);
    UidSource::ofUpdater().setCounter(2);

    EXPECT_EQ(UidSource::shared().next({}), 1001u);
    EXPECT_EQ(UidSource::ofUpdater().next({}), 1002u);
}

TEST_F(UidSourceTest, BeginsAgainAsInANewProcess)
{
    UidSource::restart();
    const Uid ofAll = UidSource::shared().next({});
    const Uid ofUpdater = UidSource::ofUpdater().next({});
    UidSource::shared().next({});

    UidSource::restart();

    EXPECT_EQ(UidSource::shared().next({}), ofAll);
    EXPECT_EQ(UidSource::ofUpdater().next({}), ofUpdater);
}

TEST(UidSourceClock, IsTheSystemsWithoutAnother)
{
    UidSource::setClock({});
    UidSource source(0);
    const auto before = static_cast<Uid>(std::time(nullptr));

    const Uid uid = source.next({});

    EXPECT_GE(uid - before, 0u);
    EXPECT_LE(uid, static_cast<Uid>(std::time(nullptr)));
}

// UUIDs.

class FixedRandom : public testing::Test
{
protected:
    FixedRandom()
    {
        UidSource::setRandom([this] { return next++; });
    }
    ~FixedRandom() override { UidSource::setRandom({}); }

    std::uint32_t next = 0;
};

TEST_F(FixedRandom, GivesTheSameUuidsEachTime)
{
    const QUuid first = UidSource::uuid();
    const QUuid second = UidSource::uuid();
    next = 0;

    EXPECT_EQ(UidSource::uuid(), first);
    EXPECT_EQ(UidSource::uuid(), second);
    EXPECT_NE(first, second);
}

TEST_F(FixedRandom, GivesUuidsThatSayThatTheyAreRandom)
{
    const QUuid uuid = UidSource::uuid();

    EXPECT_EQ(uuid.version(), QUuid::Random);
    EXPECT_EQ(uuid.variant(), QUuid::DCE);
}

TEST_F(FixedRandom, AllBitsOfFourNumbersAreInTheUuid)
{
    UidSource::setRandom([] { return 0xFFFFFFFFu; });

    EXPECT_EQ(UidSource::uuid().toString(), "{ffffffff-ffff-4fff-bfff-ffffffffffff}");
}

TEST(UidSourceRandom, IsTheSystemsWithoutAnother)
{
    UidSource::setRandom({});

    EXPECT_NE(UidSource::uuid(), UidSource::uuid());
    EXPECT_EQ(UidSource::uuid().version(), QUuid::Random);
}

} // namespace
