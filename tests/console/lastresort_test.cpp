#include "lastresort.h"

#include <gtest/gtest.h>
#include <exception>
#include <new>
#include <stdexcept>
#include <thread>

namespace {

// A thread has nobody who could catch what it throws.
template <class Exception>
void throwInAThread(const Exception& exception)
{
    installLastResort();
    std::thread([&] { throw exception; }).join();
}

void terminateWithoutAnException()
{
    installLastResort();
    std::terminate();
}

} // namespace

TEST(LastResort, AnExceptionThatNobodyCatchesIsItsFirstLine)
{
    EXPECT_EXIT(throwInAThread(std::runtime_error("lost\nsomewhere")), testing::ExitedWithCode(1),
                "^Error! lost\n$");
}

TEST(LastResort, MissingMemoryHasAnErrorOfItsOwn)
{
    EXPECT_EXIT(throwInAThread(std::bad_alloc()), testing::ExitedWithCode(1),
                "^Error! Out of memory\n$");
}

TEST(LastResort, WhatIsNoExceptionOfTheLibraryIsUnknown)
{
    EXPECT_EXIT(throwInAThread(7), testing::ExitedWithCode(1), "^Error! Unknown failure\n$");
}

TEST(LastResort, AnEndWithoutAnExceptionIsAFailure)
{
    EXPECT_EXIT(terminateWithoutAnException(), testing::ExitedWithCode(1), "^$");
}

TEST(LastResort, AProgramMayEndWithAnotherExitCode)
{
    EXPECT_EXIT(
        {
            installLastResort(2);
            std::terminate();
        },
        testing::ExitedWithCode(2), "^$");
}
