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

template class ManipulatorAttribute<Data::UInt>;
template class ManipulatorAttribute<bool>;
template class ManipulatorAttribute<Data::Text>;
template class ManipulatorAttribute<float>;
template class ManipulatorAttribute<Data::Float1>;
template class ManipulatorAttribute<Data::Float2>;
template class ManipulatorAttribute<Data::Float3>;
template class ManipulatorAttribute<Data::Float4>;
template class ManipulatorAttribute<Data::Int1>;
template class ManipulatorAttribute<Data::Int2>;
template class ManipulatorAttribute<Data::Int3>;
template class ManipulatorAttribute<Data::Int4>;

} // namespace Orv::Core
