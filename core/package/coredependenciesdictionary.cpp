#include "ksx/core/dependenciesdictionary.h"

#include "data/changeevent.h"
#include "data/content/package.h"
#include <algorithm>

namespace Ksx::Core {

using Data::Content::Package;

void DependenciesDictionary::Users::add(const Orv::Data::BaseObject& user)
{
    auto& place = places.try_emplace(&user, inOrder.end()).first->second;
    if (place != inOrder.end() && *place == &user)
        return;
    if (place != inOrder.end())
        inOrder.erase(place);
    place = inOrder.emplace(inOrder.end(), &user);
}

bool DependenciesDictionary::Users::remove(const Orv::Data::BaseObject& user)
{
    const auto found = places.find(&user);
    if (found == places.end())
        return false;
    const bool isKnown = *found->second == &user;
    inOrder.erase(found->second);
    places.erase(found);
    return isKnown;
}

void DependenciesDictionary::Users::removeDead()
{
    for (auto one = places.begin(); one != places.end();) {
        if (*one->second) {
            ++one;
            continue;
        }
        inOrder.erase(one->second);
        one = places.erase(one);
    }
}

const DependenciesDictionary::OfPackage* DependenciesDictionary::find(const Package& package) const
{
    const auto place = m_packages.find(&package);
    return place == m_packages.end() || !place->second.package ? nullptr : &place->second;
}

void DependenciesDictionary::addUse(const Package& package, Uid dependency,
                                    const Orv::Data::BaseObject& user)
{
    OfPackage& ofPackage = m_packages[&package];
    if (!ofPackage.package)
        ofPackage = {Orv::Data::DataPointerBox<Package>(&package), {}};
    ofPackage.uses[dependency].add(user);
}

bool DependenciesDictionary::removeUse(const Package& package, Uid dependency,
                                       const Orv::Data::BaseObject& user)
{
    auto* ofPackage = const_cast<OfPackage*>(find(package));
    if (ofPackage == nullptr)
        return false;
    const auto users = ofPackage->uses.find(dependency);
    if (users == ofPackage->uses.end() || !users->second.remove(user))
        return false;
    if (users->second.inOrder.empty())
        ofPackage->uses.erase(users);
    return true;
}

std::vector<Uid> DependenciesDictionary::dependenciesOf(const Package& package) const
{
    std::vector<Uid> dependencies;
    if (const OfPackage* ofPackage = find(package))
        for (const auto& [dependency, users] : ofPackage->uses)
            if (isUsed(package, dependency))
                dependencies.push_back(dependency);
    return dependencies;
}

std::vector<DependenciesDictionary::UserBox> DependenciesDictionary::usersOf(const Package& package,
                                                                             Uid dependency) const
{
    std::vector<UserBox> live;
    const OfPackage* ofPackage = find(package);
    const auto users =
        ofPackage == nullptr ? decltype(ofPackage->uses.end())() : ofPackage->uses.find(dependency);
    if (ofPackage == nullptr || users == ofPackage->uses.end())
        return live;
    std::copy_if(users->second.inOrder.begin(), users->second.inOrder.end(),
                 std::back_inserter(live),
                 [](const UserBox& user) { return static_cast<bool>(user); });
    return live;
}

bool DependenciesDictionary::isUsed(const Package& package, Uid dependency) const
{
    return !usersOf(package, dependency).empty();
}

void DependenciesDictionary::removeDead()
{
    for (auto one = m_packages.begin(); one != m_packages.end();) {
        auto& [package, uses] = one->second;
        for (auto use = uses.begin(); use != uses.end();) {
            use->second.removeDead();
            use = use->second.inOrder.empty() ? uses.erase(use) : std::next(use);
        }
        one = package ? std::next(one) : m_packages.erase(one);
    }
}

} // namespace Ksx::Core
