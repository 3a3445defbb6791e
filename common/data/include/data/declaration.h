// Everything that the declaration of a document class is made of; included by their headers.
#pragma once

#include "data/attribute.h"
#include "data/childrentypesbinder.h"
#include "data/containerlist.h"
#include "data/containerstruct.h"
#include "data/containerunion.h"
#include "data/defaultvaluebinder.h"
#include "data/metabinder.h"
#include <cstddef>
