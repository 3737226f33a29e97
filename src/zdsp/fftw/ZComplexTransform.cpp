// SPDX-License-Identifier: GPL-3.0-or-later
#include "zdsp/common/ZComplexTransform.h"

#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/objects/ZException.h"

#include <fftw3.h>

#include <mutex>

namespace orvane
{

namespace
{

// FFTW's planner keeps state and knows no threads. The library is linked in statically, so that
// state is this module's own: no other user of FFTW in the host can plan at the same time, nor
// leave wisdom that would make a plan here depend on who came before.
std::mutex& plannerMutex()
{
    static std::mutex mutex;
    return mutex;
}

int livePlans = 0;  // guarded by plannerMutex; with the last one the planner's memory goes

}  // namespace

struct ZComplexTransform::Plan
{
    Plan(std::uint32_t length, Direction direction)
    {
        // Estimated plans depend on nothing but the length and the processor, and are there in a
        // millisecond. Measured ones take 200 times that and run no faster at the lengths in use.
        ZBuffer in(2 * length, "ZBuffer");
        ZBuffer out(2 * length, "ZBuffer");
        const std::lock_guard lock(plannerMutex());
        mPlan =
            fftwf_plan_dft_1d(static_cast<int>(length), reinterpret_cast<fftwf_complex*>(in.Data()),
                              reinterpret_cast<fftwf_complex*>(out.Data()),
                              direction == Direction::kForward ? FFTW_FORWARD : FFTW_BACKWARD,
                              FFTW_ESTIMATE | FFTW_PRESERVE_INPUT);
        if (!mPlan)
            throw ZException("Could not plan a Fourier transform of this length.");
        ++livePlans;
    }
    Plan(const Plan&) = delete;
    Plan& operator=(const Plan&) = delete;
    ~Plan()
    {
        const std::lock_guard lock(plannerMutex());
        fftwf_destroy_plan(mPlan);
        if (--livePlans == 0)
            fftwf_cleanup();
    }

    fftwf_plan mPlan;
};

ZComplexTransform::ZComplexTransform(std::uint32_t length, Direction direction)
    : mPlan(std::make_unique<Plan>(length, direction))
{
}

ZComplexTransform::~ZComplexTransform() = default;

void ZComplexTransform::Run(const float* in, float* out) const noexcept
{
    // The plan preserves its input, which the library's signature cannot say.
    auto* const source = reinterpret_cast<fftwf_complex*>(const_cast<float*>(in));
    fftwf_execute_dft(mPlan->mPlan, source, reinterpret_cast<fftwf_complex*>(out));
}

}  // namespace orvane
