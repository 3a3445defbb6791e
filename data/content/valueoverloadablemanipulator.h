// Manipulators of overloadable values, for whichever class binds them.
#pragma once

#include "core/manipulatorstruct.h"
#include "data/content/valueoverloadable.h"

template <class T>
class Orv::Core::ManipulatorStruct<Ksx::Data::Content::ValueOverloadable<T>> final
    : public Orv::Core::ManipulatorStructOf<Ksx::Data::Content::ValueOverloadable<T>>
{
public:
    using ManipulatorStructOf<Ksx::Data::Content::ValueOverloadable<T>>::ManipulatorStructOf;
    auto value() const { return this->member(this->get()->value()); }
    auto valueOverloads() const { return this->member(this->get()->valueOverloads()); }
};
