// The controller of a resource, which is a file that a package uses.
#pragma once

#include "core/listenerdeaf.h"
#include "core/regularfile.h"
#include "data/datapointerbox.h"
#include <QByteArray>
#include <QString>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Ksx::Data::Content {
class CompNode;
class Graph;
class Resource;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// Shows a Resource: reads its file, edits how it is cooked, and finds its users. Main thread.
//
// The shadow of the resource owns the listener. It dies with the resource, or at the end of the
// change that takes the resource out of the document. After an undo, the next call of of() makes
// another one.
//
// A resource is read only if it is a file to which the package links. For a resource inside the
// package, the DiagnosticLog gets the report that this is not implemented.
//
// The document holds the path as the file system has it, in bytes. A path in a package that was
// opened is absolute.
class ResourceListener final : public Orv::Core::ListenerDeaf<>
{
public:
    // Returns the listener of a resource that is part of a document. Makes it at the first call.
    static ResourceListener& of(const Data::Content::Resource& resource);

    // For of() alone.
    explicit ResourceListener(const Data::Content::Resource& resource);
    ~ResourceListener() override;
    // Returns true: the shadow deletes the listener.
    bool isOwnedByShadow() const override { return true; }

    // Returns the resource. Returns null once it has died.
    const Data::Content::Resource* resource() const;
    // Returns the path of the linked file. Returns an empty text once the resource has died.
    QString filePath() const;

    // Makes the resource link to another file, whose name of the format is `format`. The path is stored
    // as it is given; use an absolute path. The file is read once, for its checksum; see
    // PackageController::addLinkedResource(). This is one undoable command. Returns false if the
    // resource has died, and for a resource inside the package.
    bool setFile(const QString& filePath, const QString& format);

    // Writes the format in which a compiled package stores the image. This is one undoable command
    // in a transaction. Does nothing once the resource has died.
    void setCookedFormat(std::uint32_t format);

    // Writes the quality in which a compiled package stores the image. This is one undoable command
    // in a transaction. Does nothing once the resource has died, and for a quality that is no
    // finite number.
    void setCookedQuality(float quality);

    // Returns the filter nodes of a graph that use the resource. See resourceUsers().
    std::vector<Orv::Data::DataPointerBox<Data::Content::CompNode>>
    users(const Data::Content::Graph& graph) const;

    // Returns the linked file, open for reading. The caller owns it. Returns null, with a report in
    // the DiagnosticLog, if it cannot be opened or nothing can be read from it. An empty file can
    // be read. Ask hasFailed() of the file after reading.
    std::unique_ptr<Orv::Core::RegularFile> open() const;
    // Returns whether open() returns a file. Opens it to find out.
    bool isReachable() const;
    // Returns all bytes of the linked file. Returns none if it cannot be read to its end.
    std::optional<QByteArray> data() const;

private:
    Orv::Data::DataPointerBox<Data::Content::Resource> m_resource;
};

// Returns a file that a package links to, open for reading. The caller owns it. Returns null for
// anything but a regular file and for a file that cannot be read. Returns null also for a file that
// the kernel makes up while it is read. An empty file can be read. May be called on any thread.
std::unique_ptr<Orv::Core::RegularFile> openLinkedFile(const QString& path);

// Returns the filter nodes of a graph that use the resource at a data path, in document order. They
// show a bitmap or a vector drawing, or mix images by a mask. `url` is a text of objectUrl(). Paths
// are compared as texts. Returns nothing for an empty one.
std::vector<Orv::Data::DataPointerBox<Data::Content::CompNode>>
resourceUsers(const std::string& url, const Data::Content::Graph& graph);

} // namespace Ksx::Core
