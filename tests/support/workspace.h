// A process with open packages, in which edits run, are kept and can be undone.
#pragma once

#include "core/commandmanager.h"
#include "core/commandsignals.h"
#include "core/icommand.h"
#include "core/ilibraryservices.h"
#include "data/content/graph.h"
#include "data/content/package.h"
#include "data/content/packageslist.h"
#include "ksx/core/behavior/behaviors.h"
#include "ksx/core/compgraphcontroller.h"
#include "ksx/core/datanotifier.h"
#include "ksx/core/dependenciesdictionary.h"
#include "ksx/core/graphcontrollerlistener.h"
#include "ksx/core/ilibraryservices.h"
#include "ksx/core/packageslistmanager.h"
#include "support/packagetext.h"
#include "support/parameterdocument.h"
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace TestSupport {

class Workspace final : public Orv::Core::ILibraryServices, public Ksx::Core::ILibraryServices
{
public:
    using GraphBox = Orv::Data::DataPointerBox<Ksx::Data::Content::Graph>;

    // Without behaviours, controllers are alone with the document.
    explicit Workspace(bool hasBehaviors = false)
    {
        Orv::setLibraryServices(static_cast<Orv::Core::ILibraryServices*>(this));
        m_packages = std::make_unique<Ksx::Core::PackagesListManager>();
        if (hasBehaviors) {
            Ksx::Core::Behavior::addBehaviors(m_behaviors, m_dependencies);
            m_behaviors.attachTo(m_packages->document());
        }
        m_manager->executed().connect(
            [this](const std::shared_ptr<Orv::Core::ICommand>& command) { keep(command); });
    }
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;
    ~Workspace() override
    {
        m_commands.clear();
        m_packages.reset();
        Orv::setLibraryServices(nullptr);
    }

    // Opens a package as if it were the file at `path`; it is none of the edits.
    const Ksx::Data::Content::Package& open(const PackageText& package, const QString& path = {},
                                            int uid = -1)
    {
        Ksx::Core::PackagesListManager::DependencyEntry entry;
        entry.uid = uid;
        entry.filename = path;
        entry.package = m_packages->keep(packageFrom(package));
        m_packages->finishLoading({entry});
        m_commands.clear();
        m_names.clear();
        return *entry.package;
    }
    Ksx::Core::PackagesListManager& packages() { return *m_packages; }

    // History texts of all commands that succeeded, those that frame groups included.
    const std::vector<std::string>& names() const { return m_names; }
    std::size_t editCount() const { return m_commands.size(); }
    // All edits, from the last to the first, and again from the first.
    bool undoAll()
    {
        bool isDone = true;
        for (auto command = m_commands.rbegin(); command != m_commands.rend(); ++command)
            isDone = (*command)->undo() && isDone;
        return isDone;
    }
    bool redoAll()
    {
        bool isDone = true;
        for (const auto& command : m_commands)
            isDone = command->redo() && isDone;
        return isDone;
    }

    void* reserved0() override { return nullptr; }
    const std::shared_ptr<Orv::Core::CommandManager>* commandManagerHandle() override
    {
        return &m_manager;
    }
    const std::shared_ptr<Orv::Core::CommandManager>& commandManager() override
    {
        return m_manager;
    }
    const std::shared_ptr<void>& spareHandle() override { return m_spare; }
    void* reserved4() override { return nullptr; }
    Ksx::Core::DataNotifier* behaviors() override { return &m_behaviors; }
    Ksx::Core::PackagesListManager* packagesListManager() override { return m_packages.get(); }
    void* reserved2() override { return nullptr; }
    Extensions& extensions() override { return m_extensions; }

private:
    void keep(const std::shared_ptr<Orv::Core::ICommand>& command)
    {
        m_names.push_back(command->getName().toStdString());
        if (auto undoable = std::dynamic_pointer_cast<Orv::Core::IUndoableCommand>(command))
            m_commands.push_back(std::move(undoable));
    }

    std::shared_ptr<Orv::Core::CommandManager> m_manager =
        std::make_shared<Orv::Core::CommandManager>(2);
    std::shared_ptr<void> m_spare;
    Ksx::Core::DependenciesDictionary m_dependencies;
    Ksx::Core::DataNotifier m_behaviors;
    Extensions m_extensions;
    std::unique_ptr<Ksx::Core::PackagesListManager> m_packages;
    std::vector<std::string> m_names;
    std::vector<std::shared_ptr<Orv::Core::IUndoableCommand>> m_commands;
};

// The element of a graph.
struct GraphText
{
    std::string identifier = "g";
    unsigned uid = 4;
    std::string inputs = {};
    std::string outputs = {};
    std::string nodes = {};
    std::string parameters = {};
    std::string rootOutputs = {};
    std::string primaryInput = {};

    static std::string list(const std::string& name, const std::string& items)
    {
        return items.empty() ? "<" + name + "/>" : "<" + name + ">" + items + "</" + name + ">";
    }
    std::string text() const
    {
        return "<graph><identifier v=\"" + identifier + "\"/><uid v=\"" + std::to_string(uid) +
               "\"/>" + (inputs.empty() ? "" : list("paraminputs", inputs)) +
               (primaryInput.empty()
                    ? ""
                    : "<primaryInput><value v=\"" + primaryInput + "\"/></primaryInput>") +
               list("graphOutputs", outputs) + list("compNodes", nodes) +
               list("baseParameters", parameters) + "<content/>" +
               (rootOutputs.empty() ? "<root/>"
                                    : "<root>" + list("rootOutputs", rootOutputs) + "</root>") +
               "</graph>";
    }
};

// The element of a graph's input; the default, where it is not empty, is a constant's element.
inline std::string anInput(const std::string& identifier, unsigned uid, unsigned type,
                           const std::string& defaultValue = {}, const std::string& group = {})
{
    return "<paraminput><identifier v=\"" + identifier + "\"/><uid v=\"" + std::to_string(uid) +
           "\"/><type><value v=\"" + std::to_string(type) + "\"/></type>" +
           (defaultValue.empty() ? "" : "<defaultValue>" + defaultValue + "</defaultValue>") +
           "<defaultWidget><name v=\"\"/><options/></defaultWidget>" +
           (group.empty() ? "" : "<group v=\"" + group + "\"/>") + "</paraminput>";
}

inline std::string anOutput(const std::string& identifier, unsigned uid)
{
    return "<graphoutput><identifier v=\"" + identifier + "\"/><uid v=\"" + std::to_string(uid) +
           "\"/></graphoutput>";
}

inline std::string aRootOutput(unsigned output)
{
    return "<rootOutput><output v=\"" + std::to_string(output) +
           "\"/><format><value v=\"0\"/></format><usertag v=\"\"/></rootOutput>";
}

// The element of a connection to an input.
inline std::string aConnexion(const std::string& identifier, unsigned node, unsigned output)
{
    return "<connexion><identifier v=\"" + identifier + "\"/><connRef><value v=\"" +
           std::to_string(node) + "\"/></connRef><connRefOutput><value v=\"" +
           std::to_string(output) + "\"/></connRefOutput></connexion>";
}

// The element of a node; without a type it has no output.
inline std::string aNode(unsigned uid, const std::string& implementation,
                         const std::string& connexions = {}, unsigned output = 0, unsigned type = 0)
{
    return "<compNode><uid v=\"" + std::to_string(uid) + "\"/>" +
           (output == 0 ? ""
                        : "<compOutputs><compOutput><uid v=\"" + std::to_string(output) +
                              "\"/><comptype><value v=\"" + std::to_string(type) +
                              "\"/></comptype></compOutput></compOutputs>") +
           (connexions.empty() ? "" : "<connexions>" + connexions + "</connexions>") +
           "<compImplementation>" + implementation + "</compImplementation></compNode>";
}

inline std::string aFilter(const std::string& name, const std::string& parameters = {})
{
    return "<compFilter><filter v=\"" + name + "\"/>" + GraphText::list("parameters", parameters) +
           "</compFilter>";
}

inline std::string anInputBridge(unsigned entry)
{
    return "<compInputBridge><entry v=\"" + std::to_string(entry) +
           "\"/><parameters/></compInputBridge>";
}

inline std::string anOutputBridge(unsigned output, unsigned type = 0)
{
    return "<compOutputBridge><output v=\"" + std::to_string(output) + "\"/>" +
           (type == 0 ? "" : "<connectionColorType v=\"" + std::to_string(type) + "\"/>") +
           "</compOutputBridge>";
}

// The graph at a place of a package's content, and its controller.
inline Workspace::GraphBox graphIn(const Ksx::Data::Content::Package& package,
                                   std::size_t index = 0)
{
    return Workspace::GraphBox(
        dynamic_cast<const Ksx::Data::Content::Graph*>(&package.content().at(index)));
}
inline Ksx::Core::CompGraphController& controllerIn(const Ksx::Data::Content::Package& package,
                                                    std::size_t index = 0)
{
    return *Ksx::Core::graphController(graphIn(package, index));
}

} // namespace TestSupport
