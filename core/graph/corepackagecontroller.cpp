#include "ksx/core/packagecontroller.h"

#include "content/uniqueidentifier.h"
#include "data/content/graph.h"
#include "data/content/packagemanipulators.h"
#include "data/content/resource.h"
#include "data/filename.h"
#include "data/identifiersuite.h"
#include "data/latin1.h"
#include "ksx/core/edit.h"
#include "ksx/core/graphcontrollerlistener.h"
#include "ksx/core/resourcelistener.h"
#include "resource/linkedfile.h"
#include <QCoreApplication>

namespace Ksx::Core {

namespace {

using Data::Content::Graph;
using Data::Content::Package;
using Data::Content::Resource;
using Orv::Core::ManipulatorStruct;
using Orv::Data::DataPointerBox;
using Orv::Data::DataPointerBoxMasterKey;

bool applyAddGraph(ManipulatorStruct<Package> package, const DataPointerBoxMasterKey&,
                   PackageController::AddGraphCommandParameters& added)
{
    auto graph = std::make_unique<Graph>();
    graph->identifier().assign(Orv::toLatin1(added.identifier));
    added.graph.reset(graph.get());
    return insertContent(*package.get(), package.context(), std::move(graph), added.index) !=
           nullptr;
}

bool applyAddResource(ManipulatorStruct<Package> package, const DataPointerBoxMasterKey&,
                      PackageController::AddResourceCommandParameters& added)
{
    auto resource = std::make_unique<Resource>();
    resource->identifier().assign(Orv::toLatin1(added.identifier));
    resource->type().assign(added.type);
    resource->format().assign(Orv::toLatin1(added.format));
    resource->filepath().assign(Orv::toBytes(added.filePath));
    resource->lastModif().assign(Orv::toLatin1(added.lastModification));
    resource->checksum().assign(Orv::toLatin1(added.checksum));
    added.resource.reset(resource.get());
    return insertContent(*package.get(), package.context(), std::move(resource), added.index) !=
           nullptr;
}

QString fromLatin1(const std::string& text)
{
    return QString::fromLatin1(text.data(), static_cast<int>(text.size()));
}

} // namespace

PackageController::PackageController(const Package& package) : m_package(&package) {}

PackageController::~PackageController() = default;

const Data::Content::Package* PackageController::package() const
{
    return m_package.get();
}

QString PackageController::identifier() const
{
    return m_package ? fromLatin1(m_package->identifier().get()) : QString();
}

QString PackageController::uniqueName(const QString& identifier, const char* defaultKey) const
{
    std::string wanted = Orv::toLatin1(identifier);
    if (Orv::DefaultIdentifierPolicy::normalize(wanted).empty())
        wanted =
            Orv::toLatin1(QCoreApplication::translate("Ksx::Data::Desc::Packages", defaultKey));
    return fromLatin1(uniqueIdentifier(*m_package, wanted));
}

DataPointerBox<Graph> PackageController::addGraphObject(const QString& identifier,
                                                        std::uint32_t index)
{
    if (!m_package)
        return {};
    AddGraphCommandParameters added;
    added.identifier = uniqueName(identifier, "DEFAULT_NEW_GRAPH_IDENTIFIER");
    added.index = index;
    const auto result = runEdit(m_package, std::move(added), &applyAddGraph, QString());
    // Who heard of the graph may have taken it away again.
    const bool isThere = result && result->graph && isAttached(*result->graph);
    return isThere ? result->graph : DataPointerBox<Graph>();
}

CompGraphController* PackageController::addGraph(const QString& identifier, std::uint32_t index)
{
    return graphController(addGraphObject(identifier, index));
}

ResourceListener* PackageController::addLinkedResource(std::uint32_t type, const QString& format,
                                                       const QString& identifier,
                                                       const QString& filePath, std::uint32_t index)
{
    if (!m_package)
        return nullptr;
    AddResourceCommandParameters added;
    added.identifier = uniqueName(identifier, "DEFAULT_NEW_RESOURCE_IDENTIFIER");
    added.filePath = filePath;
    added.lastModification = linkedFileTime(filePath);
    added.checksum = linkedFileChecksum(filePath);
    added.type = type;
    added.format = format;
    added.index = index;
    const auto result =
        runEdit(m_package, std::move(added), &applyAddResource,
                historyText("Ksx::Core::PackageController", "ADD_LINKED_RESOURCE_HISTORY_DESC"));
    const bool isThere = result && result->resource && isAttached(*result->resource);
    return isThere ? &ResourceListener::of(*result->resource) : nullptr;
}

std::vector<DataPointerBox<Graph>> PackageController::collectGraphs(int depth) const
{
    return m_package ? Core::collectGraphs(*m_package, depth)
                     : std::vector<DataPointerBox<Graph>>();
}

} // namespace Ksx::Core
