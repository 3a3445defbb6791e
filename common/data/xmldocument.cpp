#include "data/xmldocument.h"

#include "canonicalxml.h"
#include "data/lightdocument.h"
#include "lightdocumenttokens.h"
#include "xmltreebuilder.h"

namespace Orv::Data {

namespace {

// Returns null for a document in another form.
std::unique_ptr<BaseObject> readCanonical(QIODevice& device, const MakeRoot& makeRoot,
                                          const ProgressFunction& progress)
{
    CanonicalXmlTokens tokens(device, progress);
    if (!tokens.begin())
        return nullptr;
    std::unique_ptr<BaseObject> root = makeRoot();
    if (!tokens.isNamed(root->getMeta().name))
        return nullptr;
    if (XmlTreeBuilder<CanonicalXmlTokens>(tokens).read(*root) != 0)
        return nullptr;
    // A tree may end before its document. The general lane reads ahead, and refuses a fault there.
    while (tokens.error() == 0 && !tokens.isAtEnd())
        tokens.next();
    return tokens.error() == 0 ? std::move(root) : nullptr;
}

} // namespace

XmlDocument readXmlDocument(QIODevice& device, const MakeRoot& makeRoot,
                            const ProgressFunction& progress, XmlLane lane)
{
    // A document that is read again tells no smaller fraction than before.
    float told = 0.0F;
    const ProgressFunction ascending = [&](float fraction) {
        if (fraction >= told)
            progress(told = fraction);
    };
    const ProgressFunction& report = progress ? ascending : progress;

    XmlDocument document;
    const qint64 begin = device.pos();
    if (lane == XmlLane::Fast && !device.isSequential() && !device.isTextModeEnabled()) {
        document.root = readCanonical(device, makeRoot, report);
        if (document.root != nullptr)
            return document;
        device.seek(begin);
    }
    std::unique_ptr<BaseObject> root = makeRoot();
    XmlDataReader reader(&device);
    document.status = reader.read(*root, report);
    if (document.status == 0)
        document.root = std::move(root);
    else
        document.errorString = reader.errorString();
    return document;
}

std::unique_ptr<BaseObject> treeOf(const LightDocument& document, const MakeRoot& makeRoot,
                                   const ProgressFunction& progress)
{
    const LightNodes& nodes = document.nodes();
    if (!nodes.isPlain() || nodes.root() == 0)
        return nullptr;
    LightDocumentTokens tokens(nodes, progress);
    std::unique_ptr<BaseObject> root = makeRoot();
    if (!tokens.isNamed(root->getMeta().name))
        return nullptr;
    const int status = XmlTreeBuilder<LightDocumentTokens>(tokens).read(*root);
    return status == 0 ? std::move(root) : nullptr;
}

} // namespace Orv::Data
