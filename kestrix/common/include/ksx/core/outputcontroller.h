// One output of a graph.
#pragma once

#include "data/datapointerbox.h"
#include "ksx/core/follow.h"
#include "ksx/core/graphinterface.h"
#include "ksx/core/lazysignal.h"
#include "ksx/core/uidsource.h"
#include <string>
#include <vector>

namespace Ksx::Core {

// Owned by the controller of the graph. Texts are those of the document, in its 8-bit form. Once
// the output has died all of them are empty.
class OutputController
{
public:
    explicit OutputController(const Data::Content::GraphOutput& output);
    OutputController(const OutputController&) = delete;
    OutputController& operator=(const OutputController&) = delete;
    virtual ~OutputController();

    // Null once it has died.
    const Data::Content::GraphOutput* output() const;
    Uid uid() const; // NoUid once the output has died
    const std::string& identifier() const;
    const std::string& label() const;
    std::vector<InterfaceUsage> usages() const; // in the order of the document

    LazySignal<> identifierChanged;
    LazySignal<> labelChanged;
    LazySignal<> usagesChanged;

private:
    Orv::Data::DataPointerBox<Data::Content::GraphOutput> m_output;
    Follow<&OutputController::identifierChanged> m_identifierListener{*this};
    Follow<&OutputController::labelChanged> m_labelListener{*this};
    Follow<&OutputController::usagesChanged, ListChanges> m_usagesListener{*this};
};

} // namespace Ksx::Core
