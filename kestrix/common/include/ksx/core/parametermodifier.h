// Reads and writes one parameter of a node or graph, whether it is stored or at its default.
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
    std::string identifier;
    unsigned type = 0;
};

// Only parameters that differ from their description stand in the list, at most once each: the
// first one of an identifier counts. The stored object is looked up in each call, so nothing here
// has to follow the document. Every edit is one undoable command. Owned by a ParameterController;
// `description` must outlive it. With the list gone, edits are refused.
class BaseParameterModifier
{
public:
    using List = Orv::Data::ContainerList<Data::Content::Parameter>;
    using ListBox = Orv::Data::DataPointerBox<List>;

    // `hasNoInput`: the node has no primary input, so that parameters follow the parent at first.
    BaseParameterModifier(const ListBox& list, const Data::Desc::Parameter& description,
                          bool hasNoInput);
    BaseParameterModifier(const BaseParameterModifier&) = delete;
    BaseParameterModifier& operator=(const BaseParameterModifier&) = delete;
    virtual ~BaseParameterModifier();

    // The effective value: the stored constant or the default. A computed value is not evaluated:
    // the default stands for it.
    virtual boost::any anyValue() const = 0;
    // True if the document changed; false for nan and the infinities, which no file can hold.
    // Throws boost::bad_any_cast for a value of another shape. A computed value is replaced.
    virtual bool setValue(const boost::any& value) = 0;
    // Is this the effective value? False for another shape.
    virtual bool isValue(const boost::any& value) const = 0;

    // The stored object, null while the parameter is at its default.
    const Data::Content::Parameter* stored() const;
    // The effective mode, and that of a parameter that is not stored.
    InheritanceMethod relativeTo() const;
    InheritanceMethod defaultMode() const;
    // Is the value computed by a function graph?
    bool isDynamic() const;

    // True if the document changed. Back at its default mode, a parameter with a plain value goes
    // back to its default value too.
    bool setRelativeTo(InheritanceMethod method);
    // Lets the value be computed by a function graph of one node, which reads an input of the
    // graph. Nothing happens for a type that functions cannot read.
    void linkToInput(const InputReference& input);

protected:
    const Data::Desc::Parameter& description() const { return *m_description; }
    bool hasList() const { return bool(m_list); }

    // Both run one command and answer whether it succeeded.
    bool remove();
    bool store(const boost::any& value, InheritanceMethod method, const char* historyKey);

private:
    // False if what is stored is no constant of the parameter's shape.
    virtual bool hasKnownValue() const = 0;
    QString historyOf(const char* key) const;

    ListBox m_list;
    const Data::Desc::Parameter* m_description;
    bool m_hasNoInput;
};

// T is the shape of the parameter: bool, UInt, Int2 to Int4, Float1 to Float4 or Text.
template <class T>
class ParameterModifier final : public BaseParameterModifier
{
public:
    using BaseParameterModifier::BaseParameterModifier;

    T value() const;
    // The value of a parameter that is not stored, in a given mode.
    T defaultValue(InheritanceMethod method) const;

    boost::any anyValue() const override;
    bool setValue(const boost::any& value) override;
    bool isValue(const boost::any& value) const override;

private:
    bool hasKnownValue() const override;
    // None for what is computed, or stored in another shape.
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

// The modifier for the type of the description; null for types that hold no editable value.
std::unique_ptr<BaseParameterModifier>
makeParameterModifier(const BaseParameterModifier::ListBox& list,
                      const Data::Desc::Parameter& description, bool hasNoInput);

} // namespace Ksx::Core
