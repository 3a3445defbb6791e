// From a compiled assembly and its description to the objects of a package.
#pragma once

#include "core/messagenode.h"
#include <QByteArray>
#include <QDomDocument>
#include <QString>
#include <memory>
#include <string>
#include <vector>

class QDomElement;

namespace Ksx::Data::Content {
class Graph;
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

class OBLASMGraphPlaces;

// The begin of a binary body, of which nothing more is read, and its description.
struct OBLASMAssembly
{
    // Bytes of a body that the validity test looks at.
    static constexpr int HeaderSize = 16;

    QByteArray header;
    QDomDocument description;

    // Do the two belong together? The header has the magic "OLAM" and the uid that the description
    // names.
    bool isValid() const;
};

// What a description tells, apart from any package.
struct OBLASMContent
{
    struct PlacedGraph
    {
        QString pkgUrl; // where the graph belongs
        std::unique_ptr<Data::Content::Graph> graph;
    };

    OBLASMContent();
    OBLASMContent(OBLASMContent&&) noexcept;
    OBLASMContent& operator=(OBLASMContent&&) noexcept;
    ~OBLASMContent();

    // Moves all of it into the package that `places` are of. False, reported in the log, when a
    // graph belongs into too many groups. `log` may be null.
    bool moveTo(Data::Content::Package& package, OBLASMGraphPlaces& places,
                Orv::Core::MessageNode* log);

    std::string fileUid; // empty while nothing is read
    std::vector<PlacedGraph> graphs;
};

// Makes one graph, with inputs and outputs and without a body, for each graph that the description
// tells of, so that it can be instantiated like one of a source package. Bodies are not read.
class OBLASMDocumentReader
{
public:
    // Both outlive the reader; `log` may be null.
    OBLASMDocumentReader(const OBLASMAssembly& assembly, Orv::Core::MessageNode* log);

    // Adds to a detached package. False on failure, reported in the log; the package is then
    // incomplete.
    bool read(Data::Content::Package& package) const;
    // The same without a package. On failure the last graph is incomplete.
    bool read(OBLASMContent& content) const;

private:
    bool fail(const char* key) const;

    const OBLASMAssembly& m_assembly;
    Orv::Core::MessageNode* m_log;
};

} // namespace Ksx::Core
