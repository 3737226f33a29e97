// SPDX-License-Identifier: GPL-3.0-or-later
#include "zdsp/common/ZComplexTransform.h"

#include "zlib/common/objects/ZException.h"

#include <kiss_fft.h>

#include <cassert>

namespace orvane
{

struct ZComplexTransform::Plan
{
    Plan(std::uint32_t length, Direction direction)
        : mState(kiss_fft_alloc(static_cast<int>(length), direction == Direction::kInverse, nullptr,
                                nullptr))
    {
        if (!mState)
            throw ZException("Could not plan a Fourier transform of this length.");
    }
    Plan(const Plan&) = delete;
    Plan& operator=(const Plan&) = delete;
    ~Plan() { kiss_fft_free(mState); }

    kiss_fft_cfg mState;
};

ZComplexTransform::ZComplexTransform(std::uint32_t length, Direction direction)
    : mPlan(std::make_unique<Plan>(length, direction))
{
}

ZComplexTransform::~ZComplexTransform() = default;

void ZComplexTransform::Run(const float* in, float* out) const noexcept
{
    assert(in && out && in != out);
    kiss_fft(mPlan->mState, reinterpret_cast<const kiss_fft_cpx*>(in),
             reinterpret_cast<kiss_fft_cpx*>(out));
}

}  // namespace orvane
