#include "editing/takennames.h"

#include <QtGlobal>
#include <charconv>
#include <iterator>
#include <optional>

namespace Ksx::Core {

namespace {

// A name that ends in "_" and a number, in the form in which numbers are written.
struct NumberedName
{
    std::string base;
    long long number;
};

std::optional<NumberedName> numberedName(const std::string& name)
{
    const std::size_t last = name.rfind('_');
    if (last == std::string::npos)
        return std::nullopt;
    NumberedName result{name.substr(0, last), 0};
    const char* const end = name.data() + name.size();
    const auto read = std::from_chars(name.data() + last + 1, end, result.number);
    const bool isNumber =
        read.ec == std::errc() && read.ptr == end &&
        name.compare(last + 1, std::string_view::npos, std::to_string(result.number)) == 0;
    return isNumber ? std::optional<NumberedName>(std::move(result)) : std::nullopt;
}

} // namespace

void TakenNames::add(const std::string& name)
{
    if (++m_counts[name] != 1)
        return;
    const auto numbered = numberedName(name);
    if (!numbered)
        return;
    Runs& runs = m_numbers[numbered->base];
    const long long number = numbered->number;
    const auto next = runs.upper_bound(number);
    const bool touchesNext = next != runs.end() && next->first == number + 1;
    const auto previous = next == runs.begin() ? runs.end() : std::prev(next);
    const bool touchesPrevious = previous != runs.end() && previous->second + 1 == number;
    const long long last = touchesNext ? next->second : number;
    if (touchesNext)
        runs.erase(next);
    if (touchesPrevious)
        previous->second = last;
    else
        runs.emplace(number, last);
}

void TakenNames::remove(const std::string& name)
{
    const auto counted = m_counts.find(name);
    Q_ASSERT(counted != m_counts.end());
    if (--counted->value != 0)
        return;
    m_counts.erase(counted);
    const auto numbered = numberedName(name);
    if (!numbered)
        return;
    const auto numbers = m_numbers.find(numbered->base);
    Runs& runs = numbers->value;
    const auto run = std::prev(runs.upper_bound(numbered->number));
    const auto [first, last] = *run;
    runs.erase(run);
    if (first < numbered->number)
        runs.emplace(first, numbered->number - 1);
    if (numbered->number < last)
        runs.emplace(numbered->number + 1, last);
    if (runs.empty())
        m_numbers.erase(numbers);
}

std::size_t TakenNames::count(const std::string& name) const
{
    const auto found = m_counts.find(name);
    return found == m_counts.end() ? 0 : found->value;
}

long long TakenNames::freeNumber(const std::string& base, long long number) const
{
    const auto numbers = m_numbers.find(base);
    if (numbers == m_numbers.end())
        return number;
    const auto next = numbers->value.upper_bound(number);
    if (next == numbers->value.begin() || std::prev(next)->second < number)
        return number;
    return std::prev(next)->second + 1;
}

long long TakenNames::freeNumber(const std::string& base, long long number,
                                 const std::string& without) const
{
    Q_ASSERT(count(without) != 0);
    const long long found = freeNumber(base, number);
    const auto numbered = numberedName(without);
    const bool isBefore = numbered && numbered->base == base && numbered->number >= number &&
                          numbered->number < found;
    return isBefore && count(without) == 1 ? numbered->number : found;
}

} // namespace Ksx::Core
