// What a node is.
#pragma once

#include "data/content/compexternal.h"
#include "data/content/compexternallink.h"
#include "data/content/compfilter.h"
#include "data/content/compinputbridge.h"
#include "data/content/compinstance.h"
#include "data/content/compoutputbridge.h"
#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

struct CompImplementationMeta_
{
    static constexpr Orv::Data::ObjectMeta record =
        Orv::Data::makeMeta("compImplementation", Required);
};
class CompImplementation
    : public Orv::Data::ChildrenTypesBinder<
          Orv::Data::MetaBinder<Orv::Data::ContainerUnion<BaseObject>, CompImplementationMeta_>,
          CompFilter, CompInstance, CompInputBridge, CompOutputBridge, CompExternal,
          CompExternalLink>
{
public:
    CompImplementation();
    ~CompImplementation() override;
};

} // namespace Ksx::Data::Content
