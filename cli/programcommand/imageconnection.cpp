#include "programcommand/imageconnection.h"

#include "console.h"
#include "data/floattext.h"

namespace ProgramCommand {

namespace {

const QChar Separator = QLatin1Char('@');

struct ParameterRow
{
    const char* name;
    void (*set)(ImageConnection&, const QString&);
};

const ParameterRow ParameterRows[] = {
    {"path", [](ImageConnection& image, const QString& value) { image.path = value; }},
    {"format", [](ImageConnection& image, const QString& value) { image.format = value; }},
    {"level", [](ImageConnection& image,
                 const QString& value) { image.level = Orv::floatOf(value).value_or(0.0F); }},
    {"tiling",
     [](ImageConnection& image, const QString& value) { image.tiling = value.toInt() != 0; }},
};

struct CookedFormat
{
    const char* name;
    unsigned number;
};

constexpr CookedFormat CookedFormats[] = {{"", 0}, {"RAW", 0}, {"JPEG", 4}};

const ParameterRow* findParameter(const QString& name)
{
    for (const ParameterRow& row : ParameterRows)
        if (name == QLatin1String(row.name))
            return &row;
    return nullptr;
}

} // namespace

std::optional<ImageConnections> parseImageConnections(const char* option, const QStringList& values)
{
    ImageConnections images;
    for (const QString& value : values) {
        const QStringList parts = value.split(Separator);
        if (parts.size() < 3 || parts.size() % 2 == 0) {
            printError(QStringLiteral("Error! Invalid %1 parameters").arg(QLatin1String(option)));
            return std::nullopt;
        }
        ImageConnection& image = images[parts.front()];
        for (int i = 1; i < parts.size(); i += 2) {
            const ParameterRow* parameter = findParameter(parts[i]);
            if (parameter == nullptr) {
                printError(
                    QStringLiteral("Error! Invalid %1 parameter: ").arg(QLatin1String(option)) +
                    parts[i]);
                return std::nullopt;
            }
            parameter->set(image, parts[i + 1]);
        }
    }
    return images;
}

std::optional<unsigned> cookedFormatNumber(const QString& format)
{
    for (const CookedFormat& row : CookedFormats)
        if (format == QLatin1String(row.name))
            return row.number;
    return std::nullopt;
}

} // namespace ProgramCommand
