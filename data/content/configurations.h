// A tree of named configurations; values can be overloaded for some of them.
#pragma once

#include "data/content/types.h"
#include "data/declaration.h"
#include <memory>
#include <string_view>

namespace Ksx::Data::Content {

// Completed behind the class, which holds a list of itself.
struct DelayedConfigurationStub_
{
    static std::unique_ptr<BaseObject> create(std::string_view elementName);
};

#define ORV_CLASS   Configurations
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "configurations"
#define ORV_TABLE   "data/content/configurations.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class Configurations : public ConfigurationsStruct
{
public:
    Configurations();
    ~Configurations() override;
};

} // namespace Ksx::Data::Content
