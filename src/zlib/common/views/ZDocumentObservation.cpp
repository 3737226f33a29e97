// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZDocumentObservation.h"

#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/objects/ZInterfaceLock.h"

#include <cassert>
#include <utility>

namespace orvane
{

ZDocumentObservation::ZDocumentObservation(ZHandler& observer)
    : mObserver(observer)
{
}

void ZDocumentObservation::Start(ZDocument* document)
{
    assert(ZInterfaceLock::IsHeld());
    Stop();
    mDocument = document;
    if (!mDocument)
        return;
    mLife = mDocument->GetLife();
    mDocument->AddObserver(&mObserver);
}

void ZDocumentObservation::Stop()
{
    ZDocument* const document = std::exchange(mDocument, nullptr);
    if (document && !mLife.expired())
        document->RemoveObserver(&mObserver);
}

}  // namespace orvane
