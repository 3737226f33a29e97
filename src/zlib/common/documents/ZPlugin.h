// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/documents/ZApp.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <vector>

namespace orvane
{

class ZElement;
class ZSetParameterFn;

/// The application of a plug-in: the host is its clock, and the elements that are exposed are the
/// host's parameters, numbered in the order in which they were found. [interface thread, but where
/// it says otherwise]
class ZPlugin : public ZApp
{
public:
    explicit ZPlugin(const ZResources& resources);
    ~ZPlugin() override;

    /// ZELEMENTCHANGED: takes the value out to the host when the element is a parameter; goes no
    /// further. The rest as ZApp.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;
    /// Begins the tick and looks for the label font.
    void InitLooper() override;
    /// A ZPluginAudioManager, with its signal looper built.
    void AddAudioManager(const boost::shared_ptr<ZXMLElement>& xml) override;

    /// Names who takes values out to the host; null for nobody.
    virtual void SetParameterFn(const boost::shared_ptr<ZSetParameterFn>& function);
    /// Makes parameters of all exposed elements below this one that have no children, depth first,
    /// in the order of each group. [setup]
    virtual void ExposeElements(const ZElement& element);
    /// [any thread, audio thread included; so are the next two]
    [[nodiscard]] virtual std::int32_t GetExposedCount() const;
    /// The full label of the element; empty when there is no such parameter. [any but audio thread]
    [[nodiscard]] virtual ZString GetExposedLabel(std::int32_t index) const;
    /// Null when there is no such parameter.
    [[nodiscard]] virtual boost::shared_ptr<ZElement> GetExposedElement(std::int32_t index) const;
    /// The user takes hold of a control of the element, or lets it go. A change that waits for the
    /// tick goes out before the end: what comes after it is not recorded as the user's. Nothing for
    /// an element that is no parameter.
    virtual void BeginEdit(const ZElement* element);
    virtual void EndEdit(const ZElement* element);
    /// Index of a discrete element, value of a float one; 0 for others. [any thread]
    [[nodiscard]] virtual float GetExposedValue(const ZElement& element) const;
    /// Sets the same, an index truncated toward zero, as a change of the user's; nothing for
    /// others. [any thread]
    virtual void SetExposedValue(ZElement& element, float value);
    /// Makes a parameter of an exposed element with a float or discrete value; passes over others.
    /// [setup]
    virtual void AddExposedElement(const boost::shared_ptr<ZElement>& element);

private:
    void SendToHost(const ZMessage& message);

    // Filled before the host sees the plug-in, then only read.
    std::vector<boost::shared_ptr<ZElement>> mExposed;
    boost::shared_ptr<ZSetParameterFn> mSetParameterFn;
};

}  // namespace orvane
