// The controller of the options of a graph, which are free pairs of a name and a value.
#pragma once

#include "data/datapointerbox.h"
#include "ksx/core/follow.h"
#include "ksx/core/lazysignal.h"

namespace Ksx::Data::Content {
class Options;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// Sends a signal when the options of a graph change. It edits nothing: read the list in the
// document. An option is a free pair of a name and a value; the library reads none of them.
// CompGraphController owns the controller. Main thread.
class OptionsController
{
public:
    // For CompGraphController. `options` is part of a document.
    explicit OptionsController(const Data::Content::Options& options);
    OptionsController(const OptionsController&) = delete;
    OptionsController& operator=(const OptionsController&) = delete;
    virtual ~OptionsController();

    // Returns the options in the document. Returns null once they have died.
    const Data::Content::Options* options() const;

    // Sent when an option was added, removed, moved or edited, by an edit, an undo or a redo.
    LazySignal<> changed;

private:
    Orv::Data::DataPointerBox<Data::Content::Options> m_options;
    Follow<&OptionsController::changed, ListChanges> m_listener{*this};
};

} // namespace Ksx::Core
