#include "behavior/parameterreference.h"

#include "data/content/parameter.h"

namespace Ksx::Core::Behavior {

using namespace Data::Content;

const std::string* textOf(const Parameter& parameter)
{
    const Orv::Data::BaseObject* const value = parameter.paramValue().get();
    const bool isText =
        value != nullptr && &value->getMeta() == &ConstantValueString::MetaTag::record;
    return isText ? &static_cast<const ConstantValueString*>(value)->value().get() : nullptr;
}

} // namespace Ksx::Core::Behavior
