#include "programcommand/graphspecializer.h"

#include "console.h"
#include "core/fileplace.h"
#include "core/moduleplace.h"
#include "data/content/graph.h"
#include "data/content/package.h"
#include "data/content/resource.h"
#include "data/desc/filter.h"
#include "data/desc/valuetype.h"
#include "data/latin1.h"
#include "ksx/core/compfilternodecontroller.h"
#include "ksx/core/compgraphcontroller.h"
#include "ksx/core/compinputnodecontroller.h"
#include "ksx/core/compinstancenodecontroller.h"
#include "ksx/core/compoutputnodecontroller.h"
#include "ksx/core/graphcontrollerlistener.h"
#include "ksx/core/imagelistener.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/inputscontroller.h"
#include "ksx/core/objecturl.h"
#include "ksx/core/outputconnectorcontroller.h"
#include "ksx/core/packagecontroller.h"
#include "ksx/core/parametercontroller.h"
#include "ksx/core/resourcelistener.h"
#include "ksx/core/rootoutputcontroller.h"
#include "ksx/core/tweakinputcontroller.h"
#include <QFileInfo>
#include <QSize>
#include <unordered_map>

namespace ProgramCommand {

namespace {

using namespace Ksx::Core;
using Ksx::Data::Desc::FilterKind;
namespace ValueType = Ksx::Data::Desc::ValueType;

// Nodes stand in columns beside the instance, which is at (0, 0), one row below the other.
constexpr double OutputColumn = 156.0;
constexpr double InputColumn = -156.0;
constexpr double RowHeight = 128.0;
constexpr double ColumnWidth = 128.0;

constexpr unsigned BitmapResource = 3;

// The exponent of the smallest power of two that is not below the size.
int exponentFor(int size)
{
    int exponent = 0;
    while ((qint64(1) << exponent) < size)
        ++exponent;
    return exponent;
}

using RootOutputs = std::unordered_map<Uid, const Ksx::Data::Content::RootOutput*>;

// The first one of each output.
RootOutputs rootOutputsOf(const Ksx::Data::Content::Graph& graph)
{
    RootOutputs rootOutputs;
    for (const auto& rootOutput : graph.root().rootOutputs())
        rootOutputs.emplace(rootOutput.output().get(), &rootOutput);
    return rootOutputs;
}

std::vector<InterfaceUsage> usagesOf(const Ksx::Data::Content::GraphOutput& output)
{
    std::vector<InterfaceUsage> usages;
    for (const auto& usage : output.usages())
        usages.push_back({usage.name().get(), usage.components().get()});
    return usages;
}

} // namespace

GraphSpecializer::GraphSpecializer(PackageController& package, const GraphBox& filter)
    : m_package(package), m_filter(filter), m_inputPlace(InputColumn, 0.0)
{}

bool GraphSpecializer::instantiate(const QString& name)
{
    m_graph = m_package.addGraph(name);
    m_instance = m_graph == nullptr ? nullptr : m_graph->addInstanceNode(m_filter);
    if (m_instance == nullptr)
        printError(QStringLiteral("Error! The filter cannot be instantiated"));
    return m_instance != nullptr;
}

bool GraphSpecializer::addOutputs()
{
    const RootOutputs rootOutputs = rootOutputsOf(*m_filter);
    QPointF place(OutputColumn, 0.0);
    for (std::size_t i = 0; i < m_instance->outputConnectorCount(); ++i) {
        OutputConnectorController& source = *m_instance->outputConnector(i);
        const auto* output = m_instance->graphOutput(source);
        if (output == nullptr)
            continue;
        CompOutputNodeController* node = m_graph->addOutputNode(
            {output->identifier().get(), ValueType::ColorImage, usagesOf(*output)});
        if (node == nullptr)
            return false;
        const auto options = rootOutputs.find(output->uid().get());
        RootOutputController* copied = m_graph->rootOutput(node->entry());
        if (options != rootOutputs.end() && copied != nullptr) {
            copied->setFormat(options->second->format().value().get());
            copied->setMipmaps(options->second->mipmaps().value().get());
        }
        node->setPosition(place);
        place.ry() += RowHeight;
        m_graph->connect(source, *node->inputConnector(0), true);
    }
    return true;
}

bool GraphSpecializer::connectImages(const ImageConnections& images)
{
    for (auto image = images.begin(); image != images.end(); ++image)
        if (!connectImage(image.key(), image.value()))
            return false;
    return true;
}

bool GraphSpecializer::connectImage(const QString& input, const ImageConnection& image)
{
    if (image.path.isEmpty()) {
        printError(QStringLiteral("Image \"%1\" has not a file path specified").arg(input));
        return true;
    }
    ResourceListener* resource = importImage(image);
    if (resource == nullptr)
        return false;
    InputConnectorController* target = findInput(input);
    if (target == nullptr) {
        printError(QStringLiteral("Error! Input name not found"));
        return false;
    }
    const QPointF place = nextInputPlace();
    CompFilterNodeController& bitmap = *m_graph->addAtomicFilter(FilterKind::Bitmap);
    const std::string parameter =
        CompFilterNodeController::resourceParameterOf(bitmap.filter()->filter().get());
    bitmap.parameterController(parameter)->setValue(objectUrl(*resource->resource()));
    bitmap.setPosition(place - QPointF(ColumnWidth, 0.0));
    if (!fitToImage(bitmap, *resource))
        return false;
    CompFilterNodeController& fitting = *m_graph->addAtomicFilter(FilterKind::Transformation);
    fitting.setPosition(place);
    if (!image.tiling)
        fitting.parameterController("tiling")->setValue(0u);
    fitting.parameterController("outputsize")->setRelativeTo(InheritanceMethod::RelativeToInput);
    const bool isGrayscale = target->colorKind() == ColorKind::Grayscale;
    m_graph->connect(*bitmap.outputConnector(0), *fitting.inputConnector(0), true);
    m_graph->connect(*fitting.outputConnector(0), *target, true);
    if (isGrayscale)
        bitmap.parameterController("colorswitch")->setValue(false);
    return true;
}

// Null, after an error line, if there is no such file or the cooked format is unknown.
ResourceListener* GraphSpecializer::importImage(const ImageConnection& image)
{
    const QFileInfo file(Orv::Core::absolutePath(image.path));
    ResourceListener* resource =
        Orv::Core::exists(image.path)
            ? m_package.addLinkedResource(BitmapResource, file.suffix().toUpper(), file.baseName(),
                                          file.filePath())
            : nullptr;
    if (resource == nullptr || !resource->isReachable()) {
        printError(QStringLiteral("Error! Image cannot be loaded: ") + image.path);
        return nullptr;
    }
    const auto format = cookedFormatNumber(image.format);
    if (!format) {
        printError(QStringLiteral("Error!Cooked image format unknown."));
        return nullptr;
    }
    resource->setCookedFormat(*format);
    resource->setCookedQuality(image.level);
    return resource;
}

// Gives the node the size of its image, whatever the graph's is.
bool GraphSpecializer::fitToImage(CompFilterNodeController& bitmap,
                                  const ResourceListener& resource)
{
    ParameterController& outputSize = *bitmap.parameterController("outputsize");
    outputSize.setRelativeTo(InheritanceMethod::Absolute);
    ImageListener& image = ImageListener::of(*resource.resource());
    const QSize size = image.size();
    image.release(); // only its size is of use, and there may be many
    if (!size.isValid()) {
        printError(QStringLiteral("Error! Image cannot be correctly loaded: ") +
                   resource.filePath());
        if (image.state() == ImageState::NoDecoder)
            printError(QStringLiteral("Error! Program is missing: ") +
                       Orv::Core::modulePlace(QStringLiteral("kestrix-decode")));
        return false;
    }
    Orv::Data::Int2 exponents;
    exponents[0] = exponentFor(size.width());
    exponents[1] = exponentFor(size.height());
    outputSize.setValue(exponents);
    return true;
}

bool GraphSpecializer::connectInputs(const QStringList& names)
{
    for (const QString& name : names) {
        InputConnectorController* target = findInput(name);
        if (target == nullptr) {
            printError(QStringLiteral("Error! Input name not found: ") + name);
            return false;
        }
        const bool isGrayscale = target->colorKind() == ColorKind::Grayscale;
        CompInputNodeController* node =
            m_graph->addInputNode({target->identifier(), isGrayscale ? ValueType::GrayscaleImage
                                                                     : ValueType::ColorImage});
        if (node == nullptr)
            return false;
        node->setPosition(nextInputPlace());
        m_graph->connect(*node->outputConnector(0), *target, true);
    }
    return true;
}

void GraphSpecializer::exposeParameters()
{
    for (const auto& [input, description] : m_instance->valueInputs()) {
        TweakInputController* exposed =
            m_graph->inputsController()->addTweakInput(description->type, std::string());
        if (exposed == nullptr)
            continue;
        exposed->initFromInput(*input);
        if (ParameterController* parameter =
                m_instance->CompNodeController::parameterController(*description))
            parameter->linkToInput({exposed->identifier(), exposed->type()});
    }
}

InputConnectorController* GraphSpecializer::findInput(const QString& name) const
{
    return m_instance->NodeController::inputConnectorByName(Orv::toLatin1(name));
}

QPointF GraphSpecializer::nextInputPlace()
{
    const QPointF place = m_inputPlace;
    m_inputPlace.ry() += RowHeight;
    return place;
}

} // namespace ProgramCommand
