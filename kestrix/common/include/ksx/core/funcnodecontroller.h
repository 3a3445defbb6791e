// A node of a function graph.
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

// Has the inputs that the function's description lists, and one more of unknown type for each
// identifier that only the node's connections name: so nothing that a file says is lost, whether the
// function is unknown, an input is, or an instance refers to a function that cannot be found (a
// ghost). Such an input goes with its last connection. The output is always one.
class FuncNodeController final : public BaseNodeController
{
public:
    static constexpr unsigned UnknownFunction = ~0u;

    FuncNodeController(const Data::Content::ParamNode& node, FuncGraphController& graph);
    ~FuncNodeController() override;

    // Null once it has died.
    const Data::Content::ParamNode* node() const;
    FuncGraphController& funcGraph() const;
    // That of the table or, for an instance, what is known of the function that it refers to. Null
    // for an unknown function.
    const Data::Desc::Function* description() const { return m_description; }
    // Of FunctionsEnum, or UnknownFunction.
    unsigned functionType() const;
    bool isOutputNode() const;
    // The function that an instance refers to; null for a ghost and for other nodes.
    const Data::Content::Function* referencedFunction() const;

    // What the node holds: its constant, or the name of the variable that it reads or writes; in
    // the shape of its type, and empty if it holds nothing or another shape.
    boost::any dataValue() const;
    // One command. False without one if the node holds nothing or a value of another shape, and for
    // nan and the infinities.
    bool setData(const boost::any& value);

    // The types that an input takes beside the others; of the output, the type that it gives.
    unsigned connectorType(const std::string& identifier) const override;
    // Is the type the generic type of the function, which follows what is connected?
    bool isVariantConnector(const std::string& identifier) const override;
    void appendInputConnectorNames(std::vector<ConnectorEntry>& entries) const override;
    void appendOutputConnectorNames(std::vector<ConnectorEntry>& entries) const override;
    // Not a source of which no type fits the function, beside what its other inputs get.
    bool canConnect(const OutputConnectorController& source,
                    const InputConnectorController& connector) const override;
    Uid uid() const override;
    // As the document says; a set of types while it is open which one of them it is.
    unsigned outputType() const override;
    void onSubGraphChanged(Orv::Core::ManipulatorContext* context) override;
    void onSubGraphLinkChanged(Orv::Core::ManipulatorContext* context) override;
    bool onInputTypeChanged(InputConnectorController& connector,
                            const OutputConnectorController& source,
                            Orv::Core::ManipulatorContext* context) override;
    bool setOutputTypeFromInput(unsigned type, Orv::Core::ManipulatorContext* context) override;
    const Orv::Data::ContainerList<Data::Content::Connexion>* connexions() const override;
    // An input that is not known may be a list.
    bool takesList(const std::string& identifier) const override;

    // For the graph: drops the inputs that it has made the node hold on to.
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
