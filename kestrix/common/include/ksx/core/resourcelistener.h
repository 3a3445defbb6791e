// The controller of a resource, a file that a package uses.
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

// Stands on the shadow of the resource and dies with it. Resources are read only when they are
// files that the package merely links to; for others the log says that this is not implemented.
class ResourceListener final : public Orv::Core::ListenerDeaf<>
{
public:
    // The listener of a resource that stands in a document, made if there is none.
    static ResourceListener& of(const Data::Content::Resource& resource);

    explicit ResourceListener(const Data::Content::Resource& resource); // for of() alone
    ~ResourceListener() override;
    bool isOwnedByShadow() const override { return true; }

    // Null once it has died.
    const Data::Content::Resource* resource() const;
    QString filePath() const;

    // How the image is stored in a compiled package. One transaction each; nothing happens once the
    // resource has died, and with a quality that is no finite number.
    void setCookedFormat(std::uint32_t format);
    void setCookedQuality(float quality);

    // The filter nodes of a graph that show the resource; see resourceUsers().
    std::vector<Orv::Data::DataPointerBox<Data::Content::CompNode>>
    users(const Data::Content::Graph& graph) const;

    // The linked file, open for reading. Null, with a report in the log, if it cannot be opened or
    // nothing can be read from it. An empty file can be read.
    std::unique_ptr<Orv::Core::RegularFile> open() const;
    bool isReachable() const;
    // All bytes of the linked file; none if it cannot be read to its end.
    std::optional<QByteArray> data() const;

private:
    Orv::Data::DataPointerBox<Data::Content::Resource> m_resource;
};

// Returns a file that a package links to, open for reading. Null for anything but a regular file, a
// file that cannot be read, and one that the kernel makes up while it is read. An empty file can be
// read.
std::unique_ptr<Orv::Core::RegularFile> openLinkedFile(const QString& path);

// The filter nodes of a graph whose resource is the one at `url` (see objectUrl), in order: those
// that show a bitmap or a vector drawing, or that mix images by a mask.
std::vector<Orv::Data::DataPointerBox<Data::Content::CompNode>>
resourceUsers(const std::string& url, const Data::Content::Graph& graph);

} // namespace Ksx::Core
