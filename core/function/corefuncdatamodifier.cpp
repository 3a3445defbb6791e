#include "function/funcdatamodifier.h"

#include "content/constantvalue.h"
#include "content/functionnode.h"
#include "data/content/functionmanipulators.h"
#include "data/desc/function.h"
#include "data/desc/valuetype.h"
#include "ksx/core/edit.h"
#include <QCoreApplication>
#include <type_traits>

namespace Ksx::Core {

namespace {

namespace ValueType = Data::Desc::ValueType;
using Data::Content::FuncData;
using Data::Desc::FunctionData;
using Orv::Core::ManipulatorStruct;
using Orv::Data::DataPointerBox;
using Orv::Data::DataPointerBoxMasterKey;

struct StoreInfo
{
    unsigned type = 0;
    boost::any value; // of the shape of that type
};

bool applyStore(ManipulatorStruct<FuncData> item, const DataPointerBoxMasterKey&,
                const StoreInfo& info)
{
    item.constantValue().set(makeConstant(info.type, info.value));
    return true;
}

// The value as a T; none for another shape.
template <class T>
std::optional<T> valueIn(const boost::any& value)
{
    if (const T* typed = boost::any_cast<T>(&value))
        return *typed;
    if constexpr (std::is_same_v<T, Orv::Data::Int1>)
        if (const auto* number = boost::any_cast<Orv::Data::UInt>(&value))
            return T{{static_cast<int>(*number)}};
    if constexpr (std::is_same_v<T, Orv::Data::Float1>)
        if (const auto* number = boost::any_cast<float>(&value))
            return T{{*number}};
    return std::nullopt;
}

} // namespace

BaseFuncDataModifier::BaseFuncDataModifier(const List& list, const FunctionData& description)
    : m_list(&list), m_description(&description)
{}

BaseFuncDataModifier::~BaseFuncDataModifier() = default;

boost::any BaseFuncDataModifier::value() const
{
    const FuncData* item = m_list ? functionDataIn(*m_list) : nullptr;
    return item != nullptr ? valueAs(m_description->type, item->constantValue().get())
                           : boost::any();
}

bool BaseFuncDataModifier::store(const boost::any& value)
{
    if (!isStorable(value))
        return false;
    const DataPointerBox<FuncData> item(m_list ? functionDataIn(*m_list) : nullptr);
    return runEdit(item, StoreInfo{m_description->type, value}, &applyStore, history()).has_value();
}

QString BaseFuncDataModifier::history() const
{
    // The context is not the name of this class, and translations are kept under it.
    return historyText("Ksx::Editor::Core::FuncDataModifier",
                       "CHANGE_THE_FUNCDATA_VALUE_%1_HISTORY_DESC")
        .arg(QCoreApplication::translate("Ksx::Data::Desc::Functions", m_description->key.c_str()));
}

template <class T>
bool FuncDataModifier<T>::setValue(const boost::any& value)
{
    const std::optional<T> typed = valueIn<T>(value);
    return typed && this->store(*typed);
}

namespace {

struct ModifierRow
{
    unsigned type;
    std::unique_ptr<BaseFuncDataModifier> (*make)(const BaseFuncDataModifier::List&,
                                                  const FunctionData&);
};

template <class T>
std::unique_ptr<BaseFuncDataModifier> make(const BaseFuncDataModifier::List& list,
                                           const FunctionData& description)
{
    return std::make_unique<FuncDataModifier<T>>(list, description);
}

constexpr ModifierRow Modifiers[] = {
#define VALUE_TYPE(name, bit, value, ...) {ValueType::name, &make<Orv::Data::value>},
#include "data/desc/valuetypes.inc"
};

} // namespace

std::unique_ptr<BaseFuncDataModifier> makeFuncDataModifier(const BaseFuncDataModifier::List& list,
                                                           const FunctionData& description)
{
    for (const ModifierRow& row : Modifiers)
        if (row.type == description.type)
            return row.make(list, description);
    return nullptr;
}

const FuncData* functionDataIn(const BaseFuncDataModifier::List& list)
{
    for (const FuncData& item : list)
        if (item.name().get() == FunctionDataName)
            return &item;
    return nullptr;
}

} // namespace Ksx::Core
