#include "ksx/core/failurereason.h"

#include "core/fileplace.h"
#include <QFileInfo>

namespace Ksx::Core {

namespace {

struct Sentence
{
    const char* key; // what the text of the error begins with; the rest is the detail
    const char* words;
    bool hasDetail; // that is worth telling
};

constexpr Sentence Sentences[] = {
    {"ERROR_NO_IMPORTER_FOUND", "its name does not end with .obl, .oblar or .oblasm", false},
    {"ERROR_FAIL_TO_CREATE_DEVICE", "it cannot be opened", false},
    {"ERROR_FAIL_TO_OPEN_URL_", "it cannot be opened", false},
    {"ERROR_FAIL_TO_READ_URL_", "it cannot be read to its end", false},
    {"ERROR_FAIL_TO_READ_VERSION_OF_URL_", "it has no format version", false},
    {"ERROR_APPLICATION_TOO_OLD_TO_OPEN_URL_", "a newer version of the format made it", false},
    {"ERROR_XML_READ_ERROR", "it is no sound document", true},
    {"ERROR_FAIL_TO_APPLY_FORMAT_UPDATER_", "a step of bringing its text up failed", true},
    {"ERROR_FAIL_TO_UPDATE_PACKAGE", "a step of bringing it up failed", false},
    {"ERROR_FAIL_TO_CREATE_PACKAGE", "no package could be made of it", false},
    {"ERROR_WRONG_ROOT_OBJECT_TYPE", "it holds something else than a package", false},
    {"ERROR_ARCHIVE_TOO_LARGE_", "it unpacks to more than a gigabyte", true},
    {"ERROR_ARCHIVE_FILE_LIST_TOO_LARGE_", "its list of files is too long", true},
    {"ERROR_INVALID_FILE_NAME_", "a file inside has a name that leads elsewhere", true},
    {"ERROR_UNABLE_TO_LOAD_ARCHIVE_READER_", "the reader of archives cannot be loaded", true},
    {"ERROR_UNABLE_TO_OPEN_FILE", "it is no archive", false},
    {"ERROR_FAIL_TO_EXTRACT_FILE_", "a file inside cannot be unpacked", true},
    {"ERROR_DESCRIPTION_NOT_FOUND_", "a description is missing inside", true},
    {"ERROR_INVALID_OBLASM", "an assembly inside has no sound description", true},
    {"ERROR_XML_FILE_NOT_FOUND_", "its description is missing", true},
    {"ERROR_OPEN_FILE_FAILED_", "its description cannot be opened", true},
    {"ERROR_INVALID_FILE_CONTENT_", "a part of it is empty or too large", true},
    {"ERROR_NO_GRAPH_ARRAY_ELEMENT_FOUND", "its description lists no graph", false},
    {"ERROR_FAIL_TO_CREATE_GRAPH", "a graph of its description cannot be made", false},
    {"ERROR_FAIL_TO_RETRIEVE_OBLASM_FILE_DESCRIPTION", "it has no description", false},
};

QString withDetail(const char* words, QString detail)
{
    while (!detail.isEmpty() && QStringLiteral("_: \n").contains(detail.front()))
        detail.remove(0, 1);
    const QString text = QString::fromLatin1(words);
    return detail.isEmpty() ? text : text + QStringLiteral(": ") + detail;
}

} // namespace

QString failureReason(const QString& filename, const QString& error)
{
    if (!Orv::Core::exists(filename))
        return QStringLiteral("there is no such file");
    if (QFileInfo(filename).isDir())
        return QStringLiteral("it is a folder");
    for (const Sentence& sentence : Sentences)
        if (error.startsWith(QLatin1String(sentence.key)))
            return withDetail(sentence.words, sentence.hasDetail
                                                  ? error.mid(int(qstrlen(sentence.key)))
                                                  : QString());
    return withDetail("it cannot be opened", error);
}

} // namespace Ksx::Core
