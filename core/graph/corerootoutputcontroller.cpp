#include "ksx/core/rootoutputcontroller.h"

#include "data/content/graphmanipulators.h"
#include "ksx/core/edit.h"

namespace Ksx::Core {

namespace {

using Data::Content::RootOutput;
using Orv::Core::ManipulatorStruct;
using Orv::Data::DataPointerBoxMasterKey;

bool applyFormat(ManipulatorStruct<RootOutput> output, const DataPointerBoxMasterKey&,
                 std::uint32_t format)
{
    output.format().value().set(format);
    return true;
}

bool applyMipmaps(ManipulatorStruct<RootOutput> output, const DataPointerBoxMasterKey&,
                  std::uint32_t mipmaps)
{
    output.mipmaps().value().set(mipmaps);
    return true;
}

} // namespace

RootOutputController::RootOutputController(const RootOutput& output,
                                           const Data::Content::Graph& graph)
    : m_output(&output), m_graph(&graph)
{}

RootOutputController::~RootOutputController() = default;

const Data::Content::RootOutput* RootOutputController::rootOutput() const
{
    return m_output.get();
}

const Data::Content::Graph* RootOutputController::graph() const
{
    return m_graph.get();
}

Uid RootOutputController::outputUid() const
{
    return m_output ? m_output->output().get() : NoUid;
}

std::uint32_t RootOutputController::format() const
{
    return m_output ? m_output->format().value().get() : 0;
}

std::uint32_t RootOutputController::mipmaps() const
{
    return m_output ? m_output->mipmaps().value().get() : 0;
}

bool RootOutputController::setFormat(std::uint32_t format)
{
    return runEdit(m_output, format, &applyFormat,
                   QStringLiteral("Debug: set format of root output"))
        .has_value();
}

bool RootOutputController::setMipmaps(std::uint32_t mipmaps)
{
    return runEdit(m_output, mipmaps, &applyMipmaps,
                   QStringLiteral("Debug: set mipmaps level of root output"))
        .has_value();
}

} // namespace Ksx::Core
