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

/// How many edits of an element are under way, for those that have any. Guarded by the interface
/// lock.
const ZNeverDestroyed<std::map<const ZElement*, int>> editsUnderWay;

void tellBegin(const boost::shared_ptr<ZElement>& element)
{
    if (ZPlugin* const plugin = pluginOf(*element))
        plugin->BeginEdit(element.get());
}

void tellEnd(const boost::shared_ptr<ZElement>& element)
{
    if (ZPlugin* const plugin = pluginOf(*element))
        plugin->EndEdit(element.get());
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
    if (++(*editsUnderWay)[edited.get()] == 1)
        tellBegin(edited);
}

void ZEditGesture::End()
{
    const auto edited = std::exchange(mElement, nullptr);
    if (!edited)
        return;
    assert(ZInterfaceLock::IsHeld());
    int& edits = (*editsUnderWay)[edited.get()];
    if (edits > 1) {
        --edits;
        return;
    }
    tellEnd(edited);
    if (--edits == 0)
        (*editsUnderWay).erase(edited.get());
    else
        tellBegin(edited);  // of an edit that has begun while the host was told
}

void editDiscrete(boost::shared_ptr<ZElement> element, std::int32_t index)
{
    if (!element)
        return;
    const ZEditGesture edit(element);
    element->SetDiscrete(index, false);
}

}  // namespace orvane
