// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/documents/ZAudioManager.h"

namespace orvane
{

/// The audio manager of a plug-in. The host runs the audio passes, so the driver is a plain
/// ZSignalDriver that is never started. [interface thread]
class ZPluginAudioManager : public ZAudioManager
{
public:
    using ZAudioManager::ZAudioManager;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// As ZAudioManager; ignores the settings. [setup]
    void BuildDriverModel(const ZDriverSettings& settings) override;
    /// Throw ZException kGeneral: the manager has no archive.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractHeader() const override;
    void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const override;
};

}  // namespace orvane
