// The reference for reading and writing: copies a file token by token through Qt's XML streams.
#include <QFile>
#include <QString>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <cstdio>

namespace {

int fail(const QString& reason)
{
    std::fprintf(stderr, "Error! %s\n", qPrintable(reason));
    return 1;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3)
        return fail("Usage: xmlpump INPUT OUTPUT");
    QFile input(QFile::decodeName(argv[1]));
    if (!input.open(QIODevice::ReadOnly))
        return fail("cannot read " + input.fileName());
    QFile output(QFile::decodeName(argv[2]));
    if (!output.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return fail("cannot write " + output.fileName());

    QXmlStreamReader reader(&input);
    QXmlStreamWriter writer(&output);
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.hasError())
            return fail(reader.errorString());
        writer.writeCurrentToken(reader);
    }
    if (writer.hasError() || !output.flush())
        return fail("writing failed");
    return 0;
}
