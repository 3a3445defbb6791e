// The controller of an output of a graph.
#pragma once

#include "data/datapointerbox.h"
#include "ksx/core/follow.h"
#include "ksx/core/graphinterface.h"
#include "ksx/core/lazysignal.h"
#include "ksx/core/uidsource.h"
#include <string>
#include <vector>

namespace Ksx::Core {

// Shows a GraphOutput. It edits nothing: CompGraphController adds and removes outputs together with
// their nodes.
//
// The controller of the graph owns it. It dies when the output leaves the list of the graph. An
// undo makes another controller. Main thread.
//
// Texts are in the 8-bit form of the document. References to them hold until the next edit. If the
// output has died already, texts are empty.
class OutputController
{
public:
    // For CompGraphController. `output` is part of a document.
    explicit OutputController(const Data::Content::GraphOutput& output);
    OutputController(const OutputController&) = delete;
    OutputController& operator=(const OutputController&) = delete;
    virtual ~OutputController();

    // Returns the output in the document. Returns null once it has died.
    const Data::Content::GraphOutput* output() const;

    // Returns the uid of the output, which nodes and root outputs name. Returns NoUid once the
    // output has died.
    Uid uid() const;
    // Returns the identifier, by which instances name the output.
    const std::string& identifier() const;
    // Returns the text for users. May be empty.
    const std::string& label() const;
    // Returns the usages, in the order of the document.
    std::vector<InterfaceUsage> usages() const;

    // Sent when the identifier has been written, by an edit, an undo or a redo.
    LazySignal<> identifierChanged;
    // Sent when the label has been written.
    LazySignal<> labelChanged;
    // Sent when a usage was added, removed, moved or edited.
    LazySignal<> usagesChanged;

private:
    Orv::Data::DataPointerBox<Data::Content::GraphOutput> m_output;
    Follow<&OutputController::identifierChanged> m_identifierListener{*this};
    Follow<&OutputController::labelChanged> m_labelListener{*this};
    Follow<&OutputController::usagesChanged, ListChanges> m_usagesListener{*this};
};

} // namespace Ksx::Core
