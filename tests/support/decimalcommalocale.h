// A process whose numbers have a decimal comma, as most of Europe has them.
#pragma once

#include <string>

namespace TestSupport {

// Switches the C library to such a locale, and back to the former one when it goes. The build makes
// the locale, so that none has to be installed. Fails the test if it is not there.
class DecimalCommaLocale
{
public:
    DecimalCommaLocale();
    ~DecimalCommaLocale();
    DecimalCommaLocale(const DecimalCommaLocale&) = delete;
    DecimalCommaLocale& operator=(const DecimalCommaLocale&) = delete;

    // The variables of the environment that give a started program the same locale.
    static constexpr const char* Name = "de_DE.UTF-8";
    static std::string folder(); // for LOCPATH

private:
    std::string m_former;
};

} // namespace TestSupport
