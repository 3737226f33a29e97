// SPDX-License-Identifier: GPL-3.0-or-later
// Tells how far two sounds are from each other: for renders of two processors or two builds.
#include "tools/common/RunProgram.h"
#include "tools/measure/SoundClip.h"

#include <CLI/CLI.hpp>

#include <cmath>
#include <cstddef>
#include <cstdio>
#include <stdexcept>
#include <string>

using namespace orvane;

namespace
{

struct Arguments
{
    std::string one;
    std::string other;
    double within = 0.0;  // full scale is 1
};

void compare(const Arguments& arguments)
{
    const SoundClip one = readSoundClip(arguments.one);
    const SoundClip other = readSoundClip(arguments.other);
    if (one.sampleRate != other.sampleRate || one.samples.size() != other.samples.size())
        throw std::runtime_error("the sounds differ in rate or length");
    double largest = 0.0;
    std::size_t place = 0;
    for (std::size_t i = 0; i < one.samples.size(); ++i) {
        const double difference =
            std::fabs(static_cast<double>(one.samples[i]) - static_cast<double>(other.samples[i]));
        // In this form, so that a sample that is no number counts as the largest.
        if (!(difference <= largest)) {
            largest = difference;
            place = i;
        }
    }
    std::printf("largest difference %.3g of full scale, at sample %zu of %zu\n", largest, place,
                one.samples.size());
    if (!(largest <= arguments.within))
        throw std::runtime_error("the sounds are further apart than " +
                                 std::to_string(arguments.within));
}

}  // namespace

int main(int argc, char** argv)
{
    Arguments arguments;
    CLI::App app("Tells the largest difference between the first channels of two sounds.");
    app.add_option("ONE", arguments.one)->required();
    app.add_option("OTHER", arguments.other)->required();
    app.add_option("--within", arguments.within, "fails when it is larger; full scale is 1");
    return runProgram("kestrune-compare", app, argc, argv, [&] { compare(arguments); });
}
