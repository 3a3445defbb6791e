// The controller of the parameters of a node or graph.
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

// Has a row for every parameter that the groups describe, in their order. A row is a
// ParameterController. Connectors of images and FX-maps have no value and no row. Rows are made
// when they are first asked for.
//
// Get it from the parametersController() of a node or graph, which owns it. It may outlive the list
// in the document. Edits are refused then. Main thread.
class ParametersController : public Orv::SecuredObject
{
public:
    using List = BaseParameterModifier::List;
    using Groups = std::vector<Data::Desc::ParameterGroupPointer>;

    // For the controllers of nodes and graphs. `list` holds the stored parameters. `context` is the
    // scope of the node; it is empty for a graph. Without a primary input, inheritable parameters
    // are relative to the parent at first. The groups are shared, and must not change while they
    // are in use here.
    ParametersController(const List& list, DataContext context, Groups groups,
                         bool hasPrimaryInput);
    ParametersController(const ParametersController&) = delete;
    ParametersController& operator=(const ParametersController&) = delete;
    ~ParametersController() override;

    // Returns the scope of the parameters.
    const DataContext& context() const { return m_context; }
    // Returns the groups of descriptions, in the order of the rows.
    const Groups& groups() const { return m_groups; }

    // Returns the first row of an identifier. Returns null if there is none. A row lives as long as
    // this object, or until setDescriptions() has no parameter of its identifier.
    ParameterController* parameter(std::string_view identifier);
    // Returns the row of this very description, by its address. Returns null if there is none.
    ParameterController* parameter(const Data::Desc::Parameter& description);
    // Returns the number of rows, including rows that have not been made yet.
    std::size_t count() const;
    // Returns the row at an index, which must be below count().
    ParameterController& at(std::size_t index);

    // Returns the signal of the parameters of the graph, and makes it at the first call. Rows that
    // are relative to the parent send their own signals as well. Returns null for the parameters of
    // a graph.
    InheritedParamsListener* inherited();

    // For nodes: gives the rows other descriptions. A row whose identifier is still there stays,
    // under its new description. Stored values are left as they are. Ends early if a subscriber
    // destroys this object or calls this function again.
    void setDescriptions(Groups groups, bool hasPrimaryInput);

    // Sent for each parameter that has gone, with its former index, from the last to the first.
    // Sent when all rows have their new descriptions, and before parameterAdded().
    LazySignal<std::size_t>& parameterRemoved() { return m_removed; }
    // Sent for each new parameter, with its index, from the first to the last.
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
