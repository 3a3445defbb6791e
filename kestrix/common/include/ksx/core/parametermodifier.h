// Reads and writes one parameter of a node or graph, whether it is stored or has its default.
#pragma once

#include "data/attribute.h"
#include "data/datapointerbox.h"
#include "ksx/core/inheritancemethod.h"
#include <QString>
#include <boost/any.hpp>
#include <memory>
#include <optional>
#include <string>

namespace Orv::Data {
template <class T>
class ContainerList;
} // namespace Orv::Data

namespace Ksx::Data::Content {
class Parameter;
} // namespace Ksx::Data::Content

namespace Ksx::Data::Desc {
struct Parameter;
} // namespace Ksx::Data::Desc

namespace Ksx::Core {

// An input of the graph, as functions read it.
struct InputReference
{
    // The identifier of the input.
    std::string identifier;
    // The ValueType of the input, which chooses the function that reads it.
    unsigned type = 0;
};

// The list in the document holds only parameters that differ from their description. Each
// identifier counts once: the first stored parameter is the one that is read. Each call looks it
// up, so an object of this class never has to follow the document. Every edit is one undoable
// command.
//
// A ParameterController owns it, until it is described anew. Clients mostly use the functions of
// that class, which do the same. The description must outlive the modifier. If the list has died,
// edits are refused and queries return the defaults. Main thread.
class BaseParameterModifier
{
public:
    using List = Orv::Data::ContainerList<Data::Content::Parameter>;
    using ListBox = Orv::Data::DataPointerBox<List>;

    // For makeParameterModifier(). `hasNoInput` says that the node has no primary input.
    // Inheritable parameters are relative to the parent at first then, and else relative to the
    // input.
    BaseParameterModifier(const ListBox& list, const Data::Desc::Parameter& description,
                          bool hasNoInput);
    BaseParameterModifier(const BaseParameterModifier&) = delete;
    BaseParameterModifier& operator=(const BaseParameterModifier&) = delete;
    virtual ~BaseParameterModifier();

    // Returns the effective value: the stored constant or the default. Returns the default for a
    // computed value and for a stored value of another shape.
    virtual boost::any anyValue() const = 0;

    // Writes a value and replaces a computed one. The default value in the default mode removes the
    // parameter from the document. Returns true if the document changed.
    //
    // Returns false and runs no command for the present value, nan and the infinities. No file can
    // hold the last two. Throws boost::bad_any_cast for another shape.
    virtual bool setValue(const boost::any& value) = 0;
    // Returns whether this is the effective value. Returns false for another shape.
    virtual bool isValue(const boost::any& value) const = 0;

    // Returns the parameter in the document. Returns null while it has its default.
    const Data::Content::Parameter* stored() const;
    // Returns the effective mode: the stored mode or the default mode.
    InheritanceMethod relativeTo() const;

    // Returns the mode of a parameter that is not stored. Absolute, if the parameter cannot be
    // inherited.
    InheritanceMethod defaultMode() const;
    // Returns whether a function graph computes the value.
    bool isDynamic() const;

    // Writes the mode. Back in its default mode, a parameter with a plain value is removed from the
    // document. It has its default value again then. In any other mode the present value stays.
    // Returns true if the document changed. Returns false and runs no command for the present mode.
    bool setRelativeTo(InheritanceMethod method);

    // Makes a function graph of one node compute the value: the node reads an input of the graph.
    // The former value or function graph is lost, and the mode stays. This is one undoable command.
    // Does nothing for a type that functions cannot read. Nothing checks that the graph has the
    // input.
    void linkToInput(const InputReference& input);

    // Makes a function graph of one node compute the value: a constant of the present value. The
    // mode stays. This is one undoable command. Returns false and changes nothing for a computed
    // value and for a type of which functions have no constants.
    bool makeDynamic();

protected:
    // Returns the description.
    const Data::Desc::Parameter& description() const { return *m_description; }
    // Returns false once the list in the document has died.
    bool hasList() const { return bool(m_list); }

    // Removes the stored parameter by one command. Returns false if there is none.
    bool remove();

    // Stores a value and a mode by one command. An empty value leaves the stored value. Returns
    // false for nan and the infinities, and if the edit was refused.
    bool store(const boost::any& value, InheritanceMethod method, const char* historyKey);

private:
    // Returns false if the stored value is no constant of the shape of the parameter.
    virtual bool hasKnownValue() const = 0;
    QString historyOf(const char* key) const;

    ListBox m_list;
    const Data::Desc::Parameter* m_description;
    bool m_hasNoInput;
};

// T is the shape of the parameter: bool, UInt, Int2 to Int4, Float1 to Float4 or Text. UInt is the
// shape of ValueType::Int1, which is the index of an item.
template <class T>
class ParameterModifier final : public BaseParameterModifier
{
public:
    using BaseParameterModifier::BaseParameterModifier;

    // Returns the effective value, as anyValue() does.
    T value() const;

    // Returns the value of a parameter that is not stored, in a mode. Some parameters are zero or
    // one in any mode but Absolute.
    T defaultValue(InheritanceMethod method) const;

    boost::any anyValue() const override;
    bool setValue(const boost::any& value) override;
    bool isValue(const boost::any& value) const override;

private:
    bool hasKnownValue() const override;

    // Returns the effective value. Returns none for a computed value and for a stored value of
    // another shape.
    std::optional<T> knownValue() const;
    bool isDefault(const T& value, InheritanceMethod method) const;
};

extern template class ParameterModifier<bool>;
extern template class ParameterModifier<Orv::Data::UInt>;
extern template class ParameterModifier<Orv::Data::Int2>;
extern template class ParameterModifier<Orv::Data::Int3>;
extern template class ParameterModifier<Orv::Data::Int4>;
extern template class ParameterModifier<Orv::Data::Float1>;
extern template class ParameterModifier<Orv::Data::Float2>;
extern template class ParameterModifier<Orv::Data::Float3>;
extern template class ParameterModifier<Orv::Data::Float4>;
extern template class ParameterModifier<Orv::Data::Text>;

// Returns the modifier for the type of the description. Returns null for types that hold no
// editable value.
std::unique_ptr<BaseParameterModifier>
makeParameterModifier(const BaseParameterModifier::ListBox& list,
                      const Data::Desc::Parameter& description, bool hasNoInput);

} // namespace Ksx::Core
