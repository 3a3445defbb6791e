// The command "preview", which tells what an update would do.
#include "command/commandtable.h"
#include "command/jsonoutput.h"
#include "command/packagework.h"
#include "command/previewtext.h"
#include "console.h"
#include "data/filename.h"
#include "ksx/kit/preview.h"
#include <algorithm>
#include <iostream>
#include <optional>

namespace Ksx::Kit {

namespace {

namespace po = boost::program_options;

// As the console tool has them.
constexpr const char* OutputPathOption = "output-path";
constexpr const char* OutputNameOption = "output-name";
constexpr const char* NoDependencyOption = "no-dependency";

std::optional<QString> optionOf(const Request& request, const char* option)
{
    return request.has(option) ? std::optional<QString>(request.text(option)) : std::nullopt;
}

void printJson(const Preview& preview, const std::vector<Failure>& failures)
{
    JsonList list("preview", "files");
    for (const PreviewedFile& file : preview.files)
        list.add(toJson(file));
    list.finish(failures, {{"errors", QJsonArray::fromStringList(preview.errors)}});
}

void printText(const Preview& preview)
{
    for (const PreviewedFile& file : preview.files)
        std::cout << Orv::toBytes(previewText(file)) << '\n';
    std::cout << Orv::toBytes(summaryText(preview));
}

// The line on the terminal, which begins when the number of files is known.
class PreviewLine
{
public:
    void operator()(std::size_t done, std::size_t total)
    {
        if (!m_progress)
            m_progress.emplace(total);
        m_progress->step();
        if (done == total)
            m_progress.reset();
    }

private:
    std::optional<Progress> m_progress;
};

} // namespace

void declarePreviewOptions(po::options_description& options)
{
    // clang-format off
    options.add_options()
        (OutputPathOption, po::value<std::string>()->value_name("FOLDER"),
         "The folder to which the update writes, as it is given to 'kestrix update'. {inputPath} "
         "in it stands for the folder of the package.")
        (OutputNameOption, po::value<std::string>()->value_name("NAME"),
         "The name of the files that the update writes, without their ending. {inputName} in it "
         "stands for the name of the package.")
        (NoDependencyOption, po::bool_switch(),
         "Changes nothing, as with 'kestrix update'.");
    // clang-format on
    declareReadingOptions(options);
}

int runPreview(const Request& request)
{
    UpdateSettings settings;
    settings.presetsPaths = presetsPathsOf(request);
    settings.outputName = optionOf(request, OutputNameOption);
    settings.outputFolder = optionOf(request, OutputPathOption);
    settings.workers = jobsOf(request);
    PackageFiles files = filesOf(request);
    settings.files = files.files;
    PreviewLine line;
    const Preview preview = previewUpdate(settings, std::ref(line));
    for (const Failure& failure : preview.failures) {
        printFailure(failure);
        files.failures.push_back(failure);
    }
    for (const QString& error : preview.errors)
        printError(error);
    if (request.has("json"))
        printJson(preview, files.failures);
    else
        printText(preview);
    if (!files.failures.empty() || !preview.errors.isEmpty())
        return CannotDo;
    return preview.hasChanges() ? SomethingFound : NothingFound;
}

} // namespace Ksx::Kit
