// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZString.h"

#include <boost/smart_ptr/shared_ptr.hpp>

namespace orvane
{

class ZXMLElement;

/// One text in the list of a discrete element. Nobody changes it once it is made, so that any
/// thread may hold it.
class DiscreteItem
{
public:
    /// The XML is what the item was read from; null for an item that is made in code.
    explicit DiscreteItem(ZString text, boost::shared_ptr<const ZXMLElement> xml = {});

    [[nodiscard]] const ZString& GetText() const { return mText; }
    [[nodiscard]] const boost::shared_ptr<const ZXMLElement>& GetXML() const { return mXML; }

private:
    ZString mText;
    boost::shared_ptr<const ZXMLElement> mXML;
};

}  // namespace orvane
