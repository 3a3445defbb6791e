// Runs the scripts of edits that editscripts.py writes, with the controllers of the library, and prints
// the sum of each result.
//   editscripts FILE PACKAGE FOLDER
#include "core/undostack.h"
#include "data/content/dynamicvalue.h"
#include "data/content/graph.h"
#include "data/content/package.h"
#include "data/content/paraminput.h"
#include "data/desc/descriptiontables.h"
#include "data/desc/filtertable.h"
#include "data/desc/functiontable.h"
#include "data/desc/parameter.h"
#include "data/desc/valuetype.h"
#include "ksx/core/collectgraphs.h"
#include "ksx/core/compfilternodecontroller.h"
#include "ksx/core/compgraphcontroller.h"
#include "ksx/core/compinputnodecontroller.h"
#include "ksx/core/compinstancenodecontroller.h"
#include "ksx/core/compoutputnodecontroller.h"
#include "ksx/core/edit.h"
#include "ksx/core/funcgraphcontroller.h"
#include "ksx/core/funcnodecontroller.h"
#include "ksx/core/graphcontrollerlistener.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/inputscontroller.h"
#include "ksx/core/inputusers.h"
#include "ksx/core/outputconnectorcontroller.h"
#include "ksx/core/outputcontroller.h"
#include "ksx/core/packagecontroller.h"
#include "ksx/core/parameterscontroller.h"
#include "ksx/core/renaming.h"
#include "ksx/core/session.h"
#include "ksx/core/tweakinputcontroller.h"
#include "ksx/core/uidsource.h"
#include <QCryptographicHash>
#include <QFile>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>

using namespace Ksx::Core;
namespace Content = Ksx::Data::Content;
namespace Desc = Ksx::Data::Desc;
namespace ValueType = Ksx::Data::Desc::ValueType;
using Orv::Data::DataPointerBox;

namespace {

const std::vector<const char*> Filters = {"blur",           "blend",  "uniform", "levels",
                                          "transformation", "fxmaps", "normal",  "shuffle"};
const std::vector<const char*> Functions = {
    "const_float1", "const_float4", "add", "mul", "sin", "get_float1", "vector2", "const_int1"};
const std::vector<unsigned> Types = {ValueType::Bool,   ValueType::Int1,   ValueType::Int2,
                                     ValueType::Float1, ValueType::Float2, ValueType::Float4,
                                     ValueType::String};

template <class List>
auto chosen(const List& items, unsigned number)
{
    return items.empty() ? typename List::value_type() : items[number % items.size()];
}

template <class Vector>
boost::any wholeNumbers(unsigned number)
{
    Vector vector;
    for (std::size_t i = 0; i < vector.elements.size(); ++i)
        vector.elements[i] = static_cast<int>((number + i) % 5);
    return vector;
}

template <class Vector>
boost::any fractions(unsigned number)
{
    Vector vector;
    for (std::size_t i = 0; i < vector.elements.size(); ++i)
        vector.elements[i] = static_cast<float>((number + i) % 16) / 4;
    return vector;
}

// A value of a type, made of a number. Empty for types without values.
boost::any valueFor(unsigned type, unsigned number)
{
    switch (type) {
    case ValueType::Bool:
        return number % 2 == 1;
    case ValueType::Int1:
        return wholeNumbers<Orv::Data::Int1>(number);
    case ValueType::Int2:
        return wholeNumbers<Orv::Data::Int2>(number);
    case ValueType::Int3:
        return wholeNumbers<Orv::Data::Int3>(number);
    case ValueType::Int4:
        return wholeNumbers<Orv::Data::Int4>(number);
    case ValueType::Float1:
        return fractions<Orv::Data::Float1>(number);
    case ValueType::Float2:
        return fractions<Orv::Data::Float2>(number);
    case ValueType::Float3:
        return fractions<Orv::Data::Float3>(number);
    case ValueType::Float4:
        return fractions<Orv::Data::Float4>(number);
    case ValueType::Text:
    case ValueType::String:
        return "t" + std::to_string(number % 9);
    default:
        return {};
    }
}

std::string numbered(const char* name, unsigned number)
{
    return name + std::to_string(number);
}

// The run of one script over a package.
class Run
{
public:
    Run(Session& session, const Session::PackageBox& package)
        : m_session(session), m_package(package)
    {}

    void step(const std::string& word, unsigned a, unsigned b, unsigned c)
    {
        m_graph = graphController(chosenGraph(a));
        if (m_graph != nullptr)
            (this->*words().at(word))(b, c);
    }

private:
    using Step = void (Run::*)(unsigned, unsigned);

