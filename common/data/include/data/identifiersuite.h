// Makes identifiers legal and unique.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace Orv {

// Answers whether an identifier is in use already.
using IdentifierPredicate = std::function<bool(const std::string&)>;

struct DefaultIdentifierPolicy
{
    static constexpr char Separator = '_';

    // The text with "_" for each character that is not kept, and without "_" at both ends; it may
    // be empty then. Kept are letters, digits and _[]{}-+^@=%,! of 8-bit text. What is a letter is
    // told by std::locale(): that of ASCII, unless the program sets a global locale; the user's
    // environment has no part in it.
    static std::string normalize(const std::string& text);
};

// A text that numbers are put behind.
struct NumberedIdentifier
{
    std::string base;
    std::uint32_t number; // the first one
};

// Returns `wanted` without the number that it ends in and the separator before it, and that number;
// 1 if there is none. Throws boost::bad_lexical_cast if the number exceeds 32 bits.
NumberedIdentifier splitIdentifier(const std::string& wanted, char separator);

// `wanted`, less a number that it ends in, with the first free number behind it. See
// IdentifierSuite::makeUnique.
std::string makeUniqueIdentifier(const std::string& wanted, char separator,
                                 const IdentifierPredicate& isTaken);

// `Policy` gives the separator and the legal form. A derived class may change either operation.
template <class Policy = DefaultIdentifierPolicy>
class IdentifierSuite
{
public:
    // Always a text with a number: whoever wants to keep a free name asks before. The number is the
    // one at the end of `wanted`, if a separator stands before it, else 1, and counts up until
    // `isTaken` answers false. Throws boost::bad_function_call if `isTaken` is empty, and
    // boost::bad_lexical_cast if the number at the end of `wanted` exceeds 32 bits.
    virtual std::string makeUnique(const std::string& wanted,
                                   const IdentifierPredicate& isTaken) const
    {
        return makeUniqueIdentifier(wanted, getSeparator(), isTaken);
    }
    virtual char getSeparator() const { return Policy::Separator; }

    static std::string normalize(const std::string& text) { return Policy::normalize(text); }

    virtual ~IdentifierSuite() = default;
};

} // namespace Orv
