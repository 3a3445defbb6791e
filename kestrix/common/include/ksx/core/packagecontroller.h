// Edits of a package: new graphs and resources.
#pragma once

#include "data/datapointerbox.h"
#include "ksx/core/collectgraphs.h"
#include "ksx/core/contentinsertion.h"
#include <QString>
#include <cstdint>
#include <vector>

namespace Ksx::Data::Content {
class Graph;
class Package;
class Resource;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

class CompGraphController;
class ResourceListener;

// Got from PackageListener::of(package).controller(), and alive as long as somebody keeps that
// pointer. Does nothing, and answers null or nothing, once the package has died.
class PackageController
{
public:
    // The payloads of the edits. The boxes are empty until the edit has run.
    struct AddGraphCommandParameters
    {
        QString identifier;
        Orv::Data::DataPointerBox<Data::Content::Graph> graph;
        std::uint32_t index;
    };
    struct AddResourceCommandParameters
    {
        QString identifier;
        QString filePath;
        QString lastModification; // of the file
        QString checksum;         // of its content
        std::uint32_t type;
        QString format;
        Orv::Data::DataPointerBox<Data::Content::Resource> resource;
        std::uint32_t index;
    };

    explicit PackageController(const Data::Content::Package& package);
    PackageController(const PackageController&) = delete;
    PackageController& operator=(const PackageController&) = delete;
    virtual ~PackageController();

    // Null once it has died.
    const Data::Content::Package* package() const;
    QString identifier() const;

    // Adds an empty graph to the package, under a unique identifier near to the given one, or to
    // the default if nothing of that is legal.
    CompGraphController* addGraph(const QString& identifier, std::uint32_t index = EndOfContent);
    // The same without a controller, which takes a walk over the graph.
    Orv::Data::DataPointerBox<Data::Content::Graph>
    addGraphObject(const QString& identifier, std::uint32_t index = EndOfContent);

    // Adds a resource that is the file at a path, which is stored as it is given. A file that
    // cannot be read makes no difference but for its checksum, "0", and the missing time.
    ResourceListener* addLinkedResource(std::uint32_t type, const QString& format,
                                        const QString& identifier, const QString& filePath,
                                        std::uint32_t index = EndOfContent);

    // See Ksx::Core::collectGraphs.
    std::vector<Orv::Data::DataPointerBox<Data::Content::Graph>>
    collectGraphs(int depth = AllDepths) const;

private:
    QString uniqueName(const QString& identifier, const char* defaultKey) const;

    Orv::Data::DataPointerBox<Data::Content::Package> m_package;
};

} // namespace Ksx::Core
