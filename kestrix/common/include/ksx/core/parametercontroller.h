// One parameter of a node or graph.
#pragma once

#include "ksx/core/lazysignal.h"
#include "ksx/core/parametermodifier.h"
#include <memory>
#include <string>

namespace Ksx::Core {

// What a ParameterController tells its subscribers, at the end of the change, be it an edit, an
// undo or a redo. A subscriber must not destroy the controller.
struct ParameterSignals
{
    LazySignal<> valueChanged; // the effective value, or that of the graph to which it is relative
    LazySignal<> relativeToChanged;
    LazySignal<> dynamicChanged; // from a plain to a computed value or back
};

// Shows a parameter whether it is stored in the document or at its default. Owned by a
// ParametersController, which keeps the description alive. Parameters of a type without an editable
// value, such as connections, have a controller too: it refuses all edits.
class ParameterController : public Orv::SecuredObject
{
public:
    using ListBox = BaseParameterModifier::ListBox;

    // `hasNoInput`: the node has no primary input. `inherited` is the list of the graph's own
    // parameters, from which one that is relative to the parent has its value; empty for these.
    ParameterController(const ListBox& list, const Data::Desc::Parameter& description,
                        bool hasNoInput, const ListBox& inherited = ListBox());
    ParameterController(const ParameterController&) = delete;
    ParameterController& operator=(const ParameterController&) = delete;
    ~ParameterController() override;

    const Data::Desc::Parameter& description() const { return *m_description; }
    const std::string& identifier() const;
    // Null for a type without an editable value.
    BaseParameterModifier* modifier() const { return m_modifier.get(); }

    // The effective value, in the shape that Data::Desc::emptyValueOf() has for the type; empty
    // without a modifier. For a computed value it is the default.
    boost::any value() const;
    InheritanceMethod relativeTo() const;
    bool isDynamic() const;
    // The object in the document: null at the default, and without a modifier.
    const Data::Content::Parameter* stored() const;

    // True if the document changed; false too without a modifier, and for nan and the infinities.
    // Throws boost::bad_any_cast for a value of another shape than value() has.
    bool setValue(const boost::any& value);
    bool setRelativeTo(InheritanceMethod method);
    // Lets the value be read from an input of the graph; see BaseParameterModifier::linkToInput().
    void linkToInput(const InputReference& input);

    // Made at the first call, from which on the controller follows its list.
    ParameterSignals& changes();

    // For the owner: the parameter of this identifier is described anew.
    void setDescription(const Data::Desc::Parameter& description, bool hasNoInput);

private:
    class Watch;

    // Returns what the graph's own parameter is. Returns null where nothing is inherited.
    std::unique_ptr<BaseParameterModifier> inheritedModifier() const;

    ListBox m_list;
    ListBox m_inherited;
    const Data::Desc::Parameter* m_description;
    std::unique_ptr<BaseParameterModifier> m_modifier;
    std::unique_ptr<Watch> m_watch; // null without subscribers
};

} // namespace Ksx::Core
