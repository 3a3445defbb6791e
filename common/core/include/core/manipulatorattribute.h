// Writes the leaf values of a document.
#pragma once

#include "core/historyscratch.h"
#include "core/manipulatorbase.h"
#include "data/attribute.h"
#include "data/changeevent.h"
#include <boost/any.hpp>
#include <string>
#include <string_view>

namespace Orv::Core {

// An attribute whose type is not known.
class ManipulatorAttributeBase : public ManipulatorBase
{
public:
    using ManipulatorBase::ManipulatorBase;
    virtual boost::any getValue() const = 0;
    // Parses as a file's text. Throws boost::bad_lexical_cast before anything is recorded.
    virtual void setFromString(std::string_view text) = 0;
    // `value` holds the attribute's type exactly; throws boost::bad_any_cast otherwise, before
    // anything is recorded.
    virtual void setValue(const boost::any& value) = 0;
    virtual void resetToDefault() = 0;
};

template <class T>
class ManipulatorAttribute final : public ManipulatorAttributeBase
{
public:
    using DataType = Data::Attribute<T>;

    ManipulatorAttribute(const DataType& attribute, ManipulatorContext& context)
        : ManipulatorAttributeBase(attribute, context)
    {}
    std::unique_ptr<ManipulatorFactoryBase> createFactory() const override
    {
        return std::make_unique<ManipulatorFactory<ManipulatorAttribute>>();
    }
    const DataType* get() const { return static_cast<const DataType*>(getData()); }

    // Recorded and notified even when `value` is the present one.
    void set(const T& value)
    {
        context().scratch().addAttribute(*this);
        static_cast<DataType&>(object()).m_value = value;
        notify(Data::ChangeType::Value, {});
    }

    boost::any getValue() const override { return boost::any(get()->get()); }
    void setFromString(std::string_view text) override { set(Data::valueFromString<T>(text)); }
    void setValue(const boost::any& value) override { set(boost::any_cast<const T&>(value)); }
    void resetToDefault() override { set(get()->getDefaultValue()); }
};

} // namespace Orv::Core
