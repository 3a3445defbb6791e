#include "reading/importerreport.h"

#include "core/messagenode.h"
#include "data/diagnosticlog.h"
#include "data/documentreader.h"
#include "data/filename.h"
#include <QCoreApplication>

namespace Ksx::Core {

bool ImporterReport::fail(const char* key, const QStringList& arguments) const
{
    QString text = QCoreApplication::translate(m_context, key);
    // From the last to the first, which alone may come from a file and hold anything.
    for (auto place = arguments.size(); place > 0; --place)
        text.replace('%' + QString::number(place), arguments[place - 1]);
    Orv::DiagnosticLog::write(Orv::LogLevel::Inconsistency, m_source, __LINE__, Orv::toBytes(text));
    addMessage(m_log, Orv::Core::MessageLevel::Error, text);
    return false;
}

bool ImporterReport::fail(const Orv::Data::DocumentError& error) const
{
    return fail("ERROR_XML_DOCUMENT_ERROR_%1_%2_%3",
                {error.message, QString::number(error.line), QString::number(error.column)});
}

} // namespace Ksx::Core
