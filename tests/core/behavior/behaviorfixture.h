// Open packages with all behaviours, for tests that edit them.
#pragma once

#include "core/commanddatamodification.h"
#include "core/commandmanager.h"
#include "core/manipulatorcontext.h"
#include "data/content/functionmanipulators.h"
#include "data/content/graphmanipulators.h"
#include "data/content/layoutmanipulators.h"
#include "data/content/nodemanipulators.h"
#include "data/content/packagemanipulators.h"
#include "data/content/packageslist.h"
#include "data/content/parametermanipulators.h"
#include "data/diagnosticlog.h"
#include "ksx/core/behavior/behaviors.h"
#include "ksx/core/dependenciesdictionary.h"
#include "support/workspace.h"
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace TestSupport {

using namespace Ksx::Data::Content;
using Orv::Core::ManipulatorContext;
using Orv::Core::ManipulatorStruct;

// At the end of each test all of its edits are undone, which must bring back the bytes of the
// packages as they were opened, and redone, which must bring back those of the end.
class BehaviorTest : public testing::Test
{
protected:
    using Lines = std::vector<std::string>;

    BehaviorTest()
    {
        Ksx::Core::Behavior::addBehaviors(*workspace.behaviors(), dictionary);
        workspace.behaviors()->attachTo(workspace.packages().document());
        m_sink = Orv::DiagnosticLog::addSink([this](const Orv::LogRecord& record) {
            log.push_back(std::string(record.source) + ":" + std::to_string(record.line) + ": " +
                          record.text);
        });
    }
    ~BehaviorTest() override { Orv::DiagnosticLog::removeSink(m_sink); }
    void TearDown() override
    {
        EXPECT_TRUE(redo());
        const Lines after = texts();
        EXPECT_TRUE(undo());
        EXPECT_EQ(texts(), m_opened);
        EXPECT_TRUE(redo());
        EXPECT_EQ(texts(), after);
    }

    const Package& open(const PackageText& package, const QString& path = {}, int uid = -1)
    {
        const Package& opened = workspace.open(package, path, uid);
        beginHistory();
        return opened;
    }
    // The package of these objects, which is dependency 100 of itself.
    const Package& openWith(const std::string& content)
    {
        return open(aPackage().dependingOnItself(100).containing(content), "/there/own.obl", 100);
    }
    // What is there now is what undoing has to bring back.
    void beginHistory()
    {
        m_done.clear();
        m_undone.clear();
        m_opened = texts();
    }

    bool edit(const std::function<void(ManipulatorContext&)>& function)
    {
        m_undone.clear();
        m_done.push_back(std::make_shared<Command>(
            [function](ManipulatorContext& context) {
                function(context);
                return true;
            },
            "edit"));
        return workspace.commandManager()->execute(m_done.back());
    }
    bool editGraph(const Graph& graph,
                   const std::function<void(const ManipulatorStruct<Graph>&)>& function)
    {
        return edit([&](ManipulatorContext& context) {
            function(ManipulatorStruct<Graph>(graph, context));
        });
    }
    // All edits, from the last to the first, and those that were undone in the other order.
    bool undo()
    {
        bool isDone = true;
        for (; !m_done.empty(); m_done.pop_back()) {
            isDone = m_done.back()->undo() && isDone;
            m_undone.push_back(m_done.back());
        }
        return isDone;
    }
    bool redo()
    {
        bool isDone = true;
        for (; !m_undone.empty(); m_undone.pop_back()) {
            isDone = m_undone.back()->redo() && isDone;
            m_done.push_back(m_undone.back());
        }
        return isDone;
    }

    Lines texts()
    {
        Lines texts;
        for (const auto& package : workspace.packages().openPackages())
            texts.push_back(xmlOf(*package));
        return texts;
    }

    Ksx::Core::DependenciesDictionary dictionary; // outlives the packages
    Workspace workspace;
    Lines log;

private:
    using Command = Orv::Core::CommandDataModification;

    int m_sink;
    Lines m_opened;
    std::vector<std::shared_ptr<Command>> m_done;
    std::vector<std::shared_ptr<Command>> m_undone;
};

template <class T>
const T& contentAt(const Package& package, std::size_t index)
{
    return dynamic_cast<const T&>(package.content().at(index));
}

// The implementation of a node.
template <class T>
const T& implementationAt(const Graph& graph, std::size_t index)
{
    return dynamic_cast<const T&>(*graph.compNodes().at(index).compImplementation().get());
}

inline std::string aBridging(unsigned uid, const std::string& identifier)
{
    return "<outputBridging><uid v=\"" + std::to_string(uid) + "\"/><identifier v=\"" + identifier +
           "\"/></outputBridging>";
}

inline std::string anInstanceOf(const std::string& path, const std::string& bridgings = {},
                                const std::string& parameters = {})
{
    return "<compInstance><path><value v=\"" + path + "\"/></path>" +
           GraphText::list("parameters", parameters) +
           GraphText::list("outputBridgings", bridgings) + "</compInstance>";
}

inline std::string aCompOutput(unsigned uid, unsigned type)
{
    return "<compOutput><uid v=\"" + std::to_string(uid) + "\"/><comptype><value v=\"" +
           std::to_string(type) + "\"/></comptype></compOutput>";
}

// A node with several outputs, elements of aCompOutput().
inline std::string aNodeWithOutputs(unsigned uid, const std::string& implementation,
                                    const std::string& outputs, const std::string& connexions = {})
{
    return "<compNode><uid v=\"" + std::to_string(uid) + "\"/>" +
           (outputs.empty() ? "" : GraphText::list("compOutputs", outputs)) +
           (connexions.empty() ? "" : GraphText::list("connexions", connexions)) +
           "<compImplementation>" + implementation + "</compImplementation></compNode>";
}

// A function of a package; `value` is what its paramValue holds.
inline std::string aFunction(const std::string& identifier, unsigned type, const std::string& value,
                             const std::string& inputs = {})
{
    return "<function><identifier v=\"" + identifier + "\"/><uid v=\"8\"/>" +
           GraphText::list("paraminputs", inputs) + "<type><value v=\"" + std::to_string(type) +
           "\"/></type><paramValue>" + value + "</paramValue></function>";
}

} // namespace TestSupport
