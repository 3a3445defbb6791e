#include "sha256.h"

#include <gtest/gtest.h>

using Ksx::Kit::Sha256;

// The examples of FIPS 180-2, appendix B.
TEST(Sha256OfBytes, IsThatOfTheStandard)
{
    EXPECT_EQ(Sha256::digitsOf("abc"),
              "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(Sha256::digitsOf("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
              "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
    EXPECT_EQ(Sha256::digitsOf(QByteArray(1000000, 'a')),
              "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

TEST(Sha256OfBytes, IsThatOfAllParts)
{
    Sha256 sum;
    sum.add("a");
    sum.add(QByteArray());
    sum.add("bc");

    EXPECT_EQ(sum.result().toHex(), Sha256::digitsOf("abc"));
}

TEST(Sha256OfBytes, BeginsAgainBehindAResult)
{
    Sha256 sum;
    sum.add("other");
    sum.result();
    sum.add("abc");

    EXPECT_EQ(sum.result().toHex(), Sha256::digitsOf("abc"));
}
