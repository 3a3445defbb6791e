// What the option "connect-image" asks for.
#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <optional>

namespace ProgramCommand {

// The image for one input of a filter.
struct ImageConnection
{
    QString path;
    QString format; // cooked: "RAW", which is also meant by an empty text, or "JPEG"
    float level = 0.0F;
    bool tiling = false;
};

// By the name of the input.
using ImageConnections = QMap<QString, ImageConnection>;

// Reads values of the form "input@parameter@value", with any number of pairs behind the input;
// several values for one input add up. None, after an error line, for a malformed value.
std::optional<ImageConnections> parseImageConnections(const char* option,
                                                      const QStringList& values);

// The number of a cooked format; none for an unknown one.
std::optional<unsigned> cookedFormatNumber(const QString& format);

} // namespace ProgramCommand
