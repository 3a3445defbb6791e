// Writes the constants that function nodes hold.
#pragma once

#include "data/datapointerbox.h"
#include <QString>
#include <boost/any.hpp>
#include <memory>
#include <optional>

namespace Orv::Data {
template <class T>
class ContainerList;
} // namespace Orv::Data

namespace Ksx::Data::Content {
class FuncData;
} // namespace Ksx::Data::Content

namespace Ksx::Data::Desc {
struct FunctionData;
} // namespace Ksx::Data::Desc

namespace Ksx::Core {

// Of the data item of one function node, which may come and go meanwhile. Owned by the controller
// of the node; the description must outlive it.
class BaseFuncDataModifier
{
public:
    using List = Orv::Data::ContainerList<Data::Content::FuncData>;

    BaseFuncDataModifier(const List& list, const Data::Desc::FunctionData& description);
    BaseFuncDataModifier(const BaseFuncDataModifier&) = delete;
    BaseFuncDataModifier& operator=(const BaseFuncDataModifier&) = delete;
    virtual ~BaseFuncDataModifier();

    // In the shape of the item's type; empty if there is no item or it holds another shape.
    boost::any value() const;
    // One command, also for the present value. False without one if there is no item or `value` has
    // another shape. A single number may come by itself or as a vector of one.
    virtual bool setValue(const boost::any& value) = 0;

protected:
    // `value` has the shape of the item's type.
    bool store(const boost::any& value);

private:
    QString history() const;

    Orv::Data::DataPointerBox<List> m_list;
    const Data::Desc::FunctionData* m_description;
};

// T is bool, Int1 to Int4, Float1 to Float4 or Text.
template <class T>
class FuncDataModifier final : public BaseFuncDataModifier
{
public:
    using BaseFuncDataModifier::BaseFuncDataModifier;

    bool setValue(const boost::any& value) override;
};

// The modifier for the type of that data; null for a type without values.
std::unique_ptr<BaseFuncDataModifier>
makeFuncDataModifier(const BaseFuncDataModifier::List& list,
                     const Data::Desc::FunctionData& description);

// The item in which a function node holds its constant or the name of its variable; null if there
// is none.
const Data::Content::FuncData* functionDataIn(const BaseFuncDataModifier::List& list);

} // namespace Ksx::Core
