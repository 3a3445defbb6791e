// Declares classes that are an overloadable value under a name of their own.
#pragma once

#include "data/content/namedclass.h"
#include "data/content/valueoverloadable.h"

#define ORV_VALUE_CLASS(name, element, type)                                                       \
    ORV_NAMED_CLASS(name, element, Orv::Data::MetaBinder<ValueOverloadable<type>, name##Meta_>)
