// A graph of image nodes with inputs, outputs and the outputs to render.
#pragma once

#include "data/content/attributes.h"
#include "data/content/compnode.h"
#include "data/content/contentobjectbase.h"
#include "data/content/graphoutput.h"
#include "data/content/guilayoutcomp.h"
#include "data/content/guiobject.h"
#include "data/content/option.h"
#include "data/content/parameter.h"
#include "data/content/paraminput.h"
#include "data/content/root.h"
#include "data/content/types.h"
#include "data/content/valueoverloadable.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   Graph
#define ORV_BASE    ContentObjectBase
#define ORV_ELEMENT "graph"
#define ORV_TABLE   "data/content/graph.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class Graph final : public GraphStruct, public ContentInterface
{
public:
    Graph();
    ~Graph() override;

    const Orv::Data::Attribute<UInt>& uidAttribute() const override { return uid(); }
    const Orv::Data::Attribute<Text>& identifierAttribute() const override { return identifier(); }
};

} // namespace Ksx::Data::Content
