// The controller of a package: lists its graphs, adds graphs and resources.
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

// Edits an open package. Get it from PackageListener::of(package).controller(). It lives as long as
// somebody keeps that pointer. Once the package has died, queries return null or nothing and edits
// are refused. Edits are also refused while the package is not attached to a document. Main thread.
class PackageController
{
public:
    // The payload of the edit that adds a graph.
    struct AddGraphCommandParameters
    {
        // The identifier of the graph.
        QString identifier;
        // The new graph. Empty until the edit has run.
        Orv::Data::DataPointerBox<Data::Content::Graph> graph;
        // The place in the content of the package, or EndOfContent.
        std::uint32_t index;
    };
    // The payload of the edit that adds a resource.
    struct AddResourceCommandParameters
    {
        // The identifier of the resource.
        QString identifier;
        // The path of its file, stored as it is given.
        QString filePath;
        // The time at which the file was written last, in ISO form. Empty for a missing file.
        QString lastModification;

        // The MD5 sum of the content of the file, in hexadecimal. "0" for a file that is empty or
        // cannot be read.
        QString checksum;
        // The number of the kind of resource.
        std::uint32_t type;
        // The name of the file format.
        QString format;
        // The new resource. Empty until the edit has run.
        Orv::Data::DataPointerBox<Data::Content::Resource> resource;
        // The place in the content of the package, or EndOfContent.
        std::uint32_t index;
    };

    // For PackageListener. The package may die first.
    explicit PackageController(const Data::Content::Package& package);
    PackageController(const PackageController&) = delete;
    PackageController& operator=(const PackageController&) = delete;
    virtual ~PackageController();

    // Returns the package. Returns null once it has died.
    const Data::Content::Package* package() const;
    // Returns the identifier of the package. Returns an empty text once the package has died.
    QString identifier() const;

    // Adds an empty graph with a new uid to the package. The identifier is brought into legal form
    // and gets a number if it is taken. A text of which nothing is legal gives the default. `index`
    // is the place in the content. This is one undoable command.
    //
    // Returns the controller of the graph, which the graph owns. Returns null if the edit was
    // refused or a subscriber has removed the graph again.
    CompGraphController* addGraph(const QString& identifier, std::uint32_t index = EndOfContent);

    // Does the same without making a controller, which takes a walk over the graph. Returns an
    // empty box where addGraph() returns null.
    Orv::Data::DataPointerBox<Data::Content::Graph>
    addGraphObject(const QString& identifier, std::uint32_t index = EndOfContent);

    // Adds a resource with a new uid that is the file at `filePath`. The path is stored as it is
    // given; use an absolute path, since the writer makes it relative. The identifier is made as in
    // addGraph(). This is one undoable command.
    //
    // The file is read once, for its checksum. A file that cannot be read gives the checksum "0"; a
    // missing file gives no time either. Returns the controller of the resource, which the resource
    // owns. Returns null if the edit was refused or a subscriber has removed the resource again.
    ResourceListener* addLinkedResource(std::uint32_t type, const QString& format,
                                        const QString& identifier, const QString& filePath,
                                        std::uint32_t index = EndOfContent);

    // Returns the graphs of the package. See Ksx::Core::collectGraphs().
    std::vector<Orv::Data::DataPointerBox<Data::Content::Graph>>
    collectGraphs(int depth = AllDepths) const;

private:
    QString uniqueName(const QString& identifier, const char* defaultKey) const;

    Orv::Data::DataPointerBox<Data::Content::Package> m_package;
};

} // namespace Ksx::Core
