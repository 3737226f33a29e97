// SPDX-License-Identifier: GPL-3.0-or-later
#include "zdsp/common/ZHammingWindow.h"

#include "zlib/common/objects/ZException.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <new>
#include <utility>

namespace orvane
{

namespace
{

constexpr double kTwoPi = 6.2831854820251465;

std::unique_ptr<ZBuffer> makeBuffer(std::uint32_t length, const char* name)
{
    try {
        return std::make_unique<ZBuffer>(length, name);
    } catch (const ZException& failure) {
        if (failure.GetCode() != ZException::kOutOfMemory)
            throw;
        throw ZException(ZException::kOutOfMemory, "Unable to allocate a ZBuffer");
    }
}

/// The distance of the samples that a normalisation takes: at least 1, for any number of divisions.
std::uint32_t stepOf(std::uint32_t length, std::uint32_t divisions)
{
    return std::max(length / std::max(divisions, 1u), 1u);
}

float windowAt(std::uint32_t i, std::uint32_t length)
{
    if (length == 1)
        return 1.0f;
    return static_cast<float>(0.54 - 0.46 * std::cos(i * kTwoPi / (length - 1)));
}

}  // namespace

std::unique_ptr<ZHammingWindow> ZHammingWindow::Create(std::uint32_t length)
{
    std::unique_ptr<ZHammingWindow> window(new (std::nothrow) ZHammingWindow);
    if (!window)
        throw ZException(ZException::kOutOfMemory, "Unable to allocate a ZHammingWindow.");
    window->SetLength(length);
    return window;
}

ZHammingWindow::ZHammingWindow()
    : ZDSPObject("ZHammingWindow")
{
}

void ZHammingWindow::SetLength(std::uint32_t length)
{
    auto gain = ZGain::Create(false);
    auto window = makeBuffer(length, "mWindow");
    auto inverse = makeBuffer(length, "mInverseWindow");
    for (std::uint32_t i = 0; i < length; ++i) {
        window->Data()[i] = windowAt(i, length);
        inverse->Data()[i] = 1.0f / window->Data()[i];
    }
    mGain = std::move(gain);
    mWindow = std::move(window);
    mInverseWindow = std::move(inverse);
}

void ZHammingWindow::NormalizePower(std::uint32_t divisions) noexcept
{
    const std::uint32_t length = mWindow->Length();
    const std::uint32_t step = stepOf(length, divisions);
    float sum = 0.0f;
    for (std::uint32_t i = 0; i < length; i += step)
        sum += mWindow->Data()[i] * mWindow->Data()[i];
    Normalize(sum);
}

void ZHammingWindow::NormalizeSum(std::uint32_t divisions) noexcept
{
    const std::uint32_t length = mWindow->Length();
    const std::uint32_t step = stepOf(length, divisions);
    float sum = 0.0f;
    for (std::uint32_t i = 0; i < length; i += step)
        sum += mWindow->Data()[i];
    Normalize(sum);
}

void ZHammingWindow::Normalize(float sum) noexcept
{
    mGain->Scale(*mWindow, 1.0f / sum);
    mGain->Scale(*mInverseWindow, sum);
}

void ZHammingWindow::ApplyTo(const ZBuffer& source, ZBuffer& out) noexcept
{
    assert(source.Length() >= mWindow->Length() && out.Length() >= mWindow->Length());
    mGain->MultiplyTo(*mWindow, source, out);
}

void ZHammingWindow::Apply(ZBuffer& buffer) noexcept
{
    assert(buffer.Length() <= mWindow->Length());
    mGain->Multiply(buffer, *mWindow);
}

void ZHammingWindow::UnapplyTo(const ZBuffer& source, ZBuffer& out) noexcept
{
    assert(source.Length() <= mWindow->Length() && out.Length() >= source.Length());
    mGain->MultiplyTo(source, *mInverseWindow, out);
}

}  // namespace orvane
