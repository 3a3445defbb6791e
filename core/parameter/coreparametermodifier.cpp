#include "ksx/core/parametermodifier.h"

#include "content/constantvalue.h"
#include "content/functionnode.h"
#include "data/content/dynamicvalue.h"
#include "data/content/functionmanipulators.h"
#include "data/content/parametermanipulators.h"
#include "data/desc/descriptiontables.h"
#include "data/desc/functiontable.h"
#include "data/desc/parameter.h"
#include "data/desc/valuetype.h"
#include "editing/dictionary.h"
#include "editing/keyindex.h"
#include "ksx/core/edit.h"
#include "ksx/core/uidsource.h"
#include <QCoreApplication>
#include <type_traits>
#include <utility>

namespace Ksx::Core {

namespace {

namespace Content = Data::Content;
namespace Desc = Data::Desc;
using Orv::Core::ManipulatorList;
using Orv::Core::ManipulatorStruct;
using Orv::Data::DataPointerBoxMasterKey;

constexpr const char* ValueKey = "PARAMETER_%1_VALUE_MODIFICATION_HISTORY_DESC";
constexpr const char* RelativeToKey = "PARAMETER_%1_RELATIVE_TO_MODIFICATION_HISTORY_DESC";

// What stands in `relativeTo` when a file does not state it.
constexpr auto UnstatedMode = static_cast<InheritanceMethod>(0xFFFFFFFFu);

using Parameters = ManipulatorList<Content::Parameter>;
using ParameterEdit = ManipulatorStruct<Content::Parameter>;

// The first parameter of that identifier, null if there is none.
const Content::Parameter* find(const BaseParameterModifier::List& list,
                               const std::string& identifier)
{
    return KeyIndex<Content::Parameter, NameKey>::find(list, identifier);
}

ParameterEdit foundOrAppended(Parameters& list, const std::string& identifier)
{
    if (const Content::Parameter* found = find(*list.get(), identifier))
        return ParameterEdit(*found, list.context());
    auto parameter = std::make_unique<Content::Parameter>();
    parameter->name().assign(identifier);
    list.pushBack(std::move(parameter));
    return list.at(list.get()->size() - 1);
}

// False, and so without effect, when there is no such parameter.
bool applyRemove(Parameters list, const DataPointerBoxMasterKey&, const std::string& identifier)
{
    return list.erase(find(*list.get(), identifier));
}

struct StoreInfo
{
    std::string identifier;
    unsigned type = 0;
    boost::any value; // empty: what is stored stays
    InheritanceMethod method = InheritanceMethod::Absolute;
};

bool applyStore(Parameters list, const DataPointerBoxMasterKey&, const StoreInfo& info)
{
    const ParameterEdit parameter = foundOrAppended(list, info.identifier);
    if (!info.value.empty())
        parameter.paramValue().set(makeParameterConstant(info.type, info.value));
    parameter.relativeTo().set(static_cast<Orv::Data::UInt>(info.method));
    return true;
}

// A function graph of one node that holds a value, and that takes the place of a parameter's value.
struct FunctionInfo
{
    std::string identifier;
    InheritanceMethod method = InheritanceMethod::Absolute;
    const Desc::Function* function = nullptr; // of the tables
    boost::any held;                          // the constant, or the name of the input that is read
};

std::unique_ptr<Content::ParamNode> makeNode(const FunctionInfo& info, Uid uid)
{
    std::unique_ptr<Content::ParamNode> node = makeFunctionNode(*info.function, uid);
    Content::FuncData& data = node->funcDatas().at(0);
    data.constantValue().set(makeConstant(info.function->data->type, info.held));
    return node;
}

bool applyFunction(Parameters list, const DataPointerBoxMasterKey&, const FunctionInfo& info)
{
    const ParameterEdit parameter = foundOrAppended(list, info.identifier);
    parameter.relativeTo().set(static_cast<Orv::Data::UInt>(info.method));
    auto value = parameter.paramValue();
    if (dynamic_cast<const Content::DynamicValue*>(value.get()->get()) == nullptr)
        value.set(std::make_unique<Content::DynamicValue>());
    const auto function = value.child<Content::DynamicValue>();
    auto nodes = function.paramNodes();
    // The uids of the nodes that go are still taken: the dictionary hears of it at the end.
    const auto& taken = DictionaryOf<Content::ParamNode>::of(nodes);
    const Uid uid = UidSource::shared().next([&](Uid used) { return taken.contains(used); });
    nodes.clear();
    nodes.pushBack(makeNode(info, uid));
    auto root = function.rootnode();
    root.valueOverloads().clear();
    root.value().set(uid);
    return true;
}

// Returns a parameter's value in the shape in which function nodes hold it.
boost::any heldValue(const boost::any& value)
{
    const auto* const index = boost::any_cast<Orv::Data::UInt>(&value);
    return index == nullptr ? value : boost::any(Orv::Data::Int1{{static_cast<int>(*index)}});
}

// What a parameter that is relative to another one can begin with: one, in all components.
template <class T>
T one()
{
    if constexpr (std::is_same_v<T, Orv::Data::Text>) {
        return "1";
    } else if constexpr (std::is_arithmetic_v<T>) {
        return T(1);
    } else {
        T vec;
        vec.elements.fill(1);
        return vec;
    }
}

} // namespace

BaseParameterModifier::BaseParameterModifier(const ListBox& list,
                                             const Desc::Parameter& description, bool hasNoInput)
    : m_list(list), m_description(&description), m_hasNoInput(hasNoInput)
{}

BaseParameterModifier::~BaseParameterModifier() = default;

const Content::Parameter* BaseParameterModifier::stored() const
{
    return m_list ? find(*m_list, m_description->identifier) : nullptr;
}

InheritanceMethod BaseParameterModifier::relativeTo() const
{
    const Content::Parameter* parameter = stored();
    if (parameter == nullptr)
        return defaultMode();
    const auto method = static_cast<InheritanceMethod>(parameter->relativeTo().get());
    return method == UnstatedMode ? defaultMode() : method;
}

InheritanceMethod BaseParameterModifier::defaultMode() const
{
    if ((m_description->flags & Desc::ParameterFlag::Inheritable) == 0)
        return InheritanceMethod::Absolute;
    return m_hasNoInput ? InheritanceMethod::RelativeToParent : InheritanceMethod::RelativeToInput;
}

bool BaseParameterModifier::isDynamic() const
{
    const Content::Parameter* parameter = stored();
    return parameter != nullptr &&
           dynamic_cast<const Content::DynamicValue*>(parameter->paramValue().get()) != nullptr;
}

bool BaseParameterModifier::setRelativeTo(InheritanceMethod method)
{
    if (!m_list || method == relativeTo())
        return false;
    if (isDynamic())
        return store({}, method, RelativeToKey);
    // The value goes with the object: a parameter that goes back to the default mode goes back to
    // its default value.
    if (method == defaultMode() && stored() != nullptr)
        return remove();
    return store(hasKnownValue() ? anyValue() : boost::any(), method, RelativeToKey);
}

void BaseParameterModifier::linkToInput(const InputReference& input)
{
    const Desc::FunctionTable& functions = Desc::DescriptionTables::instance().functions();
    if (const Desc::Function* getter = functions.getterOf(Desc::ValueType::plain(input.type)))
        runEdit(m_list,
                FunctionInfo{m_description->identifier, relativeTo(), getter, input.identifier},
                &applyFunction, historyOf(ValueKey));
}

bool BaseParameterModifier::makeDynamic()
{
    const Desc::FunctionTable& functions = Desc::DescriptionTables::instance().functions();
    const Desc::Function* const constant =
        functions.constantOf(Desc::ValueType::plain(m_description->type));
    if (constant == nullptr || !m_list || isDynamic())
        return false;
    return runEdit(m_list,
                   FunctionInfo{m_description->identifier, relativeTo(), constant,
                                heldValue(anyValue())},
                   &applyFunction, historyOf(ValueKey))
        .has_value();
}

bool BaseParameterModifier::remove()
{
    return runEdit(m_list, m_description->identifier, &applyRemove, historyOf(ValueKey))
        .has_value();
}

bool BaseParameterModifier::store(const boost::any& value, InheritanceMethod method,
                                  const char* historyKey)
{
    if (!isStorable(value))
        return false;
    return runEdit(m_list, StoreInfo{m_description->identifier, m_description->type, value, method},
                   &applyStore, historyOf(historyKey))
        .has_value();
}

QString BaseParameterModifier::historyOf(const char* key) const
{
    return historyText("Ksx::Core::ParameterModifier", key)
        .arg(QCoreApplication::translate("Ksx::Data::Desc::Filters",
                                         m_description->nameKey.c_str()));
}

template <class T>
T ParameterModifier<T>::value() const
{
    const std::optional<T> known = knownValue();
    return known ? *known : defaultValue(relativeTo());
}

template <class T>
T ParameterModifier<T>::defaultValue(InheritanceMethod method) const
{
    const unsigned flags = description().flags;
    if (method != InheritanceMethod::Absolute) {
        if ((flags & Desc::ParameterFlag::ZeroWhenRelative) != 0)
            return T{};
        if ((flags & Desc::ParameterFlag::OneWhenRelative) != 0)
            return one<T>();
    }
    if ((flags & Desc::ParameterFlag::DefaultFromEntry) != 0)
        for (const Desc::ValueEntry& entry : description().entries)
            if (entry.kind == Desc::DefaultEntryKind)
                return boost::any_cast<const T&>(entry.value);
    return description().template defaultAs<T>();
}

template <class T>
boost::any ParameterModifier<T>::anyValue() const
{
    return value();
}

template <class T>
bool ParameterModifier<T>::setValue(const boost::any& value)
{
    const T& wanted = boost::any_cast<const T&>(value);
    if (!hasList() || knownValue() == wanted)
        return false;
    const InheritanceMethod method = relativeTo();
    return isDefault(wanted, method) ? remove() : store(value, method, ValueKey);
}

template <class T>
bool ParameterModifier<T>::isValue(const boost::any& value) const
{
    const T* compared = boost::any_cast<T>(&value);
    return compared != nullptr && *compared == this->value();
}

template <class T>
bool ParameterModifier<T>::hasKnownValue() const
{
    return knownValue().has_value();
}

template <class T>
std::optional<T> ParameterModifier<T>::knownValue() const
{
    const Content::Parameter* parameter = stored();
    if (parameter == nullptr)
        return defaultValue(relativeTo());
    const boost::any value = parameterValueAs(description().type, parameter->paramValue().get());
    if (value.empty())
        return std::nullopt;
    return boost::any_cast<T>(value);
}

template <class T>
bool ParameterModifier<T>::isDefault(const T& value, InheritanceMethod method) const
{
    return method == defaultMode() && value == defaultValue(method);
}

template class ParameterModifier<Orv::Data::UInt>;
#define VALUE_TYPE(name, bit, value, ...) template class ParameterModifier<Orv::Data::value>;
#define TEXT_TYPE(...)
#include "data/desc/valuetypes.inc"
template class ParameterModifier<Orv::Data::Text>;

namespace {

using ListBox = BaseParameterModifier::ListBox;

struct ModifierRow
{
    unsigned type;
    std::unique_ptr<BaseParameterModifier> (*make)(const ListBox&, const Desc::Parameter&, bool);
};

template <class T>
std::unique_ptr<BaseParameterModifier> make(const ListBox& list, const Desc::Parameter& description,
                                            bool hasNoInput)
{
    return std::make_unique<ParameterModifier<T>>(list, description, hasNoInput);
}

// Text, of which filters draw images, is not among them: only String is a parameter to be edited. An
// integer by itself is the index of an item.
constexpr ModifierRow Modifiers[] = {
    {Desc::ValueType::Int1, &make<Orv::Data::UInt>},
    {Desc::ValueType::String, &make<Orv::Data::Text>},
#define VALUE_TYPE(name, bit, value, ...) {Desc::ValueType::name, &make<Orv::Data::value>},
#define TEXT_TYPE(...)
#include "data/desc/valuetypes.inc"
};

} // namespace

std::unique_ptr<BaseParameterModifier>
makeParameterModifier(const ListBox& list, const Desc::Parameter& description, bool hasNoInput)
{
    for (const ModifierRow& row : Modifiers)
        if (row.type == Desc::ValueType::plain(description.type))
            return row.make(list, description, hasNoInput);
    return nullptr;
}

} // namespace Ksx::Core
