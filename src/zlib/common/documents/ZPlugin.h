// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/documents/ZApp.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <vector>

namespace orvane
{

class ZElement;
class ZProgramList;
class ZSetParameterFn;

/// The application of a plug-in. The host runs the audio passes, and the exposed elements are the
/// host's parameters, numbered in the order in which ExposeElements finds them. [interface thread,
/// where nothing else is said]
class ZPlugin : public ZApp
{
public:
    /// As ZApp. [setup]
    explicit ZPlugin(const ZResources& resources);
    ~ZPlugin() override;

    /// ZELEMENTCHANGED: sends the value to the host when the element is a parameter, and marks the
    /// state as changed when it is saved otherwise. Other messages go to ZApp.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;
    /// Shows title, version, licence and plug-in formats, as far as the texts tell them.
    void ShowAbout() override;
    /// Starts the tick and loads the font of the labels, if its file is installed. [setup]
    void InitLooper() override;
    /// Creates a ZPluginAudioManager and its signal looper. [setup]
    void AddAudioManager(const boost::shared_ptr<ZXMLElement>& xml) override;

    /// Sets the object that sends values to the host; null for none. [setup]
    virtual void SetParameterFn(const boost::shared_ptr<ZSetParameterFn>& function);
    /// Adds the exposed leaves below the element as parameters, depth first, and observes the other
    /// leaves that are saved. [setup]
    virtual void ExposeElements(const ZElement& element);
    /// The number of parameters. [any thread]
    [[nodiscard]] virtual std::int32_t GetExposedCount() const;
    /// Returns the full label of a parameter; empty for an index out of range.
    /// [any thread but the audio thread]
    [[nodiscard]] virtual ZString GetExposedLabel(std::int32_t index) const;
    /// Returns the element of a parameter; null for an index out of range. [any thread]
    [[nodiscard]] virtual boost::shared_ptr<ZElement> GetExposedElement(std::int32_t index) const;
    /// The user begins, or ends, an edit of the element, for example by holding its slider. EndEdit
    /// sends a pending change first, since hosts record only what comes before the end. Both ignore
    /// an element that is no parameter.
    virtual void BeginEdit(const ZElement* element);
    virtual void EndEdit(const ZElement* element);
    /// Returns the index of a discrete element, the value of a float element, 0 for other types.
    /// [any thread]
    [[nodiscard]] virtual float GetExposedValue(const ZElement& element) const;
    /// Sets the value of a float element or the index of a discrete one, truncated toward zero, and
    /// marks it as changed; ignores other types. [any thread]
    virtual void SetExposedValue(ZElement& element, float value);
    /// Adds the element as a parameter when it is exposed and of type float or discrete. [setup]
    virtual void AddExposedElement(const boost::shared_ptr<ZElement>& element);
    /// Sets the programs, which are not owned; null for none. [setup]
    void SetPrograms(ZProgramList* programs) { mPrograms = programs; }
    [[nodiscard]] ZProgramList* GetPrograms() const { return mPrograms; }
    /// Lets the next tick on the interface thread tell the host that saved state has changed.
    void MarkStateChanged() { mStateChanged = true; }

protected:
    /// Tells the host of changed state, then as ZApp.
    void FlushElementChanges() override;

private:
    void HandleElementChanged(const ZMessage& message);
    void AddStateElement(const boost::shared_ptr<ZElement>& element);
    void HandleStateElement(std::uint64_t elementId);

    // Filled before the host gets the plug-in, read-only from then on.
    std::vector<boost::shared_ptr<ZElement>> mExposed;
    std::vector<boost::shared_ptr<ZElement>> mStateElements;  // saved, but no parameters
    boost::shared_ptr<ZSetParameterFn> mSetParameterFn;
    ZProgramList* mPrograms = nullptr;
    bool mStateChanged = false;
    bool mIsLoading = false;       // between ZPRESETLOADBEGIN and ZPRESETLOADEND
    std::int32_t mQuietTicks = 0;  // ticks in which a load may still have consequences
};

}  // namespace orvane
