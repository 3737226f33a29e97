// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

namespace orvane
{

class ZDocument;
class ZHandler;

/// Keeps a handler among the observers of one document, from Start to Stop or to the end of either.
/// [interface thread, with the interface lock]
class ZDocumentObservation
{
public:
    /// The observer owns this object.
    explicit ZDocumentObservation(ZHandler& observer);
    ZDocumentObservation(const ZDocumentObservation&) = delete;
    ZDocumentObservation& operator=(const ZDocumentObservation&) = delete;
    ~ZDocumentObservation() { Stop(); }

    /// Stops observing the document before; null leaves none.
    void Start(ZDocument* document);
    void Stop();

private:
    ZHandler& mObserver;
    ZDocument* mDocument = nullptr;
    std::weak_ptr<const void> mLife;  // expired: the document is gone, and its observers with it
};

}  // namespace orvane
