#include "ksx/core/failurereason.h"

#include "support/temporarydirectory.h"
#include <gtest/gtest.h>

using Ksx::Core::failureReason;
using TestSupport::TemporaryDirectory;

namespace {

class FailureReason : public testing::Test
{
protected:
    QString of(const char* error) const { return failureReason(m_file, error); }

    TemporaryDirectory directory;

private:
    QString m_file = QString::fromStdString(directory.write("a.obl", ""));
};

TEST_F(FailureReason, SaysThatAFileIsMissing)
{
    EXPECT_EQ(failureReason("/nowhere/a.obl", "ERROR_FAIL_TO_OPEN_URL_file:///nowhere/a.obl"),
              "there is no such file");
}

TEST_F(FailureReason, SaysThatAFileIsAFolder)
{
    EXPECT_EQ(failureReason(QString::fromStdString(directory.path()), ""), "it is a folder");
}

TEST_F(FailureReason, LeavesOutADetailThatOnlyRepeatsTheName)
{
    EXPECT_EQ(of("ERROR_FAIL_TO_READ_VERSION_OF_URL_file:///a.obl"), "it has no format version");
}

TEST_F(FailureReason, KeepsADetailThatSaysMore)
{
    EXPECT_EQ(of("ERROR_XML_READ_ERROR :\nline 3, column 7"),
              "it is no sound document: line 3, column 7");
    EXPECT_EQ(of("ERROR_DESCRIPTION_NOT_FOUND_a.xml"), "a description is missing inside: a.xml");
}

TEST_F(FailureReason, HandsOnAnErrorThatItDoesNotKnow)
{
    EXPECT_EQ(of("ERROR_NEW"), "it cannot be opened: ERROR_NEW");
}

TEST_F(FailureReason, NeedsNoReport)
{
    EXPECT_EQ(of(""), "it cannot be opened");
}

} // namespace
