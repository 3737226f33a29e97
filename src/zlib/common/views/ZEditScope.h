// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>

namespace orvane
{

class ZElement;

/// Tells the host that the user edits an element, from the making of the object to its end: for a
/// change that is over at once, where a drag has the capture of the mouse for that. A host that
/// records what is touched would miss a change without a begin.
///
/// The interface lock is given up at both ends, while the host is called: views may be gone then,
/// the element stays. [interface thread]
class ZEditScope
{
public:
    /// Does nothing for null, or for an element of no plug-in.
    explicit ZEditScope(boost::shared_ptr<ZElement> element);
    ZEditScope(const ZEditScope&) = delete;
    ZEditScope& operator=(const ZEditScope&) = delete;
    ~ZEditScope();

private:
    const boost::shared_ptr<ZElement> mElement;
};

/// One edit that changes a discrete element; nothing for null. Throws ZException -1 for another
/// type of element. By value: the caller may be gone before the edit is over.
void editDiscrete(boost::shared_ptr<ZElement> element, std::int32_t index);

}  // namespace orvane
