// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace orvane
{

/// Gives an instance states and checks it afterwards. Instance has Load(text), which returns
/// whether the state was taken, Save(), and RunBlock(), which returns whether the sound is finite.
template <typename Instance>
struct StateCheck
{
    explicit StateCheck(Instance& instance)
        : mInstance(instance)
    {
        mInstance.Load(mInstance.Save());
        mStart = mInstance.Save();
    }

    /// Calls load, which returns whether its state was taken, and returns what is wrong then; empty
    /// when nothing is.
    template <typename Load>
    std::string FaultAfter(const Load& load)
    {
        const std::string before = mInstance.Save();
        const bool isTaken = load();
        const std::string after = mInstance.Save();
        std::string fault;
        if (!isTaken && after != before)
            fault = "the state was refused, but the instance has changed";
        else if (!Settles(after))
            fault = "the new state does not survive saving and loading";
        else if (!mInstance.RunBlock())
            fault = "the sound is not finite";
        mInstance.Load(mStart);
        return fault;
    }

private:
    // Compares the second and third texts: reading a scale sets flags that are neither 0 nor 1.
    bool Settles(const std::string& text)
    {
        mInstance.Load(text);
        const std::string once = mInstance.Save();
        mInstance.Load(once);
        return mInstance.Save() == once;
    }

    Instance& mInstance;
    std::string mStart;
};

}  // namespace orvane
