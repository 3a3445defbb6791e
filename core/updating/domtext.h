// A DOM document from and to the text of a file.
#pragma once

#include <QByteArray>
#include <QString>

class QDomDocument;

namespace Ksx::Core {

class DomIndex;

// Why a text is no document, and where.
struct DomError
{
    QString message;
    qint64 line = 0;
    qint64 column = 0;
    bool isTooDeep = false; // the message has the place already

    // All of it, for a user.
    QString text() const;
};

// Replaces `document` by what the bytes say, without a DTD: the texts of its entities stand where
// they are used. On failure answers false, with the reason in `error`. Refuses what
// QXmlStreamReader refuses, references to entities that nobody declares, and elements that nest
// deeper than Orv::Data::XmlDataReader::MaximumDepth. So the destructor of QDomDocument, which calls
// itself for each level, has stack enough. QDomDocument::save() has not, with Qt 6.
// Fills `index` on the way, unless it is null.
bool parseDom(const QByteArray& bytes, QDomDocument& document, DomError& error,
              DomIndex* index = nullptr);

// The document in UTF-8, with a declaration that says so whatever stood there before, and otherwise
// the text of QDomDocument::save() with an indent of 1; levels beyond MaximumIndent are indented
// like that one, lest a small file of deep elements become a huge one. Takes linear time, where
// QDomDocument takes more for values with many characters to escape.
QByteArray serialiseDom(const QDomDocument& document);
constexpr int MaximumIndent = 128;

} // namespace Ksx::Core
