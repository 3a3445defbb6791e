#include "ksx/core/uniqueidentifier.h"

#include "data/identifiersuite.h"
#include "ksx/core/contentwalk.h"
#include <QString>
#include <unordered_map>

namespace Ksx::Core {

namespace {

using Data::Content::ContentInterface;
using Orv::Data::BaseObject;

// To what the identifiers that begin with `base` lead, in the content of an object. Found in one
// walk: a container may have many objects of similar names.
std::unordered_map<std::string, const BaseObject*> resolved(const BaseObject& container,
                                                            const std::string& base)
{
    std::unordered_map<std::string, const BaseObject*> objects;
    const auto* content = contentOf(container);
    if (content == nullptr)
        return objects;
    for (const auto& item : *content) {
        const auto* named = dynamic_cast<const ContentInterface*>(&item);
        if (named == nullptr)
            continue;
        const std::string& identifier = named->identifierAttribute().get();
        if (identifier.compare(0, base.size(), base) == 0)
            objects.emplace(identifier, &item); // the first one of a name is the one it leads to
    }
    return objects;
}

} // namespace

NumberedName::NumberedName(const std::string& text) : base(text)
{
    const std::size_t last = text.rfind('_');
    if (last == std::string::npos)
        return;
    bool isNumber = false;
    const int found = QString::fromLatin1(text.data() + last + 1).toInt(&isNumber);
    if (!isNumber)
        return;
    base.resize(last);
    number = found;
}

std::string uniqueIdentifier(const BaseObject& container, const std::string& wanted,
                             const BaseObject* ignored)
{
    if (wanted.empty())
        return wanted;
    std::string candidate = Orv::DefaultIdentifierPolicy::normalize(wanted);
    NumberedName name(candidate);
    const auto objects = resolved(container, name.base);
    const auto isTaken = [&](const std::string& identifier) {
        if (identifier.empty()) // leads to the container itself
            return true;
        const auto found = objects.find(identifier);
        return found != objects.end() && found->second != ignored;
    };
    while (isTaken(candidate))
        candidate = name.next();
    return candidate;
}

} // namespace Ksx::Core
