#include "cycle.h"

#include <gtest/gtest.h>

using Ksx::Kit::cyclesIn;
using Ksx::Kit::Edges;
using Vertices = std::vector<std::size_t>;

TEST(Cycles, AreNotInATree)
{
    EXPECT_EQ(cyclesIn(Edges{{1, 2}, {}, {}}), Vertices());
}

TEST(Cycles, AreNotWhereTwoWaysMeet)
{
    EXPECT_EQ(cyclesIn(Edges{{1, 2}, {3}, {3}, {}}), Vertices());
}

TEST(Cycles, AreNamedOnceEach)
{
    EXPECT_EQ(cyclesIn(Edges{{1}, {2}, {0, 0}, {4}, {3}}), (Vertices{0, 3}));
}

TEST(Cycles, OfOneVertexAreFound)
{
    EXPECT_EQ(cyclesIn(Edges{{}, {1}}), Vertices{1});
}

TEST(Cycles, OfAMillionVerticesNeedNoStack)
{
    Edges edges;
    for (std::size_t i = 0; i < 1000000; ++i)
        edges.push_back({i + 1});
    edges.push_back({0});

    EXPECT_EQ(cyclesIn(edges), Vertices{0});
}
