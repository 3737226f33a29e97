// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/elements/ZObservedElement.h"

#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZXMLElement.h"

namespace orvane
{

ZObservedElement::ZObservedElement(ZHandler& observer)
    : mObserver(observer)
{
}

ZObservedElement::~ZObservedElement()
{
    StopObserving();
}

void ZObservedElement::Observe(const boost::shared_ptr<ZElement>& element)
{
    StopObserving();
    mElement = element;
    if (mElement)
        mElement->AddObserver(&mObserver);
}

void ZObservedElement::StopObserving()
{
    if (mElement)
        mElement->RemoveObserver(&mObserver);
}

void ZObservedElement::Release()
{
    StopObserving();
    mElement.reset();
}

bool ZObservedElement::Is(std::uint64_t elementId) const
{
    return mElement && elementId == elementIdOf(mElement.get());
}

std::string readElementName(const ZXMLElement& xml, std::string_view role)
{
    std::string name;
    for (std::int32_t i = 0; const auto element = xml.GetChild("element", i); ++i) {
        if (const char* value = element->GetAttribute(role))
            name = value;
    }
    return name;
}

}  // namespace orvane
