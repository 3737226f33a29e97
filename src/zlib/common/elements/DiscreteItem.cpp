// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/elements/DiscreteItem.h"

#include <utility>

namespace orvane
{

DiscreteItem::DiscreteItem(ZString text, boost::shared_ptr<const ZXMLElement> xml)
    : mText(std::move(text))
    , mXML(std::move(xml))
{
}

}  // namespace orvane
