// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <string>
#include <string_view>

namespace orvane
{

class ZElement;
class ZHandler;
class ZXMLElement;

/// An element that a handler holds and observes: it hears of changes until the element is let go,
/// here or with this object. For handlers that need more elements than one.
/// [interface thread, with the interface lock]
class ZObservedElement
{
public:
    /// The observer owns this object.
    explicit ZObservedElement(ZHandler& observer);
    ZObservedElement(const ZObservedElement&) = delete;
    ZObservedElement& operator=(const ZObservedElement&) = delete;
    ~ZObservedElement();

    /// Lets the element that it holds go and takes this one, which may be null. The observer is
    /// told of it with ZATTACHEDTOELEMENT.
    void Observe(const boost::shared_ptr<ZElement>& element);
    /// Keeps the element and hears no more of it.
    void StopObserving();
    /// Holds none any more.
    void Release();

    /// Whether a message's "elementid" means this element; never when it holds none.
    [[nodiscard]] bool Is(std::uint64_t elementId) const;
    explicit operator bool() const { return mElement != nullptr; }
    ZElement* operator->() const { return mElement.get(); }
    ZElement& operator*() const { return *mElement; }

private:
    ZHandler& mObserver;
    boost::shared_ptr<ZElement> mElement;
};

/// The name of the element that a view's XML gives for a role: in its last tag `element` with that
/// attribute; empty without one.
[[nodiscard]] std::string readElementName(const ZXMLElement& xml, std::string_view role);

}  // namespace orvane
