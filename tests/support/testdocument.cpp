#include "support/testdocument.h"

namespace TestDocument {

#define ORV_CLASS Book
#define ORV_TABLE "support/testdocument/book.members"
#include "data/definemembers.inc"
#include "data/undefclass.inc"

#define ORV_CLASS Cover
#define ORV_TABLE "support/testdocument/cover.members"
#include "data/definemembers.inc"
#include "data/undefclass.inc"

#define ORV_CLASS Candle
#define ORV_TABLE "support/testdocument/candle.members"
#include "data/definemembers.inc"
#include "data/undefclass.inc"

#define ORV_CLASS Bulb
#define ORV_TABLE "support/testdocument/bulb.members"
#include "data/definemembers.inc"
#include "data/undefclass.inc"

#define ORV_CLASS Shelf
#define ORV_TABLE "support/testdocument/shelf.members"
#include "data/definemembers.inc"
#include "data/undefclass.inc"

std::unique_ptr<BaseObject> DelayedShelvesStub_::create(std::string_view elementName)
{
    return Orv::Data::createFirstMatch<Shelf>(elementName);
}

} // namespace TestDocument
