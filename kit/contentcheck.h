// Checks the objects of a package one by one.
#pragma once

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Kit {

class FindingList;

// Adds double uids and identifiers of the content, resources without their files, and whatever is
// wrong inside of graphs and functions.
void checkContent(const Data::Content::Package& package, FindingList& findings);

} // namespace Ksx::Kit
