// Version numbers of files, of the application and of its extensions.
#pragma once

#include <QString>
#include <cstdint>
#include <tuple>

namespace Orv::Core {

// Ordered from major to build. All zeros means none.
struct Version
{
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    std::uint32_t revision = 0;
    std::uint32_t build = 0;

    bool isNone() const { return (major | minor | revision | build) == 0; }

    // "1.2.3.4", without leading zeros.
    QString toString() const;
    // Takes exactly four unsigned decimal numbers with points between them, each as
    // QString::toUInt() reads it. On any other text answers false and changes nothing.
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
