// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/pitch/KestruneNameScaleDialog.h"

#include "zlib/common/objects/ZNeverDestroyed.h"

#include <algorithm>
#include <utility>

namespace orvane
{

namespace
{

KestruneNameScaleDialog::Runner& currentRunner()
{
    static const ZNeverDestroyed<KestruneNameScaleDialog::Runner> runner;
    return *runner;
}

}  // namespace

KestruneNameScaleDialog::KestruneNameScaleDialog(ZApplication* application,
                                                 const ZString& resourceName,
                                                 const ZString& scaleName)
    : mApplication(application)
    , mResourceName(resourceName)
    , mName(scaleName)
{
    mName.Append(" (copy)");
}

bool KestruneNameScaleDialog::Run()
{
    // A copy, because SetRunner may be called while the dialog runs.
    const Runner run = currentRunner();
    ZString name = mName;
    if (!run || !run(mApplication, mResourceName, name))
        return false;
    mName.SetChars(name.Chars(), std::min(name.Length(), kMaxNameUnits));
    return true;
}

KestruneNameScaleDialog::Runner KestruneNameScaleDialog::SetRunner(Runner runner)
{
    return std::exchange(currentRunner(), std::move(runner));
}

}  // namespace orvane
