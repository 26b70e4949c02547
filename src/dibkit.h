#pragma once

/// \mainpage dibkit
/// Transformations of packed DIBs for editors of animated images. This header gives everything.

#if (defined(_MSVC_LANG) && _MSVC_LANG <= 201703L) || (!defined(_MSVC_LANG) && __cplusplus <= 201703L)
#error "dibkit needs C++20: compile with -std=c++20 or later"
#endif

#include "convert/convert.h"
#include "dib/dib.h"
#include "dib/view.h"
#include "dib32/dib32.h"
#include "effects/catalogue.h"
#include "effects/effects.h"
#include "frames/frames.h"
#include "gifmask/gifmask.h"
#include "module/module.h"
#include "palette/palette.h"
#include "platform/win32.h"
#include "ripple/ripple.h"
#include "split/split.h"
