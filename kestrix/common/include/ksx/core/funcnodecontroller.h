// The controller of a node of a function graph.
#pragma once

#include "ksx/core/basenodecontroller.h"
#include "ksx/core/follow.h"
#include <boost/any.hpp>

namespace Ksx::Data::Content {
class Function;
class ParamNode;
} // namespace Ksx::Data::Content

namespace Ksx::Data::Desc {
struct Function;
} // namespace Ksx::Data::Desc

namespace Ksx::Core {

class BaseFuncDataModifier;
class FuncGraphController;

// Shows a ParamNode. The table of functions describes it. The function that an instance refers to
// describes the instance. For life and thread see NodeController. The node has one output,
// UniqueOutput.
//
// The node has the inputs of its description. It has one more input, of unknown type, for each
// other identifier that one of its connections names. So nothing of a file is lost if the function
// or an input is unknown. The same holds for an instance whose function cannot be found, which is
// called a ghost. An unknown input goes with its last connection.
class FuncNodeController final : public BaseNodeController
{
public:
    // The result of functionType() for a function that the table does not know.
    static constexpr unsigned UnknownFunction = ~0u;

    // For the controller of the graph. `node` is part of the graph.
    FuncNodeController(const Data::Content::ParamNode& node, FuncGraphController& graph);
    ~FuncNodeController() override;

    // Returns the node in the document. Returns null once it has died.
    const Data::Content::ParamNode* node() const;
    // Returns the graph that owns this controller.
    FuncGraphController& funcGraph() const;

    // Returns the description of the function by the table. An instance has a description that the
    // controller makes of the function, and makes anew when the function changes. Returns null for
    // an unknown function.
    const Data::Desc::Function* description() const { return m_description; }

    // Returns the number of the function, one of FunctionsEnum. Returns UnknownFunction for any
    // other.
    unsigned functionType() const;
    // Returns whether the node is the output of its graph.
    bool isOutputNode() const;

    // Returns the function that an instance refers to. Returns null for a ghost and for other
    // nodes.
    const Data::Content::Function* referencedFunction() const;

    // Returns the constant of the node, or the name of the variable that it reads or writes. The
    // shape is that of the type: bool, Int1 to Int4, Float1 to Float4 or std::string. Returns an
    // empty value if the node holds nothing or another shape.
    boost::any dataValue() const;

    // Writes the constant or the name. This is one undoable command, also for the present value. A
    // single number may come by itself or as a vector of one.
    //
    // Returns false and runs no command if the node holds nothing, and for a value of another
    // shape. Returns false also for nan and the infinities.
    bool setData(const boost::any& value);

    // Returns the types that an input takes beside the types that the other inputs get. For
    // UniqueOutput returns outputType(). Returns 0 for an unknown input.
    unsigned connectorType(const std::string& identifier) const override;
    // Returns whether the type is the generic type of the function, which follows the connections.
    bool isVariantConnector(const std::string& identifier) const override;
    // Appends the inputs of the description, then the unknown inputs.
    void appendInputConnectorNames(std::vector<ConnectorEntry>& entries) const override;
    // Appends the output. All nodes have one, also for functions without a value.
    void appendOutputConnectorNames(std::vector<ConnectorEntry>& entries) const override;

    // Also returns false if no type of `source` fits the function, beside the types of its other
    // inputs. An unknown type fits always.
    bool canConnect(const OutputConnectorController& source,
                    const InputConnectorController& connector) const override;
    // Returns the uid of the node. Returns NoUid once the node has died.
    Uid uid() const override;

    // Returns the type that the document has for the output. Returns several types while it is open
    // which of them it is. Returns 0 once the node has died.
    unsigned outputType() const override;
    // Does the same as onSubGraphLinkChanged().
    void onSubGraphChanged(Orv::Core::ManipulatorContext* context) override;
    // Describes an instance anew, with its inputs and connections. Does nothing for other nodes.
    void onSubGraphLinkChanged(Orv::Core::ManipulatorContext* context) override;
    // Gives the output the type that follows from the inputs, if they leave one type alone.
    bool onInputTypeChanged(InputConnectorController& connector,
                            const OutputConnectorController& source,
                            Orv::Core::ManipulatorContext* context) override;
    // Writes the type of the node. Returns true if it was another one.
    bool setOutputTypeFromInput(unsigned type, Orv::Core::ManipulatorContext* context) override;
    // Returns the connections to this node in the document. Returns null once the node has died.
    const Orv::Data::ContainerList<Data::Content::Connexion>* connexions() const override;

    // Returns whether an input takes a list. An unknown input may be a list, so returns true for
    // it.
    bool takesList(const std::string& identifier) const override;

    // For the graph: drops the inputs that the node has kept during an edit of several steps.
    void dropUnusedInputs();

protected:
    const Data::Content::GUILayout* layout() const override;

private:
    struct Instance;

    void describeInstance();
    void describeFunction(const Data::Content::Function& function);
    void describeGhost();
    // False if they stay the same.
    bool updateUnknownInputs();
    void onConnexions(const Orv::Data::DataMessage& message);
    void followConnexions();
    bool acceptsType(const std::string& identifier, unsigned type) const;
    // The type that feeds each input of the description, 0 where it is open.
    std::vector<unsigned> fedTypes() const;

    Orv::Data::DataPointerBox<Data::Content::ParamNode> m_node;
    const Data::Desc::Function* m_description;
    std::unique_ptr<Instance> m_instance;         // null for all other functions
    std::unique_ptr<BaseFuncDataModifier> m_data; // null for a node that holds nothing
    std::vector<std::string> m_unknownInputs;     // that only connections name
    Follow<&FuncNodeController::onConnexions, ListChanges> m_connexionsWatch{*this};
};

} // namespace Ksx::Core
