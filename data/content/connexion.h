// What feeds one input of a node. The x is the format's spelling.
#pragma once

#include "data/content/types.h"
#include "data/content/valueclasses.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   Connexion
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "connexion"
#define ORV_TABLE   "data/content/connexion.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class Connexion final : public ConnexionStruct
{
public:
    Connexion();
    ~Connexion() override;
};

struct CompNodeConnexionsListMeta_
{
    static constexpr Orv::Data::ObjectMeta record = Orv::Data::makeMeta("connexions", Required);
};
class CompNodeConnexionsList
    : public Orv::Data::ChildValueTypeBinder<
          Orv::Data::MetaBinder<Orv::Data::ContainerList<Connexion>, CompNodeConnexionsListMeta_>>
{
public:
    CompNodeConnexionsList();
    ~CompNodeConnexionsList() override;
};

struct ParamNodeConnexionsListMeta_
{
    static constexpr Orv::Data::ObjectMeta record = Orv::Data::makeMeta("connexions", Required);
};
class ParamNodeConnexionsList
    : public Orv::Data::ChildValueTypeBinder<
          Orv::Data::MetaBinder<Orv::Data::ContainerList<Connexion>, ParamNodeConnexionsListMeta_>>
{
public:
    ParamNodeConnexionsList();
    ~ParamNodeConnexionsList() override;
};

} // namespace Ksx::Data::Content
