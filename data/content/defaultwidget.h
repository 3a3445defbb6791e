// How an input is edited.
#pragma once

#include "data/content/option.h"
#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   DefaultWidget
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "defaultWidget"
#define ORV_TABLE   "data/content/defaultwidget.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class DefaultWidget : public DefaultWidgetStruct
{
public:
    DefaultWidget();
    ~DefaultWidget() override;
};

} // namespace Ksx::Data::Content
