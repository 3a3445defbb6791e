#include "preview/filehistory.h"

#include "core/extensions.h"
#include "data/content/package.h"
#include "data/lightdocument.h"
#include "data/lightdocumentreader.h"
#include "data/xmldatawriter.h"
#include "ksx/core/updatestage.h"
#include <QBuffer>
#include <string_view>
#include <utility>

namespace Ksx::Kit {

namespace {

using Orv::Data::LightDocument;

// Returns an empty tree for bytes that are no document.
DocumentTree treeOf(const QByteArray& bytes, ElementNames& names)
{
    LightDocument document;
    Orv::Data::DocumentError error;
    if (!Orv::Data::readLightDocument(bytes, document, error))
        return {};
    return {document, names};
}

// Returns the document of a package, with file references as they are in memory. Returns no bytes
// for a package that XML cannot hold.
QByteArray documentOf(const Data::Content::Package& package)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (!Orv::Data::XmlDataWriter(&buffer).write(package))
        return {};
    return buffer.data();
}

} // namespace

void FileHistory::add(const Core::UpdateStage& stage)
{
    if (stage.document != nullptr)
        addDocument(stage);
    else
        addPackage(stage);
}

void FileHistory::addFile(const QByteArray& bytes)
{
    m_tree = treeOf(bytes, m_names);
    m_tree.setOrigins();
}

void FileHistory::addOutput(const QByteArray& bytes)
{
    m_writing = changesTo(treeOf(bytes, m_names));
}

void FileHistory::addDocument(const Core::UpdateStage& stage)
{
    const bool isAsBefore = stage.document->changeCount() == m_changeCount;
    m_changeCount = stage.document->changeCount();
    if (stage.step == nullptr) {
        m_tree = DocumentTree(*stage.document, m_names);
        m_tree.setOrigins();
        return;
    }
    std::vector<TreeChange> changes;
    if (!isAsBefore)
        changes = changesTo({*stage.document, m_names});
    m_steps.push_back(
        {stage.step->updaterVersion().toString(), UpdateStepKind::Document, std::move(changes)});
}

// Most steps for objects change nothing in most packages, which the bytes tell soonest.
void FileHistory::addPackage(const Core::UpdateStage& stage)
{
    m_package = stage.package;
    const QByteArray bytes = documentOf(*stage.package);
    const std::size_t hash =
        std::hash<std::string_view>()({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    std::vector<TreeChange> changes;
    if (stage.step == nullptr || hash != m_objectsHash)
        changes = changesTo(treeOf(bytes, m_names));
    m_objectsHash = hash;
    if (stage.step == nullptr)
        m_reading = std::move(changes);
    else
        m_steps.push_back(
            {stage.step->updaterVersion().toString(), UpdateStepKind::Objects, std::move(changes)});
}

// A tree that could not be made leaves the last one in its place.
std::vector<TreeChange> FileHistory::changesTo(DocumentTree tree)
{
    if (tree.isEmpty())
        return {};
    std::vector<TreeChange> changes = compareTrees(m_tree, tree, m_names);
    m_tree = std::move(tree);
    return changes;
}

} // namespace Ksx::Kit
