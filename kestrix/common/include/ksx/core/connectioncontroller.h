// The controller of one connection between two nodes.
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

// The data of a connection in the document, and the payload of the edit that makes one.
struct ConnectionDataInfo
{
    // The identifier of the input that is fed.
    std::string identifier;
    // The uid of the feeding node.
    Uid nodeUid = 0;
    // The uid of the feeding output. None in graphs whose nodes have one output at most.
    std::optional<Uid> outputUid;

    // Returns whether all three are equal.
    friend bool operator==(const ConnectionDataInfo& a, const ConnectionDataInfo& b)
    {
        return a.identifier == b.identifier && a.nodeUid == b.nodeUid && a.outputUid == b.outputUid;
    }
};

// Follows a Connexion of the document and joins its two ends. It finds the source by uids and the
// input by its identifier. GraphController::connect() makes the connection itself.
//
// It is made when the connection enters the list of its target node, and destroyed when the
// connection leaves it. The target node owns it. Main thread.
//
// While one of its ends is missing, the connection is unresolved. It stays in the document without
// any message. It looks again when a node with the uid of its source appears.
class ConnectionController
{
public:
    // For the target node. Does not look for the ends: see refresh().
    ConnectionController(const Data::Content::Connexion& connexion, NodeController& target);
    ConnectionController(const ConnectionController&) = delete;
    ConnectionController& operator=(const ConnectionController&) = delete;
    virtual ~ConnectionController();

    // Returns the data that the connection had when it was read last.
    virtual const ConnectionDataInfo& connectionDataInfo() const { return m_info; }

    // Returns whether the document does not hold the connection. Returns false: all are in the
    // document.
    virtual bool isImplicit() const { return false; }

    // Returns the connection in the document. Returns null once it has died.
    const Data::Content::Connexion* connexion() const;
    // Returns the node that is fed. It owns the connection.
    NodeController& target() const { return m_target; }
    // Returns the input that is fed. Returns null while the connection is unresolved.
    InputConnectorController* input() const { return m_input; }
    // Returns the output that feeds. Returns null while the connection is unresolved.
    OutputConnectorController* output() const { return m_output; }

    // For nodes: reads the connection anew and joins the ends that it leads to. With a context, the
    // type of the source travels on to the target. `context` is null where nothing may be edited.
    // Sends the signals of the graph if the ends changed.
    void refresh(Orv::Core::ManipulatorContext* context);
    // For nodes: lets go of the ends, and waits for the source to come back.
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
