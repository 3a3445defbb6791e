#include "core/manipulatorattribute.h"

#include "core/historyscratch.h"
#include "data/changeevent.h"

namespace Orv::Core {

template <class T>
std::unique_ptr<ManipulatorFactoryBase> ManipulatorAttribute<T>::createFactory() const
{
    return std::make_unique<ManipulatorFactory<ManipulatorAttribute>>();
}

template <class T>
void ManipulatorAttribute<T>::set(const T& value)
{
    scratch().addAttribute(*this);
    static_cast<DataType&>(object()).m_value = value;
    notify(Data::ChangeType::Value, {});
}

template <class T>
bool ManipulatorAttribute<T>::setIfChanged(const T& value)
{
    if (get()->get() == value)
        return false;
    set(value);
    return true;
}

template <class T>
boost::any ManipulatorAttribute<T>::getValue() const
{
    return boost::any(get()->get());
}

template <class T>
void ManipulatorAttribute<T>::setFromString(std::string_view text)
{
    set(Data::valueFromString<T>(text));
}

template <class T>
void ManipulatorAttribute<T>::setValue(const boost::any& value)
{
    set(boost::any_cast<const T&>(value));
}

template <class T>
void ManipulatorAttribute<T>::resetToDefault()
{
    set(get()->getDefaultValue());
}

#define ATTRIBUTE_TYPE(type) template class ManipulatorAttribute<type>;
#include "data/attributetypes.inc"

} // namespace Orv::Core
