// Inventories as text for people.
#pragma once

#include "ksx/kit/inventory.h"
#include <QString>

namespace Ksx::Kit {

// Returns the size in bytes with a comma after each three digits.
QString sizeText(qint64 bytes);

// Returns the sections of one package: its head, its dependencies and its objects.
QString inventoryText(const QString& file, const Inventory& inventory);

} // namespace Ksx::Kit
