// Set-up, one command, tear-down.
#include "console.h"
#include "core/programoptions.h"
#include "data/desc/descriptiontables.h"
#include "data/filename.h"
#include "lastresort.h"
#include "programcommand/filterspecialization.h"
#include "programcommand/inputeditor.h"
#include "programcommand/update.h"
#include "services.h"
#include "standardstreams.h"
#include <QCoreApplication>
#include <QFileInfo>
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace {

constexpr unsigned LineLength = 80;
constexpr unsigned MinDescriptionLength = 70;

// Documents are millions of small blocks, and the C library would join its bins of freed small
// blocks whenever a larger one is asked for: a twelfth of the time of updating a large old file.
void tuneAllocator()
{
#ifdef __GLIBC__
    mallopt(M_MXFAST, 0);
#endif
}

int run(int argc, char** argv)
{
    tuneAllocator();
    // The library behind Qt's other event loop ends the process when it has no memory.
    qputenv("QT_NO_GLIB", "1");
    Orv::installFileNameCodec();
    Services services;
    // Asks for no plug-in of Qt, and so its paths are left alone: kestrix-decode reads pictures.
    const QCoreApplication application(argc, argv);
    const QFileInfo program(Orv::fromBytes(argv[0]));
    Orv::Core::ProgramOptions options(program.baseName(), LineLength, MinDescriptionLength);
    options.addCommand(std::make_unique<ProgramCommand::Update>(&services));
    options.addCommand(std::make_unique<ProgramCommand::FilterSpecialization>(&services));
    options.addCommand(std::make_unique<ProgramCommand::InputEditor>(&services));
    const int code = options.run(argc, argv);
    Ksx::Data::Desc::DescriptionTables::destroy();
    return code;
}

} // namespace

int main(int argc, char** argv)
{
    const StandardStreams streams;
    installLastResort();
    try {
        makeThreadObject();
        const int code = run(argc, argv);
        if (code != 0 || streams.isOutputComplete())
            return code;
        printError(QStringLiteral("Error! Standard output cannot be written"));
        return 1;
    } catch (...) {
        endWithException();
    }
}
