// Running one updater on a text or a package, and what came of it.
#pragma once

#include "core/extensions.h"
#include <QTranslator>
#include <string>
#include <vector>

namespace Ksx::Core {
class IPackageUpdater;
} // namespace Ksx::Core

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace TestSupport {

// While it lives, translates every key into "context|key".
class EchoTranslator final : public QTranslator
{
public:
    EchoTranslator();
    ~EchoTranslator() override;
    QString translate(const char* context, const char* key, const char* comment,
                      int number) const override;
    bool isEmpty() const override { return false; }
};

struct UpdateResult
{
    bool isOk = false;
    std::string bytes; // of the device behind the run
    std::string log;   // MessageNode::toText()
    std::vector<float> progress;
};

// On a plain device.
UpdateResult updateBuffer(const Orv::Core::Extensions::IDataFormatUpdater& updater,
                          const std::string& input);
// On a device that carries its document along.
UpdateResult updateDocument(const Orv::Core::Extensions::IDataFormatUpdater& updater,
                            const std::string& input);

// The document without declaration and without white space between its tags.
std::string withoutLayout(const std::string& document);
// What becomes of a document, without layout. Fails the test if the updater fails.
std::string rewritten(const Orv::Core::Extensions::IDataFormatUpdater& updater,
                      const std::string& input);
// A package of that content and of nothing else but the identifier "Wood".
std::string aBarePackage(const std::string& content);
// The content of such a package, rewritten.
std::string rewrittenContent(const Orv::Core::Extensions::IDataFormatUpdater& updater,
                             const std::string& content);

// Takes "input.obl" of a folder below tests/golden/updaters to its "expected.obl", on both kinds of
// device, and then leaves that as it is.
void expectGoldenUpdate(const Orv::Core::Extensions::IDataFormatUpdater& updater,
                        const std::string& folder);
// As the above, for an updater whose own output looks old to it again.
void expectGoldenUpdateOnce(const Orv::Core::Extensions::IDataFormatUpdater& updater,
                            const std::string& folder);

// The log of a run over a package. Fails the test if the updater fails.
std::string updatePackage(const Ksx::Core::IPackageUpdater& updater,
                          Ksx::Data::Content::Package& package);
// The document that the package is written as.
std::string textOf(const Ksx::Data::Content::Package& package);

} // namespace TestSupport
