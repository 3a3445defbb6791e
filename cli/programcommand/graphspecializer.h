// Builds the graph that the command "specialization" makes of a filter.
#pragma once

#include "data/datapointerbox.h"
#include "programcommand/imageconnection.h"
#include <QPointF>
#include <QStringList>

namespace Ksx::Core {
class CompFilterNodeController;
class CompGraphController;
class CompInstanceNodeController;
class InputConnectorController;
class PackageController;
class ResourceListener;
} // namespace Ksx::Core

namespace Ksx::Data::Content {
class Graph;
} // namespace Ksx::Data::Content

namespace ProgramCommand {

// Steps that fail write their error line and answer false. All edits live in memory: what is half
// done is given up with the process.
class GraphSpecializer
{
public:
    using GraphBox = Orv::Data::DataPointerBox<Ksx::Data::Content::Graph>;

    // `package` is what the graph is added to; `filter` stands in an open package. Both live as
    // long as this.
    GraphSpecializer(Ksx::Core::PackageController& package, const GraphBox& filter);

    // A new graph with an instance of the filter, called `name`, or by default if that is empty.
    // To be called first.
    bool instantiate(const QString& name);
    // An output node for each output of the filter, with its identifier, usages and options.
    bool addOutputs();
    // For each image a resource, a node that shows it and one that fits it to the filter's input.
    bool connectImages(const ImageConnections& images);
    // For each name an input node before that input of the filter.
    bool connectInputs(const QStringList& names);
    // For each value that the filter takes an input of the new graph, to which it is bound.
    void exposeParameters();

private:
    bool connectImage(const QString& input, const ImageConnection& image);
    Ksx::Core::ResourceListener* importImage(const ImageConnection& image);
    bool fitToImage(Ksx::Core::CompFilterNodeController& bitmap,
                    const Ksx::Core::ResourceListener& resource);
    Ksx::Core::InputConnectorController* findInput(const QString& name) const;
    QPointF nextInputPlace();

    Ksx::Core::PackageController& m_package;
    GraphBox m_filter;
    Ksx::Core::CompGraphController* m_graph = nullptr;
    Ksx::Core::CompInstanceNodeController* m_instance = nullptr;
    QPointF m_inputPlace; // of the next node at the left
};

} // namespace ProgramCommand
