#include "drawing/layoutmodule.h"

#include "core/moduleplace.h"
#include <QLibrary>

namespace Ksx::Kit {

LayoutFunction layoutFunction()
{
    static const auto function = reinterpret_cast<LayoutFunction>(
        QLibrary(Orv::Core::modulePlace(QStringLiteral("libksx_layout.so"))).resolve("ksxLayOut"));
    return function;
}

} // namespace Ksx::Kit
