// The forward recipe of an edit: a target, a payload, and the function that applies it.
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

// An edit that a CommandModification can run, once and again.
class DataModificationBase
{
public:
    DataModificationBase() = default;
    DataModificationBase(const DataModificationBase&) = delete;
    DataModificationBase& operator=(const DataModificationBase&) = delete;
    virtual ~DataModificationBase() = default;

    // Applies the edit in a context. Returns false if it was refused. The changes that it has made
    // by then are rolled back.
    virtual bool execute(ManipulatorContext& context, const Data::DataPointerBoxMasterKey& key) = 0;
};

// An edit of one object. T is a document class, an Attribute or a ContainerList. Data is the
// payload, which is copied in. A function that has results writes them into the payload, which the
// caller reads afterwards.
template <class T, class Data>
class DataModification : public DataModificationBase
{
public:
    using Manipulator = typename ManipulatorOf<T>::type;

    // Keeps the target by a box: it may die before the edit runs.
    DataModification(const Orv::Data::DataPointerBox<T>& target, Data data)
        : m_target(target), m_data(std::move(data))
    {}
    // Returns the payload as the last run left it.
    const Data& data() const { return m_data; }

    // Returns false for a target that has died, and for one that is not part of a document.
    bool execute(ManipulatorContext& context,
                 const Orv::Data::DataPointerBoxMasterKey& key) override
    {
        if (!m_target || !Orv::Data::isAttached(*m_target))
            return false;
        return apply(Manipulator(*m_target, context), key, m_data);
    }

protected:
    // Changes the target. Returns false to refuse the edit.
    virtual bool apply(const Manipulator& manipulator,
                       const Orv::Data::DataPointerBoxMasterKey& key, Data& data) = 0;

private:
    Orv::Data::DataPointerBox<T> m_target;
    Data m_data;
};

// `Signature` is bool (Manipulator, const DataPointerBoxMasterKey&, Argument). Argument can be
// bound to a Data&. To write an edit is to write one free function of that form.
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

// Returns a modification of the object in `target` by `function`, with a copy of `data`. The caller
// owns it.
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
