// The controller of one parameter of a node or graph.
#pragma once

#include "ksx/core/lazysignal.h"
#include "ksx/core/parametermodifier.h"
#include <memory>
#include <string>

namespace Ksx::Data::Content {
class DynamicValue;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// The signals of a ParameterController. They are sent at the end of a change: an edit, an undo or a
// redo. A subscriber may remove the parameter with its node. The signals that remain are not sent
// then.
struct ParameterSignals
{
    // The effective value has changed. Also sent for a parameter that is relative to the parent,
    // when the parameter of the graph has changed in any way.
    LazySignal<> valueChanged;
    // The effective mode has changed.
    LazySignal<> relativeToChanged;
    // A plain value has become a computed one, or the other way round.
    LazySignal<> dynamicChanged;
};

// Shows and edits a parameter, whether the document stores it or it has its default. The document
// stores only parameters that differ from their description.
//
// A ParametersController owns it, and keeps the description alive. It lives until its node or graph
// is gone or has no parameter of its identifier any more. It holds no value itself: each call looks
// at the document. With the list gone, edits are refused. Main thread.
//
// Parameters of a type without an editable value, for one connections, have a controller too. It
// refuses all edits.
//
//     ParameterController* size = graph.parametersController().parameter("outputsize");
//     size->setValue(Orv::Data::Int2{{10, 10}});
//     size->changes().valueChanged.connect([size] { show(size->value()); });
class ParameterController : public Orv::SecuredObject
{
public:
    using ListBox = BaseParameterModifier::ListBox;

    // For ParametersController. `hasNoInput` says that the node has no primary input. `inherited`
    // is the list of the parameters of the graph. A parameter that is relative to the parent has
    // its value from there. It is empty for the parameters of a graph.
    ParameterController(const ListBox& list, const Data::Desc::Parameter& description,
                        bool hasNoInput, const ListBox& inherited = ListBox());
    ParameterController(const ParameterController&) = delete;
    ParameterController& operator=(const ParameterController&) = delete;
    ~ParameterController() override;

    // Returns the description. It changes when an instance is described anew.
    const Data::Desc::Parameter& description() const { return *m_description; }
    // Returns the identifier of the description.
    const std::string& identifier() const;

    // Returns the object that reads and writes the value. Returns null for a type without an
    // editable value. Holds until the parameter is described anew.
    BaseParameterModifier* modifier() const { return m_modifier.get(); }

    // Returns the effective value: the stored one or the default. For a computed value returns the
    // default. The shape is that of Data::Desc::emptyValueOf() for the type. Returns an empty value
    // without a modifier.
    boost::any value() const;
    // Returns the effective mode. Returns Absolute without a modifier.
    InheritanceMethod relativeTo() const;
    // Returns whether a function graph computes the value.
    bool isDynamic() const;

    // Returns the parameter in the document. Returns null while it has its default, and without a
    // modifier.
    const Data::Content::Parameter* stored() const;

    // Writes a value and drops a function graph that computed it. The default value in the default
    // mode removes the parameter from the document. This is one undoable command.
    //
    // Returns true if the document changed. Returns false and runs no command for the present
    // value, for nan, for the infinities and without a modifier. Throws boost::bad_any_cast for a
    // value of another shape than value() has.
    bool setValue(const boost::any& value);

    // Writes the mode. See BaseParameterModifier::setRelativeTo(). Returns true if the document
    // changed.
    bool setRelativeTo(InheritanceMethod method);
    // Makes the parameter read an input of the graph. See BaseParameterModifier::linkToInput().
    void linkToInput(const InputReference& input);
    // Makes a function graph compute the value. See BaseParameterModifier::makeDynamic(). Returns true
    // if the document changed.
    bool makeDynamic();
    // Returns the function graph that computes the value; see graphController(). Returns null for a
    // plain value.
    const Data::Content::DynamicValue* computedValue() const;

    // Returns the signals. Makes them at the first call, from which on the controller follows its
    // list. They live as long as the controller.
    ParameterSignals& changes();

    // For the owner: gives the parameter of this identifier another description. Sends the signals
    // for all that changes by it.
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
