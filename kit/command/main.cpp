// Set-up, one command, tear-down.
#include "command/command.h"
#include "console.h"
#include "data/filename.h"
#include "lastresort.h"
#include "standardstreams.h"
#include <QCoreApplication>

namespace {

int run(int argc, char** argv)
{
    // The library behind Qt's other event loop ends the process when it has no memory.
    qputenv("QT_NO_GLIB", "1");
    Orv::installFileNameCodec();
    const QCoreApplication application(argc, argv);
    return Ksx::Kit::runProgram(argc, argv);
}

} // namespace

int main(int argc, char** argv)
{
    const StandardStreams streams;
    installLastResort(Ksx::Kit::CannotDo);
    try {
        makeThreadObject();
        const int code = run(argc, argv);
        if (code == Ksx::Kit::CannotDo || streams.isOutputComplete())
            return code;
        printError(QStringLiteral("Error! Standard output cannot be written"));
        return Ksx::Kit::CannotDo;
    } catch (...) {
        endWithException();
    }
}
