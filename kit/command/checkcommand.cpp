// The command "check", which finds the faults of packages.
#include "command/colour.h"
#include "command/commandtable.h"
#include "command/findingtext.h"
#include "command/jsonoutput.h"
#include "command/packagework.h"
#include "data/filename.h"
#include "ksx/kit/check.h"
#include <algorithm>
#include <iostream>
#include <optional>
#include <set>

namespace Ksx::Kit {

namespace {

namespace po = boost::program_options;
using Findings = std::vector<Finding>;

constexpr const char* StrictOption = "strict";
constexpr const char* IgnoreOption = "ignore";

// Returns the codes that the user leaves out. Throws UsageError for one that there is not.
std::set<FindingCode> ignoredCodes(const Request& request)
{
    std::set<FindingCode> codes;
    if (!request.has(IgnoreOption))
        return codes;
    for (const std::string& name : request.options[IgnoreOption].as<std::vector<std::string>>()) {
        const auto& kinds = findingKinds();
        const auto kind = std::find_if(kinds.begin(), kinds.end(),
                                       [&](const FindingKind& one) { return one.name == name; });
        if (kind == kinds.end())
            throw UsageError("There is no code " + name);
        codes.insert(kind->code);
    }
    return codes;
}

// The findings as the user wants them, and their counts.
class Results
{
public:
    explicit Results(bool isJson)
    {
        if (isJson)
            m_json.emplace("check", "packages");
    }

    void add(const QString& file, const Findings& findings)
    {
        ++m_packages;
        for (const Finding& finding : findings)
            ++(finding.kind().severity == Severity::Error ? m_errors : m_warnings);
        if (m_json)
            m_json->add({{"file", file}, {"findings", arrayOf(findings)}});
        else
            for (const Finding& finding : findings)
                std::cout << Orv::toBytes(findingText(file, finding, m_isColoured));
    }

    void finish(const PackageFiles& files)
    {
        if (m_json)
            m_json->finish(files.failures);
        else
            std::cout << Orv::toBytes(findingSum(m_errors, m_warnings, m_packages)) << '\n';
    }

    bool hasFound(bool countsWarnings) const
    {
        return m_errors > 0 || (countsWarnings && m_warnings > 0);
    }

private:
    const bool m_isColoured = hasColours();
    std::optional<JsonList> m_json; // none for people
    std::size_t m_packages = 0;
    std::size_t m_errors = 0;
    std::size_t m_warnings = 0;
};

} // namespace

void declareCheckOptions(po::options_description& options)
{
    // clang-format off
    options.add_options()
        (StrictOption, po::bool_switch(),
         "Takes warnings for errors: they give exit code 1 as well.")
        (IgnoreOption, po::value<std::vector<std::string>>()->value_name("CODE"),
         "Leaves out findings of that code, such as unused-dependency. May be given several "
         "times.");
    // clang-format on
    declareReadingOptions(options);
}

int runCheck(const Request& request)
{
    const std::set<FindingCode> ignored = ignoredCodes(request);
    const QStringList presetsPaths = presetsPathsOf(request);
    const unsigned jobs = jobsOf(request);
    PackageFiles files = filesOf(request);
    Results results(request.has("json")); // prints, so the request is sound by now
    const auto read = [&](const QString& file, QString& reason) {
        return checkPackage(file, presetsPaths, reason);
    };
    const auto take = [&](const QString& file, Findings&& findings) {
        findings.erase(
            std::remove_if(findings.begin(), findings.end(),
                           [&](const Finding& one) { return ignored.count(one.code) == 1; }),
            findings.end());
        results.add(file, findings);
    };
    readAll<Findings>(files, jobs, read, take);
    results.finish(files);
    if (!files.failures.empty())
        return CannotDo;
    return results.hasFound(request.has(StrictOption)) ? SomethingFound : NothingFound;
}

} // namespace Ksx::Kit
