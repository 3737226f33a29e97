#include "TestHost.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <vector>

namespace orvane
{

namespace
{

constexpr std::size_t kFrames = 333;

std::vector<float> noise(unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> samples(-1.0f, 1.0f);
    std::vector<float> result(kFrames);
    for (float& sample : result)
        sample = samples(random);
    return result;
}

}  // namespace

TEST(AudioPathTest, ProcessAddsWhatProcessReplacingWrites)
{
    const TestHost host;
    AEffect* const effect = host.Open();
    ASSERT_NE(effect, nullptr);
    const auto frames = static_cast<std::int32_t>(kFrames);
    std::array<std::vector<float>, 2> in{noise(1), noise(2)};
    std::array<std::vector<float>, 2> replaced{noise(3), noise(4)};
    std::array<std::vector<float>, 2> added{noise(5), noise(6)};
    const auto before = added;
    float* inputs[] = {in[0].data(), in[1].data()};
    float* overwritten[] = {replaced[0].data(), replaced[1].data()};
    float* summed[] = {added[0].data(), added[1].data()};
    effect->processReplacing(effect, inputs, overwritten, frames);
    effect->process(effect, inputs, summed, frames);
    EXPECT_EQ(replaced, in);  // no network: the plain path
    for (std::size_t channel = 0; channel < 2; ++channel) {
        for (std::size_t i = 0; i < kFrames; ++i)
            ASSERT_FLOAT_EQ(added[channel][i], before[channel][i] + in[channel][i]);
    }
    closeEffect(effect);
}

TEST(AudioPathTest, BearsInPlaceAndEmptyBlocksAndMissingChannels)
{
    const TestHost host;
    AEffect* const effect = host.Open();
    ASSERT_NE(effect, nullptr);
    std::vector<float> samples = noise(7);
    const std::vector<float> before = samples;
    float* inPlace[] = {samples.data(), nullptr};
    effect->processReplacing(effect, inPlace, inPlace, static_cast<std::int32_t>(kFrames));
    for (const std::int32_t frames : {0, -1, INT32_MIN}) {
        effect->processReplacing(effect, inPlace, inPlace, frames);
        effect->process(effect, inPlace, inPlace, frames);
    }
    EXPECT_EQ(samples, before);
    closeEffect(effect);
}

}  // namespace orvane
