// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZEditScope.h"

#include "zlib/common/documents/ZPlugin.h"
#include "zlib/common/elements/ZElement.h"

#include <utility>

namespace orvane
{

namespace
{

// Asked anew at each end: the application may go in between, and its elements then have none.
ZPlugin* pluginOf(const boost::shared_ptr<ZElement>& element)
{
    return element ? dynamic_cast<ZPlugin*>(ZApp::Of(*element)) : nullptr;
}

}  // namespace

ZEditScope::ZEditScope(boost::shared_ptr<ZElement> element)
    : mElement(std::move(element))
{
    if (ZPlugin* const plugin = pluginOf(mElement))
        plugin->BeginEdit(mElement.get());
}

ZEditScope::~ZEditScope()
{
    if (ZPlugin* const plugin = pluginOf(mElement))
        plugin->EndEdit(mElement.get());
}

void editDiscrete(boost::shared_ptr<ZElement> element, std::int32_t index)
{
    if (!element)
        return;
    const ZEditScope edit(element);
    element->SetDiscrete(index, false);
}

}  // namespace orvane
