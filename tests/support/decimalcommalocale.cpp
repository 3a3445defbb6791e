#include "support/decimalcommalocale.h"

#include "support/paths.h"
#include <gtest/gtest.h>
#include <clocale>
#include <cstdlib>

namespace TestSupport {

DecimalCommaLocale::DecimalCommaLocale() : m_former(std::setlocale(LC_ALL, nullptr))
{
    setenv("LOCPATH", folder().c_str(), 1);
    EXPECT_NE(std::setlocale(LC_ALL, Name), nullptr) << "no locale in " << folder();
}

DecimalCommaLocale::~DecimalCommaLocale()
{
    std::setlocale(LC_ALL, m_former.c_str());
}

std::string DecimalCommaLocale::folder()
{
    return buildPath("locales");
}

} // namespace TestSupport
