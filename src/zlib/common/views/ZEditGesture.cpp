// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZEditGesture.h"

#include "zlib/common/documents/ZPlugin.h"
#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZNeverDestroyed.h"

#include <cassert>
#include <map>
#include <utility>

namespace orvane
{

namespace
{

// Looked up at each end: the application may be destroyed in between.
ZPlugin* pluginOf(ZElement& element)
{
    return dynamic_cast<ZPlugin*>(ZApp::Of(element));
}

/// What is going on with an element that has edits under way.
struct Edits
{
    int underWay = 0;
    bool isTold = false;     // the host knows of an edit, or is being told
    bool isTelling = false;  // a call of the host is under way
};

/// Guarded by the interface lock.
const ZNeverDestroyed<std::map<const ZElement*, Edits>> editsOfElements;

/// Brings what the host knows up to date. Calls of the host give the interface lock up, so what
/// changes meanwhile is told by the thread that is telling already: calls on several threads could
/// overtake each other.
void tellHost(const boost::shared_ptr<ZElement>& element)
{
    Edits& edits = (*editsOfElements)[element.get()];
    while (!edits.isTelling && edits.isTold != (edits.underWay > 0)) {
        edits.isTelling = true;
        edits.isTold = !edits.isTold;
        ZPlugin* const plugin = pluginOf(*element);
        if (plugin && edits.isTold)
            plugin->BeginEdit(element.get());
        else if (plugin)
            plugin->EndEdit(element.get());
        edits.isTelling = false;
    }
    if (!edits.isTelling && edits.underWay == 0)
        (*editsOfElements).erase(element.get());
}

}  // namespace

void ZEditGesture::Begin(const boost::shared_ptr<ZElement>& element)
{
    if (!element || mElement)
        return;
    if (!pluginOf(*element))
        return;
    assert(ZInterfaceLock::IsHeld());
    // A copy, and the call last: this object may be destroyed in it.
    const auto edited = element;
    mElement = edited;
    ++(*editsOfElements)[edited.get()].underWay;
    tellHost(edited);
}

void ZEditGesture::End()
{
    const auto edited = std::exchange(mElement, nullptr);
    if (!edited)
        return;
    assert(ZInterfaceLock::IsHeld());
    Edits& edits = (*editsOfElements)[edited.get()];
    assert(edits.underWay > 0);
    --edits.underWay;
    tellHost(edited);
}

void editDiscrete(boost::shared_ptr<ZElement> element, std::int32_t index)
{
    if (!element)
        return;
    const ZEditGesture edit(element);
    element->SetDiscrete(index, false);
}

}  // namespace orvane
