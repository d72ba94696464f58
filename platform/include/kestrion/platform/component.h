// Everything of the component object model that an interface header needs.
#pragma once

#include "kestrion/platform/bstr.h"
#include "kestrion/platform/error_info.h"
#include "kestrion/platform/interface_table.h"
#include "kestrion/platform/safe_array.h"
#include "kestrion/platform/types.h"
#include "kestrion/platform/unknown.h"
#include "kestrion/platform/variant.h"
