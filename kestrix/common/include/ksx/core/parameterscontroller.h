// The parameters of a node or graph.
#pragma once

#include "data/desc/parametergroup.h"
#include "data/securedobject.h"
#include "ksx/core/datacontext.h"
#include "ksx/core/inheritedparamslistener.h"
#include "ksx/core/parametercontroller.h"
#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace Ksx::Core {

// Has a row for every parameter that the groups describe, in their order and without the
// connectors of images and FX-maps, which have no value. Rows are made when they are first asked
// for. Owned by the controller of the node or graph; may outlive the list, and then refuses edits.
class ParametersController : public Orv::SecuredObject
{
public:
    using List = BaseParameterModifier::List;
    using Groups = std::vector<Data::Desc::ParameterGroupPointer>;

    // Without a primary input, inheritable parameters follow the parent. The groups are shared, and
    // must not change while they are in use here.
    ParametersController(const List& list, DataContext context, Groups groups,
                         bool hasPrimaryInput);
    ParametersController(const ParametersController&) = delete;
    ParametersController& operator=(const ParametersController&) = delete;
    ~ParametersController() override;

    const DataContext& context() const { return m_context; }
    const Groups& groups() const { return m_groups; }

    // The first row of that identifier, or the row of that very description: null if there is none.
    // Rows live as long as this, or until setDescriptions() has no parameter of their identifier.
    ParameterController* parameter(std::string_view identifier);
    ParameterController* parameter(const Data::Desc::Parameter& description);
    // The number of rows, which is not kept, and the row at an index below it.
    std::size_t count() const;
    ParameterController& at(std::size_t index);

    // Tells of changes of the graph's own parameters. Rows that are relative to the parent tell of
    // them too. Made at the first call; null for the parameters of a graph.
    InheritedParamsListener* inherited();

    // Rebuilds the rows in place for a node that is described anew. A row whose identifier is still
    // there stays, under its new description; stored values are left as they are. Ends where who
    // hears of a change takes the parameters away, or describes them anew.
    void setDescriptions(Groups groups, bool hasPrimaryInput);

    // Fired when setDescriptions() is through, with the index of a row: first the parameters that
    // are gone, from the last to the first by their former index, then the new ones, in order. What
    // has stayed is not mentioned.
    LazySignal<std::size_t>& parameterRemoved() { return m_removed; }
    LazySignal<std::size_t>& parameterAdded() { return m_added; }

private:
    using Descriptions = std::vector<const Data::Desc::Parameter*>;
    using Rows = std::vector<std::unique_ptr<ParameterController>>;

    struct RowIndex;

    // The graph's own parameters; null for the parameters of a graph.
    const List* inheritedList() const;
    // Of all rows, in order.
    const Descriptions& descriptions() const;
    Descriptions collectDescriptions() const;
    const RowIndex& rowIndex() const;
    ParameterController& row(std::size_t index, const Data::Desc::Parameter& description);
    template <class Index, class Key>
    ParameterController* rowAt(const Index& rows, const Key& key);

    ParameterController::ListBox m_list;
    DataContext m_context;
    Groups m_groups;
    bool m_hasNoInput;
    std::unique_ptr<InheritedParamsListener> m_inherited; // null until it is asked for
    mutable std::unique_ptr<RowIndex> m_index;            // made at the first question
    Rows m_rows;                     // by index; short, or null, where none was asked for
    unsigned m_descriptionCount = 0; // of the calls of setDescriptions()
    LazySignal<std::size_t> m_removed;
    LazySignal<std::size_t> m_added;
};

} // namespace Ksx::Core
