// Previews as text for people.
#pragma once

#include "ksx/kit/preview.h"
#include <QString>

namespace Ksx::Kit {

// Returns the lines about one file. Long texts are cut, and so are long lists of changes.
QString previewText(const PreviewedFile& file);

// Returns the line about all files.
QString summaryText(const Preview& preview);

} // namespace Ksx::Kit
