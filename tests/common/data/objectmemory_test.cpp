#include "data/objectmemory.h"

#include <gtest/gtest.h>
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <random>
#include <thread>
#include <vector>

namespace {

using Orv::Data::ObjectMemory;

// Memory that is full of one byte, by which it is seen whether others have written into it.
struct Piece
{
    unsigned char* bytes;
    std::size_t size;
    unsigned char mark;

    bool isWhole() const
    {
        return std::all_of(bytes, bytes + size,
                           [this](unsigned char byte) { return byte == mark; });
    }
};

Piece takePiece(std::size_t size, unsigned char mark)
{
    Piece piece{static_cast<unsigned char*>(ObjectMemory::take(size)), size, mark};
    std::memset(piece.bytes, mark, size);
    return piece;
}

// Returns true if the piece was whole until now.
bool giveBack(const Piece& piece)
{
    const bool isWhole = piece.isWhole();
    ObjectMemory::giveBack(piece.bytes, piece.size);
    return isWhole;
}

// Takes and gives back pieces of all sizes in a random order. Returns how many were damaged.
int damagedPieces(unsigned seed, int steps)
{
    std::mt19937 engine(seed);
    const auto random = [&engine](std::size_t count) { return engine() % count; };
    std::vector<Piece> pieces;
    int damaged = 0;
    for (int step = 0; step < steps; ++step) {
        if (pieces.empty() || random(5) < 3) {
            pieces.push_back(takePiece(1 + random(1200), static_cast<unsigned char>(step)));
            continue;
        }
        std::swap(pieces[random(pieces.size())], pieces.back());
        damaged += giveBack(pieces.back()) ? 0 : 1;
        pieces.pop_back();
    }
    for (const Piece& piece : pieces)
        damaged += giveBack(piece) ? 0 : 1;
    return damaged;
}

// The same in threads of which each begins when the one before has ended.
int damagedPiecesOfThreads(unsigned count)
{
    int damaged = 0;
    for (unsigned seed = 0; seed < count; ++seed)
        std::thread([&damaged, seed] { damaged += damagedPieces(seed, 2000); }).join();
    return damaged;
}

TEST(ObjectMemory, GivesEachObjectMemoryOfItsOwn)
{
    EXPECT_EQ(damagedPieces(1, 40000), 0);
}

TEST(ObjectMemory, GivesPlacesForPointers)
{
    const Piece odd = takePiece(33, 1);
    const Piece next = takePiece(33, 2);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(odd.bytes) % alignof(void*), 0u);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(next.bytes) % alignof(void*), 0u);
    EXPECT_TRUE(giveBack(odd));
    EXPECT_TRUE(giveBack(next));
}

TEST(ObjectMemory, CanBeGivenBackByAnotherThread)
{
    std::vector<Piece> pieces;
    std::thread maker([&pieces] {
        for (unsigned char mark = 0; mark < 200; ++mark)
            pieces.push_back(takePiece(64, mark));
    });
    maker.join();
    EXPECT_TRUE(std::all_of(pieces.begin(), pieces.end(), &giveBack));
    EXPECT_EQ(damagedPieces(2, 5000), 0);
}

TEST(ObjectMemory, IsApartInThreadsThatRunTogether)
{
    int damagedThere = -1;
    std::thread other([&damagedThere] { damagedThere = damagedPieces(3, 20000); });
    const int damagedHere = damagedPieces(4, 20000);
    other.join();
    EXPECT_EQ(damagedHere, 0);
    EXPECT_EQ(damagedThere, 0);
}

TEST(ObjectMemory, OfThreadsThatHaveEndedIsUsedAgain)
{
    EXPECT_EQ(damagedPiecesOfThreads(20), 0);
}

} // namespace
