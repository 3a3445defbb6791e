#include "data/identifiersuite.h"

#include "data/attribute.h"
#include <boost/function/function_base.hpp>
#include <locale>
#include <string_view>

namespace Orv {

namespace {

constexpr std::string_view KeptSigns = "_[]{}-+^@=%,!";
constexpr std::string_view Digits = "0123456789";

} // namespace

std::string DefaultIdentifierPolicy::normalize(const std::string& text)
{
    const std::locale locale;
    const auto& classes = std::use_facet<std::ctype<char>>(locale);
    std::string result = text;
    for (char& c : result)
        if (!classes.is(std::ctype_base::alnum, c) && KeptSigns.find(c) == std::string_view::npos)
            c = '_';
    const std::size_t begin = result.find_first_not_of('_');
    if (begin == std::string::npos)
        return {};
    return result.substr(begin, result.find_last_not_of('_') + 1 - begin);
}

NumberedIdentifier splitIdentifier(const std::string& wanted, char separator)
{
    const std::size_t last = wanted.find_last_not_of(Digits);
    if (last == std::string::npos || last + 1 == wanted.size() || wanted[last] != separator)
        return {wanted, 1};
    return {wanted.substr(0, last),
            Data::valueFromString<Data::UInt>(std::string_view(wanted).substr(last + 1))};
}

std::string makeUniqueIdentifier(const std::string& wanted, char separator,
                                 const IdentifierPredicate& isTaken)
{
    if (!isTaken)
        throw boost::bad_function_call();
    auto [base, number] = splitIdentifier(wanted, separator);
    base += separator;
    for (;; ++number) {
        std::string candidate = base + std::to_string(number);
        if (!isTaken(candidate))
            return candidate;
    }
}

} // namespace Orv
