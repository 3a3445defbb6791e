// Texts and numbers in documents of XML and HTML.
#pragma once

#include <QByteArray>
#include <QString>

namespace Ksx::Kit {

// Returns a text as UTF-8 for an element or for an attribute in either quotes. Characters that no
// document may have become U+FFFD.
QByteArray escaped(const QString& text);

// Returns a number with one digit behind the point at most, which is as much as a picture shows.
QByteArray numberText(double number);

} // namespace Ksx::Kit
