// Version numbers of files, of the application and of its extensions.
#pragma once

#include <QString>
#include <cstdint>
#include <tuple>

namespace Orv::Core {

// Four numbers, ordered from major to build. All zeros mean that there is no version. A value.
struct Version
{
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    std::uint32_t revision = 0;
    std::uint32_t build = 0;

    // Returns whether all numbers are zero.
    bool isNone() const { return (major | minor | revision | build) == 0; }

    // Returns the text "1.2.3.4", without leading zeros.
    QString toString() const;

    // Reads exactly four unsigned decimal numbers with points between them, each as
    // QString::toUInt() reads it. Returns false and changes nothing for any other text.
    bool fromString(const QString& text);

    friend bool operator==(const Version& a, const Version& b) { return a.tied() == b.tied(); }
    friend bool operator!=(const Version& a, const Version& b) { return !(a == b); }
    friend bool operator<(const Version& a, const Version& b) { return a.tied() < b.tied(); }
    friend bool operator>(const Version& a, const Version& b) { return b < a; }
    friend bool operator<=(const Version& a, const Version& b) { return !(b < a); }
    friend bool operator>=(const Version& a, const Version& b) { return !(a < b); }

private:
    std::tuple<std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t> tied() const
    {
        return {major, minor, revision, build};
    }
};

} // namespace Orv::Core
