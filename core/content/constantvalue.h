// The constants of documents as typed values, and typed values as constants.
#pragma once

#include <boost/any.hpp>
#include <memory>

namespace Orv::Data {
class BaseObject;
} // namespace Orv::Data

namespace Ksx::Core {

// A value of a type has the shape bool, Int1 to Int4, Float1 to Float4 or Text; of the type of any
// integer it is a UInt, of that of any float a float. Parameters differ in one: their single
// integers, which are enumerations and flags too, are of the shape UInt.

// Returns true if a file with the value can be read again: nan and the infinities are no values.
bool isStorable(const boost::any& value);

// What a constant holds, in the type of its own class. Empty for null and for any other object.
boost::any valueOfConstant(const Orv::Data::BaseObject* constant);

// What a constant holds, in the shape of `type`. A single number is read from both classes that can
// hold it: an integer signed or not, a float by itself or as a vector of one. Empty if the constant
// has another shape, and for types without values.
boost::any valueAs(unsigned type, const Orv::Data::BaseObject* constant);
boost::any parameterValueAs(unsigned type, const Orv::Data::BaseObject* constant);

// A new constant of the class in which values of `type` are stored. Null for types without values.
// Throws boost::bad_any_cast if `value` has not the shape of the type.
std::unique_ptr<Orv::Data::BaseObject> makeConstant(unsigned type, const boost::any& value);
std::unique_ptr<Orv::Data::BaseObject> makeParameterConstant(unsigned type,
                                                             const boost::any& value);

// Zero, false or the empty text in the shape of `type`; empty for types without values. That of a
// parameter is Data::Desc::emptyValueOf().
boost::any zeroOf(unsigned type);

} // namespace Ksx::Core
