// Forward iterators over the children of any object.
#pragma once

#include <cstddef>

namespace Orv::Data {

class BaseObject;
class Container;

// Walks the children of one object. Made by BaseObject::createConstIterator, owned by the caller;
// must not outlive the object.
template <class T>
class GenericIteratorConst
{
public:
    virtual ~GenericIteratorConst() = default;
    virtual GenericIteratorConst& next() = 0;
    // The child at the present place, null at the end.
    virtual const T* get() const = 0;
    virtual bool atEnd() const = 0;
};

// The same, with access to mutable children.
template <class T>
class GenericIterator
{
public:
    virtual ~GenericIterator() = default;
    virtual GenericIterator& next() = 0;
    virtual T* get() const = 0;
    virtual bool atEnd() const = 0;
};

// What a leaf hands out: at its end from the start.
class EmptyIterator final : public GenericIterator<BaseObject>
{
public:
    EmptyIterator& next() override { return *this; }
    BaseObject* get() const override { return nullptr; }
    bool atEnd() const override { return true; }
};

class EmptyIteratorConst final : public GenericIteratorConst<BaseObject>
{
public:
    EmptyIteratorConst& next() override { return *this; }
    const BaseObject* get() const override { return nullptr; }
    bool atEnd() const override { return true; }
};

// The children of a structure, a list or a union, by position.
class ContainerIterator final : public GenericIterator<BaseObject>
{
public:
    explicit ContainerIterator(Container& container) : m_container(container) {}
    ContainerIterator& next() override;
    BaseObject* get() const override;
    bool atEnd() const override;

private:
    Container& m_container;
    std::size_t m_position = 0;
};

class ContainerIteratorConst final : public GenericIteratorConst<BaseObject>
{
public:
    explicit ContainerIteratorConst(const Container& container) : m_container(container) {}
    ContainerIteratorConst& next() override;
    const BaseObject* get() const override;
    bool atEnd() const override;

private:
    const Container& m_container;
    std::size_t m_position = 0;
};

} // namespace Orv::Data
