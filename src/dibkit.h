#pragma once

/// \mainpage dibkit
/// Operations on images in memory, for editors of animated images. This header includes all others; each of
/// them holds one family:
///
/// | header | what it does |
/// |---|---|
/// | dib/dib.h | the packed DIB: create, copy, pixels of a row |
/// | dib/owned.h | owners of images and regions, and their use as out-parameters |
/// | dib/view.h | rows from the top, pixels by format, loops over pixels |
/// | palette/palette.h | count colours, build a palette, nearest colour, grays, threshold |
/// | convert/convert.h | change the depth, reduce to a palette, gray, black and white, clipboard |
/// | gifmask/gifmask.h | what a GIF stores: split alpha into colours and a mask, margins, matte |
/// | frames/frames.h | frames with a mask: compare, crop, magic wand, blend, flood fill, draw shapes |
/// | dib32/dib32.h | 32-bit images: composite, fill, magic wand, scale, filters, brushes, overlays |
/// | effects/catalogue.h, effects/effects.h | transitions by name, and by number |
/// | ripple/ripple.h | water over a picture |
/// | split/split.h | the difference between two frames: the rectangle that changed |
/// | module/module.h | the version of the loaded library |
///
/// What holds for every operation that does not say otherwise:
///
/// - **Threads.** No state is kept between calls. Calls may run at the same time as long as none of them
///   writes an image or object that another one uses. Many may read one image.
/// - **Aliasing.** An operation that returns a new image only reads its arguments: any of them may be the
///   same image. One that changes an image in place says which arguments may be that image too.
/// - **Sizes.** An image has at most 2^31 - 1 bytes, header and palette included: 23,170 x 23,170 pixels of
///   32 bits. A larger result is a failure. Positions and rectangles may have any 32-bit coordinates.
/// - **Cost.** Time grows with the pixels of the images, memory with the result and a few rows.
/// - **Ownership.** A returned image or region belongs to the caller (OwnedDib, OwnedRegion); arguments stay
///   the caller's.
/// - **Failure.** Wrong arguments and a lack of memory give null, 0 or FALSE, or leave the pixels as they
///   are. No operation throws, or touches memory outside the blocks that it was given.

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
