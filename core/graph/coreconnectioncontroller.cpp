#include "ksx/core/connectioncontroller.h"

#include "data/content/connexion.h"
#include "graph/connexionslistener.h"
#include "ksx/core/graphcontroller.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/nodecontroller.h"
#include "ksx/core/outputconnectorcontroller.h"

namespace Ksx::Core {

ConnectionController::ConnectionController(const Data::Content::Connexion& connexion,
                                           NodeController& target)
    : m_connexion(&connexion), m_target(target)
{}

ConnectionController::~ConnectionController()
{
    m_target.graph().stopWaiting(*this);
    detach(nullptr);
}

const Data::Content::Connexion* ConnectionController::connexion() const
{
    return m_connexion.get();
}

void ConnectionController::refresh(Orv::Core::ManipulatorContext* context)
{
    if (!m_connexion)
        return;
    ConnectionDataInfo info{m_connexion->identifier().get(), m_connexion->connRef().value().get(),
                            std::nullopt};
    if (m_target.hasOutputUids())
        info.outputUid = m_connexion->connRefOutput().value().get();
    GraphController& graph = m_target.graph();
    const NodeController* source = graph.nodeByUid(info.nodeUid);
    OutputConnectorController* output =
        source == nullptr ? nullptr : source->outputConnectorByUid(info.outputUid.value_or(0));
    InputConnectorController* input = m_target.inputConnectorByName(info.identifier);
    const bool isResolved = input != nullptr && output != nullptr;
    if (info == m_info && isResolved && input == m_input && output == m_output)
        return;
    graph.stopWaiting(*this);
    detach(context);
    m_info = std::move(info);
    if (!isResolved) {
        graph.waitForNode(*this);
        return;
    }
    m_input = input;
    m_output = output;
    input->attach(*this, m_target.connections().isLast(*this));
    output->attach(*this, false);
    m_target.onInputConnected(*input, *output, context);
    graph.connectionAdded(input, output);
    if (m_target.onInputTypeChanged(*input, *output, context))
        m_target.propagateOutputType(context);
}

void ConnectionController::release(Orv::Core::ManipulatorContext* context)
{
    detach(context);
    m_target.graph().stopWaiting(*this);
    m_target.graph().waitForNode(*this);
}

void ConnectionController::detach(Orv::Core::ManipulatorContext* context)
{
    if (m_input == nullptr)
        return;
    InputConnectorController* const input = std::exchange(m_input, nullptr);
    OutputConnectorController* const output = std::exchange(m_output, nullptr);
    if (m_target.graph().isClosing())
        return; // the connectors have been cleared, and may be gone
    input->detach(*this);
    output->detach(*this);
    m_target.onInputDisconnected(*input, *output, context);
    m_target.graph().connectionRemoved(input, output);
}

} // namespace Ksx::Core
