// Compiled packages: descriptions of assemblies, and archives of them.
#include "core/messagenode.h"
#include "data/content/package.h"
#include "data/documentreader.h"
#include "fuzztargets.h"
#include "grammarmutator.h"
#include "reading/domtext.h"
#include "reading/oblarimporter.h"
#include "reading/oblasmdocumentreader.h"
#include "support/archive.h"
#include "support/assemblytext.h"
#include "support/paths.h"

#include <QBuffer>
#include <QDirIterator>
#include <QFile>
#include <algorithm>

namespace TestSupport {

namespace {

QByteArray bytesOf(const std::string& text)
{
    return {text.data(), static_cast<int>(text.size())};
}

std::vector<std::string> filesOf(const char* folder, const char* pattern)
{
    std::vector<std::string> contents;
    QDirIterator files(QString::fromStdString(sourcePath(folder)), {pattern}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (file.open(QIODevice::ReadOnly))
            contents.push_back(file.readAll().toStdString());
    }
    std::sort(contents.begin(), contents.end());
    return contents;
}

// A description that is refused says why.
std::string faultOfDescription(const std::string& description)
{
    Ksx::Core::OBLASMAssembly assembly;
    assembly.header = bytesOf(anAssemblyBody());
    Orv::Data::DocumentError error;
    if (!Ksx::Core::parseDom(bytesOf(description), assembly.description, error))
        return error.text().isEmpty() ? "no reason" : "";
    assembly.isValid();
    Orv::Core::MessageNode log;
    Ksx::Data::Content::Package package;
    const bool isRead = Ksx::Core::OBLASMDocumentReader(assembly, &log).read(package);
    return isRead || log.hasError() ? "" : "no reason";
}

std::vector<std::string> descriptions()
{
    std::vector<std::string> seeds = filesOf("examples/assemblies", "*.xml");
    seeds.push_back(aDescription(aDescribedGraph("pkg://a/b")));
    return seeds;
}

std::string changedAsDescription(const std::string& input, const std::string& other, unsigned seed)
{
    return GrammarMutator(seed).mutant(input, other);
}

// An archive that is refused says why.
std::string faultOfArchive(const std::string& archive)
{
    QByteArray bytes = bytesOf(archive);
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    Orv::Core::MessageNode log;
    const auto package = Ksx::Core::OBLARImporter().import(buffer, &log, {});
    return package != nullptr || log.hasError() ? "" : "no reason";
}

std::vector<std::string> archives()
{
    std::vector<std::string> seeds = filesOf("examples/assemblies", "*.oblar");
    const ArchiveFiles files = anAssemblyInArchive("1", "a", "pkg://g");
    seeds.push_back(storedArchive(files));
    seeds.push_back(storedArchive(manyAssemblies(3), Blocks::OneForAll));
    seeds.push_back(withPackedList(storedArchive(files), Packing::Stored));
    return seeds;
}

// Puts a part of one archive into another, or changes a byte, and makes the checksums right.
std::string changedAsArchive(const std::string& input, const std::string& other, unsigned seed)
{
    std::mt19937 random(seed);
    std::string archive = input;
    const auto below = [&](std::size_t count) { return count == 0 ? 0 : random() % count; };
    for (std::size_t count = 1 + below(3); count != 0; --count) {
        const std::size_t place = below(archive.size());
        const std::size_t size = 1 + below(below(4) == 0 ? 64 : 4);
        switch (below(5)) {
        case 0:
            archive.insert(place, other.substr(below(other.size()), size));
            break;
        case 1:
            archive.erase(place, size);
            break;
        case 2:
            archive.insert(place, archive.substr(below(archive.size()), size));
            break;
        default:
            if (place < archive.size())
                archive[place] = static_cast<char>(random());
        }
    }
    return archive.size() < ArchiveStartSize ? archive : withChecksumsRepaired(archive);
}

} // namespace

std::vector<FuzzTarget> assemblyTargets()
{
    return {{"descriptions", &faultOfDescription, &descriptions, &changedAsDescription},
            {"archives", &faultOfArchive, &archives, &changedAsArchive}};
}

} // namespace TestSupport
