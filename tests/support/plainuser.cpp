#include "support/plainuser.h"

#include "support/tool.h"
#include <gtest/gtest.h>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace TestSupport {

PlainUser::PlainUser() : m_wasRoot(Tool::isRoot())
{
    if (!m_wasRoot)
        return;
    setenv("TMPDIR", P_tmpdir, 1); // that of root may be his own
    EXPECT_TRUE(setegid(NobodyId) == 0 && seteuid(NobodyId) == 0);
}

PlainUser::~PlainUser()
{
    const bool isBack = !m_wasRoot || (seteuid(0) == 0 && setegid(0) == 0);
    EXPECT_TRUE(isBack);
}

} // namespace TestSupport
