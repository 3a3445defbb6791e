// Compiled assemblies and their descriptions, small and as text.
#pragma once

#include "support/archive.h"
#include <memory>
#include <string>

class QDomDocument;

namespace Orv::Data {
class BaseObject;
} // namespace Orv::Data

namespace TestSupport {

constexpr unsigned AssemblyUid = 42;

// Magic, uid, and some bytes that nobody reads.
std::string anAssemblyBody(unsigned uid = AssemblyUid);
// A description with that inside `graphs`.
std::string aDescription(const std::string& graphs, unsigned uid = AssemblyUid);
std::string aDescribedGraph(const std::string& pkgUrl, const std::string& inputs = {},
                            const std::string& outputs = {});
// The two files of an assembly with one graph.
ArchiveFiles anAssemblyInArchive(const std::string& id, const std::string& name,
                                 const std::string& pkgUrl);
ArchiveFiles operator+(ArchiveFiles left, const ArchiveFiles& right);
// As many assemblies, with ids and graphs that count from 0.
ArchiveFiles manyAssemblies(int count);

// The document of a text. Fails the test if there is none.
QDomDocument domOf(const std::string& text);
// What the object is written as, without the declaration.
std::string writtenAs(const Orv::Data::BaseObject& object);
// The same of a package's content, with a "#" in the place of the uids of groups and graphs, which
// come from the clock.
std::string writtenContent(const Orv::Data::BaseObject& package);

} // namespace TestSupport
