// The command "info", which lists the objects of packages.
#include "command/commandtable.h"
#include "command/inventorytext.h"
#include "command/jsonoutput.h"
#include "command/packagework.h"
#include "command/texttable.h"
#include "data/filename.h"
#include <iostream>
#include <optional>

namespace Ksx::Kit {

namespace {

namespace po = boost::program_options;

constexpr const char* BriefOption = "brief";

// The results as the user wants them: JSON, or text for people. All but brief text comes at once.
class Results
{
public:
    explicit Results(bool isJson)
    {
        if (isJson)
            m_json.emplace("info", "packages");
    }

    void add(const QString& file, const Inventory& inventory)
    {
        if (m_json) {
            m_json->add(toJson(file, inventory));
            return;
        }
        std::cout << (m_isFirst ? "" : "\n") << Orv::toBytes(inventoryText(file, inventory));
        m_isFirst = false;
    }

    void add(const QString& file, const PackageHead& head)
    {
        if (m_json)
            m_json->add(toJson(file, head));
        else
            m_brief.add({wordOf(head.kind), head.formatVersion,
                         QString::number(head.dependencies.size()), sizeText(head.size),
                         head.identifier, file});
    }

    void finish(const PackageFiles& files)
    {
        if (m_json)
            m_json->finish(files.failures);
        else
            std::cout << Orv::toBytes(m_brief.text());
    }

private:
    std::optional<JsonList> m_json; // none for people
    bool m_isFirst = true;
    TextTable m_brief{{{QStringLiteral("KIND")},
                       {QStringLiteral("FORMAT")},
                       {QStringLiteral("DEPENDENCIES"), TextTable::Align::Right},
                       {QStringLiteral("BYTES"), TextTable::Align::Right},
                       {QStringLiteral("IDENTIFIER")},
                       {QStringLiteral("FILE")}}};
};

} // namespace

void declareInfoOptions(po::options_description& options)
{
    options.add_options()(BriefOption, po::bool_switch(),
                          "Reads the head of each file alone, and lists one file a line.");
    declareReadingOptions(options);
}

int runInfo(const Request& request)
{
    PackageFiles files = filesOf(request);
    const unsigned jobs = jobsOf(request);
    Results results(request.has("json")); // prints, so the request is sound by now
    const auto take = [&](const QString& file, const auto& result) { results.add(file, result); };
    if (request.has(BriefOption)) {
        readAll<PackageHead>(files, jobs, &readHead, take);
    } else {
        const QStringList presetsPaths = presetsPathsOf(request);
        const auto read = [&](const QString& file, QString& reason) {
            return takeInventory(file, presetsPaths, reason);
        };
        readAll<Inventory>(files, jobs, read, take);
    }
    results.finish(files);
    return files.failures.empty() ? NothingFound : CannotDo;
}

} // namespace Ksx::Kit
