// SPDX-License-Identifier: GPL-3.0-or-later
#include "zdsp/common/ZFourierTransform.h"

#include "zdsp/common/ZFourierTransformSSE.h"
#include "zlib/common/objects/ZException.h"

#include <new>

namespace orvane
{

namespace
{

[[noreturn]] void raiseNotSupported()
{
    throw ZException("Fourier Transform is not supported on your processor.");
}

}  // namespace

std::unique_ptr<ZFourierTransform> ZFourierTransform::Create(int order, int direction,
                                                             int realSignal)
{
    // For every class of processor: the Fourier library itself selects its vector code.
    std::unique_ptr<ZFourierTransform> transform(new (std::nothrow) ZFourierTransformSSE);
    if (!transform)
        throw ZException(ZException::kOutOfMemory, "Could not create a ZFourierTransform object");
    transform->Init(order, direction, realSignal);
    return transform;
}

ZFourierTransform::ZFourierTransform(const char* name)
    : ZDSPObject(name)
{
}

void ZFourierTransform::Init(int, int, int)
{
}

void ZFourierTransform::TransformReal(ZBuffer&, ZBuffer&, ZBuffer&)
{
    raiseNotSupported();
}

void ZFourierTransform::TransformComplex(const ZBuffer&, const ZBuffer&, ZBuffer&, ZBuffer&)
{
    raiseNotSupported();
}

void ZFourierTransform::TransformInPlace(ZBuffer&, ZBuffer&)
{
    raiseNotSupported();
}

}  // namespace orvane