    static const std::map<std::string, Step>& words()
    {
        static const std::map<std::string, Step> steps = {
            {"add_filter", &Run::addFilter},
            {"add_instance", &Run::addInstance},
            {"add_input_node", &Run::addInputNode},
            {"add_output_node", &Run::addOutputNode},
            {"add_input", &Run::addInput},
            {"connect", &Run::connect},
            {"disconnect", &Run::disconnect},
            {"remove_node", &Run::removeNode},
            {"move", &Run::move},
            {"set_value", &Run::setValue},
            {"set_relative", &Run::setRelative},
            {"link", &Run::link},
            {"make_dynamic", &Run::makeDynamic},
            {"add_function", &Run::addFunction},
            {"connect_function", &Run::connectFunction},
            {"set_function_value", &Run::setFunctionValue},
            {"set_output_node", &Run::setOutputNode},
            {"rename_graph", &Run::renameGraph},
            {"rename_input", &Run::renameInput},
            {"rename_output", &Run::renameOutput},
            {"freeze", &Run::freeze},
            {"set_default", &Run::setDefault},
            {"remove_input", &Run::removeInput},
            {"add_graph", &Run::addGraph},
            {"undo", &Run::undo},
            {"redo", &Run::redo},
        };
        return steps;
    }

    // Only graphs that are worked on get controllers, which make types follow.
    DataPointerBox<Content::Graph> chosenGraph(unsigned number) const
    {
        return chosen(collectGraphs(*m_package), number);
    }
    NodeController* node(unsigned number) const { return chosen(m_graph->nodes(), number); }
    InputController* input(unsigned number) const
    {
        return chosen(m_graph->inputsController()->inputs(), number);
    }
    ParameterController* parameter(unsigned b, unsigned c) const
    {
        auto* const image = dynamic_cast<CompNodeController*>(node(b));
        ParametersController* const parameters =
            image == nullptr ? nullptr : image->parametersController();
        return parameters == nullptr || parameters->count() == 0
                   ? nullptr
                   : &parameters->at(c % parameters->count());
    }
    // The graph that computes a parameter of a node.
    FuncGraphController* value(unsigned number) const
    {
        std::vector<FuncGraphController*> found;
        for (NodeController* each : m_graph->nodes()) {
            auto* const parameters = static_cast<CompNodeController*>(each)->parametersController();
            for (std::size_t i = 0; parameters != nullptr && i < parameters->count(); ++i)
                if (const Content::DynamicValue* computed = parameters->at(i).computedValue())
                    found.push_back(
                        graphController(DataPointerBox<Content::DynamicValue>(computed)));
        }
        return chosen(found, number);
    }
    static FuncNodeController* functionNode(const FuncGraphController* graph, unsigned number)
    {
        return graph == nullptr ? nullptr
                                : static_cast<FuncNodeController*>(chosen(graph->nodes(), number));
    }

