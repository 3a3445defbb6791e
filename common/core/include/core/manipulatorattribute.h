// Writes the leaf values of a document.
#pragma once

#include "core/manipulatorbase.h"
#include "data/attribute.h"
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
    std::unique_ptr<ManipulatorFactoryBase> createFactory() const override;
    const DataType* get() const { return static_cast<const DataType*>(getData()); }

    // Recorded and notified even when `value` is the present one.
    void set(const T& value);
    // Does nothing, and returns false, when `value` is the present one. A nan is never that.
    bool setIfChanged(const T& value);

    boost::any getValue() const override;
    void setFromString(std::string_view text) override;
    void setValue(const boost::any& value) override;
    void resetToDefault() override;
};

#define ATTRIBUTE_TYPE(type) extern template class ManipulatorAttribute<type>;
#include "data/attributetypes.inc"

} // namespace Orv::Core
