// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>

namespace orvane
{

class ZElement;

/// Tells the host that the user edits an element, from Begin to End: a view holds one for its
/// drags, a single edit has one in its scope. Hosts record automation only between the two.
///
/// Edits of one element can overlap: while a menu that has closed sets its element, the event loop
/// can go on with the user's next press. The host hears of them as one. While a thread calls the
/// host, it also tells what others have begun or ended meanwhile, so these may return before that.
///
/// The host is called with the interface lock given up: when Begin or End returns, views may have
/// been destroyed, this object included where it belongs to one. The element stays alive.
/// [interface thread]
class ZEditGesture
{
public:
    ZEditGesture() = default;
    /// Begins at once; null does nothing.
    explicit ZEditGesture(const boost::shared_ptr<ZElement>& element) { Begin(element); }
    ZEditGesture(const ZEditGesture&) = delete;
    ZEditGesture& operator=(const ZEditGesture&) = delete;
    ~ZEditGesture() { End(); }

    /// Does nothing for null, for an element of no plug-in, or while an edit is under way.
    void Begin(const boost::shared_ptr<ZElement>& element);
    /// Does nothing unless an edit is under way.
    void End();

private:
    boost::shared_ptr<ZElement> mElement;  // null unless an edit is under way
};

/// Sets a discrete element as one edit of its own; null does nothing. Throws ZException kGeneral
/// for another type of element. By value: the caller's own pointer may be gone before the edit
/// ends.
void editDiscrete(boost::shared_ptr<ZElement> element, std::int32_t index);

}  // namespace orvane
