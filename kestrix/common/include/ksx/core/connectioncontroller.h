// One connection, seen from both of its ends.
#pragma once

#include "data/datapointerbox.h"
#include "ksx/core/uidsource.h"
#include <cstdint>
#include <optional>
#include <string>

namespace Orv::Core {
class ManipulatorContext;
} // namespace Orv::Core

namespace Ksx::Data::Content {
class Connexion;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

class InputConnectorController;
class NodeController;
class OutputConnectorController;

// What a connection says, and the payload of the edit that makes one.
struct ConnectionDataInfo
{
    std::string identifier;       // of the input that is fed
    Uid nodeUid = 0;              // of the feeding node
    std::optional<Uid> outputUid; // of its output; none in graphs whose nodes have but one

    friend bool operator==(const ConnectionDataInfo& a, const ConnectionDataInfo& b)
    {
        return a.identifier == b.identifier && a.nodeUid == b.nodeUid && a.outputUid == b.outputUid;
    }
};

// Made when a connection enters the list of its target node, destroyed when it leaves. As long as
// one of its ends is missing it stays unresolved, without any message, and looks again when a node
// with the uid of its source appears.
class ConnectionController
{
public:
    // Does not look for its ends: see refresh().
    ConnectionController(const Data::Content::Connexion& connexion, NodeController& target);
    ConnectionController(const ConnectionController&) = delete;
    ConnectionController& operator=(const ConnectionController&) = delete;
    virtual ~ConnectionController();

    virtual const ConnectionDataInfo& connectionDataInfo() const { return m_info; }
    virtual bool isImplicit() const { return false; } // no kind of graph has such connections

    const Data::Content::Connexion* connexion() const;
    NodeController& target() const { return m_target; }
    // Both null while it is unresolved.
    InputConnectorController* input() const { return m_input; }
    OutputConnectorController* output() const { return m_output; }

    // Reads the connection anew and connects what it leads to. `context` is that of the change that
    // caused this, null where nothing may be edited: with it, types travel on to the target.
    void refresh(Orv::Core::ManipulatorContext* context);
    // Lets go of the ends, and waits for the source to come back.
    void release(Orv::Core::ManipulatorContext* context);

private:
    friend class GraphController;

    void detach(Orv::Core::ManipulatorContext* context);

    Orv::Data::DataPointerBox<Data::Content::Connexion> m_connexion;
    NodeController& m_target;
    ConnectionDataInfo m_info;
    InputConnectorController* m_input = nullptr;
    OutputConnectorController* m_output = nullptr;
    std::uint64_t m_waitingNumber = 0; // among those that wait for a node; 0 if it does not wait
};

} // namespace Ksx::Core
