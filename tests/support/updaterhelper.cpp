#include "support/updaterhelper.h"

#include "core/messagenode.h"
#include "data/content/package.h"
#include "data/xmldatawriter.h"
#include "support/golden.h"
#include "updating/documentdevice.h"
#include "updating/ipackageupdater.h"
#include <QBuffer>
#include <QCoreApplication>
#include <gtest/gtest.h>
#include <algorithm>

namespace TestSupport {

namespace {

using Orv::Core::MessageNode;
using Orv::Core::Extensions::IDataFormatUpdater;

UpdateResult update(const IDataFormatUpdater& updater, QIODevice& device)
{
    UpdateResult result;
    MessageNode log;
    result.isOk = updater.update(
        device, &log, [&result](float fraction) { result.progress.push_back(fraction); });
    result.log = log.toText().toStdString();
    device.seek(0);
    result.bytes = device.readAll().toStdString();
    return result;
}

} // namespace

EchoTranslator::EchoTranslator()
{
    QCoreApplication::installTranslator(this);
}

EchoTranslator::~EchoTranslator()
{
    QCoreApplication::removeTranslator(this);
}

QString EchoTranslator::translate(const char* context, const char* key, const char* /*comment*/,
                                  int /*number*/) const
{
    return QString::fromLatin1(context) + '|' + QString::fromLatin1(key);
}

UpdateResult updateBuffer(const IDataFormatUpdater& updater, const std::string& input)
{
    QBuffer buffer;
    buffer.setData(QByteArray::fromStdString(input));
    buffer.open(QIODevice::ReadWrite);
    return update(updater, buffer);
}

UpdateResult updateDocument(const IDataFormatUpdater& updater, const std::string& input)
{
    Ksx::Core::DocumentDevice device(QByteArray::fromStdString(input));
    device.open(QIODevice::ReadWrite);
    return update(updater, device);
}

std::string withoutLayout(const std::string& document)
{
    constexpr const char* Space = " \n";
    const bool isDeclared = document.compare(0, 6, "<?xml ") == 0;
    std::string text;
    std::size_t place = isDeclared ? document.find('<', 1) : 0;
    while (place < document.size()) {
        const std::size_t end = std::min(document.find('>', place), document.size() - 1) + 1;
        text.append(document, place, end - place);
        const std::size_t next = std::min(document.find_first_not_of(Space, end), document.size());
        place = next == document.size() || document[next] == '<' ? next : end;
    }
    return text;
}

std::string rewritten(const IDataFormatUpdater& updater, const std::string& input)
{
    const UpdateResult result = updateBuffer(updater, input);
    EXPECT_TRUE(result.isOk) << result.log;
    return withoutLayout(result.bytes);
}

std::string aBarePackage(const std::string& content)
{
    return "<package><identifier v=\"Wood\"/><content>" + content + "</content></package>";
}

std::string rewrittenContent(const IDataFormatUpdater& updater, const std::string& content)
{
    const std::string package = rewritten(updater, aBarePackage(content));
    const std::string begin = "<package><identifier v=\"Wood\"/><content>";
    const std::string end = "</content></package>";
    EXPECT_EQ(package.substr(0, begin.size()), begin);
    return package.substr(begin.size(), package.size() - begin.size() - end.size());
}

void expectGoldenUpdateOnce(const IDataFormatUpdater& updater, const std::string& folder)
{
    const std::string input = readFile(goldenPath("updaters/" + folder + "/input.obl"));
    const UpdateResult plain = updateBuffer(updater, input);
    EXPECT_TRUE(plain.isOk);
    expectGolden("updaters/" + folder + "/expected.obl", plain.bytes);
    EXPECT_EQ(plain.bytes, updateDocument(updater, input).bytes);
}

void expectGoldenUpdate(const IDataFormatUpdater& updater, const std::string& folder)
{
    expectGoldenUpdateOnce(updater, folder);
    const std::string expected = readFile(goldenPath("updaters/" + folder + "/expected.obl"));
    EXPECT_EQ(updateBuffer(updater, expected).bytes, expected);
}

std::string updatePackage(const Ksx::Core::IPackageUpdater& updater,
                          Ksx::Data::Content::Package& package)
{
    MessageNode log;
    EXPECT_TRUE(updater.update(package, &log, {}));
    return log.toText().toStdString();
}

std::string textOf(const Ksx::Data::Content::Package& package)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(Orv::Data::XmlDataWriter(&buffer).write(package));
    return buffer.data().toStdString();
}

} // namespace TestSupport
