// The options of a graph: free pairs of a name and a value.
#pragma once

#include "data/datapointerbox.h"
#include "ksx/core/follow.h"
#include "ksx/core/lazysignal.h"

namespace Ksx::Data::Content {
class Options;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// Tells of changes and keeps the list as it stands. Owned by the controller of the graph.
class OptionsController
{
public:
    explicit OptionsController(const Data::Content::Options& options);
    OptionsController(const OptionsController&) = delete;
    OptionsController& operator=(const OptionsController&) = delete;
    virtual ~OptionsController();

    // Null once the list has died.
    const Data::Content::Options* options() const;

    LazySignal<> changed; // an option was added, removed, moved or edited

private:
    Orv::Data::DataPointerBox<Data::Content::Options> m_options;
    Follow<&OptionsController::changed, ListChanges> m_listener{*this};
};

} // namespace Ksx::Core
