// Loads a file into a DOM of Qt and saves it without indentation.
#include <QDomDocument>
#include <QFile>
#include <QString>
#include <QTextStream>
#include <cstdio>

namespace {

constexpr int NoLineBreaks = -1;

int fail(const QString& reason)
{
    std::fprintf(stderr, "Error! %s\n", qPrintable(reason));
    return 1;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3)
        return fail("Usage: domcopy INPUT OUTPUT");
    QFile input(QFile::decodeName(argv[1]));
    if (!input.open(QIODevice::ReadOnly))
        return fail("cannot read " + input.fileName());
    QDomDocument document;
    QString reason;
    if (!document.setContent(&input, &reason))
        return fail(input.fileName() + ": " + reason);
    input.close();

    QFile output(QFile::decodeName(argv[2]));
    if (!output.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return fail("cannot write " + output.fileName());
    QTextStream stream(&output); // takes its encoding from the document's declaration
    document.save(stream, NoLineBreaks);
    stream.flush();
    if (stream.status() != QTextStream::Ok || !output.flush())
        return fail("writing failed");
    return 0;
}
