// A small document type of its own for the tests of the framework: a root with shelves, which hold
// books, further shelves, and one of two lamps.
#pragma once

#include "core/manipulatorstruct.h"
#include "data/declaration.h"
#include <memory>
#include <string_view>

namespace TestDocument {

using Orv::Data::BaseObject;
using Orv::Data::ContainerStructBase;
using Orv::Data::FilePath;
using Orv::Data::Float2;
using Orv::Data::Float3;
using Orv::Data::Int2;
using Orv::Data::Optional;
using Orv::Data::Presentation;
using Orv::Data::Required;
using Orv::Data::Text;
using Orv::Data::UInt;

#define ORV_CLASS   Book
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "book"
#define ORV_TABLE   "support/testdocument/book.members"
#include "data/declaremembers.inc"
#include "data/undefclass.inc"
class Book final : public BookStruct
{
public:
    Book();
    ~Book() override;
};

#define ORV_CLASS   Cover
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "coverClass"
#define ORV_TABLE   "support/testdocument/cover.members"
#include "data/declaremembers.inc"
#include "data/undefclass.inc"
class Cover : public CoverStruct
{
public:
    Cover();
    ~Cover() override;
};

#define ORV_CLASS   Candle
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "candle"
#define ORV_TABLE   "support/testdocument/candle.members"
#include "data/declaremembers.inc"
#include "data/undefclass.inc"
class Candle final : public CandleStruct
{
public:
    Candle();
    ~Candle() override;
};

#define ORV_CLASS   Bulb
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "bulb"
#define ORV_TABLE   "support/testdocument/bulb.members"
#include "data/declaremembers.inc"
#include "data/undefclass.inc"
class Bulb final : public BulbStruct
{
public:
    Bulb();
    ~Bulb() override;
};

struct DelayedShelvesStub_
{
    static std::unique_ptr<BaseObject> create(std::string_view elementName);
};

#define ORV_CLASS   Shelf
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "shelf"
#define ORV_TABLE   "support/testdocument/shelf.members"
#include "data/declaremembers.inc"
#include "data/undefclass.inc"
class Shelf : public ShelfStruct
{
public:
    Shelf();
    ~Shelf() override;
};

// A shelf that is the root of the live document set.
class Root final : public Shelf
{
public:
    bool isTreeRoot() const override { return true; }
};

} // namespace TestDocument

#define ORV_QUALIFIED TestDocument::Book
#define ORV_TABLE     "support/testdocument/book.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED TestDocument::Cover
#define ORV_TABLE     "support/testdocument/cover.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED TestDocument::Candle
#define ORV_TABLE     "support/testdocument/candle.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED TestDocument::Bulb
#define ORV_TABLE     "support/testdocument/bulb.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED TestDocument::Shelf
#define ORV_TABLE     "support/testdocument/shelf.members"
#include "core/declaremanipulator.inc"
