// The command "merge", which joins the changes of two sides.
#include "command/colour.h"
#include "command/commandtable.h"
#include "command/jsonoutput.h"
#include "command/packagework.h"
#include "command/texttable.h"
#include "console.h"
#include "data/filename.h"
#include "ksx/kit/merge.h"
#include <QFileInfo>
#include <iostream>

namespace Ksx::Kit {

namespace {

namespace po = boost::program_options;
using Conflicts = std::vector<Conflict>;

constexpr const char* OutputOption = "output";
constexpr const char* OursOption = "ours";
constexpr const char* TheirsOption = "theirs";
constexpr const char* PathOption = "path";

Preference preferenceOf(const Request& request)
{
    if (request.has(OursOption) && request.has(TheirsOption))
        throw UsageError("The options '--ours' and '--theirs' exclude each other");
    if (request.has(OursOption))
        return Preference::Ours;
    return request.has(TheirsOption) ? Preference::Theirs : Preference::None;
}

// Git gives an empty file for the base of a file that both sides have added.
QString baseFile(const QString& name)
{
    const QFileInfo file(name);
    return file.isFile() && file.size() == 0 ? QStringLiteral("/dev/null") : name;
}

MergeVersions versionsOf(const Request& request)
{
    const QStringList names = operandsOf(request);
    if (names.size() != 3)
        throw UsageError("A base and two versions of it are merged");
    const QString path = request.text(PathOption);
    return {{baseFile(names[0]), path}, {names[1], path}, {names[2], path}};
}

QString valueLine(const char* name, const QString& value)
{
    return QStringLiteral("    %1 %2\n")
        .arg(QLatin1String(name), -7)
        .arg(value.isEmpty() ? QStringLiteral("nothing") : cellText(value));
}

QString conflictText(const Conflict& conflict, bool isColoured)
{
    QStringList parts = conflict.within;
    if (!conflict.name.isEmpty())
        parts.append(QStringLiteral("%1 %2").arg(conflict.object, conflict.name));
    if (!conflict.member.isEmpty())
        parts.append(conflict.member);
    const QString place =
        conflict.place.isEmpty() ? QStringLiteral("package") : lineText(conflict.place);
    QString text = coloured(QStringLiteral("conflict"), Colour::Bad, isColoured) +
                   QStringLiteral(" at %1").arg(place);
    if (!parts.isEmpty())
        text += QStringLiteral(", ") + lineText(parts.join(QStringLiteral(", ")));
    text += QStringLiteral(": %1\n").arg(lineText(conflict.reason));
    if (conflict.base.isEmpty() && conflict.ours.isEmpty() && conflict.theirs.isEmpty())
        return text;
    return text + valueLine("base", conflict.base) + valueLine("ours", conflict.ours) +
           valueLine("theirs", conflict.theirs);
}

void print(const MergeResult& result, bool isPreferring)
{
    const bool isColoured = hasColours();
    const std::size_t count = result.conflicts.size();
    for (const Conflict& conflict : result.conflicts)
        std::cout << Orv::toBytes(conflictText(conflict, isColoured));
    if (count == 0)
        return;
    std::cout << count << (count == 1 ? " conflict" : " conflicts");
    if (!result.isWritten)
        std::cout << (isPreferring ? ", nothing is written: no side settles a fault"
                                   : ", nothing is written without --ours or --theirs");
    std::cout << '\n';
}

} // namespace

void declareMergeOptions(po::options_description& options)
{
    // clang-format off
    options.add_options()
        ("output,o", po::value<std::string>()->value_name("FILE"),
         "The file to write, which may be one of the versions.")
        (OursOption, po::bool_switch(),
         "Takes our side's value in each conflict, and writes the file.")
        (TheirsOption, po::bool_switch(),
         "Takes their side's value in each conflict, and writes the file.")
        (PathOption, po::value<std::string>()->value_name("FILE"),
         "The file of which all are versions, if they have other names. Relative references begin "
         "in its folder.");
    // clang-format on
    declareReadingOptions(options);
}

int runMerge(const Request& request)
{
    MergeOptions options;
    options.preference = preferenceOf(request);
    options.presetsPaths = presetsPathsOf(request);
    const MergeVersions versions = versionsOf(request);
    const QString target = request.text(OutputOption);
    if (target.isEmpty())
        throw UsageError("The option '--output' is missing");
    QString file;
    QString reason;
    const std::optional<MergeResult> result =
        mergePackages(versions, target, options, file, reason);
    if (!result)
        printFailure({file, reason});
    if (request.has("json")) {
        JsonList list("merge", "conflicts");
        for (const Conflict& conflict : result ? result->conflicts : Conflicts())
            list.add(toJson(conflict));
        list.finish(result ? std::vector<Failure>() : std::vector<Failure>{{file, reason}});
    } else if (result) {
        print(*result, options.preference != Preference::None);
    }
    if (!result)
        return CannotDo;
    return result->conflicts.empty() ? NothingFound : SomethingFound;
}

} // namespace Ksx::Kit
