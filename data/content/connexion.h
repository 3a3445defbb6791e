// What feeds one input of a node. The x is the format's spelling.
#pragma once

#include "data/content/namedclass.h"
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

ORV_LIST_CLASS(CompNodeConnexionsList, "connexions", Connexion)
ORV_LIST_CLASS(ParamNodeConnexionsList, "connexions", Connexion)

} // namespace Ksx::Data::Content
