// What a node is.
#pragma once

#include "data/content/compexternal.h"
#include "data/content/compexternallink.h"
#include "data/content/compfilter.h"
#include "data/content/compinputbridge.h"
#include "data/content/compinstance.h"
#include "data/content/compoutputbridge.h"
#include "data/content/namedclass.h"
#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

ORV_UNION_CLASS(CompImplementation, "compImplementation", CompFilter, CompInstance, CompInputBridge,
                CompOutputBridge, CompExternal, CompExternalLink)

} // namespace Ksx::Data::Content