    void addFilter(unsigned b, unsigned)
    {
        const auto& filters = Desc::DescriptionTables::instance().filters();
        m_graph->addAtomicFilter(filters.find(chosen(Filters, b))->kind);
    }
    void addInstance(unsigned b, unsigned) { m_graph->addInstanceNode(chosenGraph(b)); }
    void addInputNode(unsigned b, unsigned c)
    {
        std::vector<InterfaceUsage> usages;
        if (b % 2 == 1)
            usages.push_back({"diffuse", "RGBA"});
        m_graph->addInputNode({numbered("in", b % 3), imageType(c), usages});
    }
    void addOutputNode(unsigned b, unsigned c)
    {
        m_graph->addOutputNode({numbered("out", b % 3), imageType(c)});
    }
    static unsigned imageType(unsigned number)
    {
        return number % 2 == 0 ? ValueType::ColorImage : ValueType::GrayscaleImage;
    }
    void addInput(unsigned b, unsigned c)
    {
        m_graph->inputsController()->addTweakInput(chosen(Types, c), numbered("x", b % 3));
    }
    void connect(unsigned b, unsigned c)
    {
        const NodeController* const source = node(b);
        const NodeController* const target = node(c);
        if (source != nullptr && source->outputConnectorCount() > 0 &&
            target->inputConnectorCount() > 0)
            m_graph->connect(*source->outputConnector(b % source->outputConnectorCount()),
                             *target->inputConnector(c % target->inputConnectorCount()),
                             b % 2 == 0);
    }
    void disconnect(unsigned b, unsigned)
    {
        std::vector<std::pair<ConnectorController*, ConnectorController*>> connections;
        for (const NodeController* each : m_graph->nodes())
            for (std::size_t i = 0; i < each->inputConnectorCount(); ++i)
                for (ConnectorController* source : each->inputConnector(i)->targets())
                    connections.emplace_back(source, each->inputConnector(i));
        if (!connections.empty()) {
            const auto [source, target] = connections[b % connections.size()];
            m_graph->disconnect(*source, *target);
        }
    }
    void removeNode(unsigned b, unsigned c)
    {
        if (NodeController* const removed = node(b))
            m_graph->removeNode(*removed, c % 2 == 0);
    }
    void move(unsigned b, unsigned c)
    {
        if (NodeController* const moved = node(b))
            moved->setPosition(QPointF(c % 50, b % 50));
    }
    void setValue(unsigned b, unsigned c)
    {
        ParameterController* const changed = parameter(b, c);
        if (changed == nullptr || changed->modifier() == nullptr)
            return;
        boost::any wanted = valueFor(changed->description().type, b);
        if (const auto* index = boost::any_cast<Orv::Data::Int1>(&wanted))
            wanted = static_cast<Orv::Data::UInt>((*index)[0]); // as parameters have it
        if (!wanted.empty())
            changed->setValue(wanted);
    }
    void setRelative(unsigned b, unsigned c)
    {
        if (ParameterController* const changed = parameter(b, c))
            changed->setRelativeTo(static_cast<InheritanceMethod>(b % 3));
    }
    void link(unsigned b, unsigned c)
    {
        ParameterController* const linked = parameter(b, c);
        const InputController* const read = input(c);
        if (linked != nullptr && read != nullptr)
            linked->linkToInput({read->identifier(), read->type()});
    }
    void makeDynamic(unsigned b, unsigned c)
    {
        if (ParameterController* const changed = parameter(b, c))
            changed->makeDynamic();
    }
    void addFunction(unsigned b, unsigned c)
    {
        if (FuncGraphController* const graph = value(b))
            graph->addAtomicFunction(Desc::DescriptionTables::instance()
                                         .functions()
                                         .find(std::string_view(chosen(Functions, c)))
                                         ->kind);
    }
    void connectFunction(unsigned b, unsigned c)
    {
        FuncGraphController* const graph = value(b);
        const FuncNodeController* const source = functionNode(graph, b);
        const FuncNodeController* const target = functionNode(graph, c);
        if (source != nullptr && source->outputConnectorCount() > 0 &&
            target->inputConnectorCount() > 0)
            graph->connect(*source->outputConnector(0),
                           *target->inputConnector(c % target->inputConnectorCount()), true);
    }
    void setFunctionValue(unsigned b, unsigned c)
    {
        FuncNodeController* const changed = functionNode(value(b), c);
        if (changed != nullptr &&
            changed->functionType() == static_cast<unsigned>(Desc::FunctionsEnum::ConstFloat1))
            changed->setData(Orv::Data::Float1{{static_cast<float>(b % 8) / 4}});
    }
    void setOutputNode(unsigned b, unsigned c)
    {
        FuncGraphController* const graph = value(b);
        if (FuncNodeController* const output = functionNode(graph, c))
            graph->setOutputNode(*output);
    }
    void renameGraph(unsigned b, unsigned)
    {
        renameContent(*m_graph->graph(), numbered("g", b % 4));
    }
    void renameInput(unsigned b, unsigned c)
    {
        if (const InputController* const renamed = input(b))
            Ksx::Core::renameInput(*renamed, numbered("x", c % 4));
    }
    void renameOutput(unsigned b, unsigned c)
    {
        if (const OutputController* const renamed = chosen(m_graph->outputs(), b))
            Ksx::Core::renameOutput(*renamed, numbered("out", c % 4));
    }
    void freeze(unsigned b, unsigned)
    {
        if (InputController* const frozen = input(b)) {
            const Transaction transaction(QStringLiteral("freeze"));
            switchToConstant(*m_graph->inputsController(), *frozen, frozen->defaultValue());
        }
    }
    void setDefault(unsigned b, unsigned c)
    {
        InputController* const changed = input(b);
        const boost::any wanted = changed == nullptr ? boost::any() : valueFor(changed->type(), c);
        if (!wanted.empty())
            changed->setDefaultValue(wanted);
    }
    void removeInput(unsigned b, unsigned)
    {
        if (InputController* const removed = input(b))
            m_graph->inputsController()->removeInput(*removed);
    }
    void addGraph(unsigned b, unsigned)
    {
        m_session.controller(m_package)->addGraphObject(
            QString::fromStdString(numbered("g", b % 4)));
    }
    void undo(unsigned, unsigned) { m_session.undo(); }
    void redo(unsigned, unsigned) { m_session.redo(); }

    Session& m_session;
    Session::PackageBox m_package;
    CompGraphController* m_graph = nullptr; // of the present step
};

std::string sumOf(const std::string& script, const QString& path, const QString& target)
{
    UidSource::setClock([] { return std::time_t{1000}; });
    UidSource::shared().setCounter(0);
    {
        Session session;
        session.open({path});
        const auto package = session.package(path);
        Run run(session, package);
        std::istringstream lines(script);
        std::string word;
        unsigned numbers[3];
        while (lines >> word >> numbers[0] >> numbers[1] >> numbers[2])
            run.step(word, numbers[0], numbers[1], numbers[2]);
        session.save(package, target);
    }
    QFile file(target);
    QCryptographicHash hash(QCryptographicHash::Md5);
    if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file))
        return "cannot be read";
    return hash.result().toHex().toStdString();
}

std::vector<std::string> scriptsIn(const char* path)
{
    std::vector<std::string> scripts;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);)
        if (line.rfind("script ", 0) == 0)
            scripts.emplace_back();
        else
            scripts.back() += line + '\n';
    return scripts;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 4) {
        std::cerr << "usage: editscripts FILE PACKAGE FOLDER\n";
        return 2;
    }
    const QString target = QString::fromLocal8Bit(argv[3]) + QStringLiteral("/native.obl");
    for (const std::string& script : scriptsIn(argv[1]))
        std::cout << sumOf(script, QString::fromLocal8Bit(argv[2]), target) << '\n';
    return 0;
}
