// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cassert>
#include <cstdint>
#include <string>
#include <string_view>

namespace orvane
{

class ZElement;
class ZHandler;
class ZXMLElement;

/// An element that a handler shares and observes, until Release or the destructor. For handlers
/// that observe several elements. [interface thread, under the interface lock]
class ZObservedElement
{
public:
    /// The observer owns this object.
    explicit ZObservedElement(ZHandler& observer);
    ZObservedElement(const ZObservedElement&) = delete;
    ZObservedElement& operator=(const ZObservedElement&) = delete;
    ~ZObservedElement();

    /// Releases the current element and observes this one, which may be null. The observer gets a
    /// ZATTACHEDTOELEMENT.
    void Observe(const boost::shared_ptr<ZElement>& element);
    /// Keeps the element but stops observing it.
    void StopObserving();
    /// Stops observing the element and drops it.
    void Release();

    /// Whether a message's "elementid" names this element; false without one.
    [[nodiscard]] bool Is(std::uint64_t elementId) const;
    explicit operator bool() const { return mElement != nullptr; }
    ZElement* operator->() const
    {
        assert(mElement);
        return mElement.get();
    }
    ZElement& operator*() const
    {
        assert(mElement);
        return *mElement;
    }

private:
    ZHandler& mObserver;
    boost::shared_ptr<ZElement> mElement;
};

/// Reads the name of the element that a view's XML names for a role: the attribute of that name in
/// the last tag "element" that has it; empty without one.
[[nodiscard]] std::string readElementName(const ZXMLElement& xml, std::string_view role);

}  // namespace orvane
