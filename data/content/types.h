// The names in which the member tables of this folder are written.
#pragma once

#include "data/attribute.h"
#include "data/containerstruct.h"
#include "data/objectmeta.h"

namespace Ksx::Data::Content {

using Orv::Data::BaseObject;
using Orv::Data::ContainerStructBase;
using Orv::Data::FilePath;
using Orv::Data::Float1;
using Orv::Data::Float2;
using Orv::Data::Float3;
using Orv::Data::Float4;
using Orv::Data::Int1;
using Orv::Data::Int2;
using Orv::Data::Int3;
using Orv::Data::Int4;
using Orv::Data::Optional;
using Orv::Data::Presentation;
using Orv::Data::Required;
using Orv::Data::Text;
using Orv::Data::UInt;

} // namespace Ksx::Data::Content
