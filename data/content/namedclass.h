// Declares lists, unions and overloadable values under a name of their own, and defines them.
#pragma once

#include "data/content/types.h"
#include "data/declaration.h"

// Constructor and destructor are defined in the source of the family, so that files which only read
// documents stay cheap to compile. The last argument is the base, which names `name##Meta_`.
#define ORV_NAMED_CLASS(name, element, ...)                                                        \
    struct name##Meta_                                                                             \
    {                                                                                              \
        static constexpr Orv::Data::ObjectMeta record = Orv::Data::makeMeta(element, Required);    \
    };                                                                                             \
    class name : public __VA_ARGS__                                                                \
    {                                                                                              \
    public:                                                                                        \
        name();                                                                                    \
        ~name() override;                                                                          \
    };

// A list of items of one class.
#define ORV_LIST_CLASS(name, element, item)                                                        \
    ORV_NAMED_CLASS(name, element,                                                                 \
                    Orv::Data::ChildValueTypeBinder<                                               \
                        Orv::Data::MetaBinder<Orv::Data::ContainerList<item>, name##Meta_>>)

// A union of the classes that follow, in the order in which they are tried.
#define ORV_UNION_CLASS(name, element, ...)                                                        \
    ORV_NAMED_CLASS(name, element,                                                                 \
                    Orv::Data::ChildrenTypesBinder<                                                \
                        Orv::Data::MetaBinder<Orv::Data::ContainerUnion<BaseObject>, name##Meta_>, \
                        __VA_ARGS__>)

// Defines a class of the three kinds.
#define ORV_DEFINE_CLASS(name)                                                                     \
    name::name() = default;                                                                        \
    name::~name() = default;
