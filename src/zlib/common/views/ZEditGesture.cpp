// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZEditGesture.h"

#include "zlib/common/documents/ZPlugin.h"
#include "zlib/common/elements/ZElement.h"

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

}  // namespace

void ZEditGesture::Begin(const boost::shared_ptr<ZElement>& element)
{
    if (!element || mElement)
        return;
    ZPlugin* const plugin = pluginOf(*element);
    if (!plugin)
        return;
    // A copy, and the call last: this object may be destroyed in it.
    const auto edited = element;
    mElement = edited;
    plugin->BeginEdit(edited.get());
}

void ZEditGesture::End()
{
    const auto edited = std::exchange(mElement, nullptr);
    ZPlugin* const plugin = edited ? pluginOf(*edited) : nullptr;
    if (plugin)
        plugin->EndEdit(edited.get());
}

void editDiscrete(boost::shared_ptr<ZElement> element, std::int32_t index)
{
    if (!element)
        return;
    const ZEditGesture edit(element);
    element->SetDiscrete(index, false);
}

}  // namespace orvane
