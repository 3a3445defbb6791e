// A map from a key of a list's items to the items, kept in step with the list.
#pragma once

#include "core/listenersimple.h"
#include "core/manipulatorlist.h"
#include "data/attribute.h"
#include "data/datapointerbox.h"
#include "data/row.h"
#include "data/shadowobject.h"
#include "ksx/core/follow.h"
#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace Ksx::Data::Content {
class CompNode;
class CompOutput;
class Connexion;
class GraphOutput;
class GUIObject;
class Parameter;
class ParamInput;
class ParamNode;
class ParamsGraph;
class ParamsGraphData;
class ParamsGraphNode;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// The three attributes that serve as keys.
struct UidKey
{
    using Type = Orv::Data::UInt;
    template <class Item>
    static const Orv::Data::Attribute<Type>& of(const Item& item)
    {
        return item.uid();
    }
};
struct NameKey
{
    using Type = Orv::Data::Text;
    template <class Item>
    static const Orv::Data::Attribute<Type>& of(const Item& item)
    {
        return item.name();
    }
};
struct IdentifierKey
{
    using Type = Orv::Data::Text;
    template <class Item>
    static const Orv::Data::Attribute<Type>& of(const Item& item)
    {
        return item.identifier();
    }
};

// The key of each class whose lists can have a dictionary.
// clang-format off
template <class Item> struct DictionaryKey;
template <> struct DictionaryKey<Data::Content::CompNode> : UidKey {};
template <> struct DictionaryKey<Data::Content::CompOutput> : UidKey {};
template <> struct DictionaryKey<Data::Content::GraphOutput> : UidKey {};
template <> struct DictionaryKey<Data::Content::ParamInput> : UidKey {};
template <> struct DictionaryKey<Data::Content::ParamNode> : UidKey {};
template <> struct DictionaryKey<Data::Content::ParamsGraph> : UidKey {};
template <> struct DictionaryKey<Data::Content::ParamsGraphData> : UidKey {};
template <> struct DictionaryKey<Data::Content::ParamsGraphNode> : UidKey {};
template <> struct DictionaryKey<Data::Content::GUIObject> : UidKey {};
template <> struct DictionaryKey<Data::Content::Parameter> : NameKey {};
template <> struct DictionaryKey<Data::Content::Connexion> : IdentifierKey {};
// clang-format on

// What the dictionaries of one key type share. `Key` is UInt or Text.
//
// Each item has a record, and each record a listener on the item's key. A key that is taken stays
// with the item that had it first, and the other one is not found by it. The map goes by keys and
// knows no second owner: whichever item leaves a key, by being erased or renamed, takes the key out
// of the map, and no other item with it is looked for. Such cases are reported to the DiagnosticLog
// and work goes on.
template <class Key>
class DictionaryBase : public Orv::Core::ListenerSimple<Stage::Mirror, ShapeChanges>
{
public:
    ~DictionaryBase() override;

    bool contains(const Key& key) const { return m_map.count(key) != 0; }

    // The number of records, and the key of the one at a place of the list.
    std::size_t size() const { return m_entries.size(); }
    const Key& keyAt(std::size_t index) const;

    bool isOwnedByShadow() const final { return true; }
    void deliver(const Orv::Data::DataMessage& message) final;

protected:
    using KeyFunction = const Orv::Data::Attribute<Key>& (*)(const Orv::Data::BaseObject&);

    // Makes the records of all items; the caller attaches the dictionary to the list.
    DictionaryBase(const Orv::Data::ContainerListBase& list,
                   Orv::Data::ManipulatorContextBase& context, KeyFunction keyOf);

    // Null if there is none.
    const Orv::Data::BaseObject* findItem(const Key& key) const;

private:
    class KeyListener;
    struct Record;

    int add(const Orv::Data::BaseObject& item, Orv::Data::ManipulatorContextBase& context);
    void drop(int number);
    void refill(const Orv::Data::ContainerListBase& list,
                Orv::Data::ManipulatorContextBase& context);
    void follow(const Orv::Data::DataMessage& message, const Orv::Data::ContainerListBase& list);
    void followPlain(const Orv::Data::DataMessage& message,
                     const Orv::Data::ContainerListBase& list);
    void keyChanged(const Orv::Data::DataMessage& message, int number);

    KeyFunction m_keyOf;
    std::vector<std::unique_ptr<Record>> m_records; // by number; null where a number is free
    std::vector<int> m_freeNumbers;
    Orv::Data::Row<int> m_entries; // the numbers of the records, in the order of the list
    std::map<Key, const Record*> m_map;
};

extern template class DictionaryBase<Orv::Data::UInt>;
extern template class DictionaryBase<Orv::Data::Text>;

// The dictionary of one list, whose items are found by their key in logarithmic time. Made when it
// is first asked for; the list's shadow owns it. It is told of changes before all other listeners,
// but like them at the end of a context only: an edit that runs sees the keys as they were before.
// To be asked for anew in each edit, since it dies with the list or when the list is taken out.
// `List` is the ContainerList of one of the classes above.
template <class List>
class Dictionary final
    : public DictionaryBase<typename DictionaryKey<typename List::ItemType>::Type>
{
public:
    using Item = typename List::ItemType;
    using Key = typename DictionaryKey<Item>::Type;
    static_assert(std::is_same_v<List, Orv::Data::ContainerList<Item>>,
                  "a list has one dictionary, under whichever name its class is bound");

    // Takes time with the length of the list when it has to be made.
    static Dictionary& of(const Orv::Core::ManipulatorList<Item>& list)
    {
        if (const Orv::Data::ShadowObject* shadow = list.get()->shadow())
            if (auto* found = shadow->template findListener<Dictionary>())
                return *found;
        std::unique_ptr<Dictionary> made(new Dictionary(*list.get(), list.context()));
        list.addListener(*made);
        return *made.release(); // the shadow owns it now
    }

    // Empty if there is none.
    Orv::Data::DataPointerBox<Item> find(const Key& key) const
    {
        return Orv::Data::DataPointerBox<Item>(static_cast<const Item*>(this->findItem(key)));
    }

private:
    Dictionary(const List& list, Orv::Data::ManipulatorContextBase& context)
        : DictionaryBase<Key>(list, context, &keyOf)
    {}

    static const Orv::Data::Attribute<Key>& keyOf(const Orv::Data::BaseObject& item)
    {
        return DictionaryKey<Item>::of(static_cast<const Item&>(item));
    }
};

// Dictionary by the class of the items.
template <class Item>
using DictionaryOf = Dictionary<Orv::Data::ContainerList<Item>>;

} // namespace Ksx::Core
