// SPDX-License-Identifier: GPL-3.0-or-later
// The classes of elements, bays and documents that descriptions name.
#include "zlib/common/documents/ZAudioDocument.h"
#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZClassRegistry.h"
#include "zlib/common/signals/ZElementBay.h"
#include "zlib/common/signals/ZMeterBay.h"
#include "zlib/common/signals/ZSignalBay.h"
#include "zlib/common/signals/ZThruBay.h"

namespace orvane
{

namespace
{

void registerDocumentClasses(ZClassRegistry& registry)
{
    registry.AddStandard<ZAudioDocument>("ZAudioDocumentClass");
    registry.AddStandard<ZElement>("ZElementClass");
    registry.AddStandard<ZSignalBay>("ZSignalBayClass");
    registry.AddStandard<ZElementBay>("ZElementBayClass");
    registry.AddStandard<ZThruBay>("ZThruBayClass");
    registry.AddStandard<ZMeterBay>("ZMeterBayClass");
}

[[maybe_unused]] const ZStandardClasses documentClasses{&registerDocumentClasses};

}  // namespace

}  // namespace orvane
