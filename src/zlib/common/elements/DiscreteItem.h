// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZString.h"

#include <boost/smart_ptr/shared_ptr.hpp>

namespace orvane
{

class ZXMLElement;

/// One text in the list of a discrete element. Immutable, so that any thread may hold it.
class DiscreteItem
{
public:
    /// xml: the tag that the item was read from; null for an item made in code.
    explicit DiscreteItem(ZString text, boost::shared_ptr<const ZXMLElement> xml = {});

    [[nodiscard]] const ZString& GetText() const { return mText; }
    /// Returns the tag that the item was read from, in which a description may say more of it than
    /// its text; null for an item made in code.
    [[nodiscard]] const boost::shared_ptr<const ZXMLElement>& GetXML() const { return mXML; }

private:
    ZString mText;
    boost::shared_ptr<const ZXMLElement> mXML;
};

}  // namespace orvane
