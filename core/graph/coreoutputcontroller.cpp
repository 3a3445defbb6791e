#include "ksx/core/outputcontroller.h"

#include "data/content/graphoutput.h"
#include "ksx/core/edit.h"

namespace Ksx::Core {

namespace {
const std::string NoText;
} // namespace

OutputController::OutputController(const Data::Content::GraphOutput& output) : m_output(&output)
{
    listenTo(output.identifier(), m_identifierListener);
    listenTo(output.attributes().label(), m_labelListener);
    listenTo(output.usages(), m_usagesListener);
}

OutputController::~OutputController() = default;

const Data::Content::GraphOutput* OutputController::output() const
{
    return m_output.get();
}

Uid OutputController::uid() const
{
    return m_output ? m_output->uid().get() : NoUid;
}

const std::string& OutputController::identifier() const
{
    return m_output ? m_output->identifier().get() : NoText;
}

const std::string& OutputController::label() const
{
    return m_output ? m_output->attributes().label().get() : NoText;
}

std::vector<InterfaceUsage> OutputController::usages() const
{
    std::vector<InterfaceUsage> result;
    if (m_output)
        for (const auto& usage : m_output->usages())
            result.push_back({usage.name().get(), usage.components().get()});
    return result;
}

} // namespace Ksx::Core
