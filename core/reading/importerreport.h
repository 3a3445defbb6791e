// How an importer tells why it fails.
#pragma once

#include <QString>
#include <QStringList>

namespace Orv::Core {
class MessageNode;
} // namespace Orv::Core

namespace Orv::Data {
struct DocumentError;
} // namespace Orv::Data

namespace Ksx::Core {

// Writes to the log of one import, at level 3, and to the debug trace.
class ImporterReport
{
public:
    // Texts are translated in the context of the importer's class; `source` is its name in the
    // trace. Both stay where they are. `log` outlives the report and may be null.
    ImporterReport(Orv::Core::MessageNode* log, const char* context, const char* source)
        : m_log(log), m_context(context), m_source(source)
    {}

    // Each of these answers false, for the caller to return. The arguments take the places %1, %2
    // and so on in the text.
    bool fail(const char* key, const QStringList& arguments = {}) const;
    // For a description that is no document.
    bool fail(const Orv::Data::DocumentError& error) const;

    Orv::Core::MessageNode* log() const { return m_log; }

private:
    Orv::Core::MessageNode* m_log;
    const char* m_context;
    const char* m_source;
};

} // namespace Ksx::Core
