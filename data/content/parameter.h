// A named value of a node or graph.
#pragma once

#include "data/content/paramvalue.h"
#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   Parameter
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "parameter"
#define ORV_TABLE   "data/content/parameter.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class Parameter final : public ParameterStruct
{
public:
    Parameter();
    ~Parameter() override;
};

struct GraphParametersListMeta_
{
    static constexpr Orv::Data::ObjectMeta record = Orv::Data::makeMeta("baseParameters", Required);
};
class GraphParametersList
    : public Orv::Data::ChildValueTypeBinder<
          Orv::Data::MetaBinder<Orv::Data::ContainerList<Parameter>, GraphParametersListMeta_>>
{
public:
    GraphParametersList();
    ~GraphParametersList() override;
};

struct FilterParamsListMeta_
{
    static constexpr Orv::Data::ObjectMeta record = Orv::Data::makeMeta("parameters", Required);
};
class FilterParamsList
    : public Orv::Data::ChildValueTypeBinder<
          Orv::Data::MetaBinder<Orv::Data::ContainerList<Parameter>, FilterParamsListMeta_>>
{
public:
    FilterParamsList();
    ~FilterParamsList() override;
};

struct CompInstanceParamsListMeta_
{
    static constexpr Orv::Data::ObjectMeta record = Orv::Data::makeMeta("parameters", Required);
};
class CompInstanceParamsList
    : public Orv::Data::ChildValueTypeBinder<
          Orv::Data::MetaBinder<Orv::Data::ContainerList<Parameter>, CompInstanceParamsListMeta_>>
{
public:
    CompInstanceParamsList();
    ~CompInstanceParamsList() override;
};

} // namespace Ksx::Data::Content
