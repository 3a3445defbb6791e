#include "command/colour.h"

#include <cstdlib>
#include <cstring>
#include <unistd.h>

namespace Ksx::Kit {

namespace {

bool isSet(const char* variable)
{
    const char* const value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

const char* codeOf(Colour colour)
{
    switch (colour) {
    case Colour::Good:
        return "32";
    case Colour::Bad:
        return "31";
    case Colour::Warning:
        return "33";
    case Colour::Other:
        return "34";
    default:
        return "1";
    }
}

} // namespace

bool hasColours()
{
    const char* const terminal = std::getenv("TERM");
    return isatty(STDOUT_FILENO) == 1 && !isSet("NO_COLOR") && terminal != nullptr &&
           std::strcmp(terminal, "dumb") != 0;
}

QString coloured(const QString& text, Colour colour, bool isColoured)
{
    if (!isColoured)
        return text;
    return QStringLiteral("\x1b[%1m%2\x1b[0m").arg(QLatin1String(codeOf(colour)), text);
}

} // namespace Ksx::Kit
