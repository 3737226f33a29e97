// SPDX-License-Identifier: GPL-3.0-or-later
#include "zdsp/common/ZComplexTransform.h"

#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/objects/ZException.h"

#include <fftw3.h>

#include <cassert>
#include <mutex>

namespace orvane
{

namespace
{

// FFTW's planner has global state and is not thread-safe. The library is linked statically, so this
// library has a planner of its own: another user of FFTW in the host can neither plan at the same
// time nor change the plans made here by wisdom.
std::mutex& plannerMutex()
{
    static std::mutex mutex;
    return mutex;
}

int livePlans = 0;  // guarded by plannerMutex; the last one frees the planner's memory

}  // namespace

struct ZComplexTransform::Plan
{
    Plan(std::uint32_t length, Direction direction)
    {
        // Estimated plans depend only on length and processor and take a millisecond. Measured ones
        // take 200 times as long and run no faster at the lengths in use.
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
    // The plan preserves its input, although the library's function takes it without const.
    assert(in && out && in != out);
    auto* const source = reinterpret_cast<fftwf_complex*>(const_cast<float*>(in));
    fftwf_execute_dft(mPlan->mPlan, source, reinterpret_cast<fftwf_complex*>(out));
}

}  // namespace orvane
