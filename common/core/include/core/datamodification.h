// The forward recipe of an edit: a target, a payload and the function that applies it.
#pragma once

#include "core/manipulatorof.h"
#include "core/manipulatorstruct.h"
#include "data/datapointerbox.h"
#include "data/datapointerboxmasterkey.h"
#include <memory>
#include <type_traits>
#include <utility>

namespace Orv::Core {

class ManipulatorContext;

class DataModificationBase
{
public:
    DataModificationBase() = default;
    DataModificationBase(const DataModificationBase&) = delete;
    DataModificationBase& operator=(const DataModificationBase&) = delete;
    virtual ~DataModificationBase() = default;
    // False if the edit was refused; what it has done by then is rolled back.
    virtual bool execute(ManipulatorContext& context, const Data::DataPointerBoxMasterKey& key) = 0;
};

// T is a document class, an Attribute or a ContainerList; Data is the payload, copied in. A
// function that has results writes them into the payload, which the caller reads afterwards.
template <class T, class Data>
class DataModification : public DataModificationBase
{
public:
    using Manipulator = typename ManipulatorOf<T>::type;

    DataModification(const Orv::Data::DataPointerBox<T>& target, Data data)
        : m_target(target), m_data(std::move(data))
    {}
    const Data& data() const { return m_data; }

    // False for a target that has died or does not stand in the live document set.
    bool execute(ManipulatorContext& context,
                 const Orv::Data::DataPointerBoxMasterKey& key) override
    {
        if (!m_target || !Orv::Data::isAttached(*m_target))
            return false;
        return apply(Manipulator(*m_target, context), key, m_data);
    }

protected:
    virtual bool apply(const Manipulator& manipulator,
                       const Orv::Data::DataPointerBoxMasterKey& key, Data& data) = 0;

private:
    Orv::Data::DataPointerBox<T> m_target;
    Data m_data;
};

// `Signature` is bool (Manipulator, const DataPointerBoxMasterKey&, Argument), where Argument can
// be bound to a Data&: to write an edit is to write one free function of that form.
template <class Signature, class Data>
class DataModificationFactory;

template <class Manipulator, class Argument, class Data>
class DataModificationFactory<
    bool(Manipulator, const Orv::Data::DataPointerBoxMasterKey&, Argument), Data>
    final : public DataModification<typename Manipulator::DataType, Data>
{
public:
    using Function = bool (*)(Manipulator, const Orv::Data::DataPointerBoxMasterKey&, Argument);
    using Base = DataModification<typename Manipulator::DataType, Data>;

    DataModificationFactory(const Orv::Data::DataPointerBox<typename Manipulator::DataType>& target,
                            Data data, Function function)
        : Base(target, std::move(data)), m_function(function)
    {}

protected:
    bool apply(const Manipulator& manipulator, const Orv::Data::DataPointerBoxMasterKey& key,
               Data& data) override
    {
        return m_function(manipulator, key, data);
    }

private:
    Function m_function;
};

// A modification of the object in `target` by `function`, with a copy of `data`.
template <class T, class Data, class Manipulator, class Argument>
auto makeModification(const Orv::Data::DataPointerBox<T>& target, Data data,
                      bool (*function)(Manipulator, const Orv::Data::DataPointerBoxMasterKey&,
                                       Argument))
{
    using Modification = DataModificationFactory<
        bool(Manipulator, const Orv::Data::DataPointerBoxMasterKey&, Argument), Data>;
    return std::make_unique<Modification>(target, std::move(data), function);
}

} // namespace Orv::Core
