#include "content/nodekind.h"

namespace Ksx::Core {

using namespace Data::Content;

namespace {

// The declarations of the classes, by kind. To compare them takes a third of the time of a cast.
constexpr const Orv::Data::ObjectMeta* Declarations[] = {
    nullptr,
    &CompFilter::MetaTag::record,
    &CompInstance::MetaTag::record,
    &CompInputBridge::MetaTag::record,
    &CompOutputBridge::MetaTag::record,
    &CompExternal::MetaTag::record,
    &CompExternalLink::MetaTag::record,
};
static_assert(std::size(Declarations) == CompImplementation::childNames().size() + 1,
              "a class of implementations has no kind");

struct ResourceParameter
{
    const char* filter;
    const char* parameter;
};
constexpr ResourceParameter ResourceParameters[] = {
    {"bitmap", "bitmapresourcepath"},
    {"svg", "vectorresourcepath"},
    {"blend", "maskvectorresourcepath"},
};

} // namespace

NodeKind kindOf(const Orv::Data::ObjectMeta& implementation)
{
    std::size_t kind = std::size(Declarations) - 1;
    while (kind != 0 && Declarations[kind] != &implementation)
        --kind;
    return static_cast<NodeKind>(kind);
}

NodeKind kindOf(const CompNode& node)
{
    const Orv::Data::BaseObject* const implementation = node.compImplementation().get();
    return implementation == nullptr ? NodeKind::None : kindOf(implementation->getMeta());
}

const DynamicValue* computedValueOf(const ParamValue& value)
{
    const Orv::Data::BaseObject* const held = value.get();
    const bool isComputed = held != nullptr && &held->getMeta() == &DynamicValue::MetaTag::record;
    return isComputed ? static_cast<const DynamicValue*>(held) : nullptr;
}

const char* resourceParameterOf(const std::string& filter)
{
    for (const ResourceParameter& row : ResourceParameters)
        if (filter == row.filter)
            return row.parameter;
    return "";
}

} // namespace Ksx::Core
