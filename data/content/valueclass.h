// Declares classes that are an overloadable value under a name of their own.
#pragma once

#include "data/content/valueoverloadable.h"

#define ORV_VALUE_CLASS(name, element, type)                                                       \
    struct name##Meta_                                                                             \
    {                                                                                              \
        static constexpr Orv::Data::ObjectMeta record = Orv::Data::makeMeta(element, Required);    \
    };                                                                                             \
    class name : public Orv::Data::MetaBinder<ValueOverloadable<type>, name##Meta_>                \
    {                                                                                              \
    public:                                                                                        \
        name();                                                                                    \
        ~name() override;                                                                          \
    };
